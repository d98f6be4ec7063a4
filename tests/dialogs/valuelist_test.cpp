#include "dialogs/valuelist.h"

#include <gtest/gtest.h>

#include "dialogs/gridops.h"
#include "tests/support/testdesk.h"

namespace dialogs {
namespace {

struct ValueListTest : testing::Test {
    ValueListTest() {
        list.title = "Values";
        list.headers = {"Value", "Lines"};
    }
    ~ValueListTest() override { EXPECT_TRUE(at.host.Done()); }
    // Presses Next or Prev with this text, then sees where the selection is.
    void Step(const std::string& button, const std::string& text) {
        at.host.WillPress(button, [text](DialogModel& model) { model.controls[2].value = text; });
    }
    void Expect(const std::string& selected) {
        at.host.WillPress("Done",
                          [selected](DialogModel& model) { EXPECT_EQ(model.controls[3].value, selected) << selected; });
    }
    int Show(int selected = -1) {
        row = selected;
        return ShowValueList(at.desk, list, rows, row);
    }

    testsupport::TestDesk at{};
    ValueList list{};
    Rows rows{{"red shoes", "1"}, {"blue", "2"}, {"RED | hat", "3"}, {"green", "4"}};
    int row = -1;
};

TEST_F(ValueListTest, NextAndPrevFindLinesAndAskAtTheEnds) {
    Step("Next", "red");
    Step("Next", "red");
    Step("Next", "red");
    at.host.WillPress("No");
    Expect("2");
    EXPECT_EQ(Show(), 0);
    EXPECT_EQ(at.host.shown[3].message, "No More. Restart at top?");
    EXPECT_EQ(row, 2);

    Step("Next", "red");
    at.host.WillPress("Yes");
    Step("Prev", "RED");
    at.host.WillPress("Yes");
    Step("Prev", "");  // without a text each line counts
    Expect("1");
    Show(2);
    EXPECT_EQ(at.host.shown[8].message, "No More. Restart at end?");

    Step("Next", "yellow");
    at.host.WillPress("OK");
    Expect("1");
    Show(1);
    EXPECT_EQ(at.host.shown[12].message, "No line holds: yellow");
}

TEST_F(ValueListTest, ALineIsShownInFullAndCopied) {
    rows[1][0] = std::string(100000, 'x') + "end";
    at.host.WillPress("Show Line in full");  // nothing is selected
    at.host.WillPress("OK");
    at.host.WillPress("Copy Line to Clipboard", [](DialogModel& model) {
        EXPECT_LE(model.controls[3].rows[2][0].size(), kMostInCell);
        model.controls[3].Select({1});
    });
    at.host.WillPress("Show Line in full", [](DialogModel& model) { model.controls[3].Select({2}); });
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].value, "Value:\r\nRED | hat\r\n\r\nLines:\r\n3");
        EXPECT_TRUE(model.controls[1].readOnly);
    });
    at.host.WillPress("Done");
    Show();
    EXPECT_EQ(at.host.shown[1].message, "Select a line first.");
    ASSERT_EQ(at.host.copied.size(), 1U);
    EXPECT_EQ(at.host.copied[0], rows[1][0] + "\t2");
}

TEST_F(ValueListTest, ExtraButtonsEndItWithTheSelection) {
    list.extraButtons = "&More|&Less";
    list.headers.clear();
    at.host.WillPress("Less", [](DialogModel& model) {
        EXPECT_TRUE(model.controls[3].Is(ControlType::ListBox));
        EXPECT_EQ(model.controls[3].Selected(), std::vector<int>{1});
        model.controls[3].Select({3});
    });
    EXPECT_EQ(Show(1), 2);
    EXPECT_EQ(row, 3);

    rows.clear();
    list.emptyText = "Nothing was found.";
    Step("Next", "");
    at.host.WillPress("OK");
    at.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_EQ(model.controls[3].emptyText, "Nothing was found.");
        EXPECT_EQ(model.escButton, 7);
    });
    EXPECT_EQ(Show(5), 0);
    EXPECT_EQ(row, -1);
    EXPECT_EQ(at.host.shown[2].message, "The list is empty.");
}

}  // namespace
}  // namespace dialogs
