#include "dialogs/csvfile.h"

#include <gtest/gtest.h>

#include "core/error.h"
#include "core/paths.h"
#include "tests/support/fakes.h"
#include "tests/support/fulldisk.h"
#include "tests/support/tempfolder.h"

namespace dialogs {
namespace {

using testsupport::FullDisk;

TableArray Table(const std::vector<std::vector<TableArray::Cell>>& rows, long firstRow = 0, long firstCol = 0) {
    TableArray table(firstRow, firstCol);
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t col = 0; col < rows[row].size(); ++col)
            table.ArrPut2(firstRow + static_cast<long>(row), firstCol + static_cast<long>(col), rows[row][col]);
    return table;
}

std::string Shown(const TableArray& table) {
    std::string text;
    for (long row = table.FirstRow(); row <= table.LastRow(); ++row) {
        for (long col = table.FirstCol(); col <= table.LastCol(); ++col)
            text.append("[").append(table.At(row, col) ? table.Text(row, col) : "Null").append("]");
        text += '\n';
    }
    return text;
}

struct CsvFile : testing::Test {
    std::string Saved(const TableArray& table, const CsvWriteRules& rules = {}) {
        folder.Write("a.csv", "");
        CsvWriteRules deleting = rules;
        deleting.existsAction = 'D';
        const CsvSaved saved = SaveCSV(desk, folder.File("a.csv"), table, deleting);
        EXPECT_TRUE(saved) << saved.error;
        return folder.Read("a.csv");
    }
    std::string Read(std::string_view text, const CsvReadRules& rules = {}) {
        const CsvRead read = ReadCSV(desk, folder.Write("r.csv", text), rules);
        EXPECT_TRUE(read.result) << read.result.error;
        return Shown(read.table);
    }
    ~CsvFile() override { EXPECT_EQ(progress.open, 0); }

    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    testsupport::FakeProgress progress{};
    core::Paths paths{folder.Path(), "/nowhere"};
    FileDesk desk{user, progress, paths};
};

TEST(TableArrayBounds, GrowToWhatIsPut) {
    TableArray table(1, 1);
    EXPECT_EQ(table.LastRow(), 0);
    table.ArrPut2(3, 2, "x");
    table.ArrPut2(1, 4, std::nullopt);
    EXPECT_EQ(Shown(table), "[Null][Null][Null][Null]\n[Null][Null][Null][Null]\n[Null][x][Null][Null]\n");
    EXPECT_THROW(table.ArrPut2(0, 1, "x"), core::ErrorNumber);
    EXPECT_THROW((void)table.At(1, 5), core::ErrorNumber);
}

TEST_F(CsvFile, WritesCellsInBothModes) {
    const TableArray table = Table({{"a\"b,c", std::nullopt, "plain"}, {"x\r\ny", "=1+1", "-1.5"}});
    EXPECT_EQ(CsvCell("-12 %", CsvQuotes::Doubled, CsvGuard::Spreadsheet), "-12 %");
    EXPECT_EQ(CsvCell("-x %", CsvQuotes::Doubled, CsvGuard::Spreadsheet), "'-x %");
    EXPECT_EQ(Saved(table), "\"a\"\"b,c\",,plain\r\nx  y,=1+1,-1.5\r\n");
    EXPECT_EQ(Saved(table, {.quoted = false}), "\"a&34#b,c\",,plain\r\nx  y,=1+1,-1.5\r\n");
    EXPECT_EQ(Saved(table, {.delimiter = ';', .guard = CsvGuard::Spreadsheet}),
              "\"a\"\"b,c\";;plain\r\nx  y;'=1+1;-1.5\r\n");
    EXPECT_EQ(Saved(table, {.firstRow = 1, .keepLineEnds = true}), "\"x\r\ny\",=1+1,-1.5\r\n");
    EXPECT_EQ(Saved(table, {.firstRow = 1, .firstCol = 1, .header = "head\n", .trailer = "end"}),
              "head\n=1+1,-1.5\r\nend");
    EXPECT_EQ(Saved(TableArray(1, 1), {.header = "h"}), "h");
}

TEST_F(CsvFile, ReadsQuotedCellsAndAnyLineEnd) {
    EXPECT_EQ(Read("\"a,b\",c\r\n"), "[a,b][c]\n");
    EXPECT_EQ(Read("\"a\"\"b\",c\n1,2"), "[ab][c]\n[1][2]\n");
    EXPECT_EQ(Read("\xEF\xBB\xBFh\xE4,x\r\n"), "[h\xC3\xA4][x]\n");
    EXPECT_EQ(Read(""), "");
    EXPECT_EQ(Read("a,b\n1\n1,2,3\n"), "[a][b]\n[1][]\n[1][2]\n");  // the first line fixes the columns
    EXPECT_EQ(Read("a;b\n", {.delimiter = ';'}), "[a][b]\n");
    const std::string longCell(200000, 'x');
    EXPECT_EQ(Read(longCell + ",y\n1,2\n"), "[" + longCell + "][y]\n[1][2]\n");
}

TEST_F(CsvFile, SkipsToTheStartText) {
    EXPECT_EQ(Read("junk\n\"Term\",n\na,1\n", {.startText = "Term"}), "[Term][n]\n[a][1]\n");
    EXPECT_EQ(Read("junk\n", {.startText = "Term"}), "");
}

TEST_F(CsvFile, KeepsRowsWithKeysInTheRange) {
    const std::string numbers = "key,n\na,9\nb,10\nc,11\nd,100\n";
    EXPECT_EQ(Read(numbers, {.keyColumn = 1, .from = "10", .to = "11"}), "[b][10]\n[c][11]\n");
    EXPECT_EQ(Read(numbers, {.keyColumn = 1, .from = "11"}), "[c][11]\n[d][100]\n");
    EXPECT_EQ(Read(numbers, {.keyColumn = 1, .to = "9"}), "[a][9]\n");  // "n" is no number
    EXPECT_EQ(Read("\"1,200\"\nx\n", {.keyColumn = 0, .from = "1,000"}), "[1,200]\n");
    EXPECT_EQ(Read("a\n", {.keyColumn = 0}), "[a]\n");
    EXPECT_EQ(Read("date,1\n31 Dec 2008,2\n2009-01-01,3\n", {.keyColumn = 0, .from = "2008-12-31", .to = "2008-12-31"}),
              "[31 Dec 2008][2]\n");
    EXPECT_EQ(Read("Apple\nbean\nCorn\n", {.keyColumn = 0, .from = "B", .to = "c"}), "[bean]\n");
    EXPECT_EQ(Read("a\n", {.keyColumn = 5, .from = "x"}), "");
}

TEST_F(CsvFile, WhatIsWrittenReadsBack) {
    const TableArray table = Table({{"a|b", "{c}", "d,e"}, {"&amp;", "'", "f g"}});
    EXPECT_EQ(Read(Saved(table)), Shown(table));
}

TEST_F(CsvFile, AsksBeforeAFileGoes) {
    folder.Write("a.csv", "old");
    user.WillCancel();
    const CsvSaved kept = SaveCSV(desk, "C:\\a.csv", Table({{"new"}}));
    EXPECT_FALSE(kept);
    EXPECT_FALSE(kept.opened);
    EXPECT_EQ(folder.Read("a.csv"), "old");
    user.WillPressOk();
    EXPECT_TRUE(SaveCSV(desk, "C:\\a.csv", Table({{"new"}})));
    EXPECT_TRUE(SaveLines(desk, "C:\\a.csv", {"one", "two"}, 'A'));
    EXPECT_EQ(folder.Read("a.csv"), "new\r\none\r\ntwo\r\n");
    user.WillPressOk();
    EXPECT_FALSE(ReadCSV(desk, "C:\\none.csv").result);
    EXPECT_FALSE(SaveCSV(desk, "/dev/full", Table({{"x"}}), {.existsAction = 'A'}));
}

TEST_F(CsvFile, AFullDiskOrAStopLeavesEverythingAsItWas) {
    const TableArray big = Table(std::vector<std::vector<TableArray::Cell>>(20000, {std::string(20, 'x')}));
    folder.Write("old.csv", "old");
    folder.Write("empty.csv", "");
    const auto failed = [&](const char* name, char existsAction) {
        const CsvSaved saved = SaveCSV(desk, folder.File(name), big, {.existsAction = existsAction});
        EXPECT_FALSE(saved);
        EXPECT_TRUE(saved.opened);
        EXPECT_NE(saved.error, "");
        return saved.stopped;
    };
    const struct {
        const char* name;
        char existsAction;
    } cases[] = {{"old.csv", 'W'},   {"old.csv", 'D'}, {"old.csv", 'A'},
                 {"empty.csv", 'A'}, {"new.csv", 'W'}, {"new.csv", 'A'}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + c.existsAction);
        if (c.existsAction == 'W' && folder.Read(c.name) == "old") user.WillPressOk(), user.WillPressOk();
        {
            const FullDisk full(100000);
            EXPECT_FALSE(failed(c.name, c.existsAction));
        }
        progress.stopAtStep = progress.steps + 15000;
        EXPECT_TRUE(failed(c.name, c.existsAction));
        progress.stopAtStep = 0;
        EXPECT_EQ(folder.Count(), 2u);
        EXPECT_EQ(folder.Read("old.csv"), "old");
        EXPECT_EQ(folder.Read("empty.csv"), "");
    }
    EXPECT_THROW(SaveCSV(desk, folder.File("old.csv"), big, {.firstRow = -1, .existsAction = 'A'}), core::ErrorNumber);
    EXPECT_EQ(folder.Read("old.csv"), "old");
    progress.stopAtStep = progress.steps + 2;
    const CsvRead read = ReadCSV(desk, folder.Write("r.csv", "1\n2\n3\n"));
    EXPECT_TRUE(read.stopped);
    EXPECT_FALSE(read.result);
}

}  // namespace
}  // namespace dialogs
