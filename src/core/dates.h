#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Days are whole numbers, day 1 being 31 December 1899 (so day 0 is the 30th);
// moments are doubles of the same scale with the time of day as fraction. No
// time zone and no locale anywhere: results depend on the data only.
namespace core {

inline constexpr std::int32_t kFirstDay = -657434;  // 1 January 100
inline constexpr std::int32_t kLastDay = 2958465;   // 31 December 9999

struct Ymd {
    int year = 1899;
    int month = 12;
    int day = 30;
};
struct Hms {
    int hour = 0;
    int minute = 0;
    int second = 0;
};

// Month and day out of range roll over (month 0 is December of the year before).
// Nothing when an argument is outside 16 bits or the year outside 100 to 9999.
std::optional<std::int32_t> DateSerial(double year, double month, double day);
Ymd YmdOf(std::int32_t day);

// A fraction of a day; may be negative or above 1. Nothing when an argument is outside 16 bits.
std::optional<double> TimeSerial(double hour, double minute, double second);
// The time of day of a moment, to the nearest second (the sign of a moment
// does not count for its time).
Hms HmsOf(double moment);

struct DayAndTime {
    std::int32_t day = 0;
    Hms time{};
};
// Both together: a time that rounds up to midnight is 0:00:00 of the next day.
DayAndTime SplitMoment(double moment);

// 1 to 12 for English month names and abbreviations in any case. A number from
// 1 to 31 reads as the day of a January, so it gives 1. 0 for anything else.
int MonthOf(std::string_view text);

// Formats of the program: "yyyy" "yy" "mmmm" "mmm" "mm" "m" "dd" "d" "hh" "h" "nn" "n"
// "ss" "s" (any case; mm behind hh means minutes), everything else as it stands.
// A moment outside years 100 to 9999 gives "".
std::string FormatDate(double moment, std::string_view format);
std::string fDateText(std::int32_t day, std::string_view format = "dd mmm yyyy");

// "yyyymmddhhnnss" as one number <-> day and time. `stamp` may be any double:
// its 14 digits are read as they stand (fewer digits: zeros in front; more, or a sign: all zeros).
std::int32_t TS_Date(double stamp);  // day number; parts out of range roll over; 0 when impossible
std::int32_t TS_Time(double stamp);  // seconds of the day; 86400 and more for a time such as 23:59:60
// Seconds from a to b, positive when b is later. 0 when equal; a = 0 gives
// 2147483647, b = 0 gives -2147483647.
double TS_DiffSecs(double a, double b);
// To whole seconds. The calendar's last second when the result lies behind it, 0 before its first day.
double TS_AddSecs(double stamp, double seconds);

struct Periods {
    std::int32_t yearStart = 0, yearEnd = 0, monthStart = 0, monthEnd = 0;
    std::int32_t lastYearStart = 0, lastYearEnd = 0, lastMonthStart = 0, lastMonthEnd = 0;
};
Periods fPeriods(std::int32_t today);

struct ElapsedWords {
    std::string_view day = "day", hour = "hour", minute = "minute", second = "";
    std::string_view belowOne = "less than one minute";
};
// The largest unit whose count is above zero: "3 minutes". Counts are boundary
// crossings (whole days, hours, minutes between the two moments' units).
std::string fElapsedText(double startMoment, double endMoment, const ElapsedWords& words = {});

// The day of a date text (see ParseDate) or of a moment, without its time; 0 for what is no date.
std::int32_t fDayNo(std::string_view text);
std::int32_t fDayNo(double moment);
// The time of day of a moment as a fraction, in whole minutes.
double fTimeOnly(double moment);

// ISO form of the command line, "yyyy-mm-dd" -> day number.
std::optional<std::int32_t> ParseIsoDate(std::string_view text);
// "yyyy-mm-dd hh:nn:ss", as marks and records hold it, to a moment.
std::optional<double> ParseMoment(std::string_view text);
// "dd mmm yyyy", "yyyy-mm-dd" and the like, as stored in option keys.
std::optional<std::int32_t> ParseDate(std::string_view text);

}  // namespace core
