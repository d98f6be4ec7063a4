#pragma once

#include <string>
#include <vector>

#include "dialogs/showmb.h"

namespace logdefs {

// The two lists of definitions in their order of match, one at a time: the general ones, then the specific ones. False:
// cancelled, `definitions` is as it was.
bool SEDefsSequence(const dialogs::Desk& desk, std::vector<std::string>& definitions);

}  // namespace logdefs
