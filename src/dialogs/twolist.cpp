#include "dialogs/twolist.h"

#include <algorithm>
#include <utility>

#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/editlist.h"
#include "dialogs/twolistscreen.h"

namespace dialogs {
namespace {

constexpr std::string_view kListSpec = "|4000||||||||2|||||True|True";
constexpr std::string_view kHintSpec = "100|||||||True";

std::vector<int> RowsToSkip(const ListSide& left, const std::vector<std::string>& skip) {
    const std::unordered_set<std::string_view> texts(skip.begin(), skip.end());
    std::vector<int> rows;
    for (std::size_t i = 0; i < left.texts.size(); ++i)
        if (texts.contains(left.texts[i])) rows.push_back(static_cast<int>(i));
    return rows;
}

std::size_t MostItems(core::IniStore& ini, const IniEntry& place) {
    if (!place.Given()) return 0;
    const double most = core::fNum(ini.IniGet(place.section, place.entry, place.file));
    return static_cast<std::size_t>(std::max(core::ToLong(most), 0));
}

}  // namespace

bool AskEach::Yes(const std::string& message) {
    if (mode_ != Mode::Ask) return mode_ == Mode::All;
    Box box;
    box.message = message;
    box.title = title_;
    box.buttons = "&Yes|&No|Yes to &All|&Cancel (skip rest)";
    const Pressed pressed = ShowMB(desk_, box);
    if (pressed.button == 3) mode_ = Mode::All;
    if (pressed.Cancelled()) mode_ = Mode::Skip;
    return pressed.button == 1 || pressed.button == 3;
}

TwoListScreen::TwoListScreen(const Desk& desk, core::Progress& progress, const TwoListPlan& plan, ListSide left,
                             ListSide right)
    : desk_(desk),
      progress_(progress),
      plan_(plan),
      startLeft_(std::move(left)),
      startRight_(std::move(right)),
      groups_(desk.ini, plan.groups),
      lists_(startLeft_, startRight_),
      most_(MostItems(desk.ini, plan.maxNo)),
      option_(plan.option) {
    if (HasFilters()) rules_ = ReadRules(desk_.ini, plan_.filters);
    if (HasSkipList()) skip_ = ReadTexts(desk_.ini, plan_.skipList);
    if (!skip_.empty()) skipped_ = lists_.TakeLeft(RowsToSkip(startLeft_, skip_));
    if (!HasGroups() || plan_.group.empty()) return;
    group_ = groups_.Find(plan_.group);
    if (!group_) group_ = groups_.Add(plan_.group);
}

const std::vector<TwoListScreen::Act>& TwoListScreen::MainActs() {
    using Screen = TwoListScreen;
    static const std::vector<Act> kActs{
        {"&Add -->", "", false, &Screen::Always, &Screen::Add},
        {"<-- R&emove", "", false, &Screen::Always, &Screen::Remove},
        {"Move &Up", "", false, &Screen::HasSequence, &Screen::Up},
        {"Move Do&wn", "", false, &Screen::HasSequence, &Screen::Down},
        {"Find all ", "s with Wo&rd", true, &Screen::Always, &Screen::FindWord},
        {"Find ", "s with Word in ALL &Groups", true, &Screen::HasGroups, &Screen::FindInGroups},
        {"Mo&ve --> Other List", "", false, &Screen::HasGroups, &Screen::MoveToOtherList},
        {"Appl&y Saved Filters - Auto Move", "", false, &Screen::HasFilters, &Screen::ApplyFilters},
        {"Fi&nd List Name", "", false, &Screen::HasGroups, &Screen::FindListName},
        {"&More", "", false, &Screen::Always, &Screen::More},
    };
    return kActs;
}

std::string TwoListScreen::Caption(const Act& act) const {
    std::string caption(act.before);
    if (act.named) caption += core::fReplace(plan_.item, "&", "&&");
    return caption.append(act.after);
}

std::string TwoListScreen::Hint() const {
    const std::string& item = plan_.item;
    std::string hint = "  Select " + item + "(s) on the left and press \"Add\" to Copy " + item +
                       "(s) to the list on the right.\r  Select " + item +
                       "(s) on the right and press \"Remove\" if they are no longer required.";
    if (plan_.sequence) hint += " Use Up and Down to determine sequence ";
    return hint + "\r  Press OK to save changes. Press Cancel to ignore changes and leave.";
}

Controls TwoListScreen::MakeControls() {
    Controls controls;
    const auto add = [&](std::string_view type, std::string_view spec, const std::string& caption = {}) {
        const int number = MBAddCtl(type, "", MBSpec(spec), controls);
        controls[number].caption = caption;
        return number;
    };
    const std::string items = plan_.item + "s";
    hintNo_ = add("Label", kHintSpec);
    controls[hintNo_].value = Hint();
    if (group_) {
        groupNo_ = add("Label", "");
        controls[groupNo_].value = "Selected Group: " + groups_.All()[*group_].name;
    }
    leftTextNo_ = add("Label", "");
    rightTextNo_ = add("Label_", "");
    leftNo_ = add("ListBox", kListSpec, items);
    rightNo_ = add("ListBox_", kListSpec, plan_.item + "(s) Selected");
    controls[leftNo_].emptyText = plan_.emptyLeft.empty() ? "No " + items + " left to select." : plan_.emptyLeft;
    controls[rightNo_].emptyText =
        plan_.emptyRight.empty() ? "Select " + items + " on the left and press Add." : plan_.emptyRight;
    const int wordTextNo = add("Label", "");
    controls[wordTextNo].value = "Enter word and click button to select items containing word [s]:";
    wordNo_ = add("TextBox_", "", controls[wordTextNo].value);
    if (plan_.options.empty()) return controls;
    controls[add("Label", "")].value = plan_.optionsText;
    for (const std::string& caption : plan_.options) {
        const int number = add("OptionButton", "", caption);
        if (firstOptionNo_ == 0) firstOptionNo_ = number;
        controls[number].value = core::fBoolWord(number - firstOptionNo_ == option_);
    }
    return controls;
}

DialogModel TwoListScreen::Model() {
    Box box;
    box.title = plan_.title;
    box.name = plan_.name;
    box.helpId = plan_.helpId;
    box.message = plan_.listName.empty() ? plan_.message : "Select from " + plan_.listName;
    if (!plan_.listName.empty() && !plan_.message.empty()) box.message += "\r" + plan_.message;
    std::string hint = LongTextHint(startLeft_.texts);
    if (hint.empty()) hint = LongTextHint(startRight_.texts);
    if (!hint.empty()) box.message += (box.message.empty() ? "" : "\r") + hint;
    box.options = option::MaxBpl(4);
    box.buttons.clear();
    for (const Act& act : MainActs()) {
        if (!(this->*act.allowed)()) continue;
        MBAddBtn(Caption(act), box.buttons);
        shown_.push_back(&act);
    }
    for (const TwoListButton& button : plan_.buttons) MBAddBtn(button.caption, box.buttons);
    box.defaultNo = MBAddBtn("&OK", box.buttons);
    MBAddBtn("&Cancel", box.buttons);
    DialogModel model = BuildModel(desk_, box, MakeControls());
    model.options.stays = true;
    return model;
}

TwoListResult TwoListScreen::Result(int button, bool ok) {
    if (!ok) return {button, false, false, startLeft_, startRight_, plan_.option};
    return {button, true, changed_, SideOf(lists_.Left()), SideOf(lists_.Right()), option_};
}

Rows TwoListScreen::ShownSide(const Choices& list) const {
    Rows rows = ShownChoices(list);
    for (std::size_t i = 0; plan_.showKeys && i < rows.size(); ++i)
        if (!list[i].key.empty()) rows[i][0] += "  [" + list[i].key + "]";
    return rows;
}

void TwoListScreen::Show(Controls& controls) const {
    const auto count = [](const Choices& list) { return core::CountText(static_cast<double>(list.size())); };
    controls[leftNo_].rows = ShownSide(lists_.Left());
    controls[rightNo_].rows = ShownSide(lists_.Right());
    controls[leftTextNo_].value = plan_.item + "s: [" + count(lists_.Left()) + "]";
    controls[rightTextNo_].value = plan_.item + "(s) Selected: [" + count(lists_.Right()) + "]";
    controls[leftNo_].Select(leftRows_);
    controls[rightNo_].Select(rightRows_);
}

void TwoListScreen::ReadControls(const Controls& controls) {
    leftRows_ = controls[leftNo_].Selected();
    rightRows_ = controls[rightNo_].Selected();
    word_ = controls[wordNo_].value;
    const int before = option_;
    for (int i = 0; i < static_cast<int>(plan_.options.size()); ++i)
        if (controls[firstOptionNo_ + i].Ticked()) option_ = i;
    if (option_ != before) changed_ = true;
}

void TwoListScreen::Press(int button) {
    const auto number = static_cast<std::size_t>(button - 1);
    if (number < shown_.size()) return (this->*shown_[number]->run)();
    PressCallers(plan_.buttons[number - shown_.size()]);
}

void TwoListScreen::PressCallers(const TwoListButton& button) {
    TwoListState state{SideOf(lists_.Left()), SideOf(lists_.Right()), skip_};
    const ListSide skipped = SideOf(skipped_);
    state.left.texts.insert(state.left.texts.end(), skipped.texts.begin(), skipped.texts.end());
    state.left.keys.insert(state.left.keys.end(), skipped.keys.begin(), skipped.keys.end());
    if (!button.run(state)) return;
    lists_ = ChoiceLists(state.left, state.right);
    skipped_ = skip_.empty() ? Choices() : lists_.TakeLeft(RowsWithTexts(lists_.Left(), skip_));
    leftRows_.clear();
    rightRows_.clear();
}

TwoListResult TwoListScreen::Run() {
    DialogModel model = Model();
    Show(model.controls);
    const std::unique_ptr<DialogWindow> window = desk_.host.Open(model);
    const int ok = OkNumber();
    for (;;) {
        const int button = window->Run();
        ReadControls(model.controls);
        const Exit exit = button < ok ? Exit::Stay : button == ok ? Exit::Save : AskExit();
        if (exit == Exit::Drop || (exit == Exit::Save && Leave())) {
            KeepLook(desk_, model);
            return Result(exit == Exit::Save ? ok : button, exit == Exit::Save);
        }
        if (button < ok) Press(button);
        Show(model.controls);
        window->Update();
    }
}

TwoListScreen::Exit TwoListScreen::AskExit() const {
    if (!changed_) return Exit::Drop;
    Box box;
    box.title = plan_.title;
    box.message = "Press OK to save changes.\r Press Cancel to ignore changes and leave.";
    box.buttons = "&OK|&Cancel|&Back to the lists";
    box.options = option::Esc(3);
    switch (ShowMB(desk_, box).button) {
        case 1:
            return Exit::Save;
        case 2:
            return Exit::Drop;
        default:
            return Exit::Stay;
    }
}

bool TwoListScreen::Leave() {
    CutRight();
    if (plan_.mayEnd && !plan_.mayEnd(SideOf(lists_.Right()), option_)) return false;
    OfferFilters();
    return SaveAll();
}

// Typed values can become filters, so that they need not be typed again.
void TwoListScreen::OfferFilters() {
    if (!HasFilters() || typed_.empty()) return;
    Box box;
    box.title = plan_.title;
    box.message = "Do you want to add the manually added values to your list of filters?";
    box.buttons.clear();
    MBAddBtn("&Yes", box.buttons);
    box.escNo = MBAddBtn("&No", box.buttons);
    const std::string word = Word();
    if (!word.empty()) MBAddBtn("Sa&ve 1x Select Word Filter: " + core::fReplace(word, "&", "&&"), box.buttons);
    const int button = ShowMB(desk_, box).button;
    if (button == 2) return;
    const auto add = [&](const std::string& text) {
        MoveRule rule{text, std::string(kToRight), group_ ? groups_.All()[*group_].name : std::string()};
        if (std::ranges::find(rules_, rule) == rules_.end()) rules_.push_back(std::move(rule));
    };
    if (button == 3)
        add(word);
    else
        std::ranges::for_each(typed_, add);
    typed_.clear();
    rulesChanged_ = true;
}

bool TwoListScreen::SaveAll() {
    if (group_) groups_.SetMembers(*group_, TextsOf(lists_.Right()));
    if (!groups_.Save()) return false;
    if (skipChanged_ && !WriteTexts(desk_.ini, plan_.skipList, skip_)) return false;
    skipChanged_ = false;
    if (rulesChanged_ && !WriteRules(desk_.ini, plan_.filters, rules_)) return false;
    rulesChanged_ = false;
    return true;
}

TwoListResult TwoListSelect(const Desk& desk, core::Progress& progress, const TwoListPlan& plan, ListSide left,
                            ListSide right) {
    return TwoListScreen(desk, progress, plan, std::move(left), std::move(right)).Run();
}

}  // namespace dialogs
