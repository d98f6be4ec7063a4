#include "reports/groupscreens.h"

#include <algorithm>
#include <unordered_set>

#include "core/env.h"
#include "core/inidraft.h"
#include "core/inistore.h"
#include "dialogs/draftsave.h"
#include "dialogs/editlist.h"
#include "dialogs/twolist.h"
#include "reports/fieldtable.h"
#include "reports/groups.h"

namespace reports {
namespace {

class GroupEditor {
public:
    GroupEditor(core::Env& env, const dialogs::Desk& desk, const analysis::SrchTrmData& results)
        : env_(env),
          desk_(desk),
          results_(results),
          field_(FieldName(results.Analyzed_Field)),
          place_(GroupPlaceOf(results.Analyzed_Field)) {}

    bool Run();

private:
    dialogs::GroupLists Groups() const { return {env_.ini, place_}; }
    dialogs::ListScreen Screen();
    std::optional<dialogs::ListRow> New();
    std::optional<dialogs::ListRow> Copy(const std::string& name);
    bool Members(const std::string& name);

    core::Env& env_;
    const dialogs::Desk& desk_;
    const analysis::SrchTrmData& results_;
    std::string field_;
    dialogs::GroupPlace place_;
};

// The values of the analysis that are no members, and the members, whether the analysis has them or not.
bool GroupEditor::Members(const std::string& name) {
    const dialogs::GroupLists groups = Groups();
    const auto at = groups.Find(name);
    dialogs::ListSide left, right;
    if (at) right.texts = groups.All()[*at].members;
    const std::unordered_set<std::string> members(right.texts.begin(), right.texts.end());
    for (const std::string& value : results_.table.STs)
        if (!value.empty() && !members.contains(value)) left.texts.push_back(value);
    dialogs::TwoListPlan plan;
    plan.title = field_ + " to group when create reports and plot: " + name;
    plan.item = field_;
    plan.listName = field_ + "s";
    plan.message = field_ + " to group when create reports and plot:";
    plan.name = "GroupMembers";
    plan.helpId = "EG";
    plan.emptyRight = "The group has no member yet.";
    plan.groups = place_;
    plan.group = name;
    return dialogs::TwoListSelect(desk_, env_.progress, plan, std::move(left), std::move(right)).ok;
}

std::optional<dialogs::ListRow> GroupEditor::New() {
    const dialogs::GroupLists groups = Groups();
    const auto name = dialogs::AskGroupName(desk_, groups, field_, "- Groups");
    if (!name || !Members(*name)) return std::nullopt;
    return dialogs::ListRow{*name};
}

std::optional<dialogs::ListRow> GroupEditor::Copy(const std::string& name) {
    dialogs::GroupLists groups = Groups();
    const auto from = groups.Find(name);
    const auto copy = dialogs::AskGroupName(desk_, groups, field_, "- Groups");
    if (!copy) return std::nullopt;
    const std::vector<std::string> members = from ? groups.All()[*from].members : std::vector<std::string>();
    groups.SetMembers(groups.Add(*copy), members);
    if (!groups.Save()) return std::nullopt;
    return dialogs::ListRow{*copy};
}

dialogs::ListScreen GroupEditor::Screen() {
    dialogs::ListScreen screen;
    screen.title = field_ + " Groups";
    screen.item = "Group";
    screen.message = "A report by group has one line for each of these groups.";
    screen.name = "Groups";
    screen.helpId = "EG";
    screen.emptyText = "There is no group yet. A group is a list of values that belong together.";
    screen.edit = [this](const dialogs::ListRow& row) -> std::optional<dialogs::ListRow> {
        if (!Members(row[0])) return std::nullopt;
        return row;
    };
    screen.copy = [this](const dialogs::ListRow& row) { return Copy(row[0]); };
    screen.add = [this](const dialogs::ListRow&) { return New(); };
    return screen;
}

bool GroupEditor::Run() {
    if (!place_.Given()) return false;
    core::IniDraft draft(env_.ini, {env_.ini.SectionFile(place_.section, place_.listKey)});
    std::vector<std::string> names;
    const dialogs::GroupLists known = Groups();
    for (const dialogs::Group& group : known.All()) names.push_back(group.name);
    for (;;) {
        const dialogs::EditedList edited = dialogs::EditList(desk_, Screen(), names);
        if (!edited.ok) return false;
        dialogs::GroupLists groups = Groups();
        groups.Keep(edited.items);
        if (groups.Save() && dialogs::SaveDraft(desk_, draft)) return true;
        names = edited.items;
    }
}

}  // namespace

bool pEditGroups(core::Env& env, const dialogs::Desk& desk, const analysis::SrchTrmData& results) {
    return GroupEditor(env, desk, results).Run();
}

}  // namespace reports
