#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/controls.h"
#include "dialogs/tablearray.h"

// What lists and grids do to their rows, whoever shows them.
namespace dialogs {

// Text: ignoring case, then by bytes. Number: the number a cell begins with, commas between digits left out.
enum class RowOrder { Text, Number };
enum class Direction { Up, Down };
double CellNumber(std::string_view cell);

// Sorts all rows but the first `fixedRows` by a column; equal rows keep their order. Gives for each new row where it
// was.
std::vector<int> SortRows(Rows& rows, int column, RowOrder order, Direction direction = Direction::Up,
                          int fixedRows = 0);

// Cells from the first to the last of each, both included; rows counted with the headers.
struct CellRange {
    int top = 0, left = 0, bottom = 0, right = 0;
};
// Tab-separated lines for the clipboard, the headers of the columns first. Tabs and line ends in cells become blanks.
std::string CopyText(const Rows& rows, CellRange range, int fixedRows);
std::string CopyRows(const Rows& rows, const std::vector<int>& selected, int fixedRows);  // whole rows, not the headers
TableArray TableOf(const Rows& rows);
TableArray TableOf(const Rows& rows, CellRange range);

// Finds rows that hold a text, ignoring case. Made once for rows that stay: texts are folded in advance.
class RowFinder {
public:
    explicit RowFinder(const Rows& rows, int fixedRows = 0);

    // Rows (headers not counted), ascending. "" is in all of them.
    std::vector<int> Matching(std::string_view text) const;
    // The first at or behind `from`, then from the top; nothing when no row holds it.
    std::optional<int> Next(std::string_view text, int from) const;

private:
    std::size_t Find(const std::string& folded, std::size_t from) const;

    std::string text_{};                 // all cells, folded, each with an end mark that no text holds
    std::vector<std::size_t> starts_{};  // of each row, and the end
};

// What a cell holds at most; Ctrl+Z shows all of it.
inline constexpr std::size_t kMostInCell = 30000;  // bytes
inline constexpr std::string_view kTruncated = "[TEXT TRUNCATED] ...";
// A text cut for a cell or a message that takes no more than `most` bytes.
std::string GridCellText(std::string_view text, std::size_t most = kMostInCell);
// How to see texts that a list cannot show whole; "" when there are none.
std::string LongTextHint(const std::vector<std::string>& texts);

// Moves the selected items by one place, all in one step; those at the end stay. `selected` follows.
template <typename Item>
void MoveSelected(std::vector<Item>& items, std::vector<int>& selected, Direction direction) {
    std::vector<bool> chosen(items.size() + 2);  // with a mark before the first and behind the last
    chosen.front() = chosen.back() = true;
    for (const int row : selected)
        if (row >= 0 && static_cast<std::size_t>(row) < items.size()) chosen[static_cast<std::size_t>(row) + 1] = true;
    const auto move = [&](std::size_t from, std::size_t to) {
        if (!chosen[from] || chosen[to]) return;
        std::swap(items[from - 1], items[to - 1]);
        chosen[from] = false;
        chosen[to] = true;
    };
    for (std::size_t i = 1; i <= items.size(); ++i) {
        const std::size_t from = direction == Direction::Up ? i : items.size() + 1 - i;
        move(from, direction == Direction::Up ? from - 1 : from + 1);
    }
    selected.clear();
    for (std::size_t i = 1; i <= items.size(); ++i)
        if (chosen[i]) selected.push_back(static_cast<int>(i) - 1);
}

}  // namespace dialogs
