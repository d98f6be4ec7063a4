#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/showmb.h"

namespace dialogs {

// Lets the user change the order of a list. Nothing comes back on Cancel.
std::optional<std::vector<std::string>> ShowSequence(const Desk& desk, std::string_view itemName,
                                                     const std::vector<std::string>& list);

}  // namespace dialogs
