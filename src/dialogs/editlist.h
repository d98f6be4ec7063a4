#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/controls.h"
#include "dialogs/showmb.h"

// The screen that maintains a list: edit, copy, add, remove, put in sequence. It works on a copy of the list, so that
// Cancel brings back whatever was changed or removed.
namespace dialogs {

struct ListAllows {
    bool select = false;  // OK gives the selected items and wants one
    bool edit = true, copy = true, add = true, remove = true, move = true;
    bool sort = false, addLine = false;
};

using ListRow = std::vector<std::string>;
// Gives the changed (new) row, or nothing when there is none after all.
using RowAction = std::function<std::optional<ListRow>(const ListRow& row)>;

struct ListScreen {
    std::string title{};
    std::string item = "item";  // the singular word, in captions and questions
    std::string message{};      // above the usual text
    std::string name{};         // "" unless place and size are to be kept
    std::string helpId{};
    std::string emptyText{};  // "" makes one from the item's name and what is allowed
    ListAllows allows{};
    ListRow headers{};                               // EditGrid: one for each column
    std::string gridSpec = "12000|3500|||||True||";  // parted by "|"; the header row is seen to
    std::string delimiter = "tab";                   // between the columns of a typed row; "tab" is the tab character
    bool unique = false;                             // no two rows with the same first column, ignoring case
    int selected = -1;                               // on entry
    RowAction edit{}, copy{}, add{};                 // without one a text is asked
    std::function<bool(const ListRow& row)> isProtected{};
    // What is wrong with a new or changed row, "" when nothing is. `others` is the list without it.
    std::function<std::string(const ListRow& row, const Rows& others)> check{};
};

struct EditedRows {
    bool ok = false;
    bool changed = false;
    Rows rows{};  // as they came when cancelled
    std::vector<int> selected{};
};
struct EditedList {
    bool ok = false;
    bool changed = false;
    std::vector<std::string> items{};
    std::vector<int> selected{};
};
EditedRows EditGrid(const Desk& desk, const ListScreen& screen, Rows rows);
EditedList EditList(const Desk& desk, const ListScreen& screen, const std::vector<std::string>& items);

// Asks for one line until the check is content; nothing when cancelled or left empty.
std::optional<std::string> AskLine(const Desk& desk, std::string_view message, std::string_view otherwise,
                                   std::string_view title,
                                   const std::function<std::string(const std::string& text)>& check = {});
// Shows a text that a list had to cut. Of one above 30,000 bytes the first ones, after asking.
void ShowWholeText(const Desk& desk, std::string_view title, std::string_view item, std::string_view text);
Rows RowsOf(const std::vector<std::string>& items);
std::vector<std::string> ItemsOf(const Rows& rows);

}  // namespace dialogs
