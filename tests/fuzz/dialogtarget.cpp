// The little languages of dialogs: specs, options, buttons, followers, checks, captions, pages.
#include <algorithm>
#include <string>

#include "core/error.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/checks.h"
#include "dialogs/controls.h"
#include "dialogs/enabling.h"
#include "dialogs/gridops.h"
#include "dialogs/longtext.h"
#include "dialogs/options.h"
#include "tests/fuzz/targets.h"

namespace fuzz {
namespace {

void CheckSpec(std::string_view text) {
    const std::string written = dialogs::MBSpec(text);
    const dialogs::ControlSpec spec(written);
    Need(spec.Text() == written, "a spec changes by being read");
    Need(spec.Width() >= 0 && spec.Height() >= 0, "a size below nothing");
    for (const int position : {0, 1, 10, 12, 20, 99}) (void)spec.Numbers(position);

    // A brace list with bars is one position, whatever else stands in it.
    std::string inner(text);
    std::erase_if(inner, [](char c) { return std::string_view("{}|~!").find(c) != std::string_view::npos; });
    const std::string list = inner + "|" + inner;
    const dialogs::ControlSpec braced(dialogs::MBSpec("100|{" + list + "}|last"));
    Need(braced.At(1) == "100" && braced.At(3) == "last" && braced.At(4).empty(), "a brace list falls apart");
    Need(braced.At(2) == list || braced.At(2) == "{" + list + "}", "a brace list changes");
}

void CheckButtons(std::string_view text) {
    const dialogs::ButtonSet set = dialogs::ButtonsOf(text);
    const auto count = static_cast<int>(set.captions.size());
    Need((count == 0) == text.empty(), "a button list without buttons");
    Need(set.cancel >= 0 && set.cancel <= count, "a Cancel that is no button");
    std::string buttons;
    std::vector<std::string> captions;
    try {
        for (const std::string_view caption : Parts(text.substr(0, 200), 8)) {
            captions.emplace_back(core::ToUtf8(caption));
            const int number = dialogs::MBAddBtn(captions.back(), buttons);
            Need(number == static_cast<int>(captions.size()), "a caption became several buttons");
        }
    } catch (const core::ErrorNumber&) {
        return;  // no free substitute is left
    }
    Need(dialogs::ButtonsOf(buttons).captions == captions, "a caption reads otherwise");
}

void CheckOptions(std::string_view text) {
    const dialogs::DialogOptions options = dialogs::ParseOptions(text);
    Need(options.escButton >= 0 && options.defaultButton >= 0 && options.focusButton >= 0, "a button below the first");
    Need(options.fixedWidth >= 0 && options.minWidth >= 0 && options.textSize >= 0, "a size below nothing");
    const auto isColor = [](const std::optional<int>& color) { return !color || (*color >= 0 && *color <= 0xFFFFFF); };
    Need(isColor(options.backColor) && isColor(options.foreColor), "a colour that is none");
    (void)options.Stays(1);
}

void CheckCaptions(std::string_view text) {
    const std::string plain = dialogs::PlainCaption(dialogs::LabelCaption(text));
    const bool many = text.find("#H160#") != text.rfind("#H160#");  // two hot keys may make a "&"
    Need(many || plain == core::fReplace(text, "#H160#", ""), "a label is not shown as it is");
    Need(dialogs::PlainCaption(text).size() <= text.size(), "a caption grows");
}

void CheckControls(std::string_view value, std::string_view text) {
    dialogs::Controls controls;
    for (const char* type : {"CheckBox", "TextBox", "OptionButton", "ListBox", "ComboBox", "Grid"})
        dialogs::MBAddCtl(type, value, dialogs::MBSpec(text), controls, {{"a"}, {std::string(value)}, {}});
    dialogs::ApplyFollowers({dialogs::FollowerLists(text), dialogs::FollowerLists(value)}, controls);
    for (dialogs::Control& control : controls.All()) {
        const std::vector<int> rows = control.Selected();
        Need(std::ranges::is_sorted(rows) && (rows.empty() || (rows.front() >= 0 && rows.back() < 3)),
             "a selected row that is none");
        control.Select(rows);
        Need(!control.Is(dialogs::ControlType::ListBox) || control.Selected() == rows, "a selection reads otherwise");
        (void)control.ComboText();
    }
}

}  // namespace

int RunDialogs(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = TextOf(data, size);
    const std::vector<std::string_view> parts = Parts(input, 2);
    const std::string value = core::ToUtf8(parts.front()), text = core::ToUtf8(parts.back());
    CheckSpec(text);
    CheckButtons(text);
    CheckOptions(text);
    CheckCaptions(text);
    CheckControls(value, text);
    Need(dialogs::CheckEntry("", value).empty(), "an entry fails without a rule");
    (void)dialogs::CheckEntry(text, value);
    Need(dialogs::KeptEntry(text, value).size() <= value.size(), "an entry grows by being kept");
    std::string joined;
    for (const std::string& page : dialogs::PagesOf(text)) joined += page;
    Need(joined == text, "pages lose text");
    const std::string cell = dialogs::GridCellText(text, 40);
    Need(cell.size() <= 40 && core::IsUtf8(cell), "a cell is cut badly");
    return 0;
}

}  // namespace fuzz
