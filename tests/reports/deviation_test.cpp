#include "reports/deviation.h"

#include <gtest/gtest.h>

#include "core/dates.h"
#include "tests/reports/handmade.h"

namespace reports {
namespace {

using testsupport::Texts;

constexpr auto Day = [](int year, int month, int day) { return *core::DateSerial(year, month, day); };

analysis::DaysList DaysOf(std::int32_t first, std::int32_t last) { return {first, last - first + 1}; }

std::string SpanText(const Deviation& deviation, Deviation::Period period, const analysis::DaysList& days) {
    const Deviation::Span& span = deviation.Of(period);
    if (!span.Has()) return "none";
    return core::fDateText(days.first + span.start, "yyyy-mm-dd") + " " +
           core::fDateText(days.first + span.end, "yyyy-mm-dd");
}

TEST(Deviation, PeriodsOfTheDays) {
    const struct {
        std::int32_t first, last;
        const char *lastDays, *prevDays, *thisMo, *lastMo, *prevMo, *thisYr, *lastYr;
    } cases[] = {
        // Begins within a month: the month before last is cut off by the data.
        {Day(2026, 1, 15), Day(2026, 3, 10), "2026-03-06 2026-03-10", "2026-03-01 2026-03-05", "2026-03-01 2026-03-10",
         "2026-02-01 2026-02-28", "2026-01-15 2026-01-31", "2026-01-15 2026-03-10", "none"},
        // Over the turn of a year: "last year" is the month before this one began.
        {Day(2024, 11, 3), Day(2025, 2, 28), "2025-02-24 2025-02-28", "2025-02-19 2025-02-23", "2025-02-01 2025-02-28",
         "2025-01-01 2025-01-31", "2024-12-01 2024-12-31", "2025-01-01 2025-02-28", "2024-12-01 2024-12-31"},
        // Early in January the walk for the start of the year begins in December and ends a year earlier.
        {Day(2023, 12, 20), Day(2025, 1, 10), "2025-01-06 2025-01-10", "2025-01-01 2025-01-05", "2025-01-01 2025-01-10",
         "2024-12-01 2024-12-31", "2024-11-01 2024-11-30", "2024-01-01 2025-01-10", "2023-12-20 2023-12-31"},
        {Day(2026, 5, 9), Day(2026, 5, 9), "2026-05-09 2026-05-09", "none", "2026-05-09 2026-05-09", "none", "none",
         "2026-05-09 2026-05-09", "none"},
        {Day(2026, 5, 2), Day(2026, 5, 9), "2026-05-05 2026-05-09", "2026-05-02 2026-05-04", "2026-05-02 2026-05-09",
         "none", "none", "2026-05-02 2026-05-09", "none"},
    };
    for (const auto& c : cases) {
        const analysis::DaysList days = DaysOf(c.first, c.last);
        SCOPED_TRACE(days.Text(0));
        const Deviation deviation(days, {});
        EXPECT_EQ(SpanText(deviation, Deviation::LastDays, days), c.lastDays);
        EXPECT_EQ(SpanText(deviation, Deviation::PrevDays, days), c.prevDays);
        EXPECT_EQ(SpanText(deviation, Deviation::ThisMo, days), c.thisMo);
        EXPECT_EQ(SpanText(deviation, Deviation::LastMo, days), c.lastMo);
        EXPECT_EQ(SpanText(deviation, Deviation::PrevMo, days), c.prevMo);
        EXPECT_EQ(SpanText(deviation, Deviation::ThisYr, days), c.thisYr);
        EXPECT_EQ(SpanText(deviation, Deviation::LastYr, days), c.lastYr);
    }
}

class DeviationCells : public testsupport::Handmade {
protected:
    // 15 January to 10 March 2026, 55 days.
    DeviationCells() { results.days = DaysOf(Day(2026, 1, 15), Day(2026, 3, 10)); }
    std::int32_t At(int month, int day) const { return Day(2026, month, day) - results.days.first; }
    static Texts CellsOf(const ReportGrid& grid, std::size_t row) {
        const auto& cells = grid.rows[row].cells;
        return {cells.begin() + grid.dGCol_Deviation, cells.end()};
    }
};

TEST_F(DeviationCells, AValueThatRises) {
    // 3 in January, 8 in February, 10 in the last five days: 21 in all.
    Add("up", 3, 0, 0, {}, At(1, 20));
    More(1, 8, At(2, 10));
    More(1, 10, At(3, 8));
    // Only in January.
    Add("gone", 17, 0, 0, {}, At(1, 16));
    const Deviation columns(results.days, {.DevTxtNoneVD = "-", .DevTxtNonePct = "=", .DevTxtFrom0Pct = "new"});
    deviation = &columns;
    const ReportGrid grid = Show(ReportKind::All);
    // Last days 10/5, all 21/55, rest 11/50; this month 10/10; last month 8/28; the month before 3/17.
    EXPECT_EQ(CellsOf(grid, 0),
              (Texts{"2.00",   "+424 %", "+809 %", "new",  "-",     "-100 %", "1.00",  "+162 %", "+250 %",
                     "+467 %", "+162 %", "",       "0.29", "-25 %", "+62 %",  "-25 %", "",       "0.18",
                     "-54 %",  "",       "0.38",   "0 %",  "",      "",       "",      "0.38"}));
    EXPECT_EQ(CellsOf(grid, 1),
              (Texts{"-",      "-100 %", "-100 %", "= %", "-",      "-100 %", "-",      "-100 %", "= %",
                     "-100 %", "-100 %", "",       "-",   "-100 %", "-100 %", "-100 %", "",       "1.00",
                     "+224 %", "",       "0.31",   "0 %", "",       "",       "",       "0.31"}));
    EXPECT_EQ(grid.rows[2].cells[0], "");  // the empty value
    EXPECT_EQ(CellsOf(grid, 2).back(), "none");
    for (const std::string& cell : CellsOf(grid, 4)) EXPECT_EQ(cell, "");  // the total
}

TEST_F(DeviationCells, HeadersWidthsAndColours) {
    Add("a", 1, 0, 0);
    const Deviation columns(results.days, {});
    deviation = &columns;
    const ReportGrid grid = Show(ReportKind::Top);
    const auto column = [&](int offset) {
        return grid.columns[static_cast<std::size_t>(grid.dGCol_Deviation + offset)];
    };
    Texts headers;
    for (int i = 0; i < kDevColumns; ++i) headers.push_back(column(i).header);
    EXPECT_EQ(headers, (Texts{"last 5 d. avg users per day",
                              "+/- all days",
                              "+/- rest days",
                              "+/- prev 5 days",
                              "prev 5 d. avg users per day",
                              "+/- all days",
                              "this mo 10 d. avg users per day",
                              "+/- all days",
                              "+/- last mo",
                              "+/- prev mo",
                              "+/- this yr",
                              "",
                              "last mo. avg users per day",
                              "+/- all days",
                              "+/- prev mo",
                              "+/- this yr",
                              "",
                              "prev mo. avg users per day",
                              "+/- all days",
                              "",
                              "this yr.55 d. avg users per day",
                              "+/- all days",
                              "",
                              "no last yr. data",
                              "",
                              "all days. avg users per day"}));
    EXPECT_EQ(column(0).width, 900);
    EXPECT_EQ(column(1).width, 660);
    EXPECT_EQ(column(11).width, 1);
    EXPECT_EQ(column(23).width, 900);
    const std::int32_t green = 0xC0FFC0, sand = 0xC0E0FF;
    EXPECT_EQ(column(0).colour, green);
    EXPECT_EQ(column(3).colour, green);
    EXPECT_EQ(column(4).colour, sand);
    EXPECT_EQ(column(6).colour, green);
    EXPECT_EQ(column(12).colour, sand);
    EXPECT_EQ(column(25).colour, sand);
}

TEST_F(DeviationCells, SmallChangesKeepTheirSign) {
    // 10 days of February: 1000 a day but for the last, which has one more (or one less).
    results.days = DaysOf(Day(2026, 2, 1), Day(2026, 2, 10));
    for (const std::int32_t more : {1, -1}) {
        StartAnew();
        Add("even", 1000, 0, 0, {}, 0);
        for (std::int32_t day = 1; day < 9; ++day) More(1, 1000, day);
        More(1, 1000 + more, 9);
        Finish();
        const Deviation columns(results.days, {.DevDays = 1});
        EXPECT_EQ(columns.OfValue(results.table, 1)[1], more > 0 ? "+0 %" : "-0 %");
    }
}

}  // namespace
}  // namespace reports
