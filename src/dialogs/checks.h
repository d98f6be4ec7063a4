#pragma once

#include <string>
#include <string_view>

namespace dialogs {

// What is wrong with an entry by a "|" list of rules with "{}" exclusion, "" when nothing is:
//   N numeric, + positive, <limit less than it, {S|chars} characters that must not occur (Sv, s-instr likewise),
//   P a file's name (PD a folder's, PDe a folder that is there). An empty entry passes all but N and +.
// Numbers may have commas between their digits.
std::string CheckEntry(std::string_view rules, std::string_view value);

// An entry as it is kept: a number, where the rules want one, without what only people put into it.
std::string KeptEntry(std::string_view rules, std::string_view value);

}  // namespace dialogs
