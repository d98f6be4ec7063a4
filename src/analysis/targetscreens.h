#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/targetstore.h"
#include "dialogs/showmb.h"

namespace sitedb {
struct SitePaths;
}

// Targets on screen.
namespace analysis {

// The target as it was entered; nothing when cancelled. `others` are the targets beside it.
std::optional<Target> Tgt_Edit(const dialogs::Desk& desk, const Target& target, const std::vector<Target>& others);

// The targets of a site, whether an analysis counts them, and how many. True when they were stored.
bool ShowTargets(const dialogs::Desk& desk, const sitedb::SitePaths& site);

}  // namespace analysis
