#include "dialogs/options.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <functional>

#include "core/cds.h"
#include "core/numbers.h"
#include "core/text.h"

namespace dialogs {
namespace {

constexpr int kMostColor = 0xFFFFFF;
constexpr std::array kIcons{Icon::Stop, Icon::Question, Icon::Exclamation, Icon::Information};
constexpr std::array<std::string_view, 6> kSets{
    "&OK", "&OK|&Cancel", "&Abort|&Retry|&Ignore", "&Yes|&No|&Cancel", "&Yes|&No", "&Retry|&Cancel"};
constexpr std::array<int, kSets.size()> kSetCancels{0, 2, 0, 3, 0, 2};

int NumberOf(std::string_view text) { return std::max(0, core::ToLong(core::fNum(text))); }

// Whole numbers of a list parted by "|" or ",".
std::vector<int> NumbersOf(std::string_view text) {
    std::vector<int> numbers;
    const core::StrArray items = core::CDSSplitPlain(core::fReplace(text, ",", "|"));
    for (const std::string& item : items.Items())
        if (core::IsNumeric(item)) numbers.push_back(NumberOf(item));
    return numbers;
}

std::optional<int> ColorOf(std::string_view text) {
    const std::int32_t color = core::ToLong(core::fNum(text));
    if (!core::IsNumeric(text) || color < 0 || color > kMostColor) return std::nullopt;
    return color;
}

std::optional<std::pair<int, int>> PairOf(std::string_view text) {
    const std::vector<int> numbers = NumbersOf(text);
    if (numbers.size() < 2) return std::nullopt;
    return std::pair{numbers[0], numbers[1]};
}

void ReadGaps(DialogOptions& options, std::string_view text) {
    const auto gaps = PairOf(text);
    if (gaps) std::tie(options.buttonsGap, options.linesGap) = *gaps;
}

// Numbers are buttons, words are the two flags behind them.
void ReadNoHide(DialogOptions& options, std::string_view text) {
    options.stays = true;
    options.stayButtons = NumbersOf(text);
    std::vector<bool> flags;
    const core::StrArray items = core::CDSSplitPlain(text);
    for (const std::string& item : items.Items())
        if (item == "True" || item == "False") flags.push_back(item == "True");
    flags.resize(2);
    options.stayFlags = {flags[0], flags[1]};
}

void ReadKeyHides(DialogOptions& options, std::string_view text) {
    const std::vector<int> numbers = NumbersOf(text);
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) options.keyHides.emplace_back(numbers[i], numbers[i + 1]);
}

using Read = void (*)(DialogOptions&, std::string_view);
struct ItemRow {
    std::string_view keyword;
    Read read;
};

template <auto Member>
void ReadFlag(DialogOptions& options, std::string_view) {
    options.*Member = true;
}
template <auto Member>
void ReadNumber(DialogOptions& options, std::string_view text) {
    options.*Member = NumberOf(text);
}
template <auto Member>
void ReadNumbers(DialogOptions& options, std::string_view text) {
    options.*Member = NumbersOf(text);
}
template <auto Member>
void ReadText(DialogOptions& options, std::string_view text) {
    options.*Member = text;
}
template <auto Member>
void ReadColor(DialogOptions& options, std::string_view text) {
    options.*Member = ColorOf(text);
}

using O = DialogOptions;
constexpr std::array kItems{
    ItemRow{"SetPic", ReadFlag<&O::setPic>},
    ItemRow{"Top, left of form", [](O& o, std::string_view text) { o.topLeft = PairOf(text); }},
    ItemRow{"MBButtspec.MaxBpl", ReadNumber<&O::maxButtonsPerLine>},
    ItemRow{"DfltButton", ReadNumber<&O::defaultButton>},
    ItemRow{"Esc", ReadNumber<&O::escButton>},
    ItemRow{"FocBut", ReadNumber<&O::focusButton>},
    ItemRow{"BoldButts", ReadNumbers<&O::boldButtons>},
    ItemRow{"ItiButts", ReadNumbers<&O::italicButtons>},
    ItemRow{"UndrButts", ReadNumbers<&O::underlinedButtons>},
    ItemRow{"TextBold", ReadFlag<&O::textBold>},
    ItemRow{"TextSize", ReadNumber<&O::textSize>},
    ItemRow{"TextFont", ReadText<&O::textFont>},
    ItemRow{"Buttons gap/gap betw lines", ReadGaps},
    ItemRow{"BNextToIcon", ReadFlag<&O::buttonsNextToIcon>},
    ItemRow{"BUnderTextOnly", ReadFlag<&O::buttonsUnderTextOnly>},
    ItemRow{"Controls under msg", ReadFlag<&O::controlsUnderMessage>},
    ItemRow{"Buttons At Bottom", ReadFlag<&O::buttonsAtBottom>},
    ItemRow{"NoKeys", ReadFlag<&O::noKeys>},
    ItemRow{"FndLastVal", ReadFlag<&O::findLastValue>},
    ItemRow{"NoSaveFont", ReadFlag<&O::noSaveFont>},
    ItemRow{"NoHide", ReadNoHide},
    ItemRow{"Fixed Width", ReadNumber<&O::fixedWidth>},
    ItemRow{"Fixed Height", ReadNumber<&O::fixedHeight>},
    ItemRow{"Default and Min Width", ReadNumber<&O::minWidth>},
    ItemRow{"MinHt", ReadNumber<&O::minHeight>},
    ItemRow{"BackColor", ReadColor<&O::backColor>},
    ItemRow{"ForeColor", ReadColor<&O::foreColor>},
    ItemRow{"Any Key Hides", ReadFlag<&O::anyKeyHides>},
    ItemRow{"KeyHides", ReadKeyHides},
};
// Their value stands behind a "|": in braces, or as the next item of the list.
constexpr std::array kBarItems{
    ItemRow{"No show", ReadText<&O::noShowKey>},
    ItemRow{"IconFromForm", ReadText<&O::iconFromForm>},
};

template <typename Rows>
Read ReaderOf(const Rows& rows, std::string_view keyword) {
    const auto is = [&](const ItemRow& row) { return core::fEquals(row.keyword, keyword, core::Case::Ignore); };
    const auto row = std::ranges::find_if(rows, is);
    return row == rows.end() ? nullptr : row->read;
}

bool ReadIcon(DialogOptions& options, std::string_view item) {
    if (!core::IsNumeric(item)) return false;
    const auto icon = std::ranges::find(kIcons, static_cast<Icon>(NumberOf(item)));
    options.icon = icon == kIcons.end() ? Icon::None : *icon;
    return true;
}

std::string Item(std::string_view keyword, std::string_view value) {
    return std::string(keyword).append("=").append(value).append("|");
}
std::string Item(std::string_view keyword, int value) { return Item(keyword, std::to_string(value)); }

// An item whose value may hold "|".
std::string BraceItem(std::string_view keyword, std::string_view sign, std::string_view value) {
    return std::string("{").append(keyword).append(sign).append(value).append("}|");
}

}  // namespace

bool DialogOptions::Stays(int button) const {
    return stays && (stayButtons.empty() || std::ranges::find(stayButtons, button) != stayButtons.end());
}

DialogOptions ParseOptions(std::string_view options) {
    DialogOptions parsed;
    Read waiting = nullptr;
    const core::StrArray items = core::CDSSplit(options, core::kBraceForm);
    for (const std::string& whole : items.Items()) {
        const std::string_view item = core::fTrim(whole);
        if (waiting != nullptr) {
            waiting(parsed, item);
            waiting = nullptr;
        } else if (const Read behindBar = ReaderOf(kBarItems, core::fBefore(item, "|"))) {
            if (item.find('|') == std::string_view::npos)
                waiting = behindBar;
            else
                behindBar(parsed, core::fAfter(item, "|"));
        } else if (const Read read = ReaderOf(kItems, core::fTrim(core::fBefore(item, "=")))) {
            read(parsed, core::fTrim(core::fAfter(item, "=")));
        } else {
            ReadIcon(parsed, item);
        }
    }
    return parsed;
}

namespace option {

std::string Esc(int button) { return Item("Esc", button); }
std::string DfltButton(int button) { return Item("DfltButton", button); }
std::string FocBut(int button) { return Item("FocBut", button); }
std::string MaxBpl(int buttons) { return Item("MBButtspec.MaxBpl", buttons); }
std::string BackColor(int color) { return Item("BackColor", color); }
std::string ForeColor(int color) { return Item("ForeColor", color); }
std::string TextBold() { return "TextBold|"; }
std::string TextFont(std::string_view name) { return Item("TextFont", name); }
std::string NoKeys() { return "NoKeys|"; }
std::string KeyHides(std::string_view keys) {
    return keys.find('|') == std::string_view::npos ? Item("KeyHides", keys) : BraceItem("KeyHides", "=", keys);
}
std::string MinWidth(int twips) { return Item("Default and Min Width", twips); }
std::string MinWidthPercent(double percentOfScreen, int screenTwips) {
    return MinWidth(core::ToLong(percentOfScreen / 100 * screenTwips));
}
std::string FixedWidth(int twips) { return Item("Fixed Width", twips); }
std::string TopLeft(int top, int left) {
    return BraceItem("Top, left of form", "=", std::to_string(top) + "|" + std::to_string(left));
}
std::string NoHide(std::string_view buttons, bool a, bool b) {
    std::string value(buttons);
    value.append("|").append(core::fBoolWord(a)).append("|").append(core::fBoolWord(b));
    return BraceItem("NoHide", "=", value);
}
std::string NoShow(std::string_view key) { return BraceItem("No show", "|", key); }

}  // namespace option

ButtonSet ButtonsOf(std::string_view buttons) {
    ButtonSet set;
    if (buttons.empty()) return set;
    const bool standard = buttons.size() == 1 && buttons[0] >= '0' && buttons[0] < '0' + static_cast<int>(kSets.size());
    const auto number = static_cast<std::size_t>(standard ? buttons[0] - '0' : 0);
    const core::StrArray captions = core::CDSSplitPlain(standard ? kSets[number] : buttons);
    set.captions.assign(captions.Items().begin(), captions.Items().end());
    if (standard) {
        set.cancel = kSetCancels[number];
        return set;
    }
    const auto cancels = [](const std::string& caption) {
        const std::string plain = PlainCaption(caption);
        return plain == "Cancel" || plain.starts_with("Cancel ");
    };
    const auto cancel = std::ranges::find_if(set.captions, cancels);
    if (cancel != set.captions.end()) set.cancel = static_cast<int>(cancel - set.captions.begin()) + 1;
    return set;
}

std::string PlainCaption(std::string_view caption) {
    std::string plain;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == '&' && ++i == caption.size()) break;
        plain += caption[i];
    }
    return plain;
}

std::string LabelCaption(std::string_view text) {
    return core::fReplace(core::fReplace(text, "&", "&&"), "#H160#", "&");
}

}  // namespace dialogs
