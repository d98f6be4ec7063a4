#include "reports/plot.h"

#include <gtest/gtest.h>

#include "core/dates.h"
#include "reports/groups.h"
#include "tests/reports/handmade.h"

namespace reports {
namespace {

using testsupport::Texts;

class Plot : public testsupport::Handmade {
protected:
    // 30 January to 12 February 2026, 14 days, two targets.
    Plot() {
        results.days = {*core::DateSerial(2026, 1, 30), 14};
        results.Targets = {{"Buy", analysis::kAny, 0, {{2, "buy", false}}},
                           {"Ask", analysis::kAny, 0, {{2, "ask", false}}}};
        Add("hotel", 4, 2, 2, {1, 0, 0, 0}, 0);
        More(1, 6, 6, 3, {0, 2, 0, 0});
        More(1, 3, 7);
        More(1, 5, 13, 1);
        Add("paris", 2, 0, 0, {}, 13);
        Finish();
    }
    ChartData Of(std::vector<std::int32_t> indexes, PlotOptions options, std::int32_t removed = 0,
                 const std::string& dates = "") {
        indexes_ = std::move(indexes);
        return PlotTtl4IndexesSTByDate(env, results,
                                       {.leftCell = "hotel",
                                        .indexes = indexes_,
                                        .dates = dates,
                                        .options = options,
                                        .removed = removed,
                                        .targetsEntry = "Targets"});
    }
    // "label: a b c", "." for an unset cell.
    static Texts RowsOf(const ChartData& chart) {
        Texts rows;
        for (const ChartRow& row : chart.rows) {
            std::string text = row.label + ":";
            for (const auto& value : row.values) text += " " + (value ? std::to_string(static_cast<int>(*value)) : ".");
            rows.push_back(text);
        }
        return rows;
    }
    std::vector<std::int32_t> indexes_{};
};

TEST_F(Plot, PeriodsSumTheDays) {
    const ChartData chart = Of({1}, {.DaysToPlot = 7});
    EXPECT_EQ(RowsOf(chart), (Texts{"30 Jan [10]: 10 5 1 2 . . .", "06 Feb [8]: 8 1 0 0 . . ."}));
    EXPECT_EQ(chart.dPlotColLabelsCDS, (Texts{" 7 d. from 30 Jan [10] 2026", " 7 d. from 06 Feb [8] 2026"}));
    EXPECT_EQ(chart.headers[0], "Total Users for selected (group of) Search Terms");
    EXPECT_EQ(chart.headers[1], "Users who Stayed on site - surfed to other pages");
    EXPECT_EQ(chart.headers[3], "Users got to TARGET: ask");
    EXPECT_EQ(chart.headers[4], " ");
    EXPECT_EQ(chart.headers[5], "  [Use menu item Targets to define target(s)]");
    EXPECT_EQ(chart.desc, "Search Term: \rhotel\r\rPlotted: 7 day periods.");
}

TEST_F(Plot, TheLastPeriodTellsThatItIsShort) {
    EXPECT_EQ(RowsOf(Of({1, 2}, {.DaysToPlot = 10})),
              (Texts{"30 Jan [13]: 13 5 1 2 . . .", "09 Feb [7 /4d.]: 7 1 0 0 . . ."}));
    EXPECT_EQ(Of({1, 2}, {.DaysToPlot = 10}).desc,
              "Search Term Group: \rhotel\r\r2 Grouped Vals Incl:\rhotel, paris\r\rPlotted: 10 day periods.");
    EXPECT_EQ(RowsOf(Of({2}, {.DaysToPlot = 10, .ColTitDt = true})).front(), "30 Jan: 0 0 0 0 . . .");
    EXPECT_EQ(RowsOf(Of({2}, {.DaysToPlot = 10, .ColTitNum = true})).back(), " 2: 2 0 0 0 . . .");
}

TEST_F(Plot, RemovedSeriesAndPercentages) {
    const PlotOptions percent{.DaysToPlot = 7, .Plotpct = true};
    EXPECT_EQ(RowsOf(Of({1}, percent)), RowsOf(Of({1}, {.DaysToPlot = 7})));
    EXPECT_TRUE(
        Of({1}, percent).desc.starts_with("Remove totals column to plot PERCENTAGES of last col removed\r\rSearch"));
    // 5 of 10 stayed, 1 and 2 reached a target; 1 of 8 in the second week. The most that is left is 5: 10 keeps it low.
    const ChartData one = Of({1}, percent, 1);
    EXPECT_EQ(RowsOf(one), (Texts{"30 Jan [10]: 0 50 10 20 . . .", "06 Feb [8]: 0 12 0 0 . . 10"}));
    EXPECT_EQ(one.headers[0], " .. removed ..");
    EXPECT_EQ(one.headers[1], "Pct. of total who Stayed on site - surfed to other pages");
    EXPECT_TRUE(one.desc.starts_with("PERCENTAGES of last col removed\r\r"));
    const ChartData two = Of({1}, percent, 2);
    EXPECT_EQ(RowsOf(two), (Texts{"30 Jan [10]: 0 0 20 40 . . .", "06 Feb [8]: 0 0 0 0 . . 10"}));
    EXPECT_EQ(two.headers[2], "Pct. stayed got to TARGET: buy");
    EXPECT_EQ(Of({1}, percent, 3).headers[3], "Pct. users at target 1 also got to TARGET: ask");
    EXPECT_EQ(RowsOf(Of({1}, {.DaysToPlot = 7}, 1)).front(), "30 Jan [10]: 0 5 1 2 . . .");
    const ChartData none = Of({1}, percent, 7);
    EXPECT_TRUE(none.Removed(6));
    EXPECT_EQ(RowsOf(none).back(), "06 Feb [8]: 0 0 0 0 0 0 0");
}

TEST_F(Plot, ALongRangeGetsLongerPeriods) {
    const struct {
        std::int32_t days, wanted, period;
        std::size_t rows;
    } cases[] = {{56, 1, 1, 56}, {57, 1, 1, 57}, {83, 1, 1, 83}, {84, 1, 2, 42}, {400, 7, 7, 58}, {400, 1, 7, 58}};
    for (const auto& c : cases) {
        results.days.count = c.days;
        const ChartData chart = Of({1}, {.DaysToPlot = c.wanted});
        EXPECT_EQ(chart.period, c.period) << c.days;
        EXPECT_EQ(chart.rows.size(), c.rows) << c.days;
    }
}

TEST_F(Plot, TheRangeOfThePlot) {
    const ChartData part = Of({1}, {.DaysToPlot = 7}, 0, "05 Feb 2026|12 Feb 2026");
    EXPECT_EQ(RowsOf(part), (Texts{"05 Feb [9]: 9 3 0 2 . . .", "12 Feb [5 /1d.]: 5 1 0 0 . . ."}));
    EXPECT_TRUE(part.desc.starts_with("Selected Date Range: 5 Feb 26 to 12 Feb 26\r\rSearch Term"));
    EXPECT_TRUE(part.message.empty());
    const ChartData outside = Of({1}, {.DaysToPlot = 7}, 0, "01 Jan 2025|31 Jan 2025");
    EXPECT_EQ(outside.rows.size(), 2U);
    EXPECT_EQ(outside.dates, "30 Jan 2026|12 Feb 2026");
    EXPECT_TRUE(outside.message.starts_with("Date range to be plotted ignored."));
}

TEST_F(Plot, LinesOfAReport) {
    const ReportGrid grid = Show(ReportKind::Top, 1);
    EXPECT_EQ(PlotIndexes(grid, "hotel").size(), 1U);
    EXPECT_EQ(PlotIndexes(grid, kRest).size(), 2U);  // "paris" and the empty value
    EXPECT_EQ(PlotIndexes(grid, kTotal).size(), 3U);
    EXPECT_TRUE(PlotIndexes(grid, "").empty());
}

class Groups : public testsupport::Handmade {
protected:
    Groups() {
        Add("hotel paris", 5, 2, 4);
        Add("hotel rome", 3, 0, 0);
        Add("flight", 2, 1, 1);
    }
    ReportGrid Grouped(const std::vector<dialogs::Group>& groups) {
        Finish();
        return pShowGroupReport({env, results}, groups);
    }
};

TEST_F(Groups, LinesOfGroupsAndWhatIsInNone) {
    const std::vector<dialogs::Group> groups{{"Empty", {"no such term"}},
                                             {"Rome|Roma", {"hotel rome", "hotel rome", "hotel  rome"}},
                                             {"Hotels", {"hotel rome", "missing", "hotel paris"}}};
    const ReportGrid grid = Grouped(groups);
    EXPECT_EQ(grid.caption.substr(0, 33), "Grouped Search Terms. Site: Shop.");
    EXPECT_EQ(Lines(grid), (Texts{
                               "Hotels;8;2;25 %;2.0;61.5 %;",
                               "Rome|Roma;3;0;0 %;na;23.1 %;",
                               "Empty;0;0;na;na;0.0 %;",
                               ".. Rest ..;2;1;50 %;1.0;15.4 %;",
                               ";;;;;;",
                               ".. Total ..;13;3;23 %;1.0;;",
                           }));
    const MembersReport members = pShowGroupMembers({env, results}, grid, "Hotels");
    ASSERT_TRUE(members.found);
    EXPECT_TRUE(members.grid.caption.starts_with("Search Terms for group: Hotels. Site: Shop"));
    EXPECT_EQ(Lines(members.grid).front(), "hotel paris;5;2;40 %;2.0;62.5 %;");
    EXPECT_EQ(members.grid.rows.size(), 4U);
    EXPECT_FALSE(pShowGroupMembers({env, results}, grid, "Empty").found);
}

TEST_F(Groups, ReferrersOutsideOfGroupsStandAlone) {
    results.Analyzed_Field = analysis::kReferrer;
    EXPECT_EQ(Lines(Grouped({{"Rome", {"hotel rome"}}})), (Texts{
                                                              "Rome;3;0;0 %;na;30.0 %;",
                                                              ";0;0;na;na;0.0 %;",
                                                              "hotel paris;5;2;40 %;2.0;50.0 %;",
                                                              "flight;2;1;50 %;1.0;20.0 %;",
                                                              ";;;;;;",
                                                              ".. Total ..;10;3;30 %;1.0;;",
                                                          }));
}

TEST_F(Groups, AValueThatNamesItsGroup) {
    Add(".. Grouped: Hotels", 4, 0, 0);
    EXPECT_EQ(Lines(Grouped({{"Hotels", {"hotel rome"}}})).front(), "Hotels;7;0;0 %;na;50.0 %;");
}

}  // namespace
}  // namespace reports
