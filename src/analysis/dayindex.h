#pragma once

#include <cstdint>

#include "analysis/results.h"
#include "core/dates.h"

namespace analysis {

inline std::int32_t DayOf(std::int64_t stamp) { return core::TS_Date(static_cast<double>(stamp)); }

// Places of stamps in a list of days, remembered: visits come in order of time.
class DayIndex {
public:
    explicit DayIndex(const DaysList& days) : days_(days) {}

    // -1 outside the list.
    std::int32_t Of(std::int64_t stamp) {
        const std::int64_t date = stamp / kStampsOfDay;
        if (date != date_) {
            date_ = date;
            day_ = DayOf(stamp);
            index_ = days_.IndexOf(day_);
        }
        if (stamp % kStampsOfDay <= kLastStampOfDay) return index_;
        // A time of 24:00:00 and later lies in the days that follow.
        return days_.IndexOf(day_ + core::TS_Time(static_cast<double>(stamp)) / kSecondsOfDay);
    }

private:
    static constexpr std::int64_t kStampsOfDay = 1000000;
    static constexpr std::int64_t kLastStampOfDay = 235959;
    static constexpr std::int32_t kSecondsOfDay = 86400;

    const DaysList& days_;
    std::int64_t date_ = -1;
    std::int32_t day_ = 0;
    std::int32_t index_ = -1;
};

}  // namespace analysis
