#pragma once

#include <string>

#include "analysis/results.h"

namespace reports {

// Visits and targets of the whole analysis and of its last 30 days, for a message box: lines parted by CR.
std::string SummaryText(const analysis::SrchTrmData& results);

}  // namespace reports
