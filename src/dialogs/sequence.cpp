#include "dialogs/sequence.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>

namespace dialogs {
namespace {

enum Button { kUp = 1, kDown, kOK };
constexpr std::string_view kButtons = "&Up|Do&wn|&OK|&Cancel";
// As high as "6000|4000", with the selection of many rows.
constexpr std::string_view kSpec = "6000|4000|||||||||||||True";

void MoveRows(Control& list, Move move) {
    std::vector<int> selected = list.Selected();
    Rows moved;
    moved.reserve(list.rows.size());
    for (const int row : MovedOrder(static_cast<int>(list.rows.size()), selected, move))
        moved.push_back(std::move(list.rows[static_cast<std::size_t>(row)]));
    list.rows = std::move(moved);
    list.Select(selected);
}

}  // namespace

std::vector<int> MovedOrder(int count, std::vector<int>& selected, Move move) {
    std::vector<int> order(static_cast<std::size_t>(std::max(0, count)));
    std::iota(order.begin(), order.end(), 0);
    const bool up = move == Move::Up;
    if (selected.empty() || selected.front() < (up ? 1 : 0) || selected.back() >= (up ? count : count - 1))
        return order;
    const auto swapWith = [&](int& row, int step) {
        std::swap(order[static_cast<std::size_t>(row)], order[static_cast<std::size_t>(row + step)]);
        row += step;
    };
    if (up)
        for (auto row = selected.begin(); row != selected.end(); ++row) swapWith(*row, -1);
    else
        for (auto row = selected.rbegin(); row != selected.rend(); ++row) swapWith(*row, 1);
    return order;
}

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
    DialogModel model = BuildModel(desk, box, std::move(controls));
    const std::unique_ptr<DialogWindow> window = desk.host.Open(model);
    Control& shown = model.controls[1];
    int button = window->Run();
    for (; button == kUp || button == kDown; button = window->Run()) {
        MoveRows(shown, button == kUp ? Move::Up : Move::Down);
        window->Update();
    }
    KeepLook(desk, model);
    if (button != kOK) return std::nullopt;
    std::vector<std::string> ordered;
    for (std::vector<std::string>& row : shown.rows) ordered.push_back(row.empty() ? "" : std::move(row[0]));
    return ordered;
}

}  // namespace dialogs
