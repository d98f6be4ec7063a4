#include <algorithm>
#include <numeric>
#include <utility>

#include "core/error.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/editlist.h"
#include "dialogs/report.h"
#include "dialogs/twolistscreen.h"

// Two-list selection: what moves items.
namespace dialogs {
namespace {

constexpr std::size_t kReportFrom = 1000;
constexpr std::size_t kMostAsked = 500;  // bytes of an item in a question

std::string RestrictedText(std::size_t count, std::size_t most) {
    return "You have selected " + core::CountText(static_cast<double>(count)) +
           " values. Will be restricted to first " + core::CountText(static_cast<double>(most));
}

std::vector<std::string> TextsAt(const Choices& list, const std::vector<int>& rows) {
    std::vector<std::string> texts;
    for (const int row : rows) texts.push_back(list[static_cast<std::size_t>(row)].text);
    return texts;
}

}  // namespace

bool TwoListScreen::NoneSelected(const std::vector<int>& rows, std::string_view side, std::string_view button) {
    if (!rows.empty()) return false;
    std::string text = "First select " + plan_.item + "s from the *";
    text.append(side).append("* column and press \"").append(button).append("\" again.");
    ShowMsg(desk_, text, plan_.title);
    return true;
}

// Stopped by the user: nothing moves and no row comes back.
std::vector<int> TwoListScreen::MoveWithProgress(bool add, const std::vector<int>& rows) {
    const auto move = [&](const ChoiceLists::Step& step) {
        return add ? lists_.Add(rows, step) : lists_.Remove(rows, step);
    };
    changed_ = true;
    if (rows.size() < kReportFrom) return move({});
    Report report(progress_, add ? "Adding items." : "Removing items.", "step", static_cast<double>(rows.size()));
    try {
        return move([&](std::size_t count) { report.Step(static_cast<double>(count)); });
    } catch (const core::Stopped&) {
        return {};
    }
}

// Asks when another group holds the item.
bool TwoListScreen::MayTake(const std::string& text, AskEach& ask) const {
    const std::vector<std::size_t> holders = groups_.Holding(text, group_);
    return holders.empty() || ask.Yes(plan_.item + ": " + GridCellText(text, kMostAsked) + " << currently in group: " +
                                      groups_.All()[holders.front()].name + "\rDo you want to move it?");
}

// The rows but those of other groups that are to stay there.
std::vector<int> TwoListScreen::RowsToAdd(const std::vector<int>& rows) {
    if (!HasGroups()) return rows;
    AskEach ask(desk_, plan_.title);
    std::vector<int> wanted;
    for (const int row : rows) {
        const std::string& text = lists_.Left()[static_cast<std::size_t>(row)].text;
        if (MayTake(text, ask)) wanted.push_back(row);
    }
    return wanted;
}

void TwoListScreen::CutToRoom(std::vector<int>& rows) {
    const std::size_t right = lists_.Right().size();
    if (most_ == 0 || right + rows.size() <= most_) return;
    ShowMsg(desk_, RestrictedText(right + rows.size(), most_), plan_.title);
    rows.resize(most_ > right ? most_ - right : 0);
}

void TwoListScreen::CutRight() {
    const std::size_t right = lists_.Right().size();
    if (most_ == 0 || right <= most_) return;
    ShowMsg(desk_, RestrictedText(right, most_), plan_.title);
    std::vector<int> rows(right - most_);
    std::iota(rows.begin(), rows.end(), static_cast<int>(most_));
    lists_.Remove(rows);
    changed_ = true;
}

void TwoListScreen::RemoveFromGroups(const std::vector<std::string>& texts) {
    const std::unordered_set<std::string> gone(texts.begin(), texts.end());
    for (std::size_t i = 0; i < groups_.All().size(); ++i)
        if (i != group_) groups_.RemoveMembers(i, gone);
}

void TwoListScreen::AddRows(std::vector<int> rows) {
    rows = RowsToAdd(rows);
    CutToRoom(rows);
    if (rows.empty()) return;
    rightRows_ = MoveWithProgress(true, rows);
    if (rightRows_.empty()) return;
    leftRows_.clear();
    if (HasGroups()) RemoveFromGroups(TextsAt(lists_.Right(), rightRows_));
}

void TwoListScreen::Add() {
    if (!NoneSelected(leftRows_, "LEFT", "Add")) AddRows(leftRows_);
}

void TwoListScreen::Remove() {
    if (NoneSelected(rightRows_, "RIGHT", "Remove")) return;
    std::vector<int> places = MoveWithProgress(false, rightRows_);
    if (places.empty()) return;
    leftRows_ = std::move(places);
    rightRows_.clear();
}

void TwoListScreen::Move(Direction direction, std::string_view button) {
    if (NoneSelected(rightRows_, "RIGHT", button)) return;
    lists_.MoveRight(rightRows_, direction);
    changed_ = true;
}

// Another group than the one on the screen, maybe a new one.
std::optional<std::size_t> TwoListScreen::ChooseGroup() {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < groups_.All().size(); ++i)
        if (i != group_) names.push_back(groups_.All()[i].name);
    ListScreen screen;
    screen.title = plan_.title;
    screen.item = "Group";
    screen.allows = {.select = true, .edit = false, .copy = false, .remove = false, .move = false};
    screen.unique = true;
    screen.add = [&](const ListRow&) -> std::optional<ListRow> {
        const auto name = AskGroupName(desk_, groups_, plan_.item, plan_.title);
        if (!name) return std::nullopt;
        return ListRow{*name};
    };
    const EditedList chosen = EditList(desk_, screen, names);
    if (!chosen.ok) return std::nullopt;
    const std::string& name = chosen.items[static_cast<std::size_t>(chosen.selected.front())];
    if (const auto known = groups_.Find(name)) return known;
    return groups_.Add(name);
}

void TwoListScreen::MoveToOtherList() {
    const bool fromRight = !rightRows_.empty();
    if (!fromRight && leftRows_.empty()) {
        NoneSelected(rightRows_, "RIGHT", "Move");
        return;
    }
    const std::optional<std::size_t> group = ChooseGroup();
    if (!group) return;
    const Choices moved = fromRight ? lists_.TakeRight(rightRows_) : lists_.TakeLeft(leftRows_);
    groups_.AddMembers(*group, TextsOf(moved));
    leftRows_.clear();
    rightRows_.clear();
    changed_ = true;
}

void TwoListScreen::AddTypedLine() {
    const auto value = AskLine(desk_,
                               "Enter Value to Add to List (RHS). It will be removed from UnSelected list (LHS) if "
                               "found there.",
                               "", plan_.title);
    if (!value) return;
    if (most_ > 0 && lists_.Right().size() >= most_) {
        ShowMsg(desk_, RestrictedText(lists_.Right().size() + 1, most_), plan_.title);
        return;
    }
    AskEach ask(desk_, plan_.title);
    if (!MayTake(*value, ask)) return;
    if (!lists_.AddTyped(*value)) {
        ShowMsg(desk_, "\"" + GridCellText(*value, kMostAsked) + "\" is in the list already.", plan_.title);
        return;
    }
    if (HasGroups()) RemoveFromGroups({*value});
    typed_.push_back(*value);
    leftRows_.clear();
    rightRows_ = {static_cast<int>(lists_.Right().size()) - 1};
    changed_ = true;
}

}  // namespace dialogs
