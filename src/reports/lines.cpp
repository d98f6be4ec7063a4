#include "reports/lines.h"

#include <algorithm>

#include "core/env.h"
#include "core/files.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "reports/cells.h"
#include "reports/distribution.h"
#include "reports/fieldtable.h"
#include "reports/gridsort.h"
#include "reports/topidxs.h"

namespace reports {
namespace {

void Say(core::Env& env, ReportGrid& grid, std::string id, std::string text) {
    grid.messages.push_back(text);
    env.user.Tell(std::move(id), std::move(text));
}

void WriteDistribution(ReportGrid& grid, std::size_t row, int column, const analysis::CrossTable& table,
                       std::int32_t valueIndex, double visitors) {
    if (column < 0) return;
    grid.Cell(row, column) =
        DistributionText(table, PairsOfRow(table, static_cast<std::uint32_t>(valueIndex)), visitors);
}

void SortByVisitors(ReportGrid& grid) { SortLines(grid, kColVisitors, SortKind::NumericDescending); }

// Of the lines that are summed: those beyond the limit stay in the grid.
LineRecord SumDisplayed(const ReportGrid& grid) {
    LineRecord total;
    const std::size_t last = std::min(grid.rows.size(), kListLimit);
    for (std::size_t row = 0; row < last; ++row) AddDisplayed(grid, row, total);
    return total;
}

}  // namespace

void AddDisplayed(const ReportGrid& grid, std::size_t row, LineRecord& total) {
    total.LineVisitors += core::fNum(grid.Cell(row, kColVisitors));
    total.LineAdd[kAddStayed] += core::fNum(grid.Cell(row, kColStayed));
    total.LinePages += core::fNum(grid.Cell(row, kColAverage));
    for (std::size_t t = 0; t < grid.targets; ++t)
        total.LineAdd[kAddTargets + t] +=
            core::fNum(grid.Cell(row, kFirstTargetColumn + kTargetColumns * static_cast<int>(t)));
}

void pAddRepRow(const ReportSource& source, ReportGrid& grid, std::int32_t valueIndex) {
    const analysis::SrchTrmData& results = source.results;
    const analysis::ResultTable& table = results.table;
    const auto at = static_cast<std::size_t>(valueIndex);
    const std::size_t row = grid.AddRow(LineKind::Value);
    LineRecord line;
    line.LineVisitors = table.Visitors[at];
    line.LineAdd[kAddStayed] = table.Stayed[at];
    line.LinePages = table.HtmPages[at];
    WriteCounts(grid, row, table.STs[at], line);
    grid.rowTable.PutST(table.STs[at], {&valueIndex, 1});
    WriteDistribution(grid, row, grid.dGcol_Dist0, results.DistSE, valueIndex, line.LineVisitors);
    WriteDistribution(grid, row, grid.dGcol_DistAlternate, results.DistAlternate, valueIndex, line.LineVisitors);
    WriteDistribution(grid, row, grid.dGcol_DistClickThru, results.DistClickThru, valueIndex, line.LineVisitors);
    for (std::size_t t = 0; t < grid.targets; ++t)
        if (at < table.TargetCnt[t].size()) WriteTarget(grid, row, t, table.TargetCnt[t][at], line);
    if (grid.dGCol_Ftype >= 0) grid.Cell(row, grid.dGCol_Ftype) = core::fTypeOf(table.STs[at]);
    if (grid.dGCol_Deviation < 0 || source.deviation == nullptr) return;
    Deviation::Cells cells = source.deviation->OfValue(table, valueIndex);
    std::ranges::move(cells, grid.rows[row].cells.begin() + grid.dGCol_Deviation);
}

void pAddTopRows(const ReportSource& source, ReportGrid& grid, std::int32_t numberToShow) {
    const analysis::ResultTable& table = source.results.table;
    if (!table.IsDim()) return;
    const std::optional<std::vector<std::int32_t>> top = fTopIdxs(table.Visitors, numberToShow);
    if (!top) {
        Say(source.env, grid, "report.topfailed",
            "Error when try to sort Values.\rTotal Values: " + std::to_string(table.STs.size()) + "\rNumber to Show: " +
                std::to_string(numberToShow) + "\rUse Edit / Options to reduce number to be shown an try again.");
        return;
    }
    std::vector<bool> selected(table.STs.size());
    for (const std::int32_t index : *top) selected[static_cast<std::size_t>(index)] = true;
    std::vector<std::int32_t> rest;
    for (std::int32_t index = 0; index <= table.UpperBound(); ++index) {
        if (selected[static_cast<std::size_t>(index)]) {
            pAddRepRow(source, grid, index);
        } else {
            rest.push_back(index);
        }
    }
    SortByVisitors(grid);
    if (!rest.empty()) pAddLine(source, rest, grid, {LineKind::Rest, kRest});
    pAddTotalLine(source, grid, kTotal);
}

void pAddAllRows(const ReportSource& source, ReportGrid& grid) {
    if (!source.results.table.IsDim()) return;
    for (std::int32_t index = 0; index <= source.results.table.UpperBound(); ++index) pAddRepRow(source, grid, index);
    SortByVisitors(grid);
    pAddTotalLine(source, grid, kTotal);
}

void pAddRowsForIdxs(const ReportSource& source, std::span<const std::int32_t> indexes, ReportGrid& grid) {
    if (!source.results.table.IsDim()) return;
    for (const std::int32_t index : indexes)
        if (index >= 0) pAddRepRow(source, grid, index);
    SortByVisitors(grid);
    pAddTotalLine(source, grid, kTotal);
}

void pAddTotalLine(const ReportSource& source, ReportGrid& grid, std::string_view label) {
    if (grid.rows.size() > kListLimit)
        Say(source.env, grid, "report.toomanylines",
            "Too many lines. First " + std::to_string(kListLimit) + " added only.");
    const LineRecord total = SumDisplayed(grid);
    for (std::size_t row = 0; row < grid.rows.size(); ++row)
        grid.Cell(row, kColShare) = PercentText(core::fNum(grid.Cell(row, kColVisitors)), total.LineVisitors, "0.0");
    grid.AddRow(LineKind::Gap);
    const std::size_t row = grid.AddRow(LineKind::Total);
    WriteCounts(grid, row, label, total);
    WriteTargets(grid, row, total);
    const analysis::DaysList& days = source.results.days;
    grid.dPlotStartEndDate = days.Text(0) + "|" + days.Text(days.count - 1);
}

ReportGrid pShowReport(const ReportSource& source, ReportKind kind, std::int32_t numberToShow) {
    const analysis::SrchTrmData& results = source.results;
    ReportGrid grid;
    grid.caption = (kind == ReportKind::Top ? "Top " : "All ") + std::string(FieldName(results.Analyzed_Field)) +
                   "s. Site: " + results.siteName;
    pBuildRepCols(grid, results, source.deviation);
    if (kind == ReportKind::Top) {
        pAddTopRows(source, grid, numberToShow);
    } else {
        pAddAllRows(source, grid);
    }
    pFinishRepGrid(grid);
    return grid;
}

}  // namespace reports
