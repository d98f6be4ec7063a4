#include <algorithm>
#include <unordered_map>

#include "core/utf8.h"
#include "dialogs/twolist.h"
#include "logdefs/rulescreen.h"

// The choice of the rules of a condition of several.
namespace logdefs {
namespace {

constexpr std::size_t kMostShown = 450;  // bytes
constexpr int kAll = 0, kAny = 1;

std::string TextOf(const RuleEntry& rule) { return rule.name + ": " + ShownDescription(FltrRuleText(rule.stored)); }

// The rules that stand in the condition, in its order, and the others.
struct Sides {
    dialogs::ListSide left{}, right{};
};
Sides SidesOf(const std::vector<RuleEntry>& rules, const std::vector<std::string>& chosen) {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < rules.size(); ++i) places.try_emplace(core::LowerUtf8(rules[i].name), i);
    std::vector<bool> taken(rules.size());
    Sides sides;
    const auto add = [](dialogs::ListSide& side, const std::string& text, const std::string& key) {
        side.texts.push_back(text);
        side.keys.push_back(key);
    };
    for (const std::string& name : chosen) {
        const auto place = places.find(core::LowerUtf8(name));
        if (place != places.end() && taken[place->second]) continue;
        add(sides.right, place == places.end() ? name + ": (no such rule)" : TextOf(rules[place->second]), name);
        if (place != places.end()) taken[place->second] = true;
    }
    for (std::size_t i = 0; i < rules.size(); ++i)
        if (!taken[i]) add(sides.left, TextOf(rules[i]), rules[i].name);
    return sides;
}

}  // namespace

std::string ShownDescription(std::string_view text) {
    if (text.size() <= kMostShown) return std::string(text);
    return std::string(core::CutUtf8(text, kMostShown)) + " ...";
}

std::optional<ConditionEntry> EnterCondition(const dialogs::Desk& desk, core::Progress& progress,
                                             const std::vector<RuleEntry>& rules, const ConditionEntry& start,
                                             const std::function<std::string(const ConditionEntry&)>& check) {
    dialogs::TwoListPlan plan;
    plan.title = "- Multiple Conditions";
    plan.item = "rule";
    plan.message =
        "Selected rules: those on the right, all of which, or any one of which, a line has to satisfy.\r Press Cancel "
        "to ignore changes and keep original selection.\rPress OK to save changes.";
    plan.name = "MultiCondition";
    plan.helpId = "EnterRule";
    plan.emptyLeft = "All rules of the file are selected.";
    plan.manualAdd = false;
    plan.optionsText = "To satisfy condition, satisfy: ";
    plan.options = {"A&ll rules selected", "An&y rule selected"};
    plan.option = start.any ? kAny : kAll;
    plan.mayEnd = [&](const dialogs::ListSide& right, int option) {
        const std::string problem = right.keys.empty() ? "Select at least one rule on the left and press Add."
                                                       : check({option == kAny, right.keys});
        if (!problem.empty()) dialogs::ShowMsg(desk, problem, plan.title);
        return problem.empty();
    };
    Sides sides = SidesOf(rules, start.rules);
    const dialogs::TwoListResult result =
        dialogs::TwoListSelect(desk, progress, plan, std::move(sides.left), std::move(sides.right));
    if (!result.ok) return std::nullopt;
    return ConditionEntry{result.option == kAny, result.right.keys};
}

}  // namespace logdefs
