#pragma once

#include "dialogs/showmb.h"
#include "reports/grid.h"

namespace reports {

// How often words stand in the lines of a report, as single words or as runs of up to four; a button for each length.
void pShowWordFrequencies(const dialogs::Desk& desk, const ReportGrid& grid);

}  // namespace reports
