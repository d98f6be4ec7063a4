#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/ports.h"
#include "dialogs/choicelists.h"
#include "dialogs/grouplists.h"
#include "dialogs/moverules.h"
#include "dialogs/showmb.h"

// The one screen on which something is selected from a long list: what can be chosen on the left, what has been chosen
// on the right.
namespace dialogs {

// The lists as they stand. On the left are those, too, that the skip list keeps away.
struct TwoListState {
    ListSide left{}, right{};
    std::vector<std::string> skip{};
};
// A button of the caller's. True: `left` or `right` was changed and is shown so.
struct TwoListButton {
    std::string caption{};
    std::function<bool(TwoListState& state)> run{};
};

struct TwoListPlan {
    std::string title{};
    std::string item = "item";  // the singular word, in captions and questions
    std::string listName{};     // "Select from " this
    std::string message{};      // above the usual text
    std::string name{};         // "" unless place and size are to be kept
    std::string helpId{};
    std::string emptyLeft{}, emptyRight{};  // what an empty list tells to do next
    bool sequence = true;                   // the right list has an order of its own
    bool manualAdd = true;                  // values can be typed
    IniEntry maxNo{"Main", ""};             // the most items on the right; without an entry there is no limit
    GroupPlace groups{};
    std::string group{};                   // the group that the right list holds; one that is not there yet is made
    IniEntry skipList{};                   // texts that are never offered
    IniEntry filters{};                    // saved filters
    bool showKeys = false;                 // in brackets behind the texts
    std::vector<TwoListButton> buttons{};  // in front of OK
    std::string optionsText{};             // over `options`
    std::vector<std::string> options{};    // captions, one of which is ticked
    int option = 0;                        // on entry, from 0
    // Called on OK; false: the screen stays.
    std::function<bool(const ListSide& right, int option)> mayEnd{};
};

struct TwoListResult {
    int button = 0;
    bool ok = false;
    bool changed = false;
    ListSide left{}, right{};  // as they came when cancelled; keys parallel to texts, "" for typed values
    int option = 0;
};
// Groups, skip list and filters are saved on OK; when that fails the screen stays.
TwoListResult TwoListSelect(const Desk& desk, core::Progress& progress, const TwoListPlan& plan, ListSide left,
                            ListSide right);

}  // namespace dialogs
