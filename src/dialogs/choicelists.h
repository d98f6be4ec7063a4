#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/controls.h"
#include "dialogs/gridops.h"

// What can be chosen (left) and what has been chosen (right): the lists behind the two-list selection. No operation
// takes longer than a pass over both lists.
namespace dialogs {

// Texts and, when the caller has some, a hidden key for each.
struct ListSide {
    std::vector<std::string> texts{};
    std::vector<std::string> keys{};
};

struct Choice {
    std::string text{};
    std::string key{};
    long order = 0;  // its place on the left, one for each item
};
using Choices = std::vector<Choice>;

inline constexpr std::string_view kDuplicate = "**DUPL**";

class ChoiceLists {
public:
    using Step = std::function<void(std::size_t count)>;  // may throw: then nothing has changed

    ChoiceLists(const ListSide& left, const ListSide& right);

    const Choices& Left() const { return left_; }
    const Choices& Right() const { return right_; }

    // Rows of the left list to the end of the right one, rows of the right list back to their places on the left.
    // They give the rows where the items stand now.
    std::vector<int> Add(const std::vector<int>& rows, const Step& step = {});
    std::vector<int> Remove(const std::vector<int>& rows, const Step& step = {});
    // Takes rows out of both lists for good.
    Choices TakeLeft(const std::vector<int>& rows);
    Choices TakeRight(const std::vector<int>& rows);
    void PutLeft(Choices items);  // at their places
    // Appends a text to the right list; an item of the left list with this very text goes there itself. False: it is
    // on the right already.
    bool AddTyped(std::string_view text);
    void MoveRight(std::vector<int>& selected, Direction direction) { MoveSelected(right_, selected, direction); }

private:
    Choices left_{}, right_{};
    long nextOrder_ = 0;
};

// As shown: long texts cut, the second and further items of one text marked.
Rows ShownChoices(const Choices& list);
std::vector<int> RowsWithTexts(const Choices& list, const std::vector<std::string>& texts);
std::vector<std::string> TextsOf(const Choices& list);
ListSide SideOf(const Choices& list);

}  // namespace dialogs
