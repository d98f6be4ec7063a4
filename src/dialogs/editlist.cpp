#include "dialogs/editlist.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "core/errnums.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/gridops.h"

namespace dialogs {
namespace {

constexpr std::string_view kListSpec = "8000|3500|||||True||||||||True";  // several rows can be selected
constexpr std::string_view kAskSpec = "10000||||||";
constexpr std::string_view kAskBigSpec = "12000|4000|||||";
constexpr std::string_view kCaptionSpec = "3000";
constexpr std::string_view kCutOff = ".... TRUNCATED due to error.";
constexpr int kFixedRowsPosition = 10;

// A box of one line holds no more than one.
std::string_view AskSpec(std::string_view text) {
    constexpr std::size_t kMostOfLine = 8000;  // bytes
    const bool large = text.size() > kMostOfLine || text.find_first_of("\r\n") != std::string_view::npos;
    return large ? kAskBigSpec : kAskSpec;
}

std::string DelimiterOf(const ListScreen& screen) { return screen.delimiter == "tab" ? "\t" : screen.delimiter; }

std::string Joined(const ListRow& row, std::string_view delimiter) {
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) text.append(i == 0 ? "" : delimiter).append(row[i]);
    return text;
}

// What is too much for the columns stays in the last one.
ListRow Parted(std::string_view text, std::string_view delimiter, std::size_t columns) {
    ListRow row;
    while (row.size() + 1 < columns) {
        const core::Token token = core::fNextToken(text, delimiter);
        if (!token.found) break;
        row.push_back(token.text);
    }
    row.emplace_back(text);
    row.resize(std::max(columns, row.size()));
    return row;
}

class Screen {
public:
    Screen(const Desk& desk, const ListScreen& screen, Rows rows, bool grid)
        : desk_(desk), screen_(screen), start_(std::move(rows)), rows_(start_), grid_(grid) {}

    EditedRows Run();

private:
    struct Act {
        std::string_view caption;
        bool ListAllows::*allowed;
        bool named;  // the item's name goes behind the caption
        bool needsSelection;
        void (Screen::*run)();
    };
    static const std::array<Act, 8> kActs;

    std::string Columns() const { return grid_ ? ", seperate columns with " + screen_.delimiter : ""; }
    std::size_t ColumnCount() const;
    std::string Caption(const Act& act) const;
    std::string Text() const;
    std::string EmptyText() const;
    std::string Buttons();
    DialogModel Model();
    Rows Shown() const;
    std::size_t Current() const { return static_cast<std::size_t>(selected_.front()); }

    std::string Problem(const ListRow& row, std::optional<std::size_t> without) const;
    std::optional<ListRow> Asked(const std::string& message, const ListRow& start) const;
    std::optional<ListRow> AskedCells(const ListRow& start) const;
    std::optional<ListRow> NewRow(const RowAction& action, const ListRow& start);
    bool Accepted(const std::optional<ListRow>& row, std::optional<std::size_t> without) const;
    void Insert(std::size_t at, ListRow row);

    void Edit();
    void Copy();
    void New();
    void Remove();
    void Up() { Move(Direction::Up); }
    void Down() { Move(Direction::Down); }
    void Move(Direction direction) { MoveSelected(rows_, selected_, direction); }
    void Sort();
    void AddLine();
    bool Do(const Act& act);

    const Desk& desk_;
    const ListScreen& screen_;
    const Rows start_;
    Rows rows_;
    bool grid_;
    std::vector<int> selected_{};
    std::vector<const Act*> shownActs_{};  // in the order of the buttons behind OK
    int list_ = 0;                         // the control's number
};

const std::array<Screen::Act, 8> Screen::kActs{{
    {"Edi&t ", &ListAllows::edit, true, true, &Screen::Edit},
    {"Cop&y ", &ListAllows::copy, true, true, &Screen::Copy},
    {"&New ", &ListAllows::add, true, false, &Screen::New},
    {"R&emove ", &ListAllows::remove, true, true, &Screen::Remove},
    {"Move &Up", &ListAllows::move, false, true, &Screen::Up},
    {"Move Do&wn", &ListAllows::move, false, true, &Screen::Down},
    {"&Sort", &ListAllows::sort, false, false, &Screen::Sort},
    {"&Add Line", &ListAllows::addLine, false, false, &Screen::AddLine},
}};

std::size_t Screen::ColumnCount() const {
    std::size_t count = std::max<std::size_t>(1, screen_.headers.size());
    if (screen_.headers.empty())
        for (const ListRow& row : rows_) count = std::max(count, row.size());
    return count;
}

std::string Screen::Caption(const Act& act) const {
    return std::string(act.caption).append(act.named ? core::fReplace(screen_.item, "&", "&&") : "");
}

std::string Screen::Text() const {
    std::string text = screen_.message, buttons;
    const auto line = [&](const std::string& more) { text.append(text.empty() ? "" : "\r").append(more); };
    if (screen_.allows.select) line("Select " + screen_.item + " and press OK.");
    for (const Act* act : shownActs_)
        if (act->named) buttons.append(buttons.empty() ? "" : ", ").append(core::fTrim(PlainCaption(act->caption)));
    if (!buttons.empty()) line("Use " + buttons + " to change or add " + screen_.item + ".");
    if (screen_.allows.move) line("Up and Down will change the sequence on this list.");
    const auto hint = [](const ListRow& row) { return !LongTextHint(row).empty(); };
    const auto longRow = std::ranges::find_if(rows_, hint);
    if (longRow != rows_.end()) line(LongTextHint(*longRow));
    return text;
}

std::string Screen::EmptyText() const {
    if (!screen_.emptyText.empty()) return screen_.emptyText;
    const std::string none = "No " + screen_.item + " yet.";
    return screen_.allows.add ? none + " Press New " + screen_.item + " to add one." : none;
}

std::string Screen::Buttons() {
    std::string buttons;
    MBAddBtn("&OK", buttons);
    for (const Act& act : kActs) {
        if (!(screen_.allows.*act.allowed)) continue;
        MBAddBtn(Caption(act), buttons);
        shownActs_.push_back(&act);
    }
    MBAddBtn("&Cancel", buttons);
    return buttons;
}

Rows Screen::Shown() const {
    Rows shown;
    shown.reserve(rows_.size() + 1);
    if (grid_) shown.push_back(screen_.headers);
    for (const ListRow& row : rows_) {
        ListRow& cells = shown.emplace_back();
        for (const std::string& cell : row) cells.push_back(GridCellText(cell));
    }
    return shown;
}

DialogModel Screen::Model() {
    Box box;
    box.title = screen_.title;
    box.name = screen_.name;
    box.helpId = screen_.helpId;
    box.buttons = Buttons();
    box.message = Text();
    box.options = option::MaxBpl(4);
    const auto edit = std::ranges::find(shownActs_, &kActs[0]);
    if (!screen_.allows.select && edit != shownActs_.end())
        box.defaultNo = 2 + static_cast<int>(edit - shownActs_.begin());
    Controls controls;
    list_ = MBAddCtl(grid_ ? "Grid" : "ListBox", "", MBSpec(grid_ ? screen_.gridSpec : std::string(kListSpec)),
                     controls, Shown());
    if (grid_) controls[list_].spec.Set(kFixedRowsPosition, "1");
    controls[list_].caption = screen_.item + "s";
    controls[list_].emptyText = EmptyText();
    if (screen_.selected >= 0) controls[list_].Select({screen_.selected});
    DialogModel model = BuildModel(desk_, box, std::move(controls));
    model.options.stays = true;
    return model;
}

// What is wrong with a row that is to stand beside the others.
std::string Screen::Problem(const ListRow& row, std::optional<std::size_t> without) const {
    const auto isSame = [&](const ListRow& other) {
        const std::string_view name = other.empty() ? std::string_view() : std::string_view(other[0]);
        return core::fEquals(name, row.empty() ? "" : row[0], core::Case::Ignore);
    };
    if (screen_.unique)
        for (std::size_t i = 0; i < rows_.size(); ++i)
            if (i != without && isSame(rows_[i])) return "\"" + row[0] + "\" is in the list already.";
    if (!screen_.check) return {};
    Rows others = rows_;
    if (without) others.erase(others.begin() + static_cast<std::ptrdiff_t>(*without));
    return screen_.check(row, others);
}

// A row typed as one line.
std::optional<ListRow> Screen::Asked(const std::string& message, const ListRow& start) const {
    const std::string delimiter = DelimiterOf(screen_);
    const auto rowOf = [&](std::string_view text) {
        return grid_ ? Parted(text, delimiter, ColumnCount()) : ListRow{std::string(text)};
    };
    const auto text = AskLine(desk_, message, Joined(start, delimiter), screen_.title,
                              [&](const std::string& typed) { return Problem(rowOf(typed), std::nullopt); });
    if (!text) return std::nullopt;
    return rowOf(*text);
}

// A box for each cell, so that a cell may hold the delimiter.
std::optional<ListRow> Screen::AskedCells(const ListRow& start) const {
    Controls controls;
    std::vector<int> boxes;
    const std::size_t columns = grid_ ? ColumnCount() : 1;
    for (std::size_t i = 0; i < columns; ++i) {
        const std::string caption = i < screen_.headers.size() ? screen_.headers[i] : screen_.item;
        if (grid_) MBAddCtl("Label", caption, MBSpec(kCaptionSpec), controls);
        const std::string text = i < start.size() ? start[i] : "";
        boxes.push_back(MBAddCtl(grid_ ? "TextBox_" : "TextBox", text, MBSpec(AskSpec(text)), controls));
        controls[boxes.back()].caption = caption;
    }
    const auto rowOf = [&](const Controls& filled) {
        ListRow row;
        for (const int box : boxes) row.push_back(filled[box].value);
        return row;
    };
    const auto check = [&](Controls& filled, int) { return Problem(rowOf(filled), Current()); };
    Box box;
    box.message = "Change " + screen_.item + ":";
    box.buttons = "1";
    box.title = screen_.title;
    if (ShowMBRepeat(desk_, box, controls, check).Cancelled()) return std::nullopt;
    return rowOf(controls);
}

std::optional<ListRow> Screen::NewRow(const RowAction& action, const ListRow& start) {
    if (!action) return Asked("Enter item to add" + Columns(), start);
    std::optional<ListRow> row = action(start);
    if (!Accepted(row, std::nullopt)) return std::nullopt;
    return row;
}

// Tells what is wrong with a row that an action made.
bool Screen::Accepted(const std::optional<ListRow>& row, std::optional<std::size_t> without) const {
    if (!row) return false;
    const std::string problem = Problem(*row, without);
    if (!problem.empty()) ShowMsg(desk_, problem, screen_.title);
    return problem.empty();
}

void Screen::Insert(std::size_t at, ListRow row) {
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(at), std::move(row));
    selected_ = {static_cast<int>(at)};
}

void Screen::Edit() {
    const std::size_t at = Current();
    std::optional<ListRow> row = screen_.edit ? screen_.edit(rows_[at]) : AskedCells(rows_[at]);
    if (screen_.edit && !Accepted(row, at)) return;
    if (row) rows_[at] = *std::move(row);
    selected_ = {static_cast<int>(at)};
}

void Screen::Copy() {
    const std::size_t at = Current();
    if (auto row = NewRow(screen_.copy, rows_[at])) Insert(at + 1, *std::move(row));
}

void Screen::New() {
    if (auto row = NewRow(screen_.add, {})) Insert(rows_.size(), *std::move(row));
}

// In front of the selected line, or at the end.
void Screen::AddLine() {
    const std::size_t at = selected_.empty() ? rows_.size() : Current();
    if (auto row = Asked("Enter item to add" + Columns(), {})) Insert(at, *std::move(row));
}

void Screen::Remove() {
    std::vector<bool> gone(rows_.size());
    for (const int row : selected_) {
        const auto at = static_cast<std::size_t>(row);
        if (screen_.isProtected && screen_.isProtected(rows_[at])) {
            ShowMsg(desk_, "Not allowed to delete " + screen_.item + ".\r" + Joined(rows_[at], " "), screen_.title);
            return;
        }
        gone[at] = true;
    }
    const std::size_t first = Current();
    Rows kept;
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (!gone[i]) kept.push_back(std::move(rows_[i]));
    rows_ = std::move(kept);
    selected_.clear();
    if (!rows_.empty()) selected_ = {static_cast<int>(std::min(first, rows_.size() - 1))};
}

void Screen::Sort() {
    const std::vector<int> places = SortRows(rows_, 0, RowOrder::Text);
    std::vector<int> followed;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (std::ranges::binary_search(selected_, places[i])) followed.push_back(static_cast<int>(i));
    selected_ = std::move(followed);
}

// False: nothing was done, since nothing is selected.
bool Screen::Do(const Act& act) {
    if (act.needsSelection && selected_.empty()) {
        const std::string button(core::fTrim(PlainCaption(act.caption)));
        ShowMsg(desk_, "Select a " + screen_.item + " and press " + button + " again.", screen_.title);
        return false;
    }
    (this->*act.run)();
    return true;
}

EditedRows Screen::Run() {
    DialogModel model = Model();
    const int cancel = model.ButtonCount();
    const std::unique_ptr<DialogWindow> window = desk_.host.Open(model);
    for (;;) {
        const int button = window->Run();
        selected_ = model.controls[list_].Selected();
        if (button == cancel) {
            KeepLook(desk_, model);
            return {false, false, start_, {}};
        }
        if (button == 1 && (!screen_.allows.select || !selected_.empty())) {
            KeepLook(desk_, model);
            return {true, rows_ != start_, std::move(rows_), selected_};
        }
        if (button == 1) {
            ShowMsg(desk_, "Select a " + screen_.item + " and press OK again.", screen_.title);
        } else if (Do(*shownActs_[static_cast<std::size_t>(button - 2)])) {
            model.controls[list_].rows = Shown();
            model.controls[list_].Select(selected_);
        }
        window->Update();
    }
}

}  // namespace

EditedRows EditGrid(const Desk& desk, const ListScreen& screen, Rows rows) {
    return Screen(desk, screen, std::move(rows), true).Run();
}

EditedList EditList(const Desk& desk, const ListScreen& screen, const std::vector<std::string>& items) {
    EditedRows edited = Screen(desk, screen, RowsOf(items), false).Run();
    return {edited.ok, edited.changed, ItemsOf(edited.rows), std::move(edited.selected)};
}

std::optional<std::string> AskLine(const Desk& desk, std::string_view message, std::string_view otherwise,
                                   std::string_view title,
                                   const std::function<std::string(const std::string& text)>& check) {
    Controls controls;
    const int number = MBAddCtl("TextBox", otherwise, MBSpec(AskSpec(otherwise)), controls);
    controls[number].caption = message;
    Box box;
    box.message = message;
    box.buttons = "1";
    box.title = title;
    const auto checkBox = [&](Controls& filled, int) {
        const std::string& text = filled[number].value;
        return check && !text.empty() ? check(text) : std::string();
    };
    if (ShowMBRepeat(desk, box, controls, checkBox).Cancelled() || controls[number].value.empty()) return std::nullopt;
    return controls[number].value;
}

void ShowWholeText(const Desk& desk, std::string_view title, std::string_view item, std::string_view text) {
    Box box;
    box.title = title;
    std::string shown(text);
    if (text.size() > kMostInCell) {
        box.message = "Error " + std::to_string(core::errnum::kValueTooLong) +
                      " when try to show that item. Press OK to attempt to show only the first 30,000 bytes";
        box.buttons = "1";
        if (ShowMB(desk, box).Cancelled()) return;
        shown = std::string(core::CutUtf8(text, kMostInCell)).append(kCutOff);
    }
    Controls controls;
    const int number = MBAddCtl("TextBox", shown, MBSpec("12000|8000|||||"), controls);
    controls[number].readOnly = true;
    controls[number].caption = item;
    box.message.clear();
    box.buttons = "0";
    ShowMB(desk, box, controls);
}

Rows RowsOf(const std::vector<std::string>& items) {
    Rows rows;
    rows.reserve(items.size());
    for (const std::string& item : items) rows.push_back({item});
    return rows;
}

std::vector<std::string> ItemsOf(const Rows& rows) {
    std::vector<std::string> items;
    items.reserve(rows.size());
    for (const auto& row : rows) items.push_back(row.empty() ? std::string() : row[0]);
    return items;
}

}  // namespace dialogs
