#include "dialogs/choicelists.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace dialogs {
namespace {

constexpr std::size_t kStepEvery = 1024;

Choices ChoicesOf(const ListSide& side, long& nextOrder) {
    Choices list;
    list.reserve(side.texts.size());
    for (std::size_t i = 0; i < side.texts.size(); ++i)
        list.push_back({side.texts[i], i < side.keys.size() ? side.keys[i] : std::string(), nextOrder++});
    return list;
}

// Takes the rows out of a list; they come in the list's order.
Choices Take(Choices& list, const std::vector<int>& rows, const ChoiceLists::Step& step) {
    std::vector<bool> chosen(list.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (step && i % kStepEvery == 0) step(i);
        if (rows[i] >= 0 && static_cast<std::size_t>(rows[i]) < list.size())
            chosen[static_cast<std::size_t>(rows[i])] = true;
    }
    Choices taken, kept;
    kept.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) (chosen[i] ? taken : kept).push_back(std::move(list[i]));
    list = std::move(kept);
    return taken;
}

bool ByOrder(const Choice& a, const Choice& b) { return a.order < b.order; }

}  // namespace

ChoiceLists::ChoiceLists(const ListSide& left, const ListSide& right)
    : left_(ChoicesOf(left, nextOrder_)), right_(ChoicesOf(right, nextOrder_)) {}

std::vector<int> ChoiceLists::Add(const std::vector<int>& rows, const Step& step) {
    Choices taken = Take(left_, rows, step);
    std::vector<int> places;
    for (Choice& choice : taken) {
        places.push_back(static_cast<int>(right_.size()));
        right_.push_back(std::move(choice));
    }
    return places;
}

std::vector<int> ChoiceLists::Remove(const std::vector<int>& rows, const Step& step) {
    Choices taken = Take(right_, rows, step);
    std::unordered_set<long> orders;
    for (const Choice& choice : taken) orders.insert(choice.order);
    PutLeft(std::move(taken));
    std::vector<int> places;
    for (std::size_t i = 0; i < left_.size(); ++i)
        if (orders.contains(left_[i].order)) places.push_back(static_cast<int>(i));
    return places;
}

Choices ChoiceLists::TakeLeft(const std::vector<int>& rows) { return Take(left_, rows, {}); }

Choices ChoiceLists::TakeRight(const std::vector<int>& rows) { return Take(right_, rows, {}); }

void ChoiceLists::PutLeft(Choices items) {
    std::ranges::sort(items, ByOrder);
    Choices merged;
    merged.reserve(left_.size() + items.size());
    std::ranges::merge(std::make_move_iterator(left_.begin()), std::make_move_iterator(left_.end()),
                       std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()),
                       std::back_inserter(merged), ByOrder);
    left_ = std::move(merged);
}

bool ChoiceLists::AddTyped(std::string_view text) {
    const auto isText = [&](const Choice& choice) { return choice.text == text; };
    if (std::ranges::any_of(right_, isText)) return false;
    const auto found = std::ranges::find_if(left_, isText);
    if (found == left_.end()) {
        right_.push_back({std::string(text), {}, nextOrder_++});
    } else {
        right_.push_back(std::move(*found));
        left_.erase(found);
    }
    return true;
}

std::vector<int> RowsWithTexts(const Choices& list, const std::vector<std::string>& texts) {
    const std::unordered_set<std::string_view> wanted(texts.begin(), texts.end());
    std::vector<int> rows;
    for (std::size_t i = 0; i < list.size(); ++i)
        if (wanted.contains(list[i].text)) rows.push_back(static_cast<int>(i));
    return rows;
}

Rows ShownChoices(const Choices& list) {
    std::unordered_set<std::string_view> seen;
    seen.reserve(list.size());
    Rows rows;
    rows.reserve(list.size());
    for (const Choice& choice : list) {
        std::string shown = GridCellText(choice.text);
        if (!seen.insert(choice.text).second) shown.append(" ").append(kDuplicate);
        rows.push_back({std::move(shown)});
    }
    return rows;
}

std::vector<std::string> TextsOf(const Choices& list) {
    std::vector<std::string> texts;
    texts.reserve(list.size());
    for (const Choice& choice : list) texts.push_back(choice.text);
    return texts;
}

ListSide SideOf(const Choices& list) {
    ListSide side{TextsOf(list), {}};
    side.keys.reserve(list.size());
    for (const Choice& choice : list) side.keys.push_back(choice.key);
    return side;
}

}  // namespace dialogs
