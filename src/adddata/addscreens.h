#pragma once

#include <string>
#include <vector>

#include "adddata/adddesk.h"

namespace adddata {

// The dialog that adds raw logs, with all that can be done from it; it comes back until it is left. `files` are native
// paths that were dropped or named at the start: they go to the site's list and are chosen.
void AddLogDataOnScreen(const AddDesk& at, const std::vector<std::string>& files);

}  // namespace adddata
