#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/results.h"
#include "reports/grid.h"

namespace core {
class IniStore;
struct Env;
}  // namespace core

// The trend of one line of a report: what visitors did in each period, as series and texts.
namespace reports {

inline constexpr std::size_t kSeries = 7;  // visitors, stayed, targets 1 to 4, scale helper
inline constexpr std::size_t kScaleHelper = 6;

// As the report options have them.
struct PlotOptions {
    std::int32_t DaysToPlot = 1;  // length of a period, below 1 read as 1
    bool Plotpct = false;
    bool ShowPlotLegend = true;
    bool ColTitDt = false, ColTitNum = false;  // row labels: the date alone, or the row's number
};
PlotOptions ReadPlotOptions(core::IniStore& ini);

struct PlotRequest {
    std::string leftCell{};
    std::span<const std::int32_t> indexes{};  // values behind the line
    std::string dates{};                      // dPlotStartEndDate: first date, "|", last date; "" all
    PlotOptions options{};
    std::int32_t removed = 0;    // dPlotColsToRemove: leading series that are not shown
    std::string targetsEntry{};  // caption of the menu entry that defines targets
};

struct ChartRow {
    std::string label{};
    std::array<std::optional<double>, kSeries> values{};
};
struct ChartData {
    std::array<std::string, kSeries> headers{};
    std::vector<ChartRow> rows{};                  // one for each period
    std::string desc{};                            // fPlotDesc: what is plotted
    std::vector<std::string> dPlotColLabelsCDS{};  // days, date and exact count of each period
    std::vector<std::int32_t> firstDays{};         // of each period, day numbers
    std::int32_t period = 1;                       // days of a period, which can be longer than asked for
    std::string dates{};                           // as plotted; reset when those asked for lie outside the data
    std::string message{};                         // why they were reset
    bool Removed(std::size_t series) const { return headers[series] == " .. removed .."; }
};
// Throws core::Stopped when the person stops a long sum.
ChartData PlotTtl4IndexesSTByDate(core::Env& env, const analysis::SrchTrmData& results, const PlotRequest& request);

// The values behind a line of a report by the text of its left cell: of the total all of them; none for a line that
// cannot be plotted.
std::span<const std::int32_t> PlotIndexes(const ReportGrid& grid, std::string_view leftCell);

}  // namespace reports
