#include "dialogs/options.h"

#include <gtest/gtest.h>

namespace {

using dialogs::DialogOptions;
using dialogs::Icon;
using dialogs::ParseOptions;
namespace option = dialogs::option;

TEST(ParseOptions, ANumberIsTheIcon) {
    const struct {
        const char* options;
        Icon icon;
    } cases[] = {
        {"48", Icon::Exclamation},    {"16", Icon::Stop}, {"TextBold|64|", Icon::Information},
        {"32|Esc=1", Icon::Question}, {"0", Icon::None},  {"17", Icon::None},
        {"-48", Icon::None},          {"", Icon::None},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.options);
        EXPECT_EQ(ParseOptions(c.options).icon, c.icon);
    }
}

TEST(ParseOptions, AnItemInBracesKeepsItsBars) {
    const DialogOptions parsed = ParseOptions("{Top, left of form=120|240}|Esc=2|48");
    ASSERT_TRUE(parsed.topLeft.has_value());
    EXPECT_EQ(*parsed.topLeft, std::pair(120, 240));
    EXPECT_EQ(parsed.escButton, 2);
    EXPECT_EQ(parsed.icon, Icon::Exclamation);
}

TEST(ParseOptions, UnknownAndBrokenItemsChangeNothing) {
    const DialogOptions parsed = ParseOptions(
        "Nonsense=1|=|{Top, left of "
        "form=5}|BackColor=white|ForeColor=99999999999|Esc=|Esc=-3|DfltButton=x|{KeyHides=27}");
    EXPECT_FALSE(parsed.topLeft.has_value());
    EXPECT_FALSE(parsed.backColor.has_value());
    EXPECT_FALSE(parsed.foreColor.has_value());
    EXPECT_EQ(parsed.escButton, 0);
    EXPECT_EQ(parsed.defaultButton, 0);
    EXPECT_TRUE(parsed.keyHides.empty());
    EXPECT_FALSE(parsed.Stays(1));
}

TEST(ParseOptions, EveryItem) {
    const DialogOptions parsed = ParseOptions(
        "SetPic|{IconFromForm|fMain}|{BoldButts=1|3}|ItiButts=2|UndrButts=1,2|TextSize=12|BNextToIcon|BUnderTextOnly|"
        "{Buttons gap/gap betw lines=60|90}|Controls under msg|Buttons At Bottom|FndLastVal|NoSaveFont|Fixed "
        "Height=900|"
        "MinHt=800|Any Key Hides|KeyHides=27,2,112,1");
    EXPECT_TRUE(parsed.setPic && parsed.buttonsNextToIcon && parsed.buttonsUnderTextOnly && parsed.anyKeyHides);
    EXPECT_TRUE(parsed.controlsUnderMessage && parsed.buttonsAtBottom && parsed.findLastValue && parsed.noSaveFont);
    EXPECT_EQ(parsed.iconFromForm, "fMain");
    EXPECT_EQ(parsed.boldButtons, (std::vector<int>{1, 3}));
    EXPECT_EQ(parsed.italicButtons, (std::vector<int>{2}));
    EXPECT_EQ(parsed.underlinedButtons, (std::vector<int>{1, 2}));
    EXPECT_EQ(std::pair(parsed.buttonsGap, parsed.linesGap), std::pair(60, 90));
    EXPECT_EQ(std::pair(parsed.fixedHeight, parsed.minHeight), std::pair(900, 800));
    EXPECT_EQ(parsed.textSize, 12);
    EXPECT_EQ(parsed.keyHides, (std::vector<std::pair<int, int>>{{27, 2}, {112, 1}}));
}

TEST(ParseOptions, ReadsWhatTheBuildersWrite) {
    const std::string text = option::Esc(2) + option::DfltButton(3) + option::FocBut(1) + option::MaxBpl() +
                             option::BackColor(255) + option::ForeColor(0) + option::TextBold() +
                             option::TextFont("Sans") + option::NoKeys() + option::KeyHides("27|2") +
                             option::MinWidthPercent(50, 28800) + option::FixedWidth(9000) + option::TopLeft(10, 20) +
                             option::NoHide("1|4", true, false) + option::NoShow("Hide this");
    const DialogOptions parsed = ParseOptions(text);
    EXPECT_EQ(parsed.escButton, 2);
    EXPECT_EQ(parsed.defaultButton, 3);
    EXPECT_EQ(parsed.focusButton, 1);
    EXPECT_EQ(parsed.maxButtonsPerLine, 4);
    EXPECT_EQ(parsed.backColor, 255);
    EXPECT_EQ(parsed.foreColor, 0);
    EXPECT_TRUE(parsed.textBold && parsed.noKeys);
    EXPECT_EQ(parsed.textFont, "Sans");
    EXPECT_EQ(parsed.keyHides, (std::vector<std::pair<int, int>>{{27, 2}}));
    EXPECT_EQ(parsed.minWidth, 14400);
    EXPECT_EQ(parsed.fixedWidth, 9000);
    EXPECT_EQ(*parsed.topLeft, std::pair(10, 20));
    EXPECT_TRUE(parsed.Stays(1) && parsed.Stays(4) && !parsed.Stays(2));
    EXPECT_EQ(parsed.stayFlags, std::pair(true, false));
    EXPECT_EQ(parsed.noShowKey, "Hide this");
    EXPECT_EQ(option::Esc(2) + option::TopLeft(1, 2), "Esc=2|{Top, left of form=1|2}|");
}

TEST(ParseOptions, TheKeyOfASuppressedMessageMayStandInTheNextItem) {
    const DialogOptions parsed = ParseOptions("No show|TextBold|48");
    EXPECT_EQ(parsed.noShowKey, "TextBold");
    EXPECT_FALSE(parsed.textBold);
    EXPECT_EQ(parsed.icon, Icon::Exclamation);
}

TEST(ButtonsOf, NumbersNameStandardSets) {
    const struct {
        const char* buttons;
        std::vector<std::string> captions;
        int cancel;
    } cases[] = {
        {"0", {"&OK"}, 0},
        {"1", {"&OK", "&Cancel"}, 2},
        {"2", {"&Abort", "&Retry", "&Ignore"}, 0},
        {"3", {"&Yes", "&No", "&Cancel"}, 3},
        {"4", {"&Yes", "&No"}, 0},
        {"5", {"&Retry", "&Cancel"}, 2},
        {"", {}, 0},
        {"6", {"6"}, 0},
        {"01", {"01"}, 0},
        {"&Go|&Cancel (skip rest)|No", {"&Go", "&Cancel (skip rest)", "No"}, 2},
        {"Cancelled|C&ancel", {"Cancelled", "C&ancel"}, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.buttons);
        EXPECT_EQ(dialogs::ButtonsOf(c.buttons).captions, c.captions);
        EXPECT_EQ(dialogs::ButtonsOf(c.buttons).cancel, c.cancel);
    }
}

TEST(Captions, AnAmpersandIsAHotKeyOnlyWhereItIsMeant) {
    EXPECT_EQ(dialogs::PlainCaption("&Add && go&"), "Add & go");
    EXPECT_EQ(dialogs::PlainCaption("Move Do&wn"), "Move Down");
    EXPECT_EQ(dialogs::LabelCaption("R&D #H160#Name:"), "R&&D &Name:");
}

}  // namespace
