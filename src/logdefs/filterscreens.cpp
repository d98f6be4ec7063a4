#include "logdefs/filterscreens.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "core/inistore.h"
#include "core/ports.h"
#include "core/text.h"
#include "dialogs/draftsave.h"
#include "dialogs/gridops.h"
#include "logdefs/filterlines.h"
#include "logdefs/rulepreview.h"
#include "logdefs/rulescreen.h"

namespace logdefs {
namespace {

using dialogs::MBSpec;

constexpr std::string_view kFilters = "Filters";
constexpr std::string_view kGridSpec = "12000|4500|||||True|||1||{3300|8400}";
constexpr std::string_view kEndSpec = "12000|1800|||||True|||1||{9700|2000}";
constexpr std::size_t kMostShown = 460;
constexpr std::string_view kIdentical =
    "Edits not allowed. Already have an identical condition in the list.\rChanges have not been saved.";
constexpr std::string_view kChoose = "Select a single filter in this list";

class ListEditor {
public:
    ListEditor(const Editing& editing, const FilterList& list, const LeadOut& check)
        : editing_(editing),
          list_(list),
          check_(check),
          draft_(editing.desk.ini, {list.file}),
          trial_(editing.desk.ini, editing.trial, editing.formats),
          lines_(editing.desk.ini, list.file, list.key) {}

    bool Run();

private:
    struct Act {
        std::string_view before;
        bool named;  // the item's name goes behind
        bool needsSelection;
        void (ListEditor::*run)();
    };
    static const std::vector<Act>& Acts();

    std::string Buttons() const;
    dialogs::DialogModel Model();
    void Show();
    void ShowEffect(dialogs::Controls& controls) const;
    std::string EffectText(int row) const;
    std::size_t Current() const { return static_cast<std::size_t>(selected_); }
    int RowNamed(std::string_view name) const;
    bool Ended(int button, bool& saved);
    bool Save();
    void Press(int button);

    void Edit();
    void New();
    void Remove();
    void Copy();
    void Up() { Move(true); }
    void Down() { Move(false); }
    void Move(bool up);
    void Check();
    bool EditRule(std::optional<std::size_t> at, RuleEntry start);
    bool EditCondition(std::optional<std::size_t> at, const FilterLines::Line& start);
    bool AskMultiple(bool& multiple) const;
    std::string RuleProblem(std::optional<std::size_t> at, const RuleEntry& entry) const;
    bool Put(std::optional<std::size_t> at, FilterLines::Line line);
    void Tell(std::string_view message) const { dialogs::ShowMsg(editing_.desk, message, list_.title); }

    const Editing& editing_;
    const FilterList& list_;
    const LeadOut& check_;
    core::IniDraft draft_;
    TrialLines trial_;
    FilterLines lines_;
    dialogs::DialogModel model_{};
    int selected_ = -1;
    int grid_ = 0, effect_ = 0;
};

const std::vector<ListEditor::Act>& ListEditor::Acts() {
    static const std::vector<Act> kActs{
        {"Edi&t ", true, true, &ListEditor::Edit},     {"&New ", true, false, &ListEditor::New},
        {"R&emove ", true, true, &ListEditor::Remove}, {"Cop&y ", true, true, &ListEditor::Copy},
        {"Move &Up", false, true, &ListEditor::Up},    {"Move Do&wn", false, true, &ListEditor::Down},
    };
    return kActs;
}

std::string ListEditor::Buttons() const {
    std::string buttons;
    dialogs::MBAddBtn("&OK", buttons);
    for (const Act& act : Acts()) dialogs::MBAddBtn(std::string(act.before) + (act.named ? list_.item : ""), buttons);
    if (check_) dialogs::MBAddBtn(list_.checkCaption, buttons);
    dialogs::MBAddBtn("&Cancel", buttons);
    return buttons;
}

dialogs::DialogModel ListEditor::Model() {
    dialogs::Box box;
    box.title = list_.title;
    box.name = list_.name;
    box.helpId = list_.helpId;
    box.message = list_.message;
    box.buttons = Buttons();
    box.options = dialogs::option::MaxBpl(4);
    if (!list_.choose) box.defaultNo = 2;
    box.live = [this](dialogs::Controls& controls) { ShowEffect(controls); };
    dialogs::Controls controls;
    grid_ = dialogs::MBAddCtl("Grid", "-1", MBSpec(kGridSpec), controls);
    controls[grid_].caption = list_.item + "s";
    controls[grid_].emptyText = "No " + list_.item + " yet. Press New " + list_.item + " to add one.";
    effect_ = dialogs::MBAddCtl("Label", "", "", controls);
    controls[effect_].caption = "Effect of the selected " + list_.item;
    if (!list_.endText.empty()) {
        dialogs::MBAddCtl("Label", list_.endText, "", controls);
        const int end = dialogs::MBAddCtl("Grid", "-1", MBSpec(kEndSpec), controls, list_.endRows);
        controls[end].caption = list_.endText;
        controls[end].emptyText = "There is none.";
    }
    dialogs::DialogModel model = dialogs::BuildModel(editing_.desk, box, std::move(controls));
    model.options.stays = true;
    return model;
}

void ListEditor::Show() {
    dialogs::Rows& rows = model_.controls[grid_].rows;
    rows.clear();
    rows.reserve(lines_.Count() + 1);
    rows.push_back({"Name", "Condition"});
    for (const FilterLines::Line& line : lines_.All())
        rows.push_back({dialogs::GridCellText(line.name), ShownDescription(lines_.Text(line, kMostShown))});
    model_.controls[grid_].Select({selected_});
}

std::string ListEditor::EffectText(int row) const {
    if (trial_.Lines() == 0) return trial_.Text(0);
    if (row < 0) return {};
    const FilterLines::Line& line = lines_.All()[static_cast<std::size_t>(row)];
    const auto satisfied = trial_.Satisfied(lines_.RulesOf(line), line.any);
    return satisfied ? "The selected " + list_.item + ": " + trial_.Text(*satisfied) : std::string();
}

void ListEditor::ShowEffect(dialogs::Controls& controls) const {
    const std::vector<int> rows = controls[grid_].Selected();
    controls[effect_].value = EffectText(rows.empty() ? -1 : rows.front());
}

int ListEditor::RowNamed(std::string_view name) const {
    const std::optional<std::size_t> at = lines_.Find(name);
    return at ? static_cast<int>(*at) : -1;
}

bool ListEditor::AskMultiple(bool& multiple) const {
    constexpr int kSingle = 1, kMultiple = 2, kCancel = 3;
    const std::string label = "E.g. " + std::string(kColTypes[1].label);
    dialogs::Box box;
    box.title = list_.title;
    box.message = "Use a single condition\r" + label + " equals xxx\r\ror a multi-condition criteria\r" + label +
                  " equals xxx OR starts with yyy";
    box.buttons = "&Single condition|&Multiple Conditions|&Cancel";
    box.escNo = kCancel;
    const int button = dialogs::ShowMB(editing_.desk, box).button;
    multiple = button == kMultiple;
    return button == kSingle || button == kMultiple;
}

std::string ListEditor::RuleProblem(std::optional<std::size_t> at, const RuleEntry& entry) const {
    const std::optional<std::size_t> named = lines_.Find(entry.name);
    if (named && named != at) return "Another " + list_.item + " has this name. Choose another.";
    FilterLines::Line line{.name = entry.name, .stored = entry.stored};
    if (at && FltrRuleText(lines_.All()[*at].stored) == FltrRuleText(line.stored)) return {};  // as it was
    return lines_.SameAsAnother(line, at) ? std::string(kIdentical) : std::string();
}

// What cannot be written is shown as it is stored.
bool ListEditor::Put(std::optional<std::size_t> at, FilterLines::Line line) {
    const std::string name = line.name;
    const bool put = lines_.Put(at, std::move(line));
    if (!put) lines_.Read();
    selected_ = RowNamed(name);
    return put;
}

bool ListEditor::EditRule(std::optional<std::size_t> at, RuleEntry start) {
    const RuleScreen screen{.desk = editing_.desk,
                            .trial = trial_,
                            .onlyColType = list_.onlyColType,
                            .onlyLabel = list_.onlyLabel,
                            .robots = list_.robots,
                            .check = [&](const RuleEntry& entry) { return RuleProblem(at, entry); }};
    const std::optional<RuleEntry> entry = EnterRule(screen, std::move(start));
    return entry && Put(at, {.name = entry->name, .stored = entry->stored});
}

bool ListEditor::EditCondition(std::optional<std::size_t> at, const FilterLines::Line& start) {
    std::vector<RuleEntry> rules;
    for (const FilterLines::Line& line : lines_.All())
        if (!line.multiple) rules.push_back({line.name, line.stored});
    if (rules.empty()) {
        Tell("There is no rule yet that could be put together. First make rules: press New " + list_.item +
             " and Single condition.");
        return false;
    }
    const auto lineOf = [&](const ConditionEntry& entry) {
        return FilterLines::Line{.name = start.name, .multiple = true, .any = entry.any, .rules = entry.rules};
    };
    const auto check = [&](const ConditionEntry& entry) {
        const bool asItWas = at && entry.any == start.any && entry.rules == start.rules;
        return !asItWas && lines_.SameAsAnother(lineOf(entry), at) ? std::string(kIdentical) : std::string();
    };
    const auto entry = EnterCondition(editing_.desk, editing_.progress, rules, {start.any, start.rules}, check);
    return entry && Put(at, lineOf(*entry));
}

void ListEditor::Edit() {
    const std::size_t at = Current();
    const FilterLines::Line line = lines_.All()[at];
    if (line.multiple)
        EditCondition(at, line);
    else
        EditRule(at, {line.name, line.stored});
}

void ListEditor::New() {
    bool multiple = false;
    if (list_.multiple && !AskMultiple(multiple)) return;
    if (multiple) {
        EditCondition(std::nullopt, {.name = lines_.FreeName(editing_.clock.Now()), .multiple = true});
        return;
    }
    const int colType = list_.onlyColType.value_or(list_.robots ? 2 : 1);
    EditRule(std::nullopt, {"", {{kContains, "", false}, colType}});
}

void ListEditor::Copy() {
    FilterLines::Line line = lines_.All()[Current()];
    line.name = lines_.CopyName(line.name);
    if (!lines_.Insert(Current() + 1, std::move(line))) lines_.Read();
    selected_ = std::min(selected_ + 1, static_cast<int>(lines_.Count()) - 1);
}

void ListEditor::Remove() {
    const std::size_t at = Current();
    const FilterLines::Line& line = lines_.All()[at];
    const auto isLine = [&](const std::string& name) { return core::fEquals(name, line.name, core::Case::Ignore); };
    std::string refused;
    if (std::ranges::any_of(list_.isProtected, isLine)) {
        refused = "Cannot delete that line. It has been re-added at the end.";
    } else if (const auto user = line.multiple ? std::nullopt : lines_.UserOf(line.name)) {
        const FilterLines::Line& condition = lines_.All()[*user];
        refused =
            "Cannot delete that rule. It is used in a multi rule condition.\rFirst (Multi rule where it is used: " +
            condition.name + " " + ShownDescription(lines_.Text(condition, kMostShown)) +
            ") take it off that condition.\rThe Rule has been re-added at the end.";
    }
    if (!refused.empty()) {
        lines_.MoveToEnd(at);
        selected_ = static_cast<int>(lines_.Count()) - 1;
        return Tell(refused);
    }
    lines_.Remove(at);
    selected_ = std::min(selected_, static_cast<int>(lines_.Count()) - 1);
}

void ListEditor::Move(bool up) {
    std::vector<int> selected{selected_};
    lines_.Move(selected, up);
    selected_ = selected.front();
}

// The check sees what was changed so far, and may change it, too.
void ListEditor::Check() {
    const std::string name = selected_ < 0 ? std::string() : lines_.All()[Current()].name;
    if (!lines_.WriteNames()) return;
    check_();
    lines_.Read();
    selected_ = RowNamed(name);
}

bool ListEditor::Save() {
    core::IniStore& ini = editing_.desk.ini;
    if (list_.choose && selected_ < 0 && lines_.Count() > 0) {
        model_.problem = std::string(kChoose) + ".";
        return false;
    }
    if (!lines_.WriteNames()) return false;
    const std::string chosen = selected_ < 0 ? std::string() : lines_.All()[Current()].name;
    if (!list_.selectedKey.empty() && ini.IniGet(kFilters, list_.selectedKey, list_.file) != chosen &&
        !ini.IniPut(kFilters, list_.selectedKey, chosen, list_.file))
        return false;
    return dialogs::SaveDraft(editing_.desk, draft_);
}

// True: the editor goes.
bool ListEditor::Ended(int button, bool& saved) {
    if (button == 1) return saved = Save();
    if (button != model_.ButtonCount()) return false;
    (void)lines_.WriteNames();  // so that a new order counts as something to lose
    return dialogs::LeaveDraft(editing_.desk, draft_);
}

void ListEditor::Press(int button) {
    const auto number = static_cast<std::size_t>(button - 2);
    if (number >= Acts().size()) return Check();
    const Act& act = Acts()[number];
    if (!act.needsSelection || selected_ >= 0) return (this->*act.run)();
    model_.problem = "Select a " + list_.item + " first.";
}

bool ListEditor::Run() {
    if (!list_.selectedKey.empty())
        selected_ = RowNamed(editing_.desk.ini.IniGet(kFilters, list_.selectedKey, list_.file));
    model_ = Model();
    Show();
    const std::unique_ptr<dialogs::DialogWindow> window = editing_.desk.host.Open(model_);
    for (bool saved = false;;) {
        const int button = window->Run();
        const std::vector<int> rows = model_.controls[grid_].Selected();
        selected_ = rows.empty() ? -1 : rows.front();
        model_.problem.clear();
        if (Ended(button, saved)) {
            dialogs::KeepLook(editing_.desk, model_);
            return saved;
        }
        if (button != 1 && button != model_.ButtonCount()) {
            Press(button);
            Show();
        }
        window->Update();
    }
}

std::string OfSite(std::string_view text, const Editing& editing) { return std::string(text) + editing.siteName + "]"; }

}  // namespace

bool FltrListEdit(const Editing& editing, const FilterList& list, const LeadOut& check) {
    return ListEditor(editing, list, check).Run();
}

bool FltrSelectMain(const Editing& editing, FilterFamily family, const LeadOut& check) {
    FilterList list;
    list.selectedKey = "Fltr Sel";
    list.choose = true;
    list.name = "FilterList";
    list.helpId = "FilterList";
    list.message =
        std::string(kChoose) + "\rUse new filter & choose \"multiple conditions\" to use more than one rule.";
    if (family == FilterFamily::Main) {
        list.file = editing.filters.main;
        list.title = OfSite("Main Filter to add/exclude lines [Site DB: ", editing);
    } else if (family == FilterFamily::Components) {
        list.file = editing.filters.components;
        list.title = OfSite("Filter to identify files to be SKIPPED. [Site DB: ", editing);
    } else {
        list.file = editing.filters.robots;
        list.key = "SkipRobotUserAgents";
        list.selectedKey = "FltrBotsUASel";
        list.choose = list.multiple = false;
        list.robots = true;
        list.title = "Change filters as required";
        list.message =
            "filters used to exclude robots and crawlers. This list used for all Site DBs.\rNB **ALL** filters are "
            "Applied when option to exlude robots is checked.";
    }
    return FltrListEdit(editing, list, check);
}

}  // namespace logdefs
