#pragma once

#include <string>

#include "dialogs/editlist.h"
#include "dialogs/showmb.h"

// The viewer of lists whose values can be longer than a line: a line in full, to the clipboard, the lines that hold a
// text. Nothing is changed on it.
namespace dialogs {

struct ValueList {
    std::string title{};
    std::string message{};
    std::string name{};                              // "" unless place and size are to be kept
    std::string emptyText{};                         // in the place of a list without rows
    ListRow headers{};                               // none: a list of one column
    std::string gridSpec = "12000|4500|||||True||";  // parted by "|"; the header row is seen to
    std::string extraButtons{};                      // a "|" list, in front of those of the viewer
    std::string helpId{};
};

// The number of the extra button that was pressed, 0: left. `selected` is a row, in and out; -1: none.
int ShowValueList(const Desk& desk, const ValueList& list, const Rows& rows, int& selected);

}  // namespace dialogs
