#pragma once

#include <string>

#include "core/ports.h"
#include "dialogs/choicelists.h"
#include "dialogs/grouplists.h"
#include "dialogs/moverules.h"
#include "dialogs/showmb.h"

// The one screen on which something is selected from a long list: what can be chosen on the left, what has been chosen
// on the right.
namespace dialogs {

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
    std::string group{};  // the group that the right list holds; one that is not there yet is made
    IniEntry skipList{};  // texts that are never offered
    IniEntry filters{};   // saved filters
};

struct TwoListResult {
    int button = 0;
    bool ok = false;
    bool changed = false;
    ListSide left{}, right{};  // as they came when cancelled; keys parallel to texts, "" for typed values
};
// Groups, skip list and filters are saved on OK; when that fails the screen stays.
TwoListResult TwoListSelect(const Desk& desk, core::Progress& progress, const TwoListPlan& plan, ListSide left,
                            ListSide right);

}  // namespace dialogs
