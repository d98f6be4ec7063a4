#include "dialogs/sequence.h"

#include <utility>

#include "dialogs/gridops.h"

namespace dialogs {
namespace {

enum Button { kUp = 1, kDown, kOK };
constexpr std::string_view kButtons = "&Up|Do&wn|&OK|&Cancel";
// As high as "6000|4000", with the selection of many rows.
constexpr std::string_view kSpec = "6000|4000|||||||||||||True";

void MoveRows(DialogModel& model, int button) {
    if (button == 0) return;
    Control& list = model.controls[1];
    std::vector<int> selected = list.Selected();
    MoveSelected(list.rows, selected, button == kUp ? Direction::Up : Direction::Down);
    list.Select(selected);
}

}  // namespace

std::optional<std::vector<std::string>> ShowSequence(const Desk& desk, std::string_view itemName,
                                                     const std::vector<std::string>& list) {
    Controls controls;
    Control& rows = controls[MBAddCtl("ListBox", {}, MBSpec(kSpec), controls)];
    rows.caption = itemName;
    rows.emptyText = "There is nothing to put in sequence.";
    for (const std::string& item : list) rows.rows.push_back({item});
    Box box;
    box.message = "Select Item and Press Up/Down to change sequence.";
    box.title = "- Sequence for " + std::string(itemName);
    box.buttons = kButtons;
    box.options = option::NoHide("1|2", true, true) + option::DfltButton(kOK);
    if (ShowMBStay(desk, box, controls, MoveRows).button != kOK) return std::nullopt;
    std::vector<std::string> ordered;
    for (std::vector<std::string>& row : controls[1].rows) ordered.push_back(row.empty() ? "" : std::move(row[0]));
    return ordered;
}

}  // namespace dialogs
