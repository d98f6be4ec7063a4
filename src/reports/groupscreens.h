#pragma once

#include "analysis/results.h"
#include "dialogs/showmb.h"

namespace core {
struct Env;
}

namespace reports {

// The groups of an analysis' field: the list of groups, and for each the values of the analysis beside its members.
// True when it was left with OK.
bool pEditGroups(core::Env& env, const dialogs::Desk& desk, const analysis::SrchTrmData& results);

}  // namespace reports
