#include "dialogs/twolist.h"

#include <gtest/gtest.h>

#include <chrono>

#include "core/inistore.h"
#include "tests/support/fakes.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempfolder.h"

namespace dialogs {
namespace {

using Items = std::vector<std::string>;

struct TwoListTest : testing::Test {
    TwoListTest() {
        plan.title = "Terms";
        plan.item = "term";
        plan.listName = "all terms";
    }
    ~TwoListTest() override {
        EXPECT_TRUE(host.Done());
        EXPECT_EQ(host.open, 0);
        EXPECT_EQ(progress.open, 0);
    }
    enum class Side { Left, Right };
    static Control& List(DialogModel& model, Side side) {
        int number = 0;
        for (Control& control : model.controls.All())
            if (control.Is(ControlType::ListBox) && number++ == static_cast<int>(side)) return control;
        throw std::runtime_error("no such list");
    }
    // Selects rows on one side (none on the other) and presses a button.
    void Press(const std::string& caption, Side side, const std::vector<int>& rows) {
        host.WillPress(caption, [=](DialogModel& model) {
            List(model, Side::Left).Select(side == Side::Left ? rows : std::vector<int>());
            List(model, Side::Right).Select(side == Side::Right ? rows : std::vector<int>());
        });
    }
    void PressWithWord(const std::string& caption, const std::string& word) {
        host.WillPress(caption, [=](DialogModel& model) { model.controls.All().back().value = word; });
    }
    void More(const std::string& caption) {
        host.WillPress("More");
        host.WillPress(caption);
    }
    void Type(const std::string& text) {
        host.WillPress("OK", [text](DialogModel& model) { model.controls[1].value = text; });
    }
    void Ok(int times = 1) {
        while (times-- > 0) host.WillPress("OK");
    }
    TwoListResult Run(const Items& left, const Items& right) {
        return TwoListSelect(desk, progress, plan, {left, {}}, {right, {}});
    }
    const std::string& LastMessage(std::size_t fromEnd) const {
        return host.shown[host.shown.size() - 1 - fromEnd].message;
    }
    void UseGroups() {
        plan.groups = {"STgrps", "Groups", folder.File("g.ini")};
        plan.group = "Shoes";
        GroupLists groups(ini, plan.groups);
        groups.SetMembers(groups.Add("Shoes"), {"boot", "a|b"});
        groups.SetMembers(groups.Add("Hats"), {"cap", "{hat}"});
        ASSERT_TRUE(groups.Save());
    }
    Items Members(std::string_view name) {
        const GroupLists groups(ini, plan.groups);
        return groups.All().at(groups.Find(name).value()).members;
    }

    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    testsupport::ScriptedHost host{};
    testsupport::FakeProgress progress{};
    core::IniStore ini{user};
    Desk desk{ini, host};
    TwoListPlan plan{};
};

TEST_F(TwoListTest, WithoutASelectionNothingMoves) {
    host.WillPress("Add -->");
    Ok();
    host.WillPress("<-- Remove");
    Ok();
    host.WillPress("Move Up");
    Ok(2);
    const TwoListResult result = Run({"a", "b"}, {"c"});
    EXPECT_EQ(host.shown[1].message, "First select terms from the *LEFT* column and press \"Add\" again.");
    EXPECT_EQ(host.shown[3].message, "First select terms from the *RIGHT* column and press \"Remove\" again.");
    EXPECT_TRUE(result.ok);
    EXPECT_FALSE(result.changed);
    EXPECT_EQ(result.left.texts, (Items{"a", "b"}));
    EXPECT_EQ(result.right.texts, Items{"c"});
}

TEST_F(TwoListTest, ItemsMoveWithTheirKeysAndGoBackToTheirPlaces) {
    const Items hostile{"a|b", "{c}", "\"d\" & e", "#H160#"};
    Press("Add -->", Side::Left, {0, 2});
    Press("<-- Remove", Side::Right, {1, 2});
    Press("Add -->", Side::Left, {1});
    Press("Move Up", Side::Right, {1});
    Ok();
    const TwoListResult result = TwoListSelect(desk, progress, plan, {hostile, {"1", "2", "3", "4"}}, {{"old"}, {"9"}});
    EXPECT_EQ(result.right.texts, (Items{"{c}", "old"}));
    EXPECT_EQ(result.right.keys, (Items{"2", "9"}));
    EXPECT_EQ(result.left.texts, (Items{"a|b", "\"d\" & e", "#H160#"}));
    EXPECT_EQ(result.left.keys, (Items{"1", "3", "4"}));
}

TEST_F(TwoListTest, CancelAsksWhenSomethingChanged) {
    host.WillPress("Cancel");
    EXPECT_FALSE(Run({"a"}, {}).ok);
    Press("Add -->", Side::Left, {0});
    host.WillPress("Cancel");
    host.WillPress("Back to the lists");
    host.WillPress("Cancel");
    host.WillPress("Cancel");
    const TwoListResult result = Run({"a"}, {});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.left.texts, Items{"a"});
    EXPECT_TRUE(result.right.texts.empty());
}

TEST_F(TwoListTest, CutsTheSelectionAtMaxNo) {
    plan.maxNo = {"Main", "MaxNo", folder.Write("m.ini", "[Main]\nMaxNo=3\n")};
    Press("Add -->", Side::Left, {0, 1, 2});
    Ok(2);
    const TwoListResult result = Run({"a", "b", "c"}, {"x"});
    EXPECT_TRUE(host.shown[1].message.ends_with("4 values. Will be restricted to first 3"));
    EXPECT_EQ(result.right.texts, (Items{"x", "a", "b"}));
    EXPECT_EQ(result.left.texts, Items{"c"});
    Ok(2);
    EXPECT_EQ(Run({}, {"1", "2", "3", "4"}).right.texts, (Items{"1", "2", "3"}));
}

TEST_F(TwoListTest, ATypedValueIsTakenFromTheLeft) {
    More("Add Line");
    Type("b");
    More("Add Line");
    Type("new");
    More("Add Line");
    Type("new");
    Ok(2);
    const TwoListResult result = TwoListSelect(desk, progress, plan, {{"a", "b"}, {"1", "2"}}, {});
    EXPECT_EQ(result.left.texts, Items{"a"});
    EXPECT_EQ(result.right.texts, (Items{"b", "new"}));
    EXPECT_EQ(result.right.keys, (Items{"2", ""}));
    EXPECT_EQ(LastMessage(1), "\"new\" is in the list already.");
}

TEST_F(TwoListTest, SelectsWhatHoldsTheWord) {
    PressWithWord("Find all terms with Word", "SCH\xC3\x96");
    host.WillPress("Find all terms with Word", [](DialogModel& model) {
        EXPECT_EQ(List(model, Side::Left).Selected(), (std::vector<int>{0, 2}));
        model.controls.All().back().value = "none";
    });
    Ok(2);
    Run({"sch\xC3\xB6n", "other", "wundersch\xC3\xB6n"}, {});
    EXPECT_EQ(LastMessage(1), "Not Found");
}

TEST_F(TwoListTest, MarksItemsThatStandTwice) {
    host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(List(model, Side::Right).rows, (Rows{{"a"}, {"b"}, {"a **DUPL**"}}));
    });
    EXPECT_EQ(Run({}, {"a", "b", "a"}).right.texts, (Items{"a", "b", "a"}));
}

TEST_F(TwoListTest, AMemberOfAnotherGroupMovesWhenToldSo) {
    UseGroups();
    Press("Add -->", Side::Left, {0, 1, 2});
    host.WillPress("No");
    host.WillPress("Yes to All");
    Ok();
    const TwoListResult result = Run({"cap", "fez", "{hat}"}, {"boot", "a|b"});
    EXPECT_EQ(host.shown[1].message, "term: cap << currently in group: Hats\rDo you want to move it?");
    EXPECT_EQ(result.right.texts, (Items{"boot", "a|b", "fez", "{hat}"}));
    EXPECT_EQ(Members("Shoes"), result.right.texts);
    EXPECT_EQ(Members("Hats"), Items{"cap"});
}

TEST_F(TwoListTest, MovesToANewGroupAndRefusesItsBadNames) {
    UseGroups();
    const auto bad = [](const std::string& name) {
        return [name](DialogModel& model) { model.controls[1].value = name; };
    };
    Press("Move --> Other List", Side::Right, {1});
    host.WillPress("New Group");
    ASSERT_TRUE(ini.IniPut("STgrps", "Limit", "5", plan.groups.file));  // no group may take its place
    for (const char* name : {"a|b", "ends.", "SplitEntry.x", "hats", "groups", "limit"})
        host.WillPress("OK", bad(name));
    Type("Odd & ends");
    host.WillPress("OK", [](DialogModel& model) { EXPECT_EQ(model.controls[1].Selected(), std::vector<int>{1}); });
    Ok();
    const std::size_t first = 3;
    EXPECT_EQ(Run({}, {"boot", "a|b"}).right.texts, Items{"boot"});
    EXPECT_EQ(host.shown[first].problem, "Problem with data entered: The following characters are not allowed: |");
    EXPECT_EQ(host.shown[first + 1].problem, "Problem with data entered: The Last character must by a-z or 0-9");
    for (std::size_t i = first + 2; i < first + 6; ++i) EXPECT_NE(host.shown[i].problem, "");
    EXPECT_EQ(Members("Odd & ends"), Items{"a|b"});
    EXPECT_EQ(Members("Shoes"), Items{"boot"});
}

TEST_F(TwoListTest, FindsInAllGroupsAndTellsTheGroupOfAnItem) {
    UseGroups();
    PressWithWord("Find terms with Word in ALL Groups", "A");
    host.WillPress("Remove from these results", [](DialogModel& model) {
        EXPECT_EQ(model.message, "Find in all groups. Any of terms with word: A");
        EXPECT_EQ(
            model.controls[1].rows,
            (Rows{
                {"Group", "term"}, {"Shoes", "a|b"}, {"Hats", "cap"}, {"Hats", "{hat}"}, {"UnSelected list", "cap"}}));
        model.controls[1].Select({0});
    });
    Ok();
    host.WillPress("Find List Name", [](DialogModel& model) {
        EXPECT_EQ(List(model, Side::Left).Selected(), std::vector<int>{0});
        EXPECT_TRUE(List(model, Side::Right).Selected().empty());
    });
    Ok();
    PressWithWord("Find terms with Word in ALL Groups", "none");
    Ok(2);
    Run({"cap"}, {"boot", "a|b"});
    EXPECT_EQ(host.shown[4].message, "term: cap << currently in group: Hats");
    EXPECT_EQ(LastMessage(1), "Not Found");
    EXPECT_EQ(Members("Hats"), (Items{"cap", "{hat}"}));  // removed from the results alone
}

TEST_F(TwoListTest, SkippedItemsAreNotOffered) {
    plan.skipList = {"Main", "Skip", folder.File("s.ini")};
    ASSERT_TRUE(WriteTexts(ini, plan.skipList, {"x|y"}));
    host.WillPress("More", [](DialogModel& model) {
        EXPECT_EQ(List(model, Side::Left).rows, (Rows{{"a"}, {"b"}}));
        List(model, Side::Left).Select({1});
    });
    host.WillPress("Copy selected to Skip List");
    More("Edit Skip List");
    host.WillPress("Remove term", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows, (Rows{{"x|y"}, {"b"}}));
        model.controls[1].Select({0});
    });
    Ok(2);
    EXPECT_EQ(Run({"a", "x|y", "b"}, {}).left.texts, (Items{"a", "x|y"}));
    EXPECT_EQ(ReadTexts(ini, plan.skipList), Items{"b"});
}

TEST_F(TwoListTest, SavedFiltersMoveItemsByTheirRules) {
    UseGroups();
    plan.filters = {"Filters", "Rules", folder.File("f.ini")};
    const std::vector<MoveRule> rules{{"o|o", "R", ""}, {"HAT", "R", "Hats"}, {"boot", "L", ""}, {"gone", "R", "None"}};
    ASSERT_TRUE(WriteRules(ini, plan.filters, rules));
    EXPECT_EQ(ReadRules(ini, plan.filters), rules);
    host.WillPress("Apply Saved Filters - Auto Move");
    host.WillPress("Apply");
    Ok(2);
    const TwoListResult result = Run({"top hat", "fo|ot", "gone"}, {"boot", "a|b"});
    EXPECT_EQ(LastMessage(1), "3 term(s) moved.");
    EXPECT_EQ(result.left.texts, (Items{"gone", "boot"}));
    EXPECT_EQ(result.right.texts, (Items{"a|b", "fo|ot"}));
    EXPECT_EQ(Members("Hats"), (Items{"cap", "{hat}", "top hat"}));
}

TEST_F(TwoListTest, RulesAreRemovedForGoodOrForThisTime) {
    plan.filters = {"Filters", "Rules", folder.File("f.ini")};
    ASSERT_TRUE(WriteRules(ini, plan.filters, {{"a", "R", ""}, {"b", "R", ""}, {"c", "R", ""}}));
    host.WillPress("Apply Saved Filters - Auto Move");
    host.WillPress("Remove", [](DialogModel& model) { model.controls[1].Select({0, 1}); });
    host.WillPress("Yes");  // b, then a
    host.WillPress("No");
    host.WillPress("Apply", [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows.size(), 1u); });
    Ok(2);
    EXPECT_EQ(Run({"a", "b", "c"}, {}).right.texts, Items{"c"});
    EXPECT_EQ(ReadRules(ini, plan.filters), (std::vector<MoveRule>{{"a", "R", ""}, {"c", "R", ""}}));
}

TEST_F(TwoListTest, OffersTypedValuesAsFilters) {
    plan.filters = {"Filters", "Rules", folder.File("f.ini")};
    More("Add Line");
    Type("typed|one");
    Ok();
    host.WillPress("Yes");
    Run({}, {});
    EXPECT_EQ(ReadRules(ini, plan.filters), (std::vector<MoveRule>{{"typed|one", "R", ""}}));
    More("Add Line");
    Type("two");
    PressWithWord("OK", "a&b");
    host.WillPress("Save 1x Select Word Filter: a&b");
    Run({}, {});
    EXPECT_EQ(ReadRules(ini, plan.filters).back().rule, "a&b");
}

TEST_F(TwoListTest, TheCallersButtonsOptionsAndConsent) {
    plan.skipList = {"Main", "Skip", folder.File("s.ini")};
    ASSERT_TRUE(WriteTexts(ini, plan.skipList, {"c"}));
    plan.options = {"&All of them", "An&y"};
    plan.option = 1;
    plan.showKeys = true;
    plan.buttons = {{"&Look", [](TwoListState& state) { return state.left.texts.empty(); }},
                    {"&Halve", [](TwoListState& state) {
                         EXPECT_EQ(state.left.texts, (Items{"b", "c"}));  // what is skipped, too
                         EXPECT_EQ(state.skip, Items{"c"});
                         state.left = {{"c", "d"}, {"3", "4"}};
                         return true;
                     }}};
    int asked = 0;
    plan.mayEnd = [&](const ListSide& right, int option) {
        EXPECT_EQ(right.texts, Items{"a"});
        EXPECT_EQ(option, 0);
        return ++asked == 2;
    };
    host.WillPress("Look");
    host.WillPress("Add -->", [](DialogModel& model) {
        EXPECT_EQ(List(model, Side::Left).rows, (Rows{{"a  [1]"}, {"b"}}));
        List(model, Side::Left).Select({0});
    });
    host.WillPress("Halve");
    host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(List(model, Side::Left).rows, (Rows{{"d  [4]"}}));
        std::vector<Control>& all = model.controls.All();
        EXPECT_TRUE(all.back().Ticked());
        all[all.size() - 2].value = "True";
        all.back().value = "False";
    });
    Ok();
    const TwoListResult result = TwoListSelect(desk, progress, plan, {{"a", "b", "c"}, {"1"}}, {});
    EXPECT_TRUE(result.ok && result.changed);
    EXPECT_EQ(result.option, 0);
    EXPECT_EQ(result.left.texts, Items{"d"});
    EXPECT_EQ(result.right.keys, Items{"1"});
}

TEST_F(TwoListTest, AFailedWriteKeepsTheScreenUp) {
    UseGroups();
    plan.groups.file = "/proc/no/such/g.ini";
    Press("Add -->", Side::Left, {0});
    Ok();
    user.WillPressOk();
    host.WillPress("Cancel");
    host.WillPress("Cancel");
    EXPECT_FALSE(Run({"x"}, {}).ok);
}

TEST_F(TwoListTest, ShowsTheFirstBytesOfAHugeItem) {
    Press("More", Side::Left, {0});
    host.WillPress("View whole term");
    Ok();
    host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].value, std::string(30000, 'x') + ".... TRUNCATED due to error.");
    });
    Ok();
    Run({std::string(40000, 'x')}, {});
    EXPECT_EQ(host.shown[2].message,
              "Error 1413 when try to show that item. Press OK to attempt to show only the first 30,000 bytes");
}

TEST_F(TwoListTest, AHundredThousandItemsMoveInOneStep) {
    constexpr int kCount = 100000;
    Items items;
    std::vector<int> all;
    for (int i = 0; i < kCount; ++i) {
        items.push_back("term number " + std::to_string(i));
        all.push_back(i);
    }
    Press("Add -->", Side::Left, all);
    Press("<-- Remove", Side::Right, all);
    PressWithWord("Find all terms with Word", "NUMBER 9999");
    host.WillPress("Add -->");
    Ok();
    const auto start = std::chrono::steady_clock::now();
    const TwoListResult result = Run(items, {});
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(result.right.texts.size(), 11u);
    EXPECT_EQ(result.left.texts.size(), items.size() - 11);
    EXPECT_EQ(progress.started, 2);
    EXPECT_LT(took.count(), 30);  // quadratic work takes minutes
}

TEST_F(TwoListTest, AStopMovesNothing) {
    Items items(5000, "x");
    std::vector<int> all(items.size());
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<int>(i);
    progress.stopAtStep = 2;
    Press("Add -->", Side::Left, all);
    Ok();
    EXPECT_EQ(Run(items, {}).left.texts.size(), items.size());
}

}  // namespace
}  // namespace dialogs
