#include "logdefs/enginesequence.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "dialogs/editlist.h"
#include "dialogs/gridops.h"
#include "logdefs/enginedefs.h"

namespace logdefs {
namespace {

using Definitions = std::vector<std::string>;

constexpr std::string_view kSpec = "9000|4500|||||True||||||||True";  // several rows can be selected
constexpr int kList = 1;
enum Button { kUp = 1, kDown, kSort, kOther, kBack };

struct Group {
    std::string_view heading;
    std::string_view other;  // turns to the other list
};
constexpr std::array<Group, 2> kGroups{{
    {"General Domain defs [google.*, yahoo.*, etc.]", "ReSequence Specific Do&main Defs"},
    {"Specific Domain defs [duckduckgo.com, baidu.com, etc.]", "ReSequence General Do&main Defs"},
}};

void Arrange(dialogs::Control& list, int button) {
    std::vector<int> selected = list.Selected();
    if (button == kSort) {
        dialogs::SortRows(list.rows, 0, dialogs::RowOrder::Text);
        selected.clear();
    } else {
        dialogs::MoveSelected(list.rows, selected, button == kUp ? dialogs::Direction::Up : dialogs::Direction::Down);
    }
    list.Select(selected);
}

// Shows one of the lists; gives the button that ended it.
int ShowGroup(const dialogs::Desk& desk, const Group& group, Definitions& definitions) {
    dialogs::Controls controls;
    dialogs::MBAddCtl("ListBox", "", dialogs::MBSpec(kSpec), controls, dialogs::RowsOf(definitions));
    controls[kList].caption = "Definitions in their order of match";
    controls[kList].emptyText = "There is no such definition.";
    dialogs::Box box;
    box.message = std::string(group.heading) +
                  "\r\rThe first definition that matches a referrer and finds a term is used; general definitions come "
                  "before specific ones.\rSelect Item and Press Up/Down to change sequence.";
    box.title = "SE Referrer Strings Definitions";
    box.buttons = std::string("&Up|Do&wn|&Sort|").append(group.other).append("|&Back to definitions|&Cancel");
    box.options = dialogs::option::NoHide("1|2|3", true, true) + dialogs::option::MaxBpl(3);
    box.defaultNo = kBack;
    box.name = "SEDefsSequence";
    box.helpId = "SEDefs";
    const auto act = [](dialogs::DialogModel& model, int button) {
        if (button != 0) Arrange(model.controls[kList], button);
    };
    const int button = dialogs::ShowMBStay(desk, box, controls, act).button;
    definitions = dialogs::ItemsOf(controls[kList].rows);
    return button;
}

}  // namespace

bool SEDefsSequence(const dialogs::Desk& desk, std::vector<std::string>& definitions) {
    std::array<Definitions, 2> lists;
    for (const std::string& definition : definitions) lists[SEDefIsGeneral(definition) ? 0 : 1].push_back(definition);
    std::size_t shown = 0;
    for (;;) {
        const int button = ShowGroup(desk, kGroups[shown], lists[shown]);
        if (button == kOther) {
            shown = 1 - shown;
        } else if (button == kBack) {
            definitions = std::move(lists[0]);
            std::ranges::move(lists[1], std::back_inserter(definitions));
            return true;
        } else {
            return false;
        }
    }
}

}  // namespace logdefs
