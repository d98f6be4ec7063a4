#pragma once

#include <string>
#include <string_view>
#include <vector>

// What somebody may have meant.
namespace cli {

// The candidates with the nearest first; those that look like the text at all stand before the others. Case ignored.
std::vector<std::string> NearestFirst(std::string_view text, std::vector<std::string> candidates);
// "Valid are: a, b, c": at most `limit` of them, the nearest first; "" without candidates.
std::string ValidAre(std::string_view text, std::vector<std::string> candidates, std::size_t limit = 12);

}  // namespace cli
