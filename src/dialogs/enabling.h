#pragma once

#include <string_view>
#include <vector>

#include "dialogs/controls.h"

// Controls that follow the state of a check box or an option button.
namespace dialogs {

// One list for each CheckBox (OptionButton), in the order of the controls. An item is the number of a control in the
// control list: positive follows the box, negative does the reverse. The items "True" and "False" put a fixed state in
// the box's place for the items behind them.
struct Followers {
    std::vector<std::string> checks{};   // dDynamicEna_CheckAcs_SWithSQC
    std::vector<std::string> options{};  // dDynamicEna_OptionAcs_SWithSQC
};
// "{2|-3}|{4}|": one list in braces for each box.
std::vector<std::string> FollowerLists(std::string_view text);

// Sets `enabled` of every target by the boxes' values. Numbers of no control are left out.
void ApplyFollowers(const Followers& followers, Controls& controls);

}  // namespace dialogs
