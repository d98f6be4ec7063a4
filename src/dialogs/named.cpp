#include "dialogs/named.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/checks.h"

namespace dialogs {
namespace {

struct PickRow {
    std::string_view word;
    Pick pick;
};
constexpr std::array kPicks{
    PickRow{"open", Pick::OpenFile},
    PickRow{"openmany", Pick::OpenFiles},
    PickRow{"save", Pick::SaveFile},
    PickRow{"folder", Pick::Folder},
};

Pick PickOf(std::string_view word) {
    const auto row = std::ranges::find(kPicks, word, &PickRow::word);
    return row == kPicks.end() ? Pick::None : row->pick;
}

bool IsBox(const Control& control) {
    return control.Is(ControlType::CheckBox) || control.Is(ControlType::OptionButton);
}
bool IsList(const Control& control) { return control.Is(ControlType::ListBox) || control.Is(ControlType::ComboBox); }
bool IsEntry(const Control& control) { return IsBox(control) || IsList(control) || control.Is(ControlType::TextBox); }

bool IsTypeKnown(std::string_view type) {
    if (type.ends_with('_')) type.remove_suffix(1);
    return TypeOf(type).has_value();
}

int RowOf(const Control& control, std::string_view text) {
    for (std::size_t row = 0; row < control.rows.size(); ++row)
        if (!control.rows[row].empty() && control.rows[row][0] == text) return static_cast<int>(row);
    return -1;
}

std::string RowText(const Control& control, int row) {
    if (row < 0 || row >= static_cast<int>(control.rows.size())) return {};
    const std::vector<std::string>& cells = control.rows[static_cast<std::size_t>(row)];
    return cells.empty() ? std::string() : cells[0];
}

std::vector<std::string> ItemsOf(std::string_view list) {
    if (list.empty()) return {};
    const core::StrArray items = core::CDSSplitPlain(list);
    return {items.Items().begin(), items.Items().end()};
}

// Rows that a kept text names, by their index or their text.
std::vector<int> KeptRows(const Control& control, std::string_view text, bool index) {
    std::vector<int> rows;
    const std::vector<std::string> single{std::string(text)};
    for (const std::string& item : control.MultiSelect() ? ItemsOf(text) : single) {
        const int row = !index ? RowOf(control, item) : core::IsNumeric(item) ? core::ToLong(core::fNum(item)) : -1;
        if (row >= 0 && row < static_cast<int>(control.rows.size())) rows.push_back(row);
    }
    return rows;
}

// Puts a kept text into a control.
void Fill(Control& control, std::string_view text, bool index) {
    if (IsBox(control)) {
        control.value = core::fBoolWord(core::fBool(text));
    } else if (control.Is(ControlType::ListBox)) {
        control.Select(KeptRows(control, text, index));
    } else if (control.Is(ControlType::ComboBox)) {
        const std::vector<int> rows = KeptRows(control, text, index);
        const int row = rows.empty() ? -1 : rows[0];
        control.value = std::to_string(row) + "|";
        control.value += row >= 0 ? RowText(control, row) : index ? std::string() : std::string(text);
    } else if (control.Is(ControlType::Label)) {
        // A file's values end in no blank.
        if (!control.value.empty() && !text.empty() && !control.value.ends_with(' ')) control.value += ' ';
        control.value += text;
    } else {
        control.value = text;
    }
}

std::string KeptText(const Control& control, bool index) {
    if (control.Is(ControlType::ComboBox)) {
        if (!index) return control.ComboText();
        return std::to_string(RowOf(control, control.ComboText()));
    }
    if (!control.Is(ControlType::ListBox)) return control.value;
    core::StrArray items(1, {});
    for (const int row : control.Selected()) items.Append(index ? std::to_string(row) : RowText(control, row));
    if (control.MultiSelect()) return items.IsDim() ? core::CDSJoinPlain(items) : std::string();
    return items.IsDim() ? items[1] : index ? "-1" : "";
}

std::string EntryText(const Control& control) {
    return control.Is(ControlType::TextBox) ? control.value : KeptText(control, false);
}

}  // namespace

NamedDialog::NamedDialog(const Desk& desk, NamedBox box) : desk_(desk), box_(std::move(box)) {
    if (box_.valueSection.empty()) box_.valueSection = box_.dialog;
    for (int number = 1;; ++number) {
        const std::string spec = Entry(number, "");
        if (spec.empty()) break;
        if (!IsTypeKnown(core::fBefore(spec, "|"))) {
            Damaged("control " + std::to_string(number) + " is of no known type");
            return;
        }
        ReadControl(number, spec);
    }
    if (controls_.Count() == 0) Damaged("it has no controls");
}

std::string NamedDialog::Entry(int number, std::string_view what) const {
    return desk_.ini.IniGet(box_.dialog, std::to_string(number).append(what), desk_.screens);
}

void NamedDialog::Damaged(const std::string& why) {
    problem_ = "The dialog \"" + box_.dialog + "\" cannot be shown: " + why + ".\rFile: " + desk_.screens +
               "\rPut the file that came with " + desk_.product + " in its place.";
    controls_.Clear();
    followers_ = {};
}

void NamedDialog::ReadControl(int number, std::string_view spec) {
    const std::string position = MBSpec(core::fAfter(spec, "|"));
    Control& control = controls_[MBAddCtl(core::fBefore(spec, "|"), {}, position, controls_)];
    const std::string text = Entry(number, "T");
    if (control.Is(ControlType::Label) || control.Is(ControlType::CommandButton))
        control.value = text;
    else
        control.caption = text;
    control.hint = Entry(number, "H");
    control.pick = control.Is(ControlType::TextBox) ? PickOf(Entry(number, "P")) : Pick::None;
    for (std::string& item : ItemsOf(Entry(number, "L")))
        if (IsList(control)) control.rows.push_back({std::move(item)});
    if (control.Is(ControlType::CheckBox)) followers_.checks.push_back(Entry(number, "E"));
    if (control.Is(ControlType::OptionButton)) followers_.options.push_back(Entry(number, "E"));
    rules_.push_back(Entry(number, "C"));
    const Place& place = places_.emplace_back(ReadPlace(number));
    if (IsEntry(control) || !place.entry.empty()) Fill(control, StoredText(number, place), place.index);
}

NamedDialog::Place NamedDialog::ReadPlace(int number) const {
    const std::string key = Entry(number, "K");
    Place place;
    place.index = core::fBool(Entry(number, "V"));
    if (key.find('|') == std::string::npos) {
        place.section = box_.valueSection;
        place.entry = key;
        place.file = desk_.screens;
        return place;
    }
    place.section = core::CDSItem(1, key);
    place.entry = core::CDSItem(2, key);
    place.file = core::CDSItem(3, key);
    if (place.file.empty()) place.file = desk_.screens;
    place.item = std::max(0, core::ToLong(core::CDSItemNum(4, key)));
    return place;
}

std::string NamedDialog::StoredText(int number, const Place& place) const {
    if (place.entry.empty() || !desk_.ini.IniHas(place.section, place.entry, place.file)) return Entry(number, "D");
    const std::string text = desk_.ini.IniGet(place.section, place.entry, place.file);
    if (place.item == 0) return text;
    if (static_cast<int>(ItemsOf(text).size()) < place.item) return Entry(number, "D");
    return core::CDSItem(place.item, text);
}

void NamedDialog::PutInFront(Controls controls) { PutBehind(0, std::move(controls)); }

void NamedDialog::PutBehind(int number, Controls controls) {
    if (controls_.Count() == 0) return;  // damaged
    const auto count = static_cast<std::size_t>(controls.Count());
    std::vector<Control>& all = controls_.All();
    all.insert(all.begin() + number, controls.All().begin(), controls.All().end());
    places_.insert(places_.begin() + number, count, Place{});
    rules_.insert(rules_.begin() + number, count, std::string());
}

int NamedDialog::NumberOf(std::string_view entry) const {
    for (int number = 1; number <= controls_.Count(); ++number)
        if (core::fEquals(PlaceOf(number).entry, entry, core::Case::Ignore)) return number;
    return 0;
}

std::string NamedDialog::CheckEntries(Controls& controls) const {
    ApplyFollowers(followers_, controls);
    for (int number = 1; number <= controls.Count(); ++number) {
        const Control& control = controls[number];
        if (!control.enabled || !IsEntry(control)) continue;
        const std::string& rules = rules_[static_cast<std::size_t>(number - 1)];
        const std::string problem = rules.empty() ? std::string() : CheckEntry(rules, EntryText(control));
        if (problem.empty()) continue;
        const std::string caption = PlainCaption(control.caption);
        return caption.empty() ? problem : caption + ": " + problem;
    }
    return {};
}

Box NamedDialog::BoxOf() const {
    const auto entry = [this](std::string_view name) { return desk_.ini.IniGet(box_.dialog, name, desk_.screens); };
    Box box;
    const std::string text = entry("Text"), buttons = entry("Buttons"), options = entry("Options");
    box.message = box_.message;
    box.message.append(box_.message.empty() || text.empty() ? "" : "\r\r").append(text);
    box.buttons = box_.buttons == NamedBox().buttons && !buttons.empty() ? buttons : box_.buttons;
    if (box_.width > 0) box.options = option::MinWidth(box_.width);
    box.options += options;
    box.title = box_.title;
    box.name = box_.dialog;
    box.helpId = entry("Help");
    box.followers = followers_;
    return box;
}

// As ShowMBRepeat, for a dialog that can change under the person's hands.
Pressed NamedDialog::ShowChanging(const EntryCheck& check, const Change& change) {
    const Box box = BoxOf();
    const int cancel = CancelNumber(box, controls_);
    DialogModel model = BuildModel(desk_, box, controls_);
    const std::unique_ptr<DialogWindow> window = desk_.host.Open(model);
    for (;;) {
        const int button = window->Run();
        KeepLook(desk_, model);
        if (button == cancel) return {button, cancel};
        const bool changed = change(model.controls, button);
        const std::string problem = changed ? std::string() : check(model.controls, button);
        if (!changed && problem.empty()) {
            controls_ = std::move(model.controls);
            return {button, cancel};
        }
        model.problem = changed ? std::string() : "Problem with data entered: " + problem;
        ApplyFollowers(model.followers, model.controls);
        window->Update();
    }
}

Pressed NamedDialog::Show(const EntryCheck& more, const Change& change) {
    if (!problem_.empty()) {
        ShowMsg(desk_, problem_, box_.title, std::to_string(static_cast<int>(Icon::Exclamation)));
        return {kNoCancel, kNoCancel};
    }
    const auto check = [&](Controls& controls, int button) {
        const std::string problem = CheckEntries(controls);
        return problem.empty() && more ? more(controls, button) : problem;
    };
    const Pressed pressed = change ? ShowChanging(check, change) : ShowMBRepeat(desk_, BoxOf(), controls_, check);
    if (!pressed.Cancelled() && !pressed.Suppressed()) (void)Store();
    return pressed;
}

bool NamedDialog::Store() {
    bool written = true;
    for (int number = 1; number <= controls_.Count(); ++number) {
        const Control& control = controls_[number];
        const Place& place = PlaceOf(number);
        if (!IsEntry(control) || place.entry.empty()) continue;
        std::string text = KeptText(control, place.index);
        if (control.Is(ControlType::TextBox)) text = KeptEntry(rules_[static_cast<std::size_t>(number - 1)], text);
        const bool kept = desk_.ini.IniHas(place.section, place.entry, place.file);
        const std::string old = desk_.ini.IniGet(place.section, place.entry, place.file);
        if (place.item > 0) text = core::CDSSetItem(place.item, text, old);
        if (kept && text == old) continue;
        if (!desk_.ini.IniPutWhole(place.section, place.entry, text, place.file)) written = false;
    }
    return written;
}

}  // namespace dialogs
