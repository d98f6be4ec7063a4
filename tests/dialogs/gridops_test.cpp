#include "dialogs/gridops.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "core/paths.h"
#include "dialogs/gridsave.h"
#include "tests/support/fakes.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempfolder.h"

namespace dialogs {
namespace {

std::string FirstCells(const Rows& rows) {
    std::string text;
    for (const auto& row : rows) text += row.at(0) + " ";
    return text;
}

TEST(SortRows, KeepsHeadersAndTheOrderOfEqualRows) {
    const Rows start{{"Name", "n"}, {"b1", "1,200"}, {"A", "9"}, {"B1", "9"}, {"\xC3\xA4", "na"}};
    Rows rows = start;
    EXPECT_EQ(SortRows(rows, 0, RowOrder::Text, Direction::Up, 1), (std::vector<int>{0, 2, 3, 1, 4}));
    EXPECT_EQ(FirstCells(rows), "Name A B1 b1 \xC3\xA4 ");
    rows = start;
    SortRows(rows, 1, RowOrder::Number, Direction::Down, 1);
    EXPECT_EQ(FirstCells(rows), "Name b1 A B1 \xC3\xA4 ");
    SortRows(rows, 7, RowOrder::Text);  // a column that no row has
    EXPECT_EQ(FirstCells(rows), "Name b1 A B1 \xC3\xA4 ");
}

TEST(MoveSelected, MovesABlockInOneStep) {
    const struct {
        std::vector<int> selected;
        Direction direction;
        std::string after;
        std::vector<int> now;
    } cases[] = {
        {{2, 3}, Direction::Up, "acdbe", {1, 2}},   {{0, 1}, Direction::Up, "abcde", {0, 1}},
        {{0, 3}, Direction::Up, "abdce", {0, 2}},   {{0, 1, 3}, Direction::Down, "cabed", {1, 2, 4}},
        {{3, 4}, Direction::Down, "abcde", {3, 4}}, {{-1, 9}, Direction::Down, "abcde", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.after);
        std::vector<char> items{'a', 'b', 'c', 'd', 'e'};
        std::vector<int> selected = c.selected;
        MoveSelected(items, selected, c.direction);
        EXPECT_EQ(std::string(items.begin(), items.end()), c.after);
        EXPECT_EQ(selected, c.now);
    }
}

TEST(CopyText, PutsHeadersInFrontAndKeepsLinesWhole) {
    const Rows rows{{"Term", "Count"}, {"a\tb", "1"}, {"c\r\nd"}, {"e", "3"}};
    EXPECT_EQ(CopyText(rows, {1, 0, 2, 1}, 1), "Term\tCount\na b\t1\nc  d\t\n");
    EXPECT_EQ(CopyText(rows, {0, 1, 9, 1}, 1), "Count\n1\n\n3\n");
    EXPECT_EQ(CopyRows(rows, {2, 7}, 1), "Term\tCount\ne\t3\n");
    EXPECT_EQ(CopyText({}, CellRange{0, 0, -1, 0}, 1), "");
}

TEST(RowFinder, FindsTextsIgnoringCaseInOneCell) {
    const RowFinder finder({{"H"}, {"\xC3\x84pfel", "x"}, {}, {"rot", "\xC3\xA4pfelbaum"}, {"hot\xFF", "el"}}, 1);
    EXPECT_EQ(finder.Matching("\xC3\x84PFEL"), (std::vector<int>{0, 2}));
    EXPECT_EQ(finder.Matching("lx"), std::vector<int>{});  // two cells are not one text
    EXPECT_EQ(finder.Matching("t\xFF"), std::vector<int>{});
    EXPECT_EQ(finder.Matching(""), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(finder.Next("\xC3\xA4pfel", 1), 2);
    EXPECT_EQ(finder.Next("\xC3\xA4pfel", 3), 0);  // from the top again
    EXPECT_EQ(finder.Next("none", 0), std::nullopt);
    EXPECT_EQ(RowFinder({}).Next("a", 0), std::nullopt);
}

TEST(GridCellText, CutsAtALetter) {
    EXPECT_EQ(GridCellText("short", 5), "short");
    EXPECT_EQ(GridCellText(std::string(30, 'a') + "\xC3\xA4", 31), std::string(11, 'a') + "[TEXT TRUNCATED] ...");
    EXPECT_EQ(GridCellText("a\xC3\xA4" + std::string(30, 'b'), 22), "a[TEXT TRUNCATED] ...");
}

struct GridSave : testing::Test {
    static constexpr int kPath = 1, kCharacters = 3, kLines = 4, kPrefix = 6, kPart = 7, kGuard = 8;
    bool Save(const GridToSave& grid) { return GridSaveDialog(desk, files, grid); }
    void WillSave(const std::string& path, const testsupport::ScriptedHost::Fill& more = {}) {
        host.WillPress("OK", [=](DialogModel& model) {
            model.controls[kPath].value = path;
            if (more) more(model);
        });
    }
    static void Choose(DialogModel& model, int option) {
        for (const int number : {2, kCharacters, kLines})
            model.controls[number].value = number == option ? "True" : "False";
    }

    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    testsupport::FakeProgress progress{};
    testsupport::ScriptedHost host{};
    core::IniStore ini{user};
    core::Paths paths{folder.Path(), "/nowhere"};
    Desk desk{.ini = ini, .host = host, .screens = folder.File("screens.ini")};
    FileDesk files{user, progress, paths};
    Rows rows{{"Term", "n"}, {"=a", "1"}, {"b,c", "2"}};
};

TEST_F(GridSave, SavesCellsGuardedUnlessTheProgramOptionIsOff) {
    WillSave("a.csv");  // no folder
    WillSave(folder.File("none/a.csv"));
    WillSave(folder.File("a.csv"));
    host.WillPress("OK");
    EXPECT_TRUE(Save({.rows = rows}));
    EXPECT_NE(host.shown[1].problem, "");
    EXPECT_NE(host.shown[2].problem, "");
    EXPECT_EQ(host.shown.back().message, "Data written successfully to file: " + folder.File("a.csv"));
    EXPECT_EQ(folder.Read("a.csv"), "Term,n\r\n'=a,1\r\n\"b,c\",2\r\n");

    WillSave("b.csv", [](DialogModel& model) { model.controls[kPart].value = model.controls[kGuard].value = "True"; });
    host.WillPress("OK");
    EXPECT_TRUE(Save({.rows = rows, .selected = CellRange{1, 1, 2, 1}, .folder = folder.Path()}));
    EXPECT_EQ(folder.Read("b.csv"), "1\r\n2\r\n");
    EXPECT_EQ(host.open, 0);

    ASSERT_TRUE(ini.IniPutBool("Parm", "CSVSafe", false, desk.screens));
    WillSave("c.csv");
    host.WillPress("OK");
    EXPECT_TRUE(Save({.rows = rows, .folder = folder.Path()}));
    EXPECT_EQ(folder.Read("c.csv"), "Term,n\r\n=a,1\r\n\"b,c\",2\r\n");
}

TEST_F(GridSave, SavesCharactersAndSortedLines) {
    WillSave("c.csv", [](DialogModel& model) { Choose(model, kCharacters); });
    host.WillPress("OK");
    EXPECT_TRUE(Save({.rows = {{"b\xC3\xA4"}, {"b"}}, .folder = folder.Path()}));
    EXPECT_EQ(folder.Read("c.csv"), "Character,Code,Count\r\nb,U+0062,2\r\n\xC3\xA4,U+00E4,1\r\n");
    WillSave("d.txt", [](DialogModel& model) {
        Choose(model, kLines);
        model.controls[kPrefix].value = "- ";
    });
    host.WillPress("OK");
    EXPECT_TRUE(Save({.rows = rows, .currentCell = "pear\rApple\r\nfig", .folder = folder.Path()}));
    EXPECT_EQ(folder.Read("d.txt"), "- Apple\r\n- fig\r\n- pear\r\n");
}

TEST_F(GridSave, AsksAgainWhenTheFileIsToStay) {
    folder.Write("a.csv", "old");
    user.WillCancel();
    WillSave("a.csv");
    host.WillPress("OK");
    host.WillPress("Cancel");
    EXPECT_FALSE(Save({.rows = rows, .folder = folder.Path()}));
    EXPECT_TRUE(host.shown[1].message.starts_with("Error when try to write data. Not complete."));
    EXPECT_EQ(folder.Read("a.csv"), "old");
    EXPECT_TRUE(host.Done());
}

}  // namespace
}  // namespace dialogs
