// Targets that take texts apart and put them together again.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "core/cds.h"
#include "core/dates.h"
#include "core/error.h"
#include "core/inicodec.h"
#include "core/inifile.h"
#include "core/like.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/csv.h"
#include "logdefs/rule.h"
#include "names/pagename.h"
#include "names/searchterm.h"
#include "names/url.h"
#include "names/urlcode.h"
#include "tests/fuzz/targets.h"

namespace fuzz {
namespace {

bool Within(std::string_view part, std::string_view whole) {
    return part.empty() || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

void CheckDates(double a, double b, double c) {
    if (const auto day = core::DateSerial(a, b, c)) {
        const core::Ymd ymd = core::YmdOf(*day);
        Need(*day >= core::kFirstDay && *day <= core::kLastDay, "a day outside the calendar");
        Need(core::DateSerial(ymd.year, ymd.month, ymd.day) == day, "a date that does not come back");
    }
    core::TimeSerial(a, b, c);
    const core::Hms time = core::HmsOf(a);
    Need(time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 && time.second >= 0 &&
             time.second < 60,
         "a time of day outside the day");
    core::SplitMoment(b);
    core::TS_Date(a);
    core::TS_Time(a);
    core::TS_DiffSecs(a, b);
    core::TS_AddSecs(a, c);
    core::fElapsedText(a, b);
}

// Beside a delimiter of several letters an item that begins or ends with one of them can't be told from it.
bool Touches(const std::vector<std::string>& items, std::string_view delimiter) {
    return delimiter.size() > 1 && std::ranges::any_of(items, [&](const std::string& item) {
               return item.starts_with(delimiter.front()) || item.ends_with(delimiter.back());
           });
}

void CheckList(const std::vector<std::string>& items, const core::CDSForm& form) {
    if (Touches(items, form.delim)) return;
    std::string list;
    try {
        list = core::CDSJoin({1, items}, form, 1);
    } catch (const core::ErrorNumber&) {
        return;  // no free substitute is left, or a form that can't be written
    }
    const core::StrArray read = core::CDSSplit(list, form);
    Need(std::ranges::equal(read.Items(), items), "a written list reads otherwise");
    Need(core::IsUtf8(list), "a written list is no UTF-8");
    const core::CDSAdded added = core::CDSAdd(list, items.front(), form, 1);
    Need(!added.added, "an item of the list is taken for a new one");
}

}  // namespace

std::vector<std::string_view> Parts(std::string_view input, std::size_t most) {
    std::vector<std::string_view> parts;
    while (parts.size() + 1 < most) {
        const std::size_t end = input.find('\n');
        if (end == std::string_view::npos) break;
        parts.push_back(input.substr(0, end));
        input.remove_prefix(end + 1);
    }
    parts.push_back(input);
    return parts;
}

int RunNumbers(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string_view> parts = Parts(TextOf(data, size), 4);
    std::array<double, 3> values{};
    for (std::size_t i = 0; i < parts.size() && i < values.size(); ++i) {
        values[i] = core::fNum(parts[i]);
        Need(std::isfinite(values[i]), "fNum gives no number");
        const double again = core::fNum(core::NumText(values[i]));
        Need(std::fabs(again - values[i]) <= std::fabs(values[i]) * 1e-14 || std::fabs(values[i]) < 1e-290,
             "NumText loses the value");
        core::IsNumeric(parts[i]);
        const int month = core::MonthOf(parts[i]);
        Need(month >= 0 && month <= 12, "a month outside the year");
        core::ParseDate(parts[i]);
        core::ParseIsoDate(parts[i]);
    }
    if (size >= 24) {  // any bits, not a number and the infinities too
        std::array<double, 3> raw{};
        std::memcpy(raw.data(), data, 24);
        for (const double value : raw) core::NumText(value), core::ToLong(value);
        CheckDates(raw[0], raw[1], raw[2]);
        core::fFormat(raw[0], "#,##0.00");
        core::FormatDate(raw[1], "dd mmm yyyy hh:nn:ss");
    }
    CheckDates(values[0], values[1], values[2]);
    const std::string format = core::ToUtf8(parts.back());
    Need(core::IsUtf8(core::fFormat(values[0], format)), "fFormat gives no UTF-8");
    Need(core::IsUtf8(core::FormatDate(values[0], format)), "FormatDate gives no UTF-8");
    core::fFormatText(parts.front(), format);
    return 0;
}

int RunLists(const std::uint8_t* data, std::size_t size) {
    const std::string text = core::ToUtf8(TextOf(data, size));
    std::vector<std::string> items;
    for (const std::string_view item : Parts(text, 64)) items.emplace_back(item);
    for (const core::CDSForm& form :
         {core::CDSForm{}, core::kBraceForm, core::CDSForm{":::"}, core::CDSForm{"|", "<>"}}) {
        CheckList(items, form);
        core::CDSSplit(text, form);
        core::CDSRemove(text, items.front(), form);
        core::CDSFind(text, items.back(), form, core::Case::Ignore);
    }
    core::CDSSplitLong(text);
    core::CDSSplitInt(text);
    core::CDSSplitSingle(text);
    const long count = core::CDSCount(text);
    for (long i = -1; i <= std::min(count + 1, 20L); ++i) {
        core::CDSItem(i, text);
        core::CDSBraceItem(i, text);
    }
    const std::string set = core::CDSSetItem(3, "x", text);
    Need(core::IsUtf8(set), "CDSSetItem gives no UTF-8");
    return 0;
}

int RunIni(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string_view> parts = Parts(TextOf(data, size), 3);
    const std::string_view value = parts.size() > 1 ? parts[1] : parts[0];
    for (const std::string_view any : {value, parts.back()}) {
        const std::string encoded = core::IniEncodeValue(any);
        Need(encoded.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos,
             "an encoded value is more than a line");
        Need(core::IsUtf8(encoded), "an encoded value is no UTF-8");
        Need(core::IniDecodeValue(encoded) == any, "an encoded value reads otherwise");
        core::IniDecodeValue(any);
    }
    core::IniFile file = core::IniFile::Parse(parts.back());
    const std::string before = file.Text();
    Need(core::IniFile::Parse(before).Text() == before, "a parameter file changes by being read");
    const std::string entry = core::IniEncodeEntry(parts.front());
    if (entry.empty()) return 0;
    file.Put("Main", entry, core::IniEncodeValue(value));
    const core::IniFile again = core::IniFile::Parse(file.Text());
    const auto read = again.Get("Main", entry);
    Need(read.has_value() && core::IniDecodeValue(*read) == value, "a stored value reads otherwise");
    Need(core::IsUtf8(file.Text()), "a parameter file is no UTF-8");
    return 0;
}

int RunNames(const std::uint8_t* data, std::size_t size) {
    const std::string_view raw = TextOf(data, size);
    const std::string text = core::ToUtf8(raw);
    Need(core::IsUtf8(text), "ToUtf8 gives no UTF-8");
    for (const std::string_view name : {raw, std::string_view(text)}) {
        const std::string standard = names::Page_NameStd(name);
        Need(core::IsUtf8(standard), "a page name is no UTF-8");
        Need(standard.size() <= static_cast<std::size_t>(names::kPageNameWidth), "a page name is too long");
        for (const bool flag : {false, true}) names::Page_StripParts(name, {flag, !flag});
        const names::UrlParts url = names::URL_Parse(name);
        for (const std::string_view part : {url.scheme, url.net, url.path, url.params, url.query, url.fragment})
            Need(Within(part, name), "a part of a URL lies outside it");
        Need(names::URL_Join(url).size() <= name.size() + 4, "a URL grows by being taken apart");
        Need(names::fPercentDecode(name).size() <= name.size(), "decoding makes a text longer");
        std::string term(name);
        Need(core::IsUtf8(names::ST_Std(term)) && core::IsUtf8(term), "a search term is no UTF-8");
    }
    Need(core::LowerSameLength(text).size() == text.size(), "LowerSameLength changes the length");
    Need(core::IsUtf8(core::LowerUtf8(text)) && core::IsUtf8(core::UpperUtf8(text)), "a change of case gives no UTF-8");
    for (const int width : {0, 1, 2, 3, 7, 50}) {
        const core::Cut cut = core::fLeft(text, width, "..");
        Need(core::IsUtf8(cut.text) && (width < 2 || cut.text.size() <= static_cast<std::size_t>(width)),
             "a cut splits a letter");
        Need(core::IsUtf8(core::fMid(text, width, width)), "a piece splits a letter");
    }
    return 0;
}

int RunRules(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string_view> parts = Parts(TextOf(data, size), 2);
    const std::string_view pattern = parts.front();
    const std::string_view value = parts.back();
    core::Like(value, pattern);
    Need(core::Like(value, "*"), "a star does not match everything");
    if (pattern.find_first_of("*?#[") == std::string_view::npos)
        Need(core::Like(value, pattern) == (value == pattern), "a plain pattern matches otherwise than by equality");
    for (const logdefs::OperatorRow& row : logdefs::kOperators) {
        for (const bool exact : {false, true}) {
            const logdefs::FltrRule rule{row.type, exact ? std::string(pattern) : core::LowerUtf8(pattern), exact};
            logdefs::FltrRuleTest(value, rule);
        }
    }
    const logdefs::FltrRule contains{logdefs::kContains, std::string(pattern), true};
    if (!pattern.empty())
        Need(logdefs::FltrRuleTest(value, contains) == (value.find(pattern) != std::string_view::npos),
             "Contains errs");
    return 0;
}

int RunCsv(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    dialogs::CsvReadLine(text);
    std::vector<std::string> cells;
    for (const std::string_view cell : Parts(text, 32)) cells.emplace_back(cell);
    for (const dialogs::CsvQuotes quotes : {dialogs::CsvQuotes::Doubled, dialogs::CsvQuotes::Coded}) {
        for (const dialogs::CsvGuard guard : {dialogs::CsvGuard::Plain, dialogs::CsvGuard::Spreadsheet}) {
            const std::string line = dialogs::CsvLine(cells, quotes, guard);
            const auto read = dialogs::CsvReadLine(std::string_view(line).substr(0, line.size() - 2));
            Need(read.size() == cells.size(), "a written line has another number of cells");
        }
    }
    if (text.find('"') != std::string_view::npos) return 0;  // reading drops quotes
    const std::string line = dialogs::CsvLine(cells);
    Need(dialogs::CsvReadLine(std::string_view(line).substr(0, line.size() - 2)) == cells,
         "a written line reads otherwise");
    return 0;
}

}  // namespace fuzz
