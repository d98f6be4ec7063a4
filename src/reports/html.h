#pragma once

#include <string>

#include "reports/grid.h"
#include "reports/plot.h"

namespace reports {

// One page that needs nothing beside it: heading, description, the trend of the total line, and the grid, whose columns
// can be sorted. Whatever comes from a log stands in it as text.
std::string HtmlPage(const analysis::SrchTrmData& results, const ReportGrid& grid, const ChartData& trend);

}  // namespace reports
