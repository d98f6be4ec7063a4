#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "logdefs/fields.h"

namespace logdefs {

// When a line was written. `timestamp` has the digits yyyymmddhhnnss; `moment` is the day plus the time as a
// fraction of eight decimals.
struct LineTime {
    std::int64_t timestamp = 0;
    double moment = 0;
};

// Day number of the date fields; 0 when they make no date.
std::int32_t LogLnDate(const LogLnFields& fields);
// The time fields as the text of a fraction, ".57708333"; "" when they make no time.
std::string LogLnTime(const LogLnFields& fields);

// Decodes date and time; the last date and the last time of day are remembered by their text.
class LineClock {
public:
    LineTime LogLnTimestamp(const LogLnFields& fields);

private:
    struct Day {
        std::int64_t digits = 0;  // yyyymmdd
        std::int32_t serial = 0;
    };
    const Day& DayOf(const LogLnFields& fields);

    std::string dayKey_{};
    std::string room_{};
    Day day_{};
    bool haveDay_ = false;
};

}  // namespace logdefs
