#include "dialogs/valuelist.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "core/text.h"
#include "dialogs/gridops.h"

namespace dialogs {
namespace {

constexpr std::string_view kFindSpec = "6000|||||";
constexpr std::string_view kListSpec = "12000|4500|||||True||";
constexpr std::string_view kButtons = "Sho&w Line in full|&Copy Line to Clipboard|&Next|&Prev|&Done";
enum Act { kShow = 1, kCopy, kNext, kPrev, kDone };  // behind the extra buttons
constexpr int kFixedRowsPosition = 10;
constexpr int kFind = 2, kList = 3;  // numbers of the controls

class Viewer {
public:
    Viewer(const Desk& desk, const ValueList& list, const Rows& rows) : desk_(desk), list_(list), rows_(rows) {}

    int Run(int& selected);

private:
    bool IsGrid() const { return !list_.headers.empty(); }
    Rows Shown() const;
    DialogModel Model(int selected);
    void Do(int act, DialogModel& model);
    std::optional<int> Selected(const DialogModel& model) const;
    void ShowWhole(int row) const;
    void Copy(int row) const;
    void Step(DialogModel& model, Direction direction);
    std::optional<int> NextOf(const std::vector<int>& found, std::optional<int> from, Direction direction) const;
    std::vector<int> Holding(const std::string& text);
    bool Restart(Direction direction) const;

    const Desk& desk_;
    const ValueList& list_;
    const Rows& rows_;
    std::unique_ptr<RowFinder> finder_{};  // made when it is needed
    int extras_ = 0;
};

Rows Viewer::Shown() const {
    Rows shown;
    shown.reserve(rows_.size() + 1);
    if (IsGrid()) shown.push_back(list_.headers);
    for (const ListRow& row : rows_) {
        ListRow& cells = shown.emplace_back();
        for (const std::string& cell : row) cells.push_back(GridCellText(cell));
    }
    return shown;
}

DialogModel Viewer::Model(int selected) {
    Controls controls;
    MBAddCtl("Label", "Find:", "", controls);
    MBAddCtl("TextBox_", "", MBSpec(kFindSpec), controls);
    controls[kFind].caption = "Find";
    controls[kFind].hint = "Next and Prev go to the lines that hold this text";
    MBAddCtl(IsGrid() ? "Grid" : "ListBox", "", MBSpec(IsGrid() ? std::string_view(list_.gridSpec) : kListSpec),
             controls, Shown());
    Control& list = controls[kList];
    if (IsGrid()) list.spec.Set(kFixedRowsPosition, "1");
    list.caption = list_.title;
    list.emptyText = list_.emptyText;
    if (selected >= 0 && static_cast<std::size_t>(selected) < rows_.size()) list.Select({selected});
    Box box;
    box.title = list_.title;
    box.message = list_.message;
    box.name = list_.name;
    box.helpId = list_.helpId;
    box.buttons = list_.extraButtons;
    extras_ = box.buttons.empty() ? 0 : static_cast<int>(ButtonsOf(box.buttons).captions.size());
    box.buttons.append(box.buttons.empty() ? "" : "|").append(kButtons);
    box.options = option::MaxBpl(extras_ > 0 ? 4 : 5);
    box.defaultNo = extras_ > 0 ? 1 : kShow;
    box.escNo = extras_ + kDone;
    DialogModel model = BuildModel(desk_, box, std::move(controls));
    model.options.stays = true;
    return model;
}

std::optional<int> Viewer::Selected(const DialogModel& model) const {
    const std::vector<int> rows = model.controls[kList].Selected();
    if (rows.empty() || rows.front() < 0 || static_cast<std::size_t>(rows.front()) >= rows_.size()) return std::nullopt;
    return rows.front();
}

// All of a line; of a grid each cell under its header.
void Viewer::ShowWhole(int row) const {
    const ListRow& cells = rows_[static_cast<std::size_t>(row)];
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) text.append("\r\n\r\n");
        if (IsGrid() && i < list_.headers.size()) text.append(list_.headers[i]).append(":\r\n");
        text.append(cells[i]);
    }
    ShowWholeText(desk_, list_.title, "Line in full", text);
}

void Viewer::Copy(int row) const {
    const ListRow& cells = rows_[static_cast<std::size_t>(row)];
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) text.append(i == 0 ? "" : "\t").append(cells[i]);
    if (!desk_.host.CopyText(text)) ShowMsg(desk_, "The line could not be copied to the clipboard.", list_.title);
}

std::vector<int> Viewer::Holding(const std::string& text) {
    if (!finder_) finder_ = std::make_unique<RowFinder>(rows_);
    return finder_->Matching(text);
}

std::optional<int> Viewer::NextOf(const std::vector<int>& found, std::optional<int> from, Direction direction) const {
    if (!from) return direction == Direction::Down ? found.front() : found.back();
    if (direction == Direction::Down) {
        const auto at = std::ranges::upper_bound(found, *from);
        if (at == found.end()) return std::nullopt;
        return *at;
    }
    const auto at = std::ranges::lower_bound(found, *from);
    if (at == found.begin()) return std::nullopt;
    return *(at - 1);
}

bool Viewer::Restart(Direction direction) const {
    Box box;
    box.message = direction == Direction::Down ? "No More. Restart at top?" : "No More. Restart at end?";
    box.buttons = "&Yes|&No";
    box.title = list_.title;
    box.escNo = 2;
    return ShowMB(desk_, box).button == 1;
}

void Viewer::Step(DialogModel& model, Direction direction) {
    const std::string text(core::fTrim(model.controls[kFind].value));
    const std::vector<int> found = Holding(text);
    if (found.empty()) {
        ShowMsg(desk_, text.empty() ? "The list is empty." : "No line holds: " + GridCellText(text, 200), list_.title);
        return;
    }
    std::optional<int> row = NextOf(found, Selected(model), direction);
    if (!row && Restart(direction)) row = NextOf(found, std::nullopt, direction);
    if (row) model.controls[kList].Select({*row});
}

void Viewer::Do(int act, DialogModel& model) {
    if (act == kNext || act == kPrev) {
        Step(model, act == kNext ? Direction::Down : Direction::Up);
        return;
    }
    const std::optional<int> row = Selected(model);
    if (!row) {
        ShowMsg(desk_, "Select a line first.", list_.title);
    } else if (act == kShow) {
        ShowWhole(*row);
    } else {
        Copy(*row);
    }
}

int Viewer::Run(int& selected) {
    DialogModel model = Model(selected);
    const std::unique_ptr<DialogWindow> window = desk_.host.Open(model);
    for (;;) {
        const int button = window->Run();
        if (button <= extras_ || button == extras_ + kDone) {
            KeepLook(desk_, model);
            selected = Selected(model).value_or(-1);
            return button <= extras_ ? button : 0;
        }
        Do(button - extras_, model);
        window->Update();
    }
}

}  // namespace

int ShowValueList(const Desk& desk, const ValueList& list, const Rows& rows, int& selected) {
    return Viewer(desk, list, rows).Run(selected);
}

}  // namespace dialogs
