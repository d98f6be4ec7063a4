#pragma once

#include "dialogs/showmb.h"
#include "sitedb/site.h"

// Option dialogs that look at the site's data before they open.
namespace shell {

// Dates, distributions, thresholds. True when they were stored.
bool ShowAnalysisOptions(const dialogs::Desk& desk, sitedb::Site& site);
// What a page is, memory.
bool ShowAdvancedOptions(const dialogs::Desk& desk, sitedb::Site& site);

}  // namespace shell
