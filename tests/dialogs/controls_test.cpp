#include "dialogs/controls.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/error.h"
#include "dialogs/enabling.h"
#include "dialogs/options.h"

namespace {

using dialogs::Control;
using dialogs::Controls;
using dialogs::ControlSpec;
using dialogs::ControlType;
using dialogs::MBAddBtn;
using dialogs::MBAddCtl;
using dialogs::MBSpec;

int NumberRaisedBy(const std::function<void()>& body) {
    try {
        body();
    } catch (const core::ErrorNumber& error) {
        return error.number();
    }
    return 0;
}

TEST(MBSpec, ListsInBracesKeepTheirBars) {
    const ControlSpec spec(MBSpec("14000|7000||||||||1||{1200|1200|750|0}||||True||||{1800|1|20000}|600"));
    EXPECT_EQ(spec.Width(), 14000);
    EXPECT_EQ(spec.Height(), 7000);
    EXPECT_EQ(spec.Number(10), 1);
    EXPECT_EQ(spec.Numbers(12), (std::vector<int>{1200, 1200, 750, 0}));
    EXPECT_EQ(spec.Numbers(20 - 3), std::vector<int>());
    EXPECT_TRUE(ControlSpec(MBSpec("9500|||||||||1||{7800|900}||||True|True|1")).True(16));
    EXPECT_EQ(ControlSpec(MBSpec("90|240|||7|Small Fonts||True")).At(6), "Small Fonts");
    EXPECT_TRUE(ControlSpec(MBSpec("100|||||||True")).True(8));
    EXPECT_EQ(ControlSpec(MBSpec("10000||||||")).Number(2, 77), 77);
}

TEST(ControlSpec, APositionThatIsSetLeavesTheOthers) {
    ControlSpec spec(MBSpec("100|200"));
    spec.Set(5, "9");
    EXPECT_EQ(spec.Text(), "100|~~|200|~~||~~||~~|9");
    spec.Set(30, "");
    spec.Set(0, "x");
    EXPECT_EQ(spec.Text(), "100|~~|200|~~||~~||~~|9");
    EXPECT_EQ(ControlSpec("").Text(), "");
    EXPECT_EQ(ControlSpec().At(1), "");
}

TEST(MBAddCtl, AnUnderscoreContinuesTheLine) {
    Controls controls;
    EXPECT_EQ(MBAddCtl("Label", "Name:", "", controls), 1);
    EXPECT_EQ(MBAddCtl("ListBox_", "", "", controls), 2);
    EXPECT_FALSE(controls[1].sameLine);
    EXPECT_TRUE(controls[2].sameLine);
    EXPECT_EQ(controls[2].type, ControlType::ListBox);
}

TEST(MBAddCtl, UnknownTypesAndNumbersOutsideRaise) {
    Controls controls;
    EXPECT_EQ(NumberRaisedBy([&] { MBAddCtl("Slider", "", "", controls); }), 9710);
    EXPECT_EQ(NumberRaisedBy([&] { MBAddCtl("", "", "", controls); }), 9710);
    EXPECT_EQ(controls.Count(), 0);
    EXPECT_EQ(NumberRaisedBy([&] { controls[0].value.clear(); }), 9711);
    EXPECT_EQ(NumberRaisedBy([&] { controls[1].value.clear(); }), 9711);
}

TEST(MBAddCtl, TheSpecNamesTheRowSelectedOnEntry) {
    const std::string second = MBSpec("4000|2000||||||||1");
    Controls controls;
    MBAddCtl("ListBox", "", second, controls, {{"a"}, {"b"}});
    MBAddCtl("ComboBox", "", second, controls, {{"a"}, {"b"}});
    MBAddCtl("ListBox", "", second, controls, {{"a"}});  // no such row
    MBAddCtl("ListBox", "0", second, controls, {{"a"}, {"b"}});
    MBAddCtl("ListBox", "", MBSpec("|4000||||||||2|||||True|True"), controls, {{"a"}, {"b"}, {"c"}});
    EXPECT_EQ(controls[1].value, "1");
    EXPECT_EQ(controls[2].value, "1|b");
    EXPECT_EQ(controls[3].value, "-1");
    EXPECT_EQ(controls[4].value, "0");
    EXPECT_TRUE(controls[5].MultiSelect());
    EXPECT_EQ(controls[5].value, "");
}

TEST(MBAddBtn, ACaptionStaysOneButton) {
    std::string buttons;
    int number = 0;
    const std::vector<std::string> captions{"1", "a|b", "{c}", "|~~|", "R&&D #H160#", "x{{||{{!!", "", "Cancel it"};
    for (const std::string& caption : captions) EXPECT_EQ(MBAddBtn(caption, buttons), ++number);
    const dialogs::ButtonSet set = dialogs::ButtonsOf(buttons);
    EXPECT_EQ(set.captions, captions);
    EXPECT_EQ(set.cancel, 8);
    // Alone, too: a number is no standard set, an empty caption is a button.
    for (const char* caption : {"0", "5", "", "6", "|"}) {
        SCOPED_TRACE(caption);
        std::string alone;
        EXPECT_EQ(MBAddBtn(caption, alone), 1);
        EXPECT_EQ(dialogs::ButtonsOf(alone).captions, std::vector<std::string>{caption});
    }
}

TEST(Control, SelectedRowsAreInsideAndAscending) {
    Control list{
        .type = ControlType::ListBox, .spec = ControlSpec(MBSpec("||||||||||||||True")), .value = "2|0|2|9|x|-1"};
    list.rows = {{"a"}, {"b"}, {"c"}};
    EXPECT_EQ(list.Selected(), (std::vector<int>{0, 2}));
    list.Select({});
    EXPECT_EQ(list.value, "");
    list.Select({1, 2});
    EXPECT_EQ(list.value, "1|2");

    // The header of a grid is no row.
    Control grid{.type = ControlType::Grid, .spec = ControlSpec(MBSpec("|||||||||1")), .value = "1"};
    grid.rows = {{"Head"}, {"a"}};
    EXPECT_TRUE(grid.Selected().empty());
    grid.Select({0});
    EXPECT_EQ(grid.Selected(), std::vector<int>{0});
    grid.Select({});
    EXPECT_EQ(grid.value, "-1");
}

TEST(Control, TheTextOfAComboBoxKeepsItsBars) {
    const struct {
        const char* value;
        const char* text;
    } cases[] = {
        {"1|b|c", "b|c"}, {"-1|own|text", "own|text"}, {"3|x", "3|x"}, {"plain", "plain"}, {"a|b", "a|b"}, {"-1|", ""},
    };
    Control combo{.type = ControlType::ComboBox};
    combo.rows = {{"a"}, {"b|c"}, {"3|x"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        combo.value = c.value;
        EXPECT_EQ(combo.ComboText(), c.text);
    }
}

TEST(ApplyFollowers, ControlsFollowTheirBoxes) {
    Controls controls;
    MBAddCtl("CheckBox", "1", "", controls);  // 1, on
    MBAddCtl("TextBox", "", "", controls);
    MBAddCtl("TextBox", "", "", controls);
    MBAddCtl("OptionButton", "False", "", controls);  // 4, the first option
    MBAddCtl("CheckBox", "", "", controls);           // 5, off
    MBAddCtl("TextBox", "", "", controls);
    dialogs::Followers followers;
    followers.checks = dialogs::FollowerLists("{2|-3|99|-99|0|x}|{False|-6}|");
    followers.options = dialogs::FollowerLists("{5|True|4}");
    EXPECT_EQ(followers.checks.size(), 2u);
    ApplyFollowers(followers, controls);
    const std::vector<bool> enabled{true, true, false, true, false, true};
    for (int number = 1; number <= 6; ++number)
        EXPECT_EQ(controls[number].enabled, enabled[static_cast<std::size_t>(number - 1)]) << number;
    controls[1].value = "False";
    ApplyFollowers(followers, controls);
    EXPECT_FALSE(controls[2].enabled);
    EXPECT_TRUE(controls[3].enabled);
    EXPECT_TRUE(dialogs::FollowerLists("").empty());
}

}  // namespace
