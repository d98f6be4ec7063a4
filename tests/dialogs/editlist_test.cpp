#include "dialogs/editlist.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "dialogs/gridops.h"
#include "tests/support/fakes.h"
#include "tests/support/scriptedhost.h"

namespace dialogs {
namespace {

using Items = std::vector<std::string>;

struct EditListTest : testing::Test {
    EditListTest() {
        screen.title = "Groups";
        screen.item = "group";
    }
    ~EditListTest() override {
        EXPECT_TRUE(host.Done());
        EXPECT_EQ(host.open, 0);
    }
    // Selects rows of the list and presses a button.
    void Press(const std::string& caption, const std::vector<int>& rows = {}) {
        host.WillPress(caption, [rows](DialogModel& model) { model.controls[1].Select(rows); });
    }
    void Type(const std::string& text) {
        host.WillPress("OK", [text](DialogModel& model) { model.controls[1].value = text; });
    }

    testsupport::ScriptedUser user{};
    testsupport::ScriptedHost host{};
    core::IniStore ini{user};
    Desk desk{ini, host};
    ListScreen screen{};
    const Items hostile{"a|b", "{c}", "\"d\" & e", "#H160#", "-x"};
};

TEST_F(EditListTest, WantsASelectionWhereOneIsNeeded) {
    Press("Edit group");
    host.WillPress("OK");
    Press("Move Up");
    host.WillPress("OK");
    host.WillPress("OK");
    const EditedList edited = EditList(desk, screen, hostile);
    EXPECT_EQ(host.shown[1].message, "Select a group and press Edit again.");
    EXPECT_EQ(host.shown[3].message, "Select a group and press Move Up again.");
    EXPECT_TRUE(edited.ok);
    EXPECT_FALSE(edited.changed);
    EXPECT_EQ(edited.items, hostile);
    EXPECT_EQ(host.shown[0].buttons,
              (Items{"OK", "Edit group", "Copy group", "New group", "Remove group", "Move Up", "Move Down", "Cancel"}));
    EXPECT_EQ(
        host.shown[0].message,
        "Use Edit, Copy, New, Remove to change or add group.\rUp and Down will change the sequence on this list.");
}

TEST_F(EditListTest, ChangesCopiesAddsAndPutsInSequence) {
    Press("Edit group", {1});
    Type("C|");
    Press("Copy group", {0});
    Type("a|b 2");
    Press("New group");
    Type("last");
    Press("Move Up", {1, 5});
    Press("Move Down", {0, 1});
    Press("OK");
    const EditedList edited = EditList(desk, screen, hostile);
    EXPECT_EQ(edited.items, (Items{"C|", "a|b 2", "a|b", "\"d\" & e", "-x", "#H160#", "last"}));
    EXPECT_TRUE(edited.changed);
}

TEST_F(EditListTest, CancelBringsBackWhatWasRemoved) {
    Press("Remove group", {0, 2, 4});
    host.WillPress("Cancel", [](DialogModel& model) {
        EXPECT_EQ(ItemsOf(model.controls[1].rows), (Items{"{c}", "#H160#"}));
    });
    const EditedList edited = EditList(desk, screen, hostile);
    EXPECT_FALSE(edited.ok);
    EXPECT_EQ(edited.items, hostile);
}

TEST_F(EditListTest, ProtectedItemsStay) {
    screen.isProtected = [](const ListRow& row) { return row[0] == "-x"; };
    Press("Remove group", {0, 4});
    host.WillPress("OK");
    host.WillPress("OK");
    EXPECT_EQ(EditList(desk, screen, hostile).items, hostile);
    EXPECT_TRUE(host.shown[1].message.starts_with("Not allowed to delete group."));
}

TEST_F(EditListTest, SelectionModeWantsAnItem) {
    screen.allows = {.select = true, .edit = false, .copy = false, .add = false, .remove = false, .move = false};
    host.WillPress("OK");
    host.WillPress("OK");
    Press("OK", {3});
    const EditedList edited = EditList(desk, screen, hostile);
    EXPECT_EQ(host.shown[0].message, "Select group and press OK.");
    EXPECT_EQ(host.shown[1].message, "Select a group and press OK again.");
    EXPECT_EQ(edited.selected, std::vector<int>{3});
}

TEST_F(EditListTest, AnEmptyListTellsWhatToDo) {
    host.WillPress("Cancel", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].emptyText, "No group yet. Press New group to add one.");
        EXPECT_TRUE(model.options.Stays(2));
    });
    EditList(desk, screen, {});
}

TEST_F(EditListTest, ActionsOfTheCallerAnswerForAButton) {
    screen.unique = true;
    screen.edit = [](const ListRow& row) { return ListRow{row[0] + "!"}; };
    screen.add = [](const ListRow&) { return ListRow{"-X"}; };  // stands there already
    screen.copy = [](const ListRow&) { return std::nullopt; };
    Press("Edit group", {0});
    Press("New group");
    host.WillPress("OK");
    Press("Copy group", {0});
    Press("OK");
    EXPECT_EQ(EditList(desk, screen, hostile).items, (Items{"a|b!", "{c}", "\"d\" & e", "#H160#", "-x"}));
    EXPECT_EQ(host.shown[2].message, "\"-X\" is in the list already.");
}

TEST_F(EditListTest, ATypedTextIsAskedForAgainUntilItIsGood) {
    screen.check = [](const ListRow& row, const Rows& others) {
        return row[0].size() > 3 || others.size() != 5 ? std::string("Too long.") : std::string();
    };
    Press("New group");
    Type("much too long");
    Type("ok");
    Press("New group");
    host.WillPress("Cancel");
    Press("OK");
    EXPECT_EQ(EditList(desk, screen, hostile).items.back(), "ok");
    EXPECT_EQ(host.shown[2].problem, "Problem with data entered: Too long.");
}

TEST_F(EditListTest, SortsAndAddsALineWhereTheSelectionIs) {
    screen.allows.sort = screen.allows.addLine = true;
    Press("Sort", {1});
    Press("Add Line", {1});
    Type("new");
    Press("OK");
    EXPECT_EQ(EditList(desk, screen, {"b", "C", "a"}).items, (Items{"a", "new", "b", "C"}));
}

TEST_F(EditListTest, EditGridPartsTypedLinesAndEditsCellByCell) {
    screen.headers = {"Name", "Path"};
    screen.delimiter = ";";
    const auto cells = [](const std::string& first, const std::string& second) {
        return [=](DialogModel& model) {
            model.controls[2].value = first;
            model.controls[4].value = second;
        };
    };
    Press("New group");
    Type("n;p;q");
    Press("Edit group", {0});
    host.WillPress("OK", cells("a;1", "b"));
    Press("OK");
    const EditedRows edited = EditGrid(desk, screen, {{"a", "b"}, {"c"}});
    EXPECT_EQ(edited.rows, (Rows{{"a;1", "b"}, {"c"}, {"n", "p;q"}}));
    EXPECT_EQ(host.shown[1].message, "Enter item to add, seperate columns with ;");
    screen.delimiter = "tab";
    Press("New group");
    Type("x\ty");
    Press("OK");
    EXPECT_EQ(EditGrid(desk, screen, {}).rows, (Rows{{"x", "y"}}));
}

TEST_F(EditListTest, LongTextsAreCutOnTheScreenAlone) {
    const Items items{std::string(100000, 'x'), "two\rlines"};
    Press("Edit group", {0});
    host.WillPress("OK", [](DialogModel& model) { EXPECT_GT(model.controls[1].spec.Height(), 1000); });
    Press("Edit group", {1});
    host.WillPress("Cancel", [](DialogModel& model) { EXPECT_GT(model.controls[1].spec.Height(), 1000); });
    host.WillPress("OK", [](DialogModel& model) {
        EXPECT_LE(model.controls[1].rows[0][0].size(), kMostInCell);
        EXPECT_TRUE(model.controls[1].rows[0][0].ends_with("[TEXT TRUNCATED] ..."));
        EXPECT_TRUE(model.message.ends_with("\rSelect item and press Ctrl+Z to view the whole message."));
    });
    const EditedList edited = EditList(desk, screen, items);
    EXPECT_FALSE(edited.changed);
    EXPECT_EQ(edited.items, items);
}

}  // namespace
}  // namespace dialogs
