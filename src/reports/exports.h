#pragma once

#include <string>

#include "dialogs/controls.h"
#include "reports/grid.h"
#include "reports/plot.h"

namespace core {
struct Env;
}

// What a report shows, for other programs.
namespace reports {

// The grid as it stands: the first row holds the headers, then all lines in their order with all columns.
dialogs::Rows GridTable(const ReportGrid& grid);
// One row for each period behind the row of headers; cells that are not set are empty.
dialogs::Rows ChartTable(const ChartData& chart);

// A page of the report as it stands with the trend of its total.
std::string ReportPage(core::Env& env, const analysis::SrchTrmData& results, const ReportGrid& grid);

}  // namespace reports
