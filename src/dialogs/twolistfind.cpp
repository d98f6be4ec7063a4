#include <algorithm>
#include <utility>

#include "core/text.h"
#include "dialogs/editlist.h"
#include "dialogs/twolistscreen.h"

// Two-list selection: what finds items, and what stands behind "More".
namespace dialogs {
namespace {

constexpr std::string_view kResultSpec = "12000|6000|||||True|||1||{5400|5400}||||True|||||600";
constexpr std::size_t kMostListed = 4096;

}  // namespace

std::string TwoListScreen::Word() const { return std::string(core::fTrim(word_)); }

void TwoListScreen::NotFound() { ShowMsg(desk_, "Not Found", plan_.title); }

void TwoListScreen::FindWord() {
    const std::string word = Word();
    const std::vector<int> rows =
        word.empty() ? std::vector<int>() : RowFinder(RowsOf(TextsOf(lists_.Left()))).Matching(word);
    if (rows.empty()) return NotFound();
    leftRows_ = rows;
}

// Lets rows be taken out of the results; gives the texts of those that stay, none when cancelled.
std::vector<std::string> TwoListScreen::ChosenFound(Rows results) {
    Controls controls;
    const int grid = MBAddCtl("Grid", "", MBSpec(kResultSpec), controls, std::move(results));
    controls[grid].caption = "Results";
    controls[grid].emptyText = "All results were removed.";
    Box box;
    box.title = plan_.title;
    box.message = "Find in all groups. Any of " + plan_.item + "s with word: " + Word();
    box.buttons = "&OK|R&emove from these results|&Cancel";
    box.options = option::NoHide("2", true, true);
    const auto remove = [&](DialogModel& model, int button) {
        if (button == 0) return;
        Control& list = model.controls[grid];
        const std::vector<int> selected = list.Selected();
        if (selected.empty()) {
            ShowMsg(desk_, "Select a " + plan_.item + " and press Remove from these results again.", plan_.title);
            return;
        }
        list.rows.erase(list.rows.begin() + 1 + selected.front());
        list.Select({std::min(selected.front(), static_cast<int>(list.rows.size()) - 2)});
    };
    const int button = ShowMBStay(desk_, box, controls, remove).button;
    const Rows& left = controls[grid].rows;
    std::vector<std::string> texts;
    for (std::size_t i = 1; button == 1 && i < left.size(); ++i) texts.push_back(left[i][1]);
    return texts;
}

// What is left of the results is selected in the lists on the screen.
void TwoListScreen::FindInGroups() {
    const std::string word = Word();
    Rows all{{"Group", plan_.item}};
    if (group_) groups_.SetMembers(*group_, TextsOf(lists_.Right()));
    for (const Group& group : groups_.All())
        for (const std::string& member : group.members) all.push_back({group.name, member});
    for (const Choice& choice : lists_.Left()) all.push_back({"UnSelected list", choice.text});
    Rows texts;
    for (const auto& row : all) texts.push_back({row[1]});
    Rows results{all.front()};
    if (!word.empty())
        for (const int row : RowFinder(texts, 1).Matching(word))
            results.push_back(all[static_cast<std::size_t>(row) + 1]);
    if (results.size() == 1) return NotFound();
    const std::vector<std::string> chosen = ChosenFound(std::move(results));
    if (chosen.empty()) return;
    leftRows_ = RowsWithTexts(lists_.Left(), chosen);
    rightRows_ = RowsWithTexts(lists_.Right(), chosen);
}

// The groups that hold the selected item.
void TwoListScreen::FindListName() {
    if (leftRows_.empty() && NoneSelected(rightRows_, "LEFT", "Find List Name")) return;
    const Choice& choice = leftRows_.empty() ? lists_.Right()[static_cast<std::size_t>(rightRows_.front())]
                                             : lists_.Left()[static_cast<std::size_t>(leftRows_.front())];
    std::string names;
    const auto add = [&](const std::string& name) { names.append(names.empty() ? "" : ", ").append(name); };
    if (leftRows_.empty() && group_) add(groups_.All()[*group_].name);
    for (const std::size_t group : groups_.Holding(choice.text, group_)) add(groups_.All()[group].name);
    if (names.empty()) return NotFound();
    ShowMsg(desk_, plan_.item + ": " + GridCellText(choice.text, kMostListed) + " << currently in group: " + names,
            plan_.title);
}

const std::vector<TwoListScreen::Act>& TwoListScreen::MoreActs() {
    using Screen = TwoListScreen;
    static const std::vector<Act> kActs{
        {"Cop&y Selected", "", false, &Screen::Always, &Screen::CopySelected},
        {"&Add Line", "", false, &Screen::HasManualAdd, &Screen::AddTypedLine},
        {"Cop&y selected to Skip List", "", false, &Screen::HasSkipList, &Screen::CopyToSkipList},
        {"Edit S&kip List", "", false, &Screen::HasSkipList, &Screen::EditSkipList},
        {"View w&hole ", "", true, &Screen::Always, &Screen::ViewItem},
    };
    return kActs;
}

void TwoListScreen::More() {
    Box box;
    box.title = plan_.title;
    box.message = "What to do with the lists:";
    box.options = option::MaxBpl(1);
    box.buttons.clear();
    std::vector<const Act*> shown;
    for (const Act& act : MoreActs()) {
        if (!(this->*act.allowed)()) continue;
        MBAddBtn(Caption(act), box.buttons);
        shown.push_back(&act);
    }
    MBAddBtn("&Cancel", box.buttons);
    const Pressed pressed = ShowMB(desk_, box);
    if (!pressed.Cancelled()) (this->*shown[static_cast<std::size_t>(pressed.button - 1)]->run)();
}

// To the clipboard, a line for each item.
void TwoListScreen::CopySelected() {
    if (leftRows_.empty() && NoneSelected(rightRows_, "LEFT", "Copy Selected")) return;
    std::string text;
    const auto add = [&](const Choices& list, const std::vector<int>& rows) {
        for (const int row : rows) text.append(list[static_cast<std::size_t>(row)].text).append("\n");
    };
    add(lists_.Left(), leftRows_);
    add(lists_.Right(), rightRows_);
    if (!desk_.host.CopyText(text)) ShowMsg(desk_, "The text could not be copied.", plan_.title);
}

void TwoListScreen::CopyToSkipList() {
    if (NoneSelected(leftRows_, "LEFT", "Copy selected to Skip List")) return;
    Choices taken = lists_.TakeLeft(leftRows_);
    std::unordered_set<std::string> known(skip_.begin(), skip_.end());
    for (const Choice& choice : taken)
        if (known.insert(choice.text).second) skip_.push_back(choice.text);
    std::ranges::move(taken, std::back_inserter(skipped_));
    leftRows_.clear();
    skipChanged_ = changed_ = true;
}

// Items whose text is taken off the list are offered again.
void TwoListScreen::EditSkipList() {
    ListScreen screen;
    screen.title = plan_.title + " - Skip List";
    screen.item = plan_.item;
    screen.emptyText = "Nothing is skipped. Copy selected " + plan_.item + "s here, or press New.";
    screen.allows = {.move = false, .sort = true};
    EditedList edited = EditList(desk_, screen, skip_);
    if (!edited.ok || !edited.changed) return;
    skip_ = std::move(edited.items);
    const std::unordered_set<std::string_view> texts(skip_.begin(), skip_.end());
    Choices offered, kept;
    for (Choice& choice : skipped_) (texts.contains(choice.text) ? kept : offered).push_back(std::move(choice));
    lists_.PutLeft(std::move(offered));
    skipped_ = lists_.TakeLeft(RowsWithTexts(lists_.Left(), skip_));
    std::ranges::move(kept, std::back_inserter(skipped_));
    leftRows_.clear();
    skipChanged_ = changed_ = true;
}

void TwoListScreen::ViewItem() {
    if (leftRows_.empty() && NoneSelected(rightRows_, "LEFT", "View whole " + plan_.item)) return;
    const Choice& choice = leftRows_.empty() ? lists_.Right()[static_cast<std::size_t>(rightRows_.front())]
                                             : lists_.Left()[static_cast<std::size_t>(leftRows_.front())];
    ShowWholeText(desk_, plan_.title, plan_.item, choice.text);
}

}  // namespace dialogs
