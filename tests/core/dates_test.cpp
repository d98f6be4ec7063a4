#include "core/dates.h"

#include <gtest/gtest.h>

#include <limits>

namespace core {
namespace {

std::int32_t Day(int year, int month, int day) { return DateSerial(year, month, day).value_or(-1); }

TEST(DateSerial, CountsFromTheEndOf1899AndRollsOver) {
    const struct {
        double year, month, day;
        std::int32_t serial;
    } cases[] = {
        {1899, 12, 31, 1},    {1899, 12, 30, 0},       {1970, 1, 1, 25569},   {2000, 2, 29, 36585},
        {100, 1, 1, -657434}, {9999, 12, 31, 2958465}, {2008, 0, 10, 39426},  {2008, 13, 1, 39814},
        {2008, 3, 0, 39507},  {2008, 1, 367, 39814},   {2007.5, 1, 1, 39448}, {2008, 1.5, 1, 39479},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.serial);
        EXPECT_EQ(DateSerial(c.year, c.month, c.day), c.serial);
    }
}

TEST(DateSerial, GivesNothingOutsideItsYearsAnd16Bits) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double year, month, day;
    } cases[] = {{99, 1, 1},        {10000, 1, 1}, {9999, 12, 32},   {100, 1, 0},  {2000, 40000, 1},
                 {2000, 1, -40000}, {nan, 1, 1},   {2000, 1e300, 1}, {99999, 1, 1}};
    for (const auto& c : cases) EXPECT_FALSE(DateSerial(c.year, c.month, c.day)) << c.year << " " << c.month;
    EXPECT_TRUE(DateSerial(2000, 32767, 1));
}

TEST(YmdOf, IsTheInverseOfDateSerialForEveryDay) {
    for (std::int32_t day = kFirstDay; day <= kLastDay; ++day) {
        const Ymd date = YmdOf(day);
        ASSERT_EQ(DateSerial(date.year, date.month, date.day), day);
        ASSERT_TRUE(date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31) << day;
    }
}

TEST(TimeSerial, RollsOverAndRefusesWhatIsBeyond16Bits) {
    EXPECT_EQ(TimeSerial(6, 0, 0), 0.25);
    EXPECT_EQ(TimeSerial(25, -60, 0), 1.0);
    EXPECT_EQ(TimeSerial(0, 0, -43.2e2 * 10 / 2), -0.25);
    EXPECT_FALSE(TimeSerial(32768, 0, 0));
}

TEST(FormatDate, RoundsToTheSecondAndCarries) {
    const double day = Day(2008, 9, 12);
    const double second = 1.0 / 86400;
    const struct {
        double moment;
        const char* format;
        const char* text;
    } cases[] = {
        {day + 52205 * second, "yyyymmddhhnnss", "20080912143005"},
        {day + 52205 * second, "dd mmm yyyy hh:nn.ss", "12 Sep 2008 14:30.05"},
        {day + 52205 * second, "HH:MM:ss", "14:30:05"},  // mm behind hh
        {day + 52205 * second, "h:n:s mmmm d yy", "14:30:5 September 12 08"},
        {day + 1 - second / 4, "yyyymmddhhnnss", "20080913000000"},
        {day + 1 - second * 3 / 4, "hh:nn:ss", "23:59:59"},
        {-1.25, "yyyy-mm-dd hh:nn", "1899-12-29 06:00"},
        {day, "mm/YYYY", "09/2008"},
        {kLastDay + 0.9999999, "yyyy", ""},  // carries out of the calendar
        {1e300, "yyyy", ""},
        {std::numeric_limits<double>::quiet_NaN(), "yyyy", ""},
        {kFirstDay, "yyyy", "0100"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(FormatDate(c.moment, c.format), c.text);
    }
    EXPECT_EQ(fDateText(Day(2008, 9, 2)), "02 Sep 2008");
    EXPECT_EQ(HmsOf(day + 1 - second / 4).hour, 0);
}

TEST(MonthOf, KnowsNamesAndTheNumbersOfADay) {
    const struct {
        const char* text;
        int month;
    } cases[] = {{"Feb", 2}, {"SEPTEMBER", 9}, {" sept ", 9}, {"12", 12},  {"01", 1},         {"13", 1}, {"31", 1},
                 {"32", 0},  {"0", 0},         {"", 0},       {"Febr", 0}, {"M\xC3\xA4r", 0}, {"-", 0},  {"1e1", 0}};
    for (const auto& c : cases) EXPECT_EQ(MonthOf(c.text), c.month) << c.text;
}

TEST(TS_Date, ReadsDigitsAsTheyStand) {
    EXPECT_EQ(TS_Date(20080912143005.0), Day(2008, 9, 12));
    EXPECT_EQ(TS_Time(20080912143005.0), 52205);
    EXPECT_EQ(TS_Date(20081301000000.0), Day(2009, 1, 1));
    for (const double stamp : {0.0, -1.0, 1e15, 123.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(TS_Date(stamp), 0) << stamp;
}

TEST(TS_DiffSecs, IsPositiveWhenTheSecondIsLater) {
    const double evening = 20081231235950.0, newYear = 20090101000010.0;
    EXPECT_EQ(TS_DiffSecs(evening, newYear), 20);
    EXPECT_EQ(TS_DiffSecs(newYear, evening), -20);
    EXPECT_EQ(TS_DiffSecs(newYear, newYear), 0);
    EXPECT_EQ(TS_DiffSecs(0, newYear), 2147483647.0);
    EXPECT_EQ(TS_DiffSecs(newYear, 0), -2147483647.0);
    EXPECT_EQ(TS_DiffSecs(20081231235960.0, newYear), 10);
    EXPECT_EQ(TS_DiffSecs(1000101000000.0, 99991231000000.0), 86400.0 * (kLastDay - kFirstDay));
}

TEST(TS_AddSecs, StepsOverMidnightAndStaysInTheCalendar) {
    EXPECT_EQ(TS_AddSecs(20090101000010.0, -7200), 20081231220010.0);
    EXPECT_EQ(TS_AddSecs(20080228235959.0, 1), 20080229000000.0);
    EXPECT_EQ(TS_AddSecs(99991231235959.0, 14400), 99991231235959.0);
    EXPECT_EQ(TS_AddSecs(1000101000000.0, -1), 0);
    EXPECT_EQ(TS_AddSecs(18991230000000.0, -7200), 18991229220000.0);
    EXPECT_EQ(TS_AddSecs(20080101000000.0, 1e300), 0);
}

TEST(fPeriods, CarriesOverTheYearsEnds) {
    const Periods december = fPeriods(Day(2008, 12, 31)), january = fPeriods(Day(2008, 1, 1));
    EXPECT_EQ(december.monthEnd, Day(2008, 12, 31));
    EXPECT_EQ(december.yearEnd, Day(2008, 12, 31));
    EXPECT_EQ(december.lastYearStart, Day(2007, 1, 1));
    EXPECT_EQ(january.monthStart, Day(2008, 1, 1));
    EXPECT_EQ(january.lastMonthStart, Day(2007, 12, 1));
    EXPECT_EQ(january.lastMonthEnd, Day(2007, 12, 31));
    EXPECT_EQ(january.lastYearEnd, january.lastMonthEnd);
}

TEST(fElapsedText, CountsTheBoundariesOfTheLargestUnit) {
    const double day = 40000, minute = 1.0 / 1440;
    EXPECT_EQ(fElapsedText(day, day + 3 * minute), "3 minutes");
    EXPECT_EQ(fElapsedText(day, day + 61 * minute), "1 hour");
    EXPECT_EQ(fElapsedText(day - minute, day + minute), "1 day");  // midnight lies between
    EXPECT_EQ(fElapsedText(day, day + minute / 2), "less than one minute");
    EXPECT_EQ(fElapsedText(day, day - 1), "less than one minute");
    EXPECT_EQ(fElapsedText(day, day + minute / 2, {.second = "second"}), "30 seconds");
}

TEST(ParseDate, TakesRealDatesOnly) {
    const std::int32_t day = Day(2008, 2, 29);
    for (const char* text : {"29 Feb 2008", "2008-02-29", "february 29, 2008", "20080229", " 29-feb-2008 "})
        EXPECT_EQ(ParseDate(text), day) << text;
    for (const char* text :
         {"", "29 Feb 2007", "3/4/2008", "29 Feb", "2008-2-29", "2008-02-30", "99999999", "29 Feb 08"})
        EXPECT_FALSE(ParseDate(text)) << text;
    EXPECT_FALSE(ParseIsoDate("29 Feb 2008"));
    EXPECT_FALSE(ParseIsoDate("2008-02-29 "));
}

TEST(fDayNo, LosesTheTimeAndKnowsWhatIsNoDate) {
    EXPECT_EQ(fDayNo("2009-03-02"), fDayNo("2 Mar 2009"));
    EXPECT_EQ(fDayNo(fDayNo("2009-03-02") + 0.75), fDayNo("2009-03-02"));
    EXPECT_EQ(fDayNo("no date"), 0);
    EXPECT_DOUBLE_EQ(fTimeOnly(100 + (10 * 60 + 30) / 1440.0 + 20 / 86400.0), (10 * 60 + 30) / 1440.0);
}

}  // namespace
}  // namespace core
