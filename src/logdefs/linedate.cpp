#include "logdefs/linedate.h"

#include <array>
#include <cmath>

#include "core/dates.h"
#include "core/numbers.h"
#include "core/quicknum.h"
#include "core/text.h"
#include "core/utf8.h"

namespace logdefs {
namespace {

using core::QuickNum;

double MonthValue(const LogLnFields& fields) {
    const double month = QuickNum(fields[kMonth]);
    return month != 0 ? month : core::MonthOf(fields[kMonthName]);
}

double YearValue(const LogLnFields& fields) {
    double year = 0;
    for (const int field : {kYear1, kYear2, kYear3})
        if ((year = QuickNum(fields[field])) != 0) break;
    if (year < 1900) year += year < 61 ? 2000 : 1900;
    return year;
}

double HourValue(const LogLnFields& fields) {
    const double hour = QuickNum(fields[kHour]);
    const std::string_view marker = fields[kAmPm];
    if (marker.size() != 1) return hour;  // "pm" and "am" written in full do nothing
    const char half = marker[0];
    if ((half == 'p' || half == 'P') && hour < 12) return hour + 12;
    if ((half == 'a' || half == 'A') && hour == 12) return 0;
    return hour;
}

std::int64_t DayDigits(std::int32_t serial) {
    const core::Ymd date = core::YmdOf(serial);
    return (std::int64_t{date.year} * 100 + date.month) * 100 + date.day;
}

struct TimeOfDay {
    std::int64_t digits = 0;  // hhnnss
    double fraction = 0;
};

TimeOfDay TimeOf(const LogLnFields& fields) {
    const double hour = HourValue(fields);
    const double minute = QuickNum(fields[kMinute]);
    const double second = QuickNum(fields[kSecond]);
    const auto inRange = [](double value, int limit) {
        return value >= 0 && value < limit && value == std::floor(value);
    };
    double fraction = 0;
    if (const auto serial = core::TimeSerial(hour, minute, second)) fraction = std::round(*serial * 1e8) / 1e8;
    if (inRange(hour, 24) && inRange(minute, 60) && inRange(second, 60)) {
        return {static_cast<std::int64_t>(hour * 10000 + minute * 100 + second), fraction};
    }
    const core::Hms time = core::HmsOf(fraction);
    return {(std::int64_t{time.hour} * 100 + time.minute) * 100 + time.second, fraction};
}

}  // namespace

std::int32_t LogLnDate(const LogLnFields& fields) {
    const double day = std::trunc(QuickNum(fields[kDay]));
    return core::DateSerial(YearValue(fields), MonthValue(fields), day).value_or(0);
}

std::string LogLnTime(const LogLnFields& fields) {
    const auto serial = core::TimeSerial(HourValue(fields), QuickNum(fields[kMinute]), QuickNum(fields[kSecond]));
    return serial ? core::fFormat(*serial, ".00000000") : std::string();
}

const LineClock::Day& LineClock::DayOf(const LogLnFields& fields) {
    room_.clear();
    for (const int field : {kDay, kMonth, kMonthName, kYear1, kYear2, kYear3}) {
        room_.append(fields[field]);
        room_ += '\n';  // in no field of a line
    }
    if (haveDay_ && room_ == dayKey_) return day_;
    dayKey_ = room_;
    haveDay_ = true;
    day_.serial = LogLnDate(fields);
    day_.digits = DayDigits(day_.serial);
    return day_;
}

LineTime LineClock::LogLnTimestamp(const LogLnFields& fields) {
    const Day& day = DayOf(fields);
    const TimeOfDay time = TimeOf(fields);
    return {day.digits * 1000000 + time.digits, day.serial + time.fraction};
}

}  // namespace logdefs
