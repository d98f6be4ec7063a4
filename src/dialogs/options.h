#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The option items of a dialog: a "|" list in any order, items in braces holding "|" of their own.
namespace dialogs {

enum class Icon : int { None = 0, Stop = 16, Question = 32, Exclamation = 48, Information = 64 };

struct DialogOptions {
    Icon icon = Icon::None;
    std::string iconFromForm{};
    bool setPic = false;
    std::string noShowKey{};                                // "No show|" + key
    std::optional<std::pair<int, int>> topLeft{};           // twips
    int maxButtonsPerLine = 0;                              // 0: as many as fit
    int defaultButton = 0, escButton = 0, focusButton = 0;  // 1-based, 0: not given
    std::vector<int> boldButtons{}, italicButtons{}, underlinedButtons{};
    bool textBold = false;
    int textSize = 0;
    std::string textFont{};
    int buttonsGap = -1, linesGap = -1;  // twips, -1: not given
    bool buttonsNextToIcon = false, buttonsUnderTextOnly = false, controlsUnderMessage = false, buttonsAtBottom = false;
    bool noKeys = false, findLastValue = false, noSaveFont = false;
    bool stays = false;              // NoHide
    std::vector<int> stayButtons{};  // the buttons it names; empty with `stays`: all
    std::pair<bool, bool> stayFlags{};
    int fixedWidth = 0, fixedHeight = 0, minWidth = 0, minHeight = 0;  // twips
    std::optional<int> backColor{}, foreColor{};                       // 0xBBGGRR
    bool anyKeyHides = false;
    std::vector<std::pair<int, int>> keyHides{};  // key code, button it counts as

    bool Stays(int button) const;
};
// Unknown items are ignored. A number alone is the icon.
DialogOptions ParseOptions(std::string_view options);

// Each gives its item with the closing "|", so that they can be put one behind another.
namespace option {
std::string Esc(int button);
std::string DfltButton(int button);
std::string FocBut(int button);
std::string MaxBpl(int buttons = 4);
std::string BackColor(int color);
std::string ForeColor(int color);
std::string TextBold();
std::string TextFont(std::string_view name);
std::string NoKeys();
std::string KeyHides(std::string_view keys);
std::string MinWidth(int twips);
std::string MinWidthPercent(double percentOfScreen, int screenTwips);
std::string FixedWidth(int twips);
std::string TopLeft(int top, int left);
std::string NoHide(std::string_view buttons, bool a, bool b);
std::string NoShow(std::string_view key);
}  // namespace option

inline constexpr int kNoCancel = -99;  // MBCancelNo of a dialog without a Cancel
inline constexpr int kSuppressed = 65532;

struct ButtonSet {
    std::vector<std::string> captions{};
    int cancel = 0;  // 1-based within the set, 0: none
};
// A number from 0 to 5 names a standard set; anything else is a "|" list of captions, "" none. Of such a list the
// button whose caption reads Cancel, or begins with "Cancel ", is the one that cancels.
ButtonSet ButtonsOf(std::string_view buttons);

// "&Add && go" -> "Add & go"
std::string PlainCaption(std::string_view caption);
// A message or label for a place where "&" marks the hot key: "&" doubled, then "#H160#" turned into "&".
std::string LabelCaption(std::string_view text);

}  // namespace dialogs
