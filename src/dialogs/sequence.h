#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/showmb.h"

namespace dialogs {

enum class Move { Up, Down };
// The order of `count` rows, as their old indexes, after the selected ones moved by one row, each keeping its distance
// to the others. Nothing moves when the first (last) row is already at the edge. `selected` is ascending, in and out.
std::vector<int> MovedOrder(int count, std::vector<int>& selected, Move move);

// Lets the user change the order of a list. Nothing comes back on Cancel.
std::optional<std::vector<std::string>> ShowSequence(const Desk& desk, std::string_view itemName,
                                                     const std::vector<std::string>& list);

}  // namespace dialogs
