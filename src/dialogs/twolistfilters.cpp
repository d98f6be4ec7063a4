#include <algorithm>
#include <map>
#include <utility>

#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/editlist.h"
#include "dialogs/twolistscreen.h"

// Two-list selection: saved filters.
namespace dialogs {
namespace {

constexpr std::string_view kRulesSpec = "8000|3500|||||True||||||||True";

// For each row the first rule that its text meets, -1 for none.
std::vector<int> FirstRules(const Choices& list, const std::vector<MoveRule>& rules, std::string_view moveItem) {
    const RowFinder finder(RowsOf(TextsOf(list)));
    std::vector<int> met(list.size(), -1);
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (rules[i].rule.empty() || rules[i].moveItem != moveItem) continue;
        for (const int row : finder.Matching(rules[i].rule))
            if (met[static_cast<std::size_t>(row)] < 0) met[static_cast<std::size_t>(row)] = static_cast<int>(i);
    }
    return met;
}

Rows RuleRows(const std::vector<MoveRule>& rules) {
    Rows rows;
    for (const MoveRule& rule : rules) rows.push_back({RuleText(rule)});
    return rows;
}

}  // namespace

// Asks for a rule in three boxes.
bool TwoListScreen::NewRule(MoveRule& rule) {
    Controls controls;
    const auto add = [&](const char* caption, const char* type, std::string value, Rows rows) {
        MBAddCtl("Label", caption, MBSpec("3000"), controls);
        const int number = MBAddCtl(type, value, MBSpec("7000"), controls, std::move(rows));
        controls[number].caption = caption;
        controls[number].readOnly = controls[number].Is(ControlType::ComboBox);
        return number;
    };
    Rows groupNames{{""}};
    for (const Group& group : groups_.All()) groupNames.push_back({group.name});
    const Rows directions{{"To the right"}, {"Back to the left"}};
    const int text = add("rule", "TextBox_", Word(), {});
    const int direction = add("Move Item", "ComboBox_", "To the right", directions);
    const int group = HasGroups() ? add("ToGroup", "ComboBox_", "", groupNames) : 0;
    Box box;
    box.title = plan_.title;
    box.message = "Move " + plan_.item + "s that hold this word:";
    box.buttons = "1";
    const auto check = [&](Controls& filled, int) {
        return core::fTrim(filled[text].value).empty() ? std::string("Enter a word.") : std::string();
    };
    if (ShowMBRepeat(desk_, box, controls, check).Cancelled()) return false;
    rule.rule = core::fTrim(controls[text].value);
    rule.moveItem = controls[direction].ComboText() == directions[1][0] ? kToLeft : kToRight;
    rule.toGroup = group > 0 ? controls[group].ComboText() : std::string();
    return true;
}

// "No" takes a rule out for this time, "Yes" for good.
void TwoListScreen::RemoveRules(std::vector<int> selected, std::vector<MoveRule>& listed) {
    AskEach ask(desk_, plan_.title);
    std::ranges::reverse(selected);
    for (const int row : selected) {
        const auto at = listed.begin() + row;
        const bool forGood = ask.Yes("Confirm Remove. \rRule: " + RuleText(*at) +
                                     "\rDo you want to remove the rules permanently from list?");
        if (ask.Skipped()) return;
        if (forGood) {
            std::erase(rules_, *at);
            rulesChanged_ = changed_ = true;
        }
        listed.erase(at);
    }
}

void TwoListScreen::ApplyFilters() {
    enum Button { kApply = 1, kNew, kRemove };
    std::vector<MoveRule> listed = rules_;
    Controls controls;
    const int number = MBAddCtl("ListBox", "", MBSpec(kRulesSpec), controls, RuleRows(listed));
    controls[number].caption = "Rules";
    controls[number].emptyText = "No saved filters yet. Press New to add one.";
    Box box;
    box.title = plan_.title;
    box.message = "The rules are applied from the top, the first one that fits counts.";
    box.buttons = "&Apply|&New|R&emove|&Cancel";
    box.options = option::NoHide("2|3", true, true);
    const auto change = [&](DialogModel& model, int button) {
        Control& list = model.controls[number];
        MoveRule rule;
        if (button == kRemove && list.Selected().empty()) {
            ShowMsg(desk_, "Select a rule and press Remove again.", plan_.title);
        } else if (button == kRemove) {
            RemoveRules(list.Selected(), listed);
        } else if (button == kNew && NewRule(rule)) {
            listed.push_back(rule);
            rules_.push_back(std::move(rule));
            rulesChanged_ = changed_ = true;
        }
        list.rows = RuleRows(listed);
        list.Select({});
    };
    if (ShowMBStay(desk_, box, controls, change).button != kApply) return;
    const auto moved = static_cast<double>(Apply(listed));
    ShowMsg(desk_, core::CountText(moved) + " " + plan_.item + "(s) moved.", plan_.title);
}

// Both lists as they stand: what a rule moves is not moved again by another.
std::size_t TwoListScreen::Apply(const std::vector<MoveRule>& rules) {
    const std::vector<int> toRight = FirstRules(lists_.Left(), rules, kToRight);
    const std::vector<int> toLeft = FirstRules(lists_.Right(), rules, kToLeft);
    std::vector<int> added, back;
    std::map<std::size_t, std::unordered_set<long>> others;  // for a group that is not on the screen: orders of items
    for (std::size_t row = 0; row < toRight.size(); ++row) {
        if (toRight[row] < 0) continue;
        const std::string& name = rules[static_cast<std::size_t>(toRight[row])].toGroup;
        const std::optional<std::size_t> group = groups_.Find(name);
        if (name.empty() || (group && group == group_))
            added.push_back(static_cast<int>(row));
        else if (group)
            others[*group].insert(lists_.Left()[row].order);
    }
    for (std::size_t row = 0; row < toLeft.size(); ++row)
        if (toLeft[row] >= 0) back.push_back(static_cast<int>(row));

    const std::size_t before = lists_.Right().size();
    AddRows(std::move(added));
    std::size_t moved = lists_.Right().size() - before + back.size();
    for (const auto& [group, orders] : others) moved += MoveToGroup(group, orders);
    // What was added stands behind them, so these rows are still the same.
    if (!back.empty()) lists_.Remove(back);
    leftRows_.clear();
    rightRows_.clear();
    if (moved > 0) changed_ = true;
    return moved;
}

std::size_t TwoListScreen::MoveToGroup(std::size_t group, const std::unordered_set<long>& orders) {
    std::vector<int> rows;
    for (std::size_t row = 0; row < lists_.Left().size(); ++row)
        if (orders.contains(lists_.Left()[row].order)) rows.push_back(static_cast<int>(row));
    groups_.AddMembers(group, TextsOf(lists_.TakeLeft(rows)));
    return rows.size();
}

}  // namespace dialogs
