#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

#include "core/dates.h"

namespace core {
namespace {

constexpr std::int64_t kDaySeconds = 86400;
constexpr double kNoStart = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kLimit = 100'000'000'000'000;  // stamps have 14 digits
constexpr std::int64_t kLastStamp = 9999'12'31'23'59'59;

// The digits of a stamp; 0 for what is no 14-digit number.
std::int64_t DigitsOf(double stamp) {
    return stamp >= 0 && stamp < static_cast<double>(kLimit) ? static_cast<std::int64_t>(stamp) : 0;
}

std::int64_t StampOf(std::int64_t day, std::int64_t second) {
    const Ymd date = YmdOf(static_cast<std::int32_t>(day));
    const std::int64_t days = (date.year * std::int64_t{100} + date.month) * 100 + date.day;
    return days * 1'000'000 + second / 3600 * 10'000 + second / 60 % 60 * 100 + second % 60;
}

}  // namespace

std::int32_t TS_Date(double stamp) {
    const std::int64_t days = DigitsOf(stamp) / 1'000'000;
    const std::int64_t year = days / 10'000, month = days / 100 % 100, day = days % 100;
    return DateSerial(static_cast<double>(year), static_cast<double>(month), static_cast<double>(day)).value_or(0);
}

std::int32_t TS_Time(double stamp) {
    const std::int64_t time = DigitsOf(stamp) % 1'000'000;
    return static_cast<std::int32_t>(time / 10'000 * 3600 + time / 100 % 100 * 60 + time % 100);
}

double TS_DiffSecs(double a, double b) {
    if (a == b) return 0;
    if (a == 0) return kNoStart;
    if (b == 0) return -kNoStart;
    const double days = static_cast<double>(TS_Date(b)) - static_cast<double>(TS_Date(a));
    return days * static_cast<double>(kDaySeconds) + static_cast<double>(TS_Time(b) - TS_Time(a));
}

double TS_AddSecs(double stamp, double seconds) {
    if (!std::isfinite(seconds) || std::abs(seconds) > 1e15) return 0;
    const std::int64_t total = TS_Date(stamp) * kDaySeconds + TS_Time(stamp) + std::llround(seconds);
    const std::int64_t day = total / kDaySeconds - (total % kDaySeconds < 0 ? 1 : 0);
    if (day < kFirstDay) return 0;
    // A search that ends behind the calendar's last day still finds all of that day.
    if (day > kLastDay) return static_cast<double>(kLastStamp);
    return static_cast<double>(StampOf(day, total - day * kDaySeconds));
}

}  // namespace core
