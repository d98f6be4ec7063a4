#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/showmb.h"
#include "sitedb/site.h"

// Option dialogs that look at the data before they open.
namespace shell {

// Dates, distributions, thresholds. True when they were stored.
bool ShowAnalysisOptions(const dialogs::Desk& desk, sitedb::Site& site);
// What a page is, memory.
bool ShowAdvancedOptions(const dialogs::Desk& desk, sitedb::Site& site);

// Dates and options of a plot; the options are stored. `current` is a date, "|" and a date, "" for all; firstDay and
// lastDay are those of the analysis. Gives the new dates in that form; nothing when it was cancelled.
std::optional<std::string> AskPlotDates(const dialogs::Desk& desk, std::int32_t firstDay, std::int32_t lastDay,
                                        const std::string& current);

}  // namespace shell
