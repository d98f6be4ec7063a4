#include "reports/reportmodel.h"

#include <array>

#include "core/env.h"
#include "core/error.h"
#include "core/ports.h"
#include "reports/groups.h"
#include "reports/summary.h"

namespace reports {
namespace {

struct SortRow {
    ReportModel::ViewSort by;
    int column;
    SortKind kind;
};
constexpr std::array kSorts{
    SortRow{ReportModel::ViewSort::Value, kColValue, SortKind::TextAscending},
    SortRow{ReportModel::ViewSort::Visitors, kColVisitors, SortKind::NumericDescending},
    SortRow{ReportModel::ViewSort::Stayed, kColStayed, SortKind::NumericDescending},
    SortRow{ReportModel::ViewSort::Selected, -1, SortKind::GenericDescending},
};

std::optional<std::size_t> RowOf(const ReportGrid& grid, std::string_view leftCell) {
    for (std::size_t row = 0; row < grid.rows.size(); ++row)
        if (grid.rows[row].kind != LineKind::Gap && grid.Cell(row, kColValue) == leftCell) return row;
    return std::nullopt;
}

}  // namespace

ReportModel::ReportModel(core::Env& env, AnalysisPtr analysis, ReportKind kind, std::string targetsEntry)
    : env_(env), analysis_(std::move(analysis)), kind_(kind), targetsEntry_(std::move(targetsEntry)) {
    if (kind_ == ReportKind::Grouped) {
        const dialogs::GroupLists groups(env_.ini, GroupPlaceOf(Results().Analyzed_Field));
        grid_ = pShowGroupReport(Source(), groups.All());
    } else {
        grid_ = pShowReport(Source(), kind_, Results().CntTopVals);
    }
    if (const auto total = RowOf(grid_, kTotal)) pPlotRow(*total);
}

ReportModel::ReportModel(core::Env& env, const Members& members)
    : env_(env), analysis_(members.from.analysis_), kind_(ReportKind::All), targetsEntry_(members.from.targetsEntry_) {
    MembersReport report = pShowGroupMembers(Source(), members.from.grid_, members.leftCell);
    hasMembers_ = report.found;
    grid_ = std::move(report.grid);
    if (const auto total = RowOf(grid_, kTotal)) pPlotRow(*total);
}

ReportSource ReportModel::Source() const {
    return {env_, Results(), DevShow(env_.ini) ? &analysis_->Deviations(env_.ini) : nullptr};
}

bool ReportModel::pPlotRow(std::size_t row, bool force) {
    if (row >= grid_.rows.size() || (plotRow_ == row && !force)) return false;
    const std::string& leftCell = grid_.Cell(row, kColValue);
    if (grid_.rows[row].kind == LineKind::Gap || PlotIndexes(grid_, leftCell).empty()) return false;
    Plot(leftCell);
    plotRow_ = row;
    return true;
}

void ReportModel::Plot(const std::string& leftCell) {
    const PlotRequest request{.leftCell = leftCell,
                              .indexes = PlotIndexes(grid_, leftCell),
                              .dates = grid_.dPlotStartEndDate,
                              .options = ReadPlotOptions(env_.ini),
                              .removed = removed_,
                              .targetsEntry = targetsEntry_};
    try {
        ChartData chart = PlotTtl4IndexesSTByDate(env_, Results(), request);
        if (!chart.message.empty()) env_.user.Tell("report.plotrange", chart.message);
        grid_.dPlotStartEndDate = chart.dates;
        chart_ = std::move(chart);
        plotted_ = leftCell;
    } catch (const core::Stopped&) {}  // the chart stays as it was
}

void ReportModel::RemoveFirstSeries() {
    if (!CanRemove() || plotted_.empty()) return;
    ++removed_;
    Plot(std::string(plotted_));
}

void ReportModel::RestoreSeries() {
    removed_ = 0;
    if (!plotted_.empty()) Plot(std::string(plotted_));
}

void ReportModel::SetPlotDates(std::string dates) {
    grid_.dPlotStartEndDate = std::move(dates);
    removed_ = 0;
    if (!plotted_.empty()) Plot(std::string(plotted_));
}

void ReportModel::SortBy(ViewSort by, int column) {
    const auto* row = std::ranges::find(kSorts, by, &SortRow::by);
    SortLines(grid_, row->column < 0 ? column : row->column, row->kind);
    plotRow_ = RowOf(grid_, plotted_);
}

void ReportModel::SortByHeader(int column, bool descending) {
    reports::SortByHeader(grid_, column, descending);
    plotRow_ = RowOf(grid_, plotted_);
}

std::string ReportModel::Extract() const { return "Site: " + Results().siteName + "\r\r" + analysis_->GetDataDesc(); }

std::string ReportModel::Summary() const { return SummaryText(Results()); }

}  // namespace reports
