#include "dialogs/enabling.h"

#include <cstdlib>

#include "core/cds.h"
#include "core/numbers.h"

namespace dialogs {
namespace {

void ApplyList(const std::string& list, bool state, Controls& controls) {
    if (list.empty()) return;
    const core::StrArray items = core::CDSSplitPlain(list);
    for (const std::string& item : items.Items()) {
        if (item == "True" || item == "False") {
            state = item == "True";
            continue;
        }
        const int target = core::ToLong(core::fNum(item));
        if (target == 0 || std::abs(target) > controls.Count()) continue;
        controls[std::abs(target)].enabled = target > 0 ? state : !state;
    }
}

void ApplyType(ControlType type, const std::vector<std::string>& lists, Controls& controls) {
    std::size_t next = 0;
    for (int number = 1; number <= controls.Count() && next < lists.size(); ++number)
        if (controls[number].Is(type)) ApplyList(lists[next++], controls[number].Ticked(), controls);
}

}  // namespace

std::vector<std::string> FollowerLists(std::string_view text) {
    if (text.ends_with('|')) text.remove_suffix(1);  // what closes the last list opens no further one
    if (text.empty()) return {};
    const core::StrArray lists = core::CDSSplit(text, core::kBraceForm);
    return {lists.Items().begin(), lists.Items().end()};
}

void ApplyFollowers(const Followers& followers, Controls& controls) {
    ApplyType(ControlType::CheckBox, followers.checks, controls);
    ApplyType(ControlType::OptionButton, followers.options, controls);
}

}  // namespace dialogs
