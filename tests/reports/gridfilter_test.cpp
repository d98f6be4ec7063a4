#include "reports/gridfilter.h"

#include "reports/gridsort.h"
#include "tests/reports/handmade.h"

namespace reports {
namespace {

using testsupport::Texts;
using Numbers = std::vector<std::size_t>;

class GridFilter : public testsupport::Handmade {
protected:
    GridFilter() {
        results.Targets.resize(1);
        Add("Red boots", 8, 4, 10, {3});
        Add("red SHOES", 5, 3, 4, {1});
        Add("\xc3\x84pfel", 3, 0, 0);
        Add("other", 1, 1, 9);
        Add("more", 1, 0, 0);
    }
    static Texts LeftCells(const ReportGrid& grid) {
        Texts cells;
        for (const GridRow& row : grid.rows) cells.push_back(row.cells[kColValue]);
        return cells;
    }
};

TEST_F(GridFilter, AllWordsInAnyOrderAndCase) {
    const ReportGrid grid = Show(ReportKind::Top, 3);  // three values, rest, gap, total
    ASSERT_EQ(grid.rows.size(), 6u);
    const struct {
        const char* words;
        Numbers lines;
    } cases[] = {
        {"RED", {0, 1, 4, 5}},     {"  shoes  red ", {1, 4, 5}}, {"\xc3\xa4PF", {2, 4, 5}}, {"rest", {3, 4, 5}},
        {"total", {4, 5}},  // stays in any case and is not among the lines found
        {" ", {0, 1, 2, 3, 4, 5}},
    };
    for (const auto& c : cases) EXPECT_EQ(FilterLines(grid, c.words), c.lines) << c.words;
    EXPECT_EQ(CountFiltered(grid, FilterLines(grid, "total")), 0u);
    EXPECT_TRUE(FilterLines(ReportGrid{}, "x").empty());
}

TEST_F(GridFilter, TheTotalOfAllLinesIsTheReportsOwn) {
    const ReportGrid grid = Show(ReportKind::Top, 3);
    Texts all = FilteredTotal(grid, FilterLines(grid, ""));
    EXPECT_EQ(all[kColValue], ".. Total .. of 4 filtered lines");
    all[kColValue] = kTotal;
    EXPECT_EQ(all, grid.rows.back().cells);
}

TEST_F(GridFilter, TheTotalOfSomeLinesIsMadeOfWhatTheyShow) {
    const ReportGrid grid = Show(ReportKind::All);
    const Texts some = FilteredTotal(grid, FilterLines(grid, "red"));
    // Averages of 2.5 and 1.3, as shown, over 7 who stayed.
    EXPECT_EQ(some, (Texts{".. Total .. of 2 filtered lines", "13", "7", "54 %", "0.5", "", "4", "31 %", "57 %", ""}));
    const Texts none = FilteredTotal(grid, FilterLines(grid, "nothing"));
    EXPECT_EQ(none, (Texts{".. Total .. of 0 filtered lines", "0", "0", "na", "na", "", "0", "na", "na", ""}));
    EXPECT_EQ(grid.rows.back().cells[kColVisitors], "18");
}

TEST(GridFilterLimit, SumsNoMoreLinesThanAReportAndSaysSo) {
    ReportGrid grid;
    grid.columns.resize(kFirstTargetColumn);
    constexpr std::size_t kLines = 40000;
    for (std::size_t i = 0; i < kLines; ++i) {
        const std::size_t row = grid.AddRow(LineKind::Value);
        grid.Cell(row, kColVisitors) = "1";
    }
    const Texts total = FilteredTotal(grid, FilterLines(grid, ""));
    EXPECT_EQ(total[kColValue], ".. Total .. of the first 32,767 of 40,000 filtered lines");
    EXPECT_EQ(total[kColVisitors], "32767");
}

TEST_F(GridFilter, HeadersSortWhatStandsAboveTheRest) {
    ReportGrid grid = Show(ReportKind::Top, 3);
    const Texts bottom{".. Rest ..", "", ".. Total .."};
    const struct {
        int column;
        bool descending;
        Texts top;
    } cases[] = {
        {kColVisitors, false, {"\xc3\x84pfel", "red SHOES", "Red boots"}},
        {kColStayPercent, true, {"red SHOES", "Red boots", "\xc3\x84pfel"}},  // 60 %, 50 %, 0 %
        {kColAverage, true, {"Red boots", "red SHOES", "\xc3\x84pfel"}},      // na last
        {kColAverage, false, {"red SHOES", "Red boots", "\xc3\x84pfel"}},     // either way
        {kColValue, false, {"Red boots", "red SHOES", "\xc3\x84pfel"}},
        {kColValue, true, {"\xc3\x84pfel", "red SHOES", "Red boots"}},
    };
    for (const auto& c : cases) {
        SortByHeader(grid, c.column, c.descending);
        Texts expected = c.top;
        expected.insert(expected.end(), bottom.begin(), bottom.end());
        EXPECT_EQ(LeftCells(grid), expected) << c.column << c.descending;
    }
    SortLines(grid, kColVisitors, SortKind::NumericDescending);  // the total among the lines
    SortByHeader(grid, kColVisitors, true);
    EXPECT_EQ(LeftCells(grid).back(), kTotal);
    SortByHeader(grid, 99, true);  // no such column
}

TEST(HeaderSort, NumbersWithSignsAndWordsAmongThem) {
    ReportGrid grid;
    grid.columns = {{.kind = ColumnKind::Value}, {.kind = ColumnKind::Deviation}};
    for (const char* cell : {"none", "+5.0 %", "-12.5 %", "", "1,000.0 %", "100 %"}) {
        const std::size_t row = grid.AddRow(LineKind::Value);
        grid.Cell(row, 0) = std::to_string(grid.rows.size() + 7);  // 8 ... 13
        grid.Cell(row, 1) = cell;
    }
    const auto column = [&grid](int number) {
        Texts cells;
        for (const GridRow& row : grid.rows) cells.push_back(row.cells[static_cast<std::size_t>(number)]);
        return cells;
    };
    SortByHeader(grid, 1, true);
    EXPECT_EQ(column(1), (Texts{"1,000.0 %", "100 %", "+5.0 %", "-12.5 %", "none", ""}));
    SortByHeader(grid, 1, false);
    EXPECT_EQ(column(1), (Texts{"-12.5 %", "+5.0 %", "100 %", "1,000.0 %", "none", ""}));
    SortByHeader(grid, 0, false);
    EXPECT_EQ(column(0), (Texts{"8", "9", "10", "11", "12", "13"}));
}

}  // namespace
}  // namespace reports
