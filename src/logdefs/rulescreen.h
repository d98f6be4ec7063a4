#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/showmb.h"
#include "logdefs/rule.h"
#include "logdefs/rulepreview.h"

// The dialogs in which one condition of a rule file is entered. They store nothing.
namespace core {
class Progress;
}

namespace logdefs {

struct RuleEntry {
    std::string name{};
    StoredRule stored{};
};
struct RuleScreen {
    const dialogs::Desk& desk;
    const TrialLines& trial;
    std::optional<int> onlyColType{};  // the one field that can be tested
    std::string onlyLabel{};
    bool robots = false;  // warns of rules that take browsers
    // What speaks against an entry, "" when nothing does.
    std::function<std::string(const RuleEntry&)> check{};
};
// Nothing when cancelled.
std::optional<RuleEntry> EnterRule(const RuleScreen& screen, RuleEntry start);

// What is wrong with a name for a section of a rule file, "" when nothing is.
std::string RuleNameProblem(std::string_view name);

struct ConditionEntry {
    bool any = false;
    std::vector<std::string> rules{};  // names
};
// Chooses rules out of all of a file. `rules` are the names with their descriptions.
std::optional<ConditionEntry> EnterCondition(const dialogs::Desk& desk, core::Progress& progress,
                                             const std::vector<RuleEntry>& rules, const ConditionEntry& start,
                                             const std::function<std::string(const ConditionEntry&)>& check);

// A description as a selection shows it.
std::string ShownDescription(std::string_view text);

}  // namespace logdefs
