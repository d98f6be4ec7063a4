#include "reports/plot.h"

#include <algorithm>
#include <cmath>

#include "core/cds.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/utf8.h"
#include "dialogs/report.h"
#include "reports/fieldtable.h"
#include "reports/lines.h"

namespace reports {
namespace {

constexpr std::string_view kMain = "Main";
constexpr std::string_view kRemoved = " .. removed ..";
constexpr double kMostPeriods = 55;
constexpr std::size_t kMostListed = 400;  // bytes of a value list
constexpr std::size_t kFirstTarget = 2;   // series
constexpr std::size_t kStepEvery = 512;

struct IndexRange {
    std::int32_t start = 0, end = 0;
};

// Counts of each day of the range, one element for each series that has any.
struct DaySums {
    std::vector<std::array<double, kSeries>> days{};
};

std::string DateOf(const analysis::DaysList& days, std::int32_t index, std::string_view format) {
    return core::fDateText(days.first + index, format);
}

// Days as indexes of the analysis; the stored range is given up where it holds none of them.
IndexRange RangeOf(const analysis::DaysList& days, ChartData& chart) {
    const std::int32_t last = days.count - 1;
    if (chart.dates.empty()) return {0, last};
    const auto from = core::ParseDate(core::CDSItem(1, chart.dates));
    const auto to = core::ParseDate(core::CDSItem(2, chart.dates));
    const bool outside = (from && *from > days.Last()) || (to && *to < days.first);
    if (outside) {
        chart.message =
            "Date range to be plotted ignored. No log data available in that range.\rAll dates available will be "
            "plotted.\rChange the Date range to plot using the view menu.";
        chart.dates = days.Text(0) + "|" + days.Text(last);
        return {0, last};
    }
    const std::int32_t start = from ? std::max(0, days.IndexOf(*from)) : 0;
    const std::int32_t end = to ? days.IndexOf(*to) : last;
    return {start, end < start ? last : end};
}

std::int32_t PeriodOf(const IndexRange& range, std::int32_t wanted) {
    const double days = range.end - range.start;
    const std::int32_t period = std::max(1, wanted);
    if (days / period <= kMostPeriods) return period;
    return std::max(1, core::ToLong(days / kMostPeriods));
}

DaySums SumDays(core::Env& env, const analysis::SrchTrmData& results, std::span<const std::int32_t> indexes,
                const IndexRange& range, std::int32_t period) {
    DaySums sums;
    sums.days.resize(static_cast<std::size_t>(range.end - range.start + 1));
    std::optional<dialogs::Report> report;
    if (indexes.size() > kStepEvery)
        report.emplace(env.progress, "Plotting total for " + std::to_string(indexes.size()) + " search terms.",
                       "periods", static_cast<double>(range.end - range.start) / period);
    const std::size_t targets = results.Targets.size();
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        if (indexes[i] < 0) continue;
        if (report && i % kStepEvery == 0)
            report->Step(static_cast<double>(i) / static_cast<double>(indexes.size()) *
                         static_cast<double>(range.end - range.start) / period);
        results.table.days.ForEach(static_cast<std::uint32_t>(indexes[i]),
                                   [&](std::int32_t day, const analysis::DayCounts& counts) {
                                       if (day < range.start || day > range.end) return;
                                       auto& sum = sums.days[static_cast<std::size_t>(day - range.start)];
                                       sum[0] += counts.visitors;
                                       sum[1] += counts.stayed;
                                       for (std::size_t t = 0; t < targets; ++t)
                                           sum[kFirstTarget + t] += counts.targets[t];
                                   });
    }
    return sums;
}

std::string RowLabel(const std::string& date, double users, std::int32_t days, std::int32_t period) {
    std::string label = date + " [" + core::NumText(users);
    if (days < period) label += " /" + std::to_string(days) + "d.";
    return label + "]";
}

void AddPeriods(const analysis::SrchTrmData& results, const IndexRange& range, const DaySums& sums,
                const PlotOptions& options, ChartData& chart) {
    const std::size_t series = kFirstTarget + results.Targets.size();
    for (std::int32_t first = range.start; first <= range.end; first += chart.period) {
        const std::int32_t days = std::min(chart.period, range.end - first + 1);
        std::array<double, kSeries> sum{};
        for (std::int32_t day = first; day < first + days; ++day)
            for (std::size_t s = 0; s < series; ++s)
                sum[s] += sums.days[static_cast<std::size_t>(day - range.start)][s];
        const std::string date = DateOf(results.days, first, "dd mmm");
        const std::string label = RowLabel(date, sum[0], days, chart.period);
        ChartRow& row = chart.rows.emplace_back();
        for (std::size_t s = 0; s < series; ++s) row.values[s] = sum[s];
        row.label = options.ColTitDt ? date : options.ColTitNum ? " " + std::to_string(chart.rows.size()) : label;
        chart.dPlotColLabelsCDS.push_back(" " + std::to_string(days) + " d. from " + label + " " +
                                          DateOf(results.days, first, "yyyy"));
        chart.firstDays.push_back(results.days.first + first);
    }
}

// The highest count of the series that stay, as they were before any percentage.
double HighestOf(const ChartData& chart, std::size_t removed) {
    double highest = 0;
    for (const ChartRow& row : chart.rows)
        for (std::size_t s = removed; s < kScaleHelper; ++s) highest = std::max(highest, row.values[s].value_or(0));
    return highest;
}

// The last series that was removed is the 100 %.
void ToPercentages(ChartData& chart, std::size_t removed) {
    for (ChartRow& row : chart.rows) {
        const double base = row.values[removed - 1].value_or(0);
        if (base <= 0) continue;
        for (std::size_t s = removed; s < kSeries; ++s)
            if (row.values[s]) row.values[s] = *row.values[s] / base * 100;
    }
}

std::string UnitOf(const PlotRequest& request) {
    if (!request.options.Plotpct || request.removed == 0) return "Users";
    if (request.removed == 1) return "Pct. of total";
    if (request.removed == 2) return "Pct. stayed";
    return "Pct. users at target " + std::to_string(request.removed - 2) + " also";
}

std::string HeaderOf(std::size_t series, const std::string& unit, const analysis::SrchTrmData& results,
                     const PlotRequest& request) {
    constexpr std::size_t kLastTarget = kFirstTarget + analysis::kMaxTargets - 1;
    if (series == 0)
        return "Total Users for selected (group of) " + std::string(FieldName(results.Analyzed_Field)) + "s";
    if (series == 1) return unit + " who Stayed on site - surfed to other pages";
    if (series == kScaleHelper) return " ";
    if (series - kFirstTarget < results.Targets.size())
        return unit + " got to TARGET: " + TargetLabel(results.Targets[series - kFirstTarget]);
    return series == kLastTarget ? "  [Use menu item " + request.targetsEntry + " to define target(s)]" : " ";
}

void Finish(const analysis::SrchTrmData& results, const PlotRequest& request, ChartData& chart) {
    const auto removed = static_cast<std::size_t>(std::clamp(request.removed, 0, static_cast<int>(kSeries)));
    const double highest = HighestOf(chart, removed);
    if (request.options.Plotpct && removed > 0) ToPercentages(chart, removed);
    const std::string unit = UnitOf(request);
    for (std::size_t s = 0; s < kSeries; ++s) {
        chart.headers[s] = s < removed ? std::string(kRemoved) : HeaderOf(s, unit, results, request);
        if (s >= removed) continue;
        for (ChartRow& row : chart.rows) row.values[s] = 0;
    }
    // So that what is nearly flat does not fill the chart.
    if (removed > 0 && removed < kSeries && !chart.rows.empty() && highest < 20)
        chart.rows.back().values[kScaleHelper] = highest < 10 ? 10 : 20;
}

std::string ValueList(const analysis::SrchTrmData& results, std::span<const std::int32_t> indexes) {
    std::string list;
    for (std::size_t i = 0; i < indexes.size() && list.size() <= kMostListed; ++i) {
        if (i > 0) list += ", ";
        list += results.table.STs[static_cast<std::size_t>(std::max(0, indexes[i]))];
    }
    return list.size() > kMostListed ? std::string(core::CutUtf8(list, kMostListed)) + ".." : list;
}

std::string DescOf(const analysis::SrchTrmData& results, const PlotRequest& request, const ChartData& chart) {
    std::string text;
    if (request.options.Plotpct)
        text = std::string(request.removed == 0 ? "Remove totals column to plot " : "") +
               "PERCENTAGES of last col removed\r\r";
    const auto first = core::ParseDate(core::CDSItem(1, chart.dates)),
               last = core::ParseDate(core::CDSItem(2, chart.dates));
    if (first && last && (*first != results.days.first || *last != results.days.Last()))
        text += "Selected Date Range: " + core::fDateText(*first, "d mmm yy") + " to " +
                core::fDateText(*last, "d mmm yy") + "\r\r";
    text += FieldName(results.Analyzed_Field);
    if (request.indexes.size() > 1)
        text += " Group: \r" + request.leftCell + "\r\r" + std::to_string(request.indexes.size()) +
                " Grouped Vals Incl:\r" + ValueList(results, request.indexes);
    else
        text += ": \r" + request.leftCell;
    return text + "\r\rPlotted: " + std::to_string(chart.period) + " day periods.";
}

}  // namespace

PlotOptions ReadPlotOptions(core::IniStore& ini) {
    const auto flag = [&ini](std::string_view key, bool otherwise) {
        return ini.IniGetBool(kMain, key, core::kBySection, core::Missing::Default, otherwise);
    };
    PlotOptions options;
    options.DaysToPlot =
        std::max(1, core::ToLong(ini.IniGetNum(kMain, "DaysToPlot", core::kBySection, core::Missing::Zero)));
    options.Plotpct = flag("Plotpct", false);
    options.ShowPlotLegend = flag("ShowPlotLegend", true);
    options.ColTitDt = flag("ColTitDt", false);
    options.ColTitNum = flag("ColTitNum", false);
    return options;
}

ChartData PlotTtl4IndexesSTByDate(core::Env& env, const analysis::SrchTrmData& results, const PlotRequest& request) {
    ChartData chart;
    chart.dates = request.dates;
    const IndexRange range = RangeOf(results.days, chart);
    chart.period = PeriodOf(range, request.options.DaysToPlot);
    const DaySums sums = SumDays(env, results, request.indexes, range, chart.period);
    AddPeriods(results, range, sums, request.options, chart);
    Finish(results, request, chart);
    chart.desc = DescOf(results, request, chart);
    return chart;
}

std::span<const std::int32_t> PlotIndexes(const ReportGrid& grid, std::string_view leftCell) {
    const std::span<const std::int32_t> indexes = grid.rowTable.GetSTs4Row(leftCell);
    if (!indexes.empty() || leftCell != kTotal) return indexes;
    return grid.rowTable.dCDSallSTs();
}

}  // namespace reports
