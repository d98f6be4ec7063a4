#include "reports/deviation.h"

#include <algorithm>
#include <string_view>

#include "core/dates.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "reports/cells.h"

namespace reports {
namespace {

constexpr std::string_view kMain = "Main";
constexpr int kFirstOfLongMonth = 27;  // a month has at least 28 days: its first one lies at least 27 back
constexpr int kJanuary = 1;

// What a column compares: periods, or all days, or all but the last ones.
enum Side : int { None = -1, All = Deviation::kPeriods, Rest };

struct DevColumn {
    int x;
    int y;                       // None: users per day of x
    std::string_view header;     // "#" stands for the number of days of x (of y where it says so)
    int days = None;             // period whose number of days the header tells
    std::string_view lack = "";  // header when x has no data
};
using D = Deviation;
constexpr std::array<DevColumn, kDevColumns> kColumns{{
    {D::LastDays, None, "last # d. avg users per day", D::LastDays},
    {D::LastDays, All, "+/- all days"},
    {D::LastDays, Rest, "+/- rest days"},
    {D::LastDays, D::PrevDays, "+/- prev # days", D::PrevDays},
    {D::PrevDays, None, "prev # d. avg users per day", D::PrevDays, "no prev days data"},
    {D::PrevDays, All, "+/- all days"},
    {D::ThisMo, None, "this mo # d. avg users per day", D::ThisMo},
    {D::ThisMo, All, "+/- all days"},
    {D::ThisMo, D::LastMo, "+/- last mo"},
    {D::ThisMo, D::PrevMo, "+/- prev mo"},
    {D::ThisMo, D::ThisYr, "+/- this yr"},
    {D::ThisMo, D::LastYr, "+/- last yr"},
    {D::LastMo, None, "last mo. avg users per day", None, "no last mo. data"},
    {D::LastMo, All, "+/- all days"},
    {D::LastMo, D::PrevMo, "+/- prev mo"},
    {D::LastMo, D::ThisYr, "+/- this yr"},
    {D::LastMo, D::LastYr, "+/- last yr"},
    {D::PrevMo, None, "prev mo. avg users per day", None, "no prev mo. data"},
    {D::PrevMo, All, "+/- all days"},
    {D::PrevMo, D::LastYr, "+/- last yr"},
    {D::ThisYr, None, "this yr.# d. avg users per day", D::ThisYr},
    {D::ThisYr, All, "+/- all days"},
    {D::ThisYr, D::LastYr, "+/- last yr"},
    {D::LastYr, None, "last yr. avg users per day", None, "no last yr. data"},
    {D::LastYr, All, "+/- all days"},
    {All, None, "all days. avg users per day"},
}};

std::string Format(core::IniStore& ini, std::string_view key, std::string otherwise) {
    const std::string format = ini.IniGet(kMain, key, core::kBySection);
    return format.empty() || format == core::kNotFound ? otherwise : format;
}

}  // namespace

DevSettings ReadDevSettings(core::IniStore& ini) {
    DevSettings settings;
    const double days = ini.IniGetNum(kMain, "DevDays", core::kBySection, core::Missing::Zero);
    if (days >= 1) settings.DevDays = core::ToLong(days);
    settings.DevFmtVD = Format(ini, "DevFmtVD", settings.DevFmtVD);
    settings.DevTxtNoneVD = ini.IniGet(kMain, "DevTxtNoneVD", core::kBySection);
    settings.DevFmtPct = Format(ini, "DevFmtPct", settings.DevFmtPct);
    settings.DevTxtNonePct = ini.IniGet(kMain, "DevTxtNonePct", core::kBySection);
    settings.DevTxtFrom0Pct = ini.IniGet(kMain, "DevTxtFrom0Pct", core::kBySection);
    return settings;
}

bool DevShow(core::IniStore& ini) { return ini.IniGetBool(kMain, "DevShow", core::kBySection); }

Deviation::Deviation(const analysis::DaysList& days, DevSettings settings)
    : days_(days), settings_(std::move(settings)) {
    const std::int32_t last = days_.count - 1;
    const auto before = [this](const Span& span) {
        const std::int32_t end = span.start - 1;
        return Span{std::max(0, end - settings_.DevDays + 1), end};
    };
    spans_[LastDays] = {std::max(0, last - settings_.DevDays + 1), last};
    spans_[PrevDays] = before(spans_[LastDays]);
    spans_[ThisMo] = {std::max(0, last + 1 - core::YmdOf(days_.Last()).day), last};
    spans_[LastMo] = MonthBefore(spans_[ThisMo]);
    spans_[PrevMo] = MonthBefore(spans_[LastMo]);
    spans_[ThisYr] = {YearStart(last), last};
    spans_[LastYr] = MonthBefore(spans_[ThisYr]);  // the month before this year, as the label does not tell
    for (int column = 0; column < kDevColumns; ++column) facts_[static_cast<std::size_t>(column)] = FactsOf(column);
}

std::int32_t Deviation::MonthStart(std::int32_t index) const {
    for (std::int32_t at = index - kFirstOfLongMonth; at > 0; --at)
        if (core::YmdOf(days_.first + at).day == 1) return at;
    return 0;
}

std::int32_t Deviation::YearStart(std::int32_t index) const {
    std::int32_t start = MonthStart(index);
    while (start > 0 && core::YmdOf(days_.first + start).month != kJanuary) start = MonthStart(start - 1);
    return start;
}

Deviation::Span Deviation::MonthBefore(const Span& span) const {
    const std::int32_t end = span.Has() ? span.start - 1 : -1;
    return {end < 0 ? 0 : MonthStart(end), end};
}

Deviation::ColumnFacts Deviation::FactsOf(int column) const {
    const DevColumn& row = kColumns[static_cast<std::size_t>(column)];
    const auto has = [this](int side) { return side < 0 || side >= kPeriods || Of(static_cast<Period>(side)).Has(); };
    ColumnFacts facts;
    facts.isValueCol = row.y == None;
    facts.isNoData = !has(row.x) || !has(row.y);
    facts.header = facts.isNoData ? row.lack : row.header;
    if (facts.isNoData || row.days == None) return facts;
    const std::size_t at = facts.header.find('#');
    facts.header.replace(at, 1, std::to_string(Of(static_cast<Period>(row.days)).Days()));
    return facts;
}

std::string Deviation::PerDay(double value, const std::string& none) const {
    return value == 0 ? none : NumberCell(value, settings_.DevFmtVD);
}

std::string Deviation::Percent(double x, double y) const {
    if (y == 0 && x > 0) return settings_.DevTxtFrom0Pct;
    if (y == 0) return settings_.DevTxtNonePct.empty() ? "" : settings_.DevTxtNonePct + " %";
    const std::string text = NumberCell((x - y) * 100 / y, settings_.DevFmtPct);
    if (text.empty()) return text;
    // A fall that rounds to nothing keeps its sign, as a rise does.
    const std::string_view sign = x > y ? "+" : x < y && !text.starts_with('-') ? "-" : "";
    return std::string(sign) + text + " %";
}

Deviation::Cells Deviation::OfValue(const analysis::ResultTable& table, std::int32_t valueIndex) const {
    std::array<double, Rest + 1> perDay{};
    table.days.ForEach(static_cast<std::uint32_t>(valueIndex),
                       [&](std::int32_t day, const analysis::DayCounts& counts) {
                           for (std::size_t p = 0; p < kPeriods; ++p)
                               if (day >= spans_[p].start && day <= spans_[p].end) perDay[p] += counts.visitors;
                       });
    const double visitors = table.Visitors[static_cast<std::size_t>(valueIndex)];
    const double restDays = days_.count - Of(LastDays).Days();
    perDay[All] = visitors / days_.count;
    perDay[Rest] = restDays == 0 ? 0 : (visitors - perDay[LastDays]) / restDays;
    for (std::size_t p = 0; p < kPeriods; ++p) perDay[p] = spans_[p].Has() ? perDay[p] / spans_[p].Days() : 0;
    Cells cells;
    for (int column = 0; column < kDevColumns; ++column) {
        const DevColumn& row = kColumns[static_cast<std::size_t>(column)];
        if (Facts(column).isNoData) continue;
        const double x = perDay[static_cast<std::size_t>(row.x)];
        cells[static_cast<std::size_t>(column)] = row.y != None  ? Percent(x, perDay[static_cast<std::size_t>(row.y)])
                                                  : row.x == All ? PerDay(x, "none")
                                                                 : PerDay(x, settings_.DevTxtNoneVD);
    }
    return cells;
}

}  // namespace reports
