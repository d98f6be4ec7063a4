#include "dialogs/controls.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "core/cds.h"
#include "core/errnums.h"
#include "core/error.h"
#include "core/numbers.h"
#include "core/text.h"

namespace dialogs {
namespace {

struct TypeRow {
    ControlType type;
    std::string_view name;
};
constexpr std::array kTypes{
    TypeRow{ControlType::Label, "Label"},       TypeRow{ControlType::TextBox, "TextBox"},
    TypeRow{ControlType::CheckBox, "CheckBox"}, TypeRow{ControlType::OptionButton, "OptionButton"},
    TypeRow{ControlType::ComboBox, "ComboBox"}, TypeRow{ControlType::ListBox, "ListBox"},
    TypeRow{ControlType::Grid, "Grid"},         TypeRow{ControlType::CommandButton, "CommandButton"},
    TypeRow{ControlType::Line, "Line"},         TypeRow{ControlType::Shape, "Shape"},
};
constexpr int kSelectedPosition = 10;

int WholeNumber(std::string_view text) { return core::ToLong(core::fNum(text)); }

// The text behind "index|", or nothing when there is no index.
std::optional<std::string_view> BehindIndex(std::string_view value) {
    const std::size_t bar = value.find('|');
    if (bar == std::string_view::npos) return std::nullopt;
    std::string_view index = value.substr(0, bar);
    if (index.starts_with('-')) index.remove_prefix(1);
    if (index.empty() || index.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    return value.substr(bar + 1);
}

// A list or combo box without a value starts with the row that its spec names.
std::string StartValue(const Control& control, std::string value) {
    if (control.Is(ControlType::CheckBox) || control.Is(ControlType::OptionButton))
        return std::string(core::fBoolWord(core::fBool(value)));
    if (!value.empty() || control.MultiSelect()) return value;
    const int selected = control.spec.Number(kSelectedPosition, -1);
    const bool inside = selected >= 0 && selected < static_cast<int>(control.rows.size());
    if (control.Is(ControlType::ListBox)) return std::to_string(inside ? selected : -1);
    if (!control.Is(ControlType::ComboBox) || !inside) return value;
    const std::vector<std::string>& row = control.rows[static_cast<std::size_t>(selected)];
    return row.empty() ? value : std::to_string(selected) + "|" + row[0];
}

// A caption that alone would not read as a list of one button.
bool ReadsAsSet(std::string_view caption) {
    return caption.empty() || (caption.size() == 1 && caption[0] >= '0' && caption[0] <= '5');
}

}  // namespace

std::string MBSpec(std::string_view spec) {
    std::string text;
    bool first = true;
    const core::StrArray items = core::CDSSplit(spec, core::kBraceForm);
    for (const std::string& item : items.Items()) {
        if (!first) text += kSpecDelim;
        text += item;
        first = false;
    }
    return text;
}

ControlSpec::ControlSpec(std::string_view spec) {
    if (spec.empty()) return;
    for (std::size_t at = 0;;) {
        const std::size_t end = spec.find(kSpecDelim, at);
        positions_.emplace_back(spec.substr(at, end == std::string_view::npos ? end : end - at));
        if (end == std::string_view::npos) return;
        at = end + kSpecDelim.size();
    }
}

std::string_view ControlSpec::At(int position) const {
    if (position < 1 || position > static_cast<int>(positions_.size())) return {};
    return positions_[static_cast<std::size_t>(position - 1)];
}

void ControlSpec::Set(int position, std::string_view text) {
    if (position < 1) return;
    const auto count = static_cast<std::size_t>(position);
    if (count > positions_.size()) {
        if (text.empty()) return;
        positions_.resize(count);
    }
    positions_[count - 1] = text;
}

std::string ControlSpec::Text() const {
    std::string text;
    for (std::size_t i = 0; i < positions_.size(); ++i) text.append(i == 0 ? "" : kSpecDelim).append(positions_[i]);
    return text;
}

int ControlSpec::Number(int position, int otherwise) const {
    const std::string_view text = At(position);
    return text.empty() ? otherwise : WholeNumber(text);
}

std::vector<int> ControlSpec::Numbers(int position) const {
    std::string_view text = At(position);
    if (text.starts_with('{')) text.remove_prefix(1);
    if (text.ends_with('}')) text.remove_suffix(1);
    std::vector<int> numbers;
    if (text.empty()) return numbers;
    const core::StrArray items = core::CDSSplitPlain(text);
    for (const std::string& item : items.Items()) numbers.push_back(WholeNumber(item));
    return numbers;
}

std::vector<int> Control::Selected() const {
    const int count = std::max(0, static_cast<int>(rows.size()) - FixedRows());
    std::vector<int> selected;
    std::string_view rest = value;
    while (!rest.empty()) {
        const std::size_t bar = rest.find('|');
        const std::string_view item = rest.substr(0, bar);
        const int row = item.empty() ? -1 : WholeNumber(item);
        if (row >= 0 && row < count) selected.push_back(row);
        rest.remove_prefix(bar == std::string_view::npos ? rest.size() : bar + 1);
    }
    std::ranges::sort(selected);
    selected.erase(std::ranges::unique(selected).begin(), selected.end());
    if (!MultiSelect() && selected.size() > 1) selected.resize(1);
    return selected;
}

void Control::Select(const std::vector<int>& rowsSelected) {
    if (!MultiSelect()) {
        value = std::to_string(rowsSelected.empty() ? -1 : rowsSelected[0]);
        return;
    }
    value.clear();
    for (const int row : rowsSelected) value.append(value.empty() ? "" : "|").append(std::to_string(row));
}

std::string Control::ComboText() const {
    const auto isRow = [this](const std::vector<std::string>& row) { return !row.empty() && row[0] == value; };
    if (std::ranges::any_of(rows, isRow)) return value;
    return std::string(BehindIndex(value).value_or(value));
}

Control& Controls::operator[](int number) {
    if (number < 1 || number > Count()) throw core::ErrorNumber(core::errnum::kControlOutside, "Controls");
    return list_[static_cast<std::size_t>(number - 1)];
}

const Control& Controls::operator[](int number) const {
    if (number < 1 || number > Count()) throw core::ErrorNumber(core::errnum::kControlOutside, "Controls");
    return list_[static_cast<std::size_t>(number - 1)];
}

int MBAddCtl(std::string_view type, std::string_view value, std::string_view spec, Controls& controls, Rows rows) {
    const bool sameLine = type.ends_with('_');
    if (sameLine) type.remove_suffix(1);
    const std::optional<ControlType> known = TypeOf(type);
    if (!known) throw core::ErrorNumber(core::errnum::kControlType, "MBAddCtl " + std::string(type));
    Control& control = controls.Add({.type = *known, .sameLine = sameLine, .spec = ControlSpec(spec)});
    control.rows = std::move(rows);
    control.value = StartValue(control, std::string(value));
    return controls.Count();
}

int MBAddBtn(std::string_view caption, std::string& buttons) {
    if (!buttons.empty()) {
        buttons = core::CDSAppend(buttons, caption);
    } else if (ReadsAsSet(caption)) {
        // The tail that names a substitute makes a list of what would be the number of a set, or no button.
        buttons = std::string(caption).append(core::kTrailer).append("!!");
    } else {
        buttons = core::CDSJoinPlain(core::StrArray(1, {std::string(caption)}));
    }
    return static_cast<int>(core::CDSSplitPlain(buttons).Items().size());
}

std::string_view TypeName(ControlType type) { return std::ranges::find(kTypes, type, &TypeRow::type)->name; }

std::optional<ControlType> TypeOf(std::string_view name) {
    const auto row = std::ranges::find(kTypes, name, &TypeRow::name);
    if (row == kTypes.end()) return std::nullopt;
    return row->type;
}

}  // namespace dialogs
