#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// Places of an interpreted line. The numbers are stored in filter rules and templates' tables: never renumber.
namespace logdefs {

enum Field : int {
    kNoField = 0,
    kIP = 1,
    kNumIP = 2,
    kFile = 3,
    kQuery = 4,
    kAgent = 5,
    kAgent2 = 6,
    kReferrer = 7,
    kUserNo = 8,
    kVirtualHost = 9,
    kDay = 10,
    kMonth = 11,
    kMonthName = 12,
    kYear2 = 13,
    kYear1 = 14,
    kYear3 = 15,
    kHour = 16,
    kMinute = 17,
    kAmPm = 18,
    kBytes = 20,
    kProcTime = 23,
    kStatus = 24,
    kCodeWords = 25,
    kSecond = 27,
};

inline constexpr int kPlainCount = 27;  // placeholders whose fields are read
inline constexpr int FmtFieldCount = 59;

// Letters of placeholders 1 to 27. The skip form ("%*S") has the index 27 places later; "%1" to "%5" are 55 to 59.
inline constexpr std::string_view kPlaceholderLetters = "SsrqBAfuvdmMyYZhnaUbtTDcCje";
static_assert(kPlaceholderLetters.size() == kPlainCount);

struct FieldName {
    int field;
    std::string_view word;   // of the command line and JSON
    std::string_view label;  // in lists
};
// The fields that people see, with the names that lists show.
inline constexpr std::array kFieldNames{
    FieldName{kIP, "address", "IP"},
    FieldName{kNumIP, "numeric-address", "IP Address"},
    FieldName{kFile, "file", "File Name"},
    FieldName{kQuery, "query", "Query string"},
    FieldName{kAgent, "agent", "User Agent string"},
    FieldName{kAgent2, "agent2", "User Agent2 string"},
    FieldName{kReferrer, "referrer", "Referrer string"},
    FieldName{kUserNo, "user", "User No"},
    FieldName{kVirtualHost, "vhost", "Virtual Host"},
    FieldName{kBytes, "bytes", "Bytes"},
    FieldName{kProcTime, "micros", "Processing Time / microS."},
    FieldName{kStatus, "status", "HTTP Status"},
    FieldName{kCodeWords, "code-words", "HTTP code words"},
};

// One interpreted line: views into the line, valid as long as the line is. Index 0 is always empty.
class LogLnFields {
public:
    void Clear() { texts_.fill({}); }
    std::string_view operator[](int field) const { return texts_[static_cast<std::size_t>(field)]; }
    void Set(int field, std::string_view text) { texts_[static_cast<std::size_t>(field)] = text; }

private:
    std::array<std::string_view, FmtFieldCount + 1> texts_{};
};

}  // namespace logdefs
