#include "core/dates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace core {
namespace {

constexpr std::int64_t kDaySeconds = 86400;
constexpr int kMinYear = 100;
constexpr int kMaxYear = 9999;
// From 1 March of year 0, where the calendar's 400-year rounds begin, to day 0.
constexpr std::int64_t kDayZero = 693899;
constexpr std::int64_t kDaysOf400Years = 146097;

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

// Counted in years that begin in March: the leap day is then the last of a year.
std::int64_t DayOfCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
    const std::int64_t months = year * 12 + month - 3;
    const std::int64_t marchYear = FloorDiv(months, 12);
    const std::int64_t marchMonth = months - marchYear * 12;
    const std::int64_t leapDays = FloorDiv(marchYear, 4) - FloorDiv(marchYear, 100) + FloorDiv(marchYear, 400);
    return marchYear * 365 + leapDays + (153 * marchMonth + 2) / 5 + day - 1 - kDayZero;
}

// An argument as the 16-bit whole number that it is taken for.
std::optional<std::int64_t> Int16Of(double value) {
    using Limits = std::numeric_limits<std::int16_t>;
    const double whole = std::nearbyint(value);
    if (!(whole >= Limits::min() && whole <= Limits::max())) return std::nullopt;
    return static_cast<std::int64_t>(whole);
}

// A moment as whole seconds from day 0. Moments before it count their time
// forwards all the same: -1.25 is six o'clock of day -1.
std::int64_t SecondsOf(double moment) {
    const double limit = 1e9;
    const double safe = std::isfinite(moment) ? std::clamp(moment, -limit, limit) : 0;
    const double day = std::trunc(safe);
    return static_cast<std::int64_t>(day) * kDaySeconds +
           std::llround(std::abs(safe - day) * static_cast<double>(kDaySeconds));
}

std::int32_t DayOrZero(int year, int month, int day) { return DateSerial(year, month, day).value_or(0); }

}  // namespace

std::optional<std::int32_t> DateSerial(double year, double month, double day) {
    const auto y = Int16Of(year), m = Int16Of(month), d = Int16Of(day);
    if (!y || !m || !d || *y < kMinYear || *y > kMaxYear) return std::nullopt;
    const std::int64_t serial = DayOfCivil(*y, *m, *d);
    if (serial < kFirstDay || serial > kLastDay) return std::nullopt;
    return static_cast<std::int32_t>(serial);
}

Ymd YmdOf(std::int32_t day) {
    const std::int64_t days = day + kDayZero;
    const std::int64_t round = FloorDiv(days, kDaysOf400Years);
    const std::int64_t ofRound = days - round * kDaysOf400Years;
    const std::int64_t ofYear = (ofRound - ofRound / 1460 + ofRound / 36524 - ofRound / (kDaysOf400Years - 1)) / 365;
    const std::int64_t dayOfYear = ofRound - (365 * ofYear + ofYear / 4 - ofYear / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    return {static_cast<int>(round * 400 + ofYear + (month <= 2 ? 1 : 0)), static_cast<int>(month),
            static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1)};
}

std::optional<double> TimeSerial(double hour, double minute, double second) {
    const auto h = Int16Of(hour), m = Int16Of(minute), s = Int16Of(second);
    if (!h || !m || !s) return std::nullopt;
    return static_cast<double>(*h * 3600 + *m * 60 + *s) / static_cast<double>(kDaySeconds);
}

DayAndTime SplitMoment(double moment) {
    const std::int64_t seconds = SecondsOf(moment);
    const std::int64_t day = FloorDiv(seconds, kDaySeconds);
    const auto ofDay = static_cast<int>(seconds - day * kDaySeconds);
    constexpr std::int64_t kLimit = std::numeric_limits<std::int32_t>::max();
    return {static_cast<std::int32_t>(std::clamp(day, -kLimit, kLimit)), {ofDay / 3600, ofDay / 60 % 60, ofDay % 60}};
}

Hms HmsOf(double moment) { return SplitMoment(moment).time; }

Periods fPeriods(std::int32_t today) {
    const auto [year, month, day] = YmdOf(today);
    Periods p;
    p.yearStart = DayOrZero(year, 1, 1);
    p.yearEnd = DayOrZero(year, 12, 31);
    p.monthStart = today - day + 1;
    p.monthEnd = DayOrZero(year, month + 1, 1) - 1;
    p.lastYearStart = DayOrZero(year - 1, 1, 1);
    p.lastYearEnd = p.yearStart - 1;
    p.lastMonthStart = DayOrZero(year, month - 1, 1);
    p.lastMonthEnd = p.monthStart - 1;
    return p;
}

std::string fElapsedText(double startMoment, double endMoment, const ElapsedWords& words) {
    const struct {
        std::string_view word;
        std::int64_t seconds;
    } units[] = {{words.day, kDaySeconds}, {words.hour, 3600}, {words.minute, 60}, {words.second, 1}};
    const std::int64_t start = SecondsOf(startMoment);
    const std::int64_t end = SecondsOf(endMoment);
    for (const auto& unit : units) {
        const std::int64_t count = FloorDiv(end, unit.seconds) - FloorDiv(start, unit.seconds);
        if (count <= 0 || (unit.seconds == 1 && unit.word.empty())) continue;
        return std::to_string(count).append(" ").append(unit.word).append(count == 1 ? "" : "s");
    }
    return std::string(words.belowOne);
}

}  // namespace core
