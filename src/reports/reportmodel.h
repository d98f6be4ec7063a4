#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/env.h"
#include "dialogs/grouplists.h"
#include "reports/catalogue.h"
#include "reports/gridsort.h"
#include "reports/openanalyses.h"
#include "reports/plot.h"
#include "reports/words.h"

// One report as it is shown: its grid, the trend of one line, the word list. Whoever shows it holds one of these and
// draws what it says.
namespace reports {

class ReportModel {
public:
    // Draws the report. Groups are read for a grouped one.
    ReportModel(core::Env& env, AnalysisPtr analysis, ReportKind kind, std::string targetsEntry);
    // The values behind a line of another report.
    struct Members {
        const ReportModel& from;
        std::string leftCell;
    };
    ReportModel(core::Env& env, const Members& members);

    const ReportGrid& Grid() const { return grid_; }
    const AnalysisPtr& Analysis() const { return analysis_; }
    const analysis::SrchTrmData& Results() const { return analysis_->GetSrchTrmData(); }
    ReportKind Kind() const { return kind_; }
    bool HasMembers() const { return hasMembers_; }

    // The plot of a line by its place in the grid. False: nothing changed. Stopped leaves the plot as it was.
    bool pPlotRow(std::size_t row, bool force = false);
    const ChartData& Chart() const { return chart_; }
    bool ShowLegend() const { return ReadPlotOptions(env_.ini).ShowPlotLegend; }
    const std::string& PlottedLine() const { return plotted_; }
    bool CanRemove() const { return removed_ < static_cast<std::int32_t>(kSeries); }
    void RemoveFirstSeries();
    void RestoreSeries();
    // The options may have changed: plots all series again. `dates` is first date, "|", last date.
    void SetPlotDates(std::string dates);
    const std::string& PlotDates() const { return grid_.dPlotStartEndDate; }

    enum class ViewSort { Value, Visitors, Stayed, Selected };
    // `column` counts for Selected alone. Lines move; the plot stays with its line.
    void SortBy(ViewSort by, int column = kColValue);
    // As a click on a header does: what sums the other lines stays below them.
    void SortByHeader(int column, bool descending);
    void SetLineHeight(bool thick) { grid_.lineHeight = thick ? kThickLine : kThinLine; }

    std::string Extract() const;  // fExtractDesc
    std::string Summary() const;
    std::vector<WordCount> Words() const { return pFillWordGrid(Results()); }

private:
    ReportSource Source() const;
    void Plot(const std::string& leftCell);

    core::Env& env_;
    AnalysisPtr analysis_;
    ReportKind kind_;
    std::string targetsEntry_;
    ReportGrid grid_{};
    ChartData chart_{};
    std::string plotted_{};
    std::optional<std::size_t> plotRow_{};
    std::int32_t removed_ = 0;
    bool hasMembers_ = false;
};

}  // namespace reports
