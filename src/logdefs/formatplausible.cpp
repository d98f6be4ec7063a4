#include "logdefs/formatplausible.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <string>

#include "core/dates.h"
#include "core/quicknum.h"
#include "core/text.h"
#include "logdefs/linedate.h"

namespace logdefs {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kHostSigns = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_";
constexpr std::array<std::string_view, 9> kMethods{"GET",     "POST",    "HEAD",  "PUT",  "DELETE",
                                                   "CONNECT", "OPTIONS", "TRACE", "PATCH"};
constexpr std::size_t kLongestHost = 255;
constexpr int kFirstYear = 1990;

bool Only(std::string_view text, std::string_view set) { return text.find_first_not_of(set) == std::string_view::npos; }
bool IsNothing(std::string_view text) { return text.empty() || text == "-"; }
bool IsNumber(std::string_view text) { return !text.empty() && Only(text, kDigits); }
bool IsAmount(std::string_view text) { return IsNothing(text) || IsNumber(text); }
bool IsSeconds(std::string_view text) { return IsNothing(text) || Only(text, "0123456789."); }

// A host's name has a letter, or it is a date or a number. A month begins the lines of a system log.
bool IsHost(std::string_view text) {
    if (text.empty() || text.size() > kLongestHost || !Only(text, kHostSigns)) return false;
    if (std::ranges::find(kMethods, text) != kMethods.end()) return false;
    return text.find_first_of(kLetters) != std::string_view::npos && core::MonthOf(text) == 0;
}

bool IsAddress(std::string_view text) {
    if (text.starts_with('[') && text.ends_with(']')) text = text.substr(1, text.size() - 2);
    return IsIpAddress(text.substr(0, text.find('%'))) || IsHost(text);
}

bool IsNumericAddress(std::string_view text) { return IsNumber(text) || IsAddress(text); }

bool IsStatus(std::string_view text) {
    return IsNothing(text) || (text.size() == 3 && IsNumber(text) && text[0] >= '1' && text[0] <= '5');
}

// "www.example.com", with a port or without.
bool IsHostAndPort(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos || !IsNumber(text.substr(colon + 1))) return IsAddress(text);
    return IsAddress(text.substr(0, colon));
}

bool IsVirtualHost(std::string_view text) { return IsNothing(text) || text == "_" || IsHostAndPort(text); }

// The slash may stand in the separator, at the end of "http://host/".
bool IsFile(std::string_view text, std::string_view line) {
    if (text.starts_with('/') || text.starts_with("http") || text == "*") return true;
    const bool inside = text.data() > line.data() && text.data() <= line.data() + line.size();
    if (inside && *(text.data() - 1) == '/') return true;
    return text.find(':') != std::string_view::npos && IsHostAndPort(text);
}

// Referrer and agent are told apart by how they begin.
bool IsReferrer(std::string_view text) { return !text.starts_with("Mozilla/") && !IsNumber(text); }
bool IsAgent(std::string_view text) {
    return !text.starts_with("http://") && !text.starts_with("https://") && !IsNumber(text);
}

// A quote within a field ended another one, but for those that a backslash covers.
bool HasQuote(std::string_view text) {
    for (std::size_t at = 0; (at = text.find('"', at)) != std::string_view::npos; ++at)
        if (at == 0 || text[at - 1] != '\\') return true;
    return false;
}

bool InRange(std::string_view text, double from, double to) {
    if (text.data() == nullptr) return true;
    const std::string_view digits = core::fTrim(text);
    const double value = core::QuickNum(digits);
    return !digits.empty() && kDigits.find(digits[0]) != std::string_view::npos && value >= from && value <= to;
}

// LogLnDate lets days and months roll over; here they must not.
bool IsDate(const LogLnFields& fields, double lastDay) {
    const double month =
        fields[kMonth].empty() ? core::MonthOf(fields[kMonthName]) : core::QuickNum(core::fTrim(fields[kMonth]));
    for (const int year : {kYear1, kYear2, kYear3})
        if (!Only(core::fTrim(fields[year]), kDigits)) return false;
    if (fields[kMonth].empty() && fields[kMonthName].find_first_of(kDigits) != std::string_view::npos) return false;
    const std::int32_t day = LogLnDate(fields);
    const core::Ymd date = core::YmdOf(day);
    if (date.year < kFirstYear || day > lastDay || date.month != static_cast<int>(month)) return false;
    return !fields[kDay].empty() && InRange(fields[kDay], date.day, date.day);
}

bool IsTime(const LogLnFields& fields) {
    return InRange(fields[kHour], 0, 23) && InRange(fields[kMinute], 0, 59) && InRange(fields[kSecond], 0, 60.999);
}

struct Test {
    int field;
    bool (*makesSense)(std::string_view text);
};
constexpr std::array kTests{
    Test{kIP, IsAddress},       Test{kNumIP, IsNumericAddress},    Test{kStatus, IsStatus},     Test{kBytes, IsAmount},
    Test{kProcTime, IsSeconds}, Test{kVirtualHost, IsVirtualHost}, Test{kReferrer, IsReferrer}, Test{kAgent, IsAgent},
};

std::string_view WordOf(int field) { return std::ranges::find(kFieldNames, field, &FieldName::field)->word; }

}  // namespace

bool IsIpAddress(std::string_view text) {
    if (text.size() < 2 || text.size() >= INET6_ADDRSTRLEN) return false;
    std::array<unsigned char, 16> room{};
    const std::string address(text);
    return ::inet_pton(AF_INET, address.c_str(), room.data()) == 1 ||
           ::inet_pton(AF_INET6, address.c_str(), room.data()) == 1;
}

std::string_view DoubtfulField(const LogLnFields& fields, std::string_view line, double lastDay) {
    if (!IsDate(fields, lastDay) || !IsTime(fields)) return "date";
    for (const Test& test : kTests)
        if (fields[test.field].data() != nullptr && !test.makesSense(fields[test.field])) return WordOf(test.field);
    if (fields[kFile].data() != nullptr && !IsFile(fields[kFile], line)) return WordOf(kFile);
    for (const FieldName& row : kFieldNames)
        if (HasQuote(fields[row.field])) return row.word;
    return {};
}

}  // namespace logdefs
