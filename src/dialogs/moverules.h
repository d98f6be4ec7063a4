#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace core {
class IniStore;
}

// The saved filters of the two-list selection: rules that say which items go where. In the parameter file a rule is
// the list rule|Move Item|ToGroup, and the rules are a list of such lists.
namespace dialogs {

struct IniEntry {
    std::string section{}, entry{};
    std::string file = "::*";
    bool Given() const { return !entry.empty(); }
};

inline constexpr std::string_view kToRight = "R";
inline constexpr std::string_view kToLeft = "L";

struct MoveRule {
    std::string rule{};              // items that hold this text, ignoring case
    std::string moveItem{kToRight};  // R: from the left to the right, L: back
    std::string toGroup{};           // "" the list on the screen
    friend bool operator==(const MoveRule&, const MoveRule&) = default;
};

std::vector<MoveRule> ReadRules(core::IniStore& ini, const IniEntry& place);
bool WriteRules(core::IniStore& ini, const IniEntry& place, const std::vector<MoveRule>& rules);
std::string RuleText(const MoveRule& rule);  // for a list

// Texts of a "|" list, none for one that is missing or empty.
std::vector<std::string> ReadTexts(core::IniStore& ini, const IniEntry& place);
bool WriteTexts(core::IniStore& ini, const IniEntry& place, const std::vector<std::string>& texts);

}  // namespace dialogs
