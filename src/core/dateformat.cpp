#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <vector>

#include "core/dates.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"

namespace core {
namespace {

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
constexpr std::size_t kShortName = 3;
constexpr std::string_view kShortMonths = "janfebmaraprmayjunjulaugsepoctnovdec";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsNumber(std::string_view text) { return !text.empty() && std::ranges::all_of(text, IsDigit); }

// The number of a text of at most nine digits.
int NumberOf(std::string_view digits) {
    int value = 0;
    for (const char c : digits) value = value * 10 + (c - '0');
    return value;
}

int MonthByName(std::string_view text) {
    if (text.size() < kShortName) return 0;
    const std::string lower = LowerAscii(text);
    for (std::size_t i = 0; i < kMonths.size(); ++i) {
        if (!lower.starts_with(kShortMonths.substr(i * kShortName, kShortName))) continue;
        const bool whole = lower.size() == kShortName || lower == "sept" || lower == LowerAscii(kMonths[i]);
        return whole ? static_cast<int>(i) + 1 : 0;
    }
    return 0;
}

enum class Part { YearLong, YearShort, MonthName, MonthShort, Month, Day, Hour, Minute, Second };

struct Field {
    std::string_view letters{};
    Part part = Part::Day;
    std::size_t width = 1;
};
// Longest first among those of one letter.
constexpr std::array kFields{
    Field{"yyyy", Part::YearLong, 4},  Field{"yy", Part::YearShort, 2}, Field{"mmmm", Part::MonthName, 0},
    Field{"mmm", Part::MonthShort, 0}, Field{"mm", Part::Month, 2},     Field{"m", Part::Month, 1},
    Field{"dd", Part::Day, 2},         Field{"d", Part::Day, 1},        Field{"hh", Part::Hour, 2},
    Field{"h", Part::Hour, 1},         Field{"nn", Part::Minute, 2},    Field{"n", Part::Minute, 1},
    Field{"ss", Part::Second, 2},      Field{"s", Part::Second, 1},
};

const Field* FieldAt(std::string_view lowerFormat) {
    const char first = lowerFormat.front();
    for (const Field& field : kFields)
        if (field.letters.front() == first && lowerFormat.starts_with(field.letters)) return &field;
    return nullptr;
}

int ValueOf(Part part, const Ymd& date, const Hms& time) {
    switch (part) {
        case Part::YearLong:
            return date.year;
        case Part::YearShort:
            return date.year % 100;
        case Part::Day:
            return date.day;
        case Part::Hour:
            return time.hour;
        case Part::Minute:
            return time.minute;
        case Part::Second:
            return time.second;
        default:
            return date.month;
    }
}

void AppendPadded(std::string& out, int value, std::size_t width) {
    const std::string digits = std::to_string(value);
    if (digits.size() < width) out.append(width - digits.size(), '0');
    out += digits;
}

void AppendField(std::string& out, const Field& field, Part part, const Ymd& date, const Hms& time) {
    const std::string_view month = kMonths[static_cast<std::size_t>(date.month - 1)];
    if (part == Part::MonthName)
        out += month;
    else if (part == Part::MonthShort)
        out += month.substr(0, kShortName);
    else
        AppendPadded(out, ValueOf(part, date, time), field.width);
}

// A date of the calendar only: 31 February is none.
std::optional<std::int32_t> ExactDate(int year, int month, int day) {
    const auto serial = DateSerial(year, month, day);
    if (!serial) return std::nullopt;
    const Ymd back = YmdOf(*serial);
    return back.month == month && back.day == day ? serial : std::nullopt;
}

bool IsShort(std::string_view number) { return number.size() <= 2; }

std::vector<std::string_view> DateWords(std::string_view text) {
    constexpr std::string_view kSeparators = " -/.,";
    std::vector<std::string_view> words;
    for (std::size_t at = 0; (at = text.find_first_not_of(kSeparators, at)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(kSeparators, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

}  // namespace

int MonthOf(std::string_view text) {
    text = fTrim(text);
    if (!IsNumber(text) || !IsShort(text)) return MonthByName(text);
    const int number = NumberOf(text);
    return number <= 12 ? number : number <= 31 ? 1 : 0;
}

std::string FormatDate(double moment, std::string_view format) {
    const DayAndTime split = SplitMoment(moment);
    if (!(moment > kFirstDay - 1 && moment < kLastDay + 1) || split.day < kFirstDay || split.day > kLastDay) return {};
    const Ymd date = YmdOf(split.day);
    const std::string lower = LowerAscii(format);
    std::string out;
    bool behindHour = false;
    for (std::size_t at = 0; at < format.size();) {
        const Field* field = FieldAt(std::string_view(lower).substr(at));
        if (field == nullptr) {
            out += format[at++];
            continue;
        }
        const bool minutes = field->part == Part::Month && behindHour;
        AppendField(out, *field, minutes ? Part::Minute : field->part, date, split.time);
        behindHour = field->part == Part::Hour;
        at += field->letters.size();
    }
    return out;
}

std::string fDateText(std::int32_t day, std::string_view format) {
    return FormatDate(day, format.empty() ? "dd mmm yyyy" : format);
}

std::optional<std::int32_t> ParseIsoDate(std::string_view text) {
    constexpr std::string_view kShape = "0000-00-00";
    const auto same = [](char c, char shape) { return shape == '0' ? IsDigit(c) : c == shape; };
    if (!std::ranges::equal(text, kShape, same)) return std::nullopt;
    return ExactDate(NumberOf(text.substr(0, 4)), NumberOf(text.substr(5, 2)), NumberOf(text.substr(8, 2)));
}

std::optional<double> ParseMoment(std::string_view text) {
    if (text.size() != 19 || text[10] != ' ' || text[13] != ':' || text[16] != ':') return std::nullopt;
    const auto day = ParseIsoDate(text.substr(0, 10));
    const auto time = TimeSerial(fNum(text.substr(11, 2)), fNum(text.substr(14, 2)), fNum(text.substr(17, 2)));
    if (!day || !time) return std::nullopt;
    return *day + *time;
}

std::optional<std::int32_t> ParseDate(std::string_view text) {
    text = fTrim(text);
    if (const auto iso = ParseIsoDate(text)) return iso;
    if (text.size() == 8 && IsNumber(text))
        return ExactDate(NumberOf(text.substr(0, 4)), NumberOf(text.substr(4, 2)), NumberOf(text.substr(6, 2)));
    const std::vector<std::string_view> words = DateWords(text);
    if (words.size() != 3) return std::nullopt;
    // Day and month in either order; the month is a name, since 3/4 could be both.
    const int monthFirst = MonthByName(words[0]);
    const int month = monthFirst != 0 ? monthFirst : MonthByName(words[1]);
    const std::string_view day = words[monthFirst != 0 ? 1 : 0], year = words[2];
    if (month == 0 || !IsNumber(day) || !IsShort(day) || !IsNumber(year) || year.size() != 4) return std::nullopt;
    return ExactDate(NumberOf(year), month, NumberOf(day));
}

std::int32_t fDayNo(std::string_view text) { return ParseDate(text).value_or(0); }

std::int32_t fDayNo(double moment) { return ParseIsoDate(FormatDate(moment, "yyyy-mm-dd")).value_or(0); }

double fTimeOnly(double moment) {
    const Hms time = HmsOf(moment);
    return (time.hour * 60 + time.minute) / 1440.0;
}

}  // namespace core
