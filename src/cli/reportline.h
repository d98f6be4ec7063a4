#pragma once

#include <string>

#include "reports/grid.h"

namespace cli {

// The line of a report that --line names, as the report has it; case counts only where two lines differ by nothing
// else. Wrong usage when there is none.
std::string LineOf(const reports::ReportGrid& grid, const std::string& line, bool total);

}  // namespace cli
