#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The controls of a dialog as data: a type, a spec of positions, a value in and out. Specs are texts that also stand in
// parameter files, so what a position means must not change.
namespace dialogs {

enum class ControlType { Label, TextBox, CheckBox, OptionButton, ComboBox, ListBox, Grid, CommandButton, Line, Shape };
inline constexpr std::string_view kSpecDelim = "|~~|";
inline constexpr int kTwipsPerInch = 1440;

// Turns the top-level "|" of a spec into "|~~|"; lists in braces keep theirs.
std::string MBSpec(std::string_view spec);

// The positions of a spec, 1-based; an empty text where nothing was given. Sizes are twips.
class ControlSpec {
public:
    ControlSpec() = default;
    explicit ControlSpec(std::string_view spec);  // parted by "|~~|"

    std::string_view At(int position) const;
    void Set(int position, std::string_view text);
    std::string Text() const;  // parted by "|~~|"

    int Number(int position, int otherwise = 0) const;
    bool True(int position) const { return At(position) == "True"; }
    std::vector<int> Numbers(int position) const;  // of a list in braces

    int Width() const { return std::max(0, Number(1)); }   // 0: as wide as what it shows
    int Height() const { return std::max(0, Number(2)); }  // 0: one line, a list as many rows as fit

private:
    std::vector<std::string> positions_{};
};

// Rows of cells. Of a Grid the first `FixedRows` rows are headers.
using Rows = std::vector<std::vector<std::string>>;

// What a path is picked for; the host puts its file picker beside such a box.
enum class Pick { None, OpenFile, OpenFiles, SaveFile, Folder };

// In and out of `value`:
//   Label, CommandButton: the text or caption. TextBox: the text. CheckBox, OptionButton: "True" or "False".
//   ComboBox: 0-based index, "|" and the text (-1 for a text of its own); on entry the text alone will do.
//   ListBox, Grid: 0-based selected row (headers not counted) or -1; with MultiSelect a "|" list of rows, "" for none.
//   Line, Shape: nothing.
struct Control {
    ControlType type = ControlType::Label;
    bool sameLine = false;  // the type was written with "_" behind it
    ControlSpec spec{};
    std::string value{};
    Rows rows{};              // of a list, a combo box (one cell a row) or a grid
    std::string caption{};    // of a CheckBox or OptionButton; of others the name that a screen reader says
    std::string emptyText{};  // what a list without rows tells to do next
    std::string hint{};       // shown beside the pointer, and in an empty TextBox
    Pick pick = Pick::None;   // TextBox alone
    bool enabled = true;
    bool readOnly = false;  // TextBox, ComboBox: ComboBox takes no text of its own

    bool Is(ControlType which) const { return type == which; }
    bool MultiSelect() const { return Is(ControlType::ListBox) && spec.True(15); }
    int FixedRows() const { return Is(ControlType::Grid) ? std::max(0, spec.Number(10)) : 0; }
    int FixedCols() const { return Is(ControlType::Grid) ? std::max(0, spec.Number(11)) : 0; }
    std::vector<int> Selected() const;  // rows of `value`, ascending
    void Select(const std::vector<int>& rowsSelected);
    bool Ticked() const { return value == "True"; }
    std::string ComboText() const;  // behind the index, or all of it when there is none
};

// A dialog's controls, 1-based as the entries of a parameter file name them.
class Controls {
public:
    int Count() const { return static_cast<int>(list_.size()); }
    Control& operator[](int number);  // 9711 outside
    const Control& operator[](int number) const;
    Control& Add(Control control) { return list_.emplace_back(std::move(control)); }
    void Clear() { list_.clear(); }
    std::vector<Control>& All() { return list_; }
    const std::vector<Control>& All() const { return list_; }

private:
    std::vector<Control> list_{};
};

// Appends a control; `type` may end in "_". `spec` is parted by "|~~|" (see MBSpec). Gives the new entry's number; an
// unknown type raises 9710.
int MBAddCtl(std::string_view type, std::string_view value, std::string_view spec, Controls& controls, Rows rows = {});
// Appends a caption to a button list and gives its number.
int MBAddBtn(std::string_view caption, std::string& buttons);
std::string_view TypeName(ControlType type);
std::optional<ControlType> TypeOf(std::string_view name);  // without "_"

}  // namespace dialogs
