#include <gtest/gtest.h>

#include <algorithm>

#include "analysis/fields.h"
#include "reports/gridsort.h"
#include "reports/lines.h"
#include "reports/summary.h"
#include "reports/topidxs.h"
#include "tests/reports/handmade.h"

namespace reports {
namespace {

using testsupport::Texts;

class Reports : public testsupport::Handmade {};

TEST_F(Reports, TopHasTheRestAndATotalOfWhatIsDisplayed) {
    Add("one", 3, 2, 5);
    Add("two", 8, 3, 4);
    Add("three", 3, 0, 0);
    Add("four", 1, 1, 1);
    EXPECT_EQ(Lines(Show(ReportKind::Top, 2)), (Texts{
                                                   "two;8;3;38 %;1.3;53.3 %;",
                                                   "three;3;0;0 %;na;20.0 %;",  // the later of two equal counts
                                                   ".. Rest ..;4;3;75 %;2.0;26.7 %;", ";;;;;;",
                                                   ".. Total ..;15;6;40 %;0.6;;",  // (1.3 + 2.0) / 6
                                               }));
    EXPECT_EQ(Lines(Show(ReportKind::Top, 4)).size(), 7U);  // the empty element is left over
    EXPECT_EQ(Lines(Show(ReportKind::Top, 5)), Lines(Show(ReportKind::All)));
    EXPECT_EQ(Lines(Show(ReportKind::All)), (Texts{
                                                "two;8;3;38 %;1.3;53.3 %;",
                                                "one;3;2;67 %;2.5;20.0 %;",  // equal counts in the order of the table
                                                "three;3;0;0 %;na;20.0 %;",
                                                "four;1;1;100 %;1.0;6.7 %;",
                                                ";0;0;na;na;0.0 %;",
                                                ";;;;;;",
                                                ".. Total ..;15;6;40 %;0.8;;",
                                            }));
}

TEST_F(Reports, WithoutValuesOnlyTheHeaderStands) {
    const ReportGrid grid = Show(ReportKind::Top);
    EXPECT_TRUE(grid.rows.empty());
    EXPECT_EQ(grid.columns.size(), 6U);
}

TEST_F(Reports, TargetsHaveFourColumnsEach) {
    results.Targets = {{"Buy", analysis::kSize, 0, {{2, "buy", false}, {2, "", false}, {2, "order", false}}},
                       {"All", analysis::kAll, 0, {{2, "a", false}, {2, "b", false}}}};
    results.Analyzed_Field = analysis::kStartPage;
    results.options.ShowDist1 = true;
    Add("/a.htm", 4, 2, 2, {1, 0, 0, 0});
    Add("/b.c/d", 1, 0, 0, {1, 0, 0, 0});
    const ReportGrid grid = Show(ReportKind::Top, 1);
    EXPECT_EQ(grid.columns[6].header, "*B buy / order");
    EXPECT_EQ(grid.columns[10].header, "a & b");
    EXPECT_EQ(grid.columns[9].colour, 65535);
    EXPECT_EQ(grid.dGcol_Dist0, 14);
    EXPECT_EQ(grid.dGCol_Ftype, 15);
    EXPECT_EQ(grid.lineHeight, kThickLine);
    EXPECT_EQ(Lines(grid), (Texts{
                               "/a.htm;4;2;50 %;1.0;80.0 %;1;25 %;50 %;;0;0 %;0 %;;;htm;",
                               ".. Rest ..;1;0;0 %;na;20.0 %;1;100 %;na;;0;0 %;na;;;;",
                               ";;;;;;;;;;;;;;;;",
                               ".. Total ..;5;2;40 %;0.5;;2;40 %;100 %;;0;0 %;0 %;;;;",
                           }));
}

TEST_F(Reports, DistributionsEndAtTheirLimit) {
    results.options.ShowDist1 = true;
    Add("a", 4, 0, 0);
    Add("b", 1, 0, 0);
    Add("c", 1, 0, 0);
    const auto cross = [&](std::uint32_t row, const std::string& label, std::int32_t count) {
        Cross(analysis::kDistSE, row, label, count);
    };
    cross(1, "G", 1);
    cross(1, "B", 2);
    cross(1, "Y", 1);
    cross(2, "G", 1);
    cross(3, "G", 1);
    ReportGrid grid = Show(ReportKind::Top, 1);
    EXPECT_EQ(grid.Cell(0, grid.dGcol_Dist0), "B 2 [50%]\r\nY 1 [25%]\r\nG 1 [25%]\r\n");
    EXPECT_EQ(grid.Cell(1, grid.dGcol_Dist0), "G 2 [100%]\r\n");
    EXPECT_EQ(grid.Cell(3, grid.dGcol_Dist0), "");

    StartAnew();
    Add("a", 4, 0, 0);
    const std::string wide(588, 'w');  // 588 + " 3 [75%]" and a line break are 598 bytes
    cross(1, wide, 3);
    cross(1, "last", 1);
    grid = Show(ReportKind::Top, 1);
    EXPECT_EQ(grid.Cell(0, grid.dGcol_Dist0), wide + " 3 [75%]\r\nlast 1 [25%]\r\n");  // over, and none left
    StartAnew();
    Add("a", 4, 0, 0);
    cross(1, wide + "www", 3);
    cross(1, "last", 1);
    grid = Show(ReportKind::Top, 1);
    EXPECT_EQ(grid.Cell(0, grid.dGcol_Dist0), wide + "www 3 [75%]\r\n\r\n...");
}

TEST_F(Reports, ValuesBehindALineAreFoundByItsText) {
    Add("a|b", 4, 0, 0);
    Add("x", 1, 0, 0);
    Add("y", 1, 0, 0);
    const ReportGrid grid = Show(ReportKind::Top, 1);
    const auto list = [&](std::string_view cell) {
        const auto found = grid.rowTable.GetSTs4Row(cell);
        return std::vector<std::int32_t>(found.begin(), found.end());
    };
    EXPECT_EQ(list("a|b"), (std::vector<std::int32_t>{1}));
    EXPECT_EQ(list("a-*-b"), (std::vector<std::int32_t>{1}));
    EXPECT_EQ(list(".. Rest .."), (std::vector<std::int32_t>{0, 2, 3}));
    EXPECT_EQ(list(".. Total .."), (std::vector<std::int32_t>{}));
    EXPECT_EQ(grid.rowTable.dCDSallSTs(), (std::vector<std::int32_t>{1, 0, 2, 3}));
}

TEST_F(Reports, LinesBeyondTheLimitAreShownAndNotSummed) {
    const auto addMany = [this] {
        for (std::size_t i = 0; i < kListLimit + 2; ++i) Add("v" + std::to_string(i), 1, 0, 0);
    };
    addMany();
    user.WillPress(1);
    const ReportGrid all = Show(ReportKind::All);
    EXPECT_EQ(all.rows.size(), kListLimit + 3 + 2);
    EXPECT_EQ(all.rows.back().cells[kColVisitors], "32767");
    EXPECT_EQ(user.asked.back(), "Too many lines. First 32767 added only.");

    user.WillPress(1);  // more values share the lowest count than the list can hold
    EXPECT_TRUE(Show(ReportKind::Top, 10).rows.empty());
    StartAnew();
    addMany();
    Add("frequent", 2, 0, 0);
    const ReportGrid top = Show(ReportKind::Top, 1);
    EXPECT_EQ(top.rows.size(), 4U);
    EXPECT_EQ(top.rows.back().cells[kColVisitors], "32771");
}

TEST_F(Reports, ViewSortsMoveAllLines) {
    Add("b", 10, 2, 3);
    Add("A", 9, 9, 9);
    ReportGrid grid = Show(ReportKind::Top, 1);
    const auto sorted = [&](int column, SortKind kind) {
        SortLines(grid, column, kind);
        std::string order;
        for (const GridRow& row : grid.rows) order += row.cells[0] + ";";
        return order;
    };
    EXPECT_EQ(sorted(kColVisitors, SortKind::NumericDescending), ".. Total ..;b;.. Rest ..;;");
    EXPECT_EQ(sorted(kColValue, SortKind::TextAscending), ";.. Rest ..;.. Total ..;b;");
    EXPECT_EQ(sorted(kColStayPercent, SortKind::GenericDescending), ".. Rest ..;.. Total ..;b;;");
}

TEST_F(Reports, SummaryCountsTheWholeAnalysisAndItsLastDays) {
    results.visits = 1234;
    results.Targets = {{"Buy", analysis::kAny, 0, {{2, "buy", false}}}};
    Add("a", 20, 0, 0, {5, 0, 0, 0}, 9);
    Add("b", 30, 0, 0, {3, 0, 0, 0}, 10);
    Finish();
    EXPECT_EQ(SummaryText(results),
              "Total Visits: 1,234\r\rSelected Visits: 50 [ Average: 1.3/day]\rbuy: 8 [16% Average: 0.2/day]\r\r" +
                  std::string(60, '-') +
                  "\r\rLast 30 days Selected Visits: 30 [ Average: 1.0/day]"
                  "\rLast 30 days buy: 3 [10% Average: 0.1/day]");
}

TEST(fTopIdxs, TakesTheLaterOfEqualCountsAndCutsAnOverflow) {
    const std::vector<std::int32_t> few{0, 5, 7, 5, 100};
    EXPECT_EQ(*fTopIdxs(few, 3), (std::vector<std::int32_t>{4, 2, 3}));
    EXPECT_EQ(fTopIdxs(few, -1)->size(), 5U);
    EXPECT_TRUE(fTopIdxs(few, 0)->empty());
    std::vector<std::int32_t> many(kListLimit + 1, 1);
    EXPECT_FALSE(fTopIdxs(many, -1));
    EXPECT_FALSE(fTopIdxs(many, 1));
    many[5] = 9;
    many[6] = 9;
    EXPECT_EQ(*fTopIdxs(many, 1), (std::vector<std::int32_t>{6}));
    EXPECT_FALSE(fTopIdxs(many, 3));
}

}  // namespace
}  // namespace reports
