#include "core/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace core {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(fNum, ReadsTheLongestPrefixAndNeverRaises) {
    const struct {
        const char* text;
        double value;
    } cases[] = {
        {"", 0},
        {"x", 0},
        {"12abc", 12},
        {" 1 2 . 5 ", 12.5},
        {"- 7", -7},
        {"+.5", 0.5},
        {".", 0},
        {"-", 0},
        {"--5", 0},
        {"1,234", 1},
        {"5.", 5},
        {"5.e2", 500},
        {"1e3", 1000},
        {"1D-2", 0.01},
        {"1 e + 2", 100},
        {"2e", 2},
        {"2e+x", 2},
        {"1.2.3", 1.2},
        {"&H1F", 0},
        {"0x1F", 0},
        {"inf", 0},
        {"nan", 0},
        {"1e400", 0},
        {"-1e99999999999", 0},
        {"1e-400", 0},
        {"\t5", 0},
        {"1\t2", 1},
        {"e5", 0},
        {"20080912143005", 20080912143005.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(fNum(c.text), c.value);
    }
    EXPECT_FALSE(std::signbit(fNum("-0")));
    const std::string digits(10000, '7');
    EXPECT_EQ(fNum(digits), 0);  // too large
    EXPECT_EQ(fNum("0." + digits), 7.0 / 9);
}

TEST(ToLong, RoundsHalfToEvenAndClamps) {
    EXPECT_EQ(ToLong(12.5), 12);
    EXPECT_EQ(ToLong(13.5), 14);
    EXPECT_EQ(ToLong(-0.5), 0);
    EXPECT_EQ(ToLong(1e300), 2147483647);
    EXPECT_EQ(ToLong(-kInfinity), -2147483647);
    EXPECT_EQ(ToLong(kNan), 0);
}

TEST(NumText, IsReadBackByFNum) {
    const struct {
        double value;
        const char* text;
    } cases[] = {{0.5, "0.5"},       {-0.0, "0"},  {20080912143005.0, "20080912143005"},
                 {0.1 + 0.2, "0.3"}, {100, "100"}, {1e20, "1E+20"},
                 {-2.25, "-2.25"},   {kNan, "0"}};
    for (const auto& c : cases) EXPECT_EQ(NumText(c.value), c.text);
    EXPECT_EQ(fNum(NumText(1e20)), 1e20);
}

TEST(fFormat, RoundsHalfAwayFromZeroAsShown) {
    const struct {
        double value;
        const char* format;
        const char* text;
    } cases[] = {
        {12.5, "0", "13"},       {-12.5, "0", "-13"},    {0.25, "0.0", "0.3"},     {0.15, "0.0", "0.2"},
        {1.005, "0.00", "1.01"}, {0.05, "0.0", "0.1"},   {0.04, "0.0", "0.0"},     {0.5, "0", "1"},
        {0.4999, "0", "0"},      {-0.4, "0", "0"},       {9.995, "0.00", "10.00"}, {999.5, "#,###,##0", "1,000"},
        {0.09, "0", "0"},        {1e-300, "0.0", "0.0"}, {99.95, "0.0", "100.0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(fFormat(c.value, c.format), c.text);
    }
}

TEST(fFormat, KnowsTheFormatsOfTheProgram) {
    const struct {
        double value;
        const char* format;
        const char* text;
    } cases[] = {
        {0, "#0", "0"},
        {7, "#0", "7"},
        {0, "#", ""},
        {7, "000", "007"},
        {1234, "000", "1234"},
        {42, "00000000", "00000042"},
        {0, "#,###,##0", "0"},
        {999, "#,###,##0", "999"},
        {1234567, "#,##0", "1,234,567"},
        {-1234, "#,###,##0", "-1,234"},
        {12345678901.0, "###,###,###,##0", "12,345,678,901"},
        {1e15, "#,###,###,###,##0", "1,000,000,000,000,000"},
        {0.5, ".00000000", ".50000000"},
        {12.25, ".00", "12.25"},
        {20080912143005.0, "0000-00-00 00:00\".\"00", "2008-09-12 14:30.05"},
        {1200, "#,###,##0 exist.", "1,200 exist."},
        {0.125, "0.0 %", "12.5 %"},
        {12.5, "0.0 \"%\"", "12.5 %"},
        {12.5, "0.0 \\%", "12.5 %"},
        {1.5, "0.##", "1.5"},
        {3, "\"0", "0"},  // a quote that is never closed
        {2.5, "", "2.5"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        EXPECT_EQ(fFormat(c.value, c.format), c.text);
    }
    EXPECT_EQ(fFormat(kInfinity, "0"), "");
    EXPECT_EQ(fFormat(kNan, "0"), "");
    EXPECT_EQ(fFormat(1e300, "0").size(), 301U);
}

TEST(fFormatText, FillsItsPlacesFromTheRight) {
    const struct {
        const char* text;
        const char* format;
        const char* shown;
    } cases[] = {
        {"20080912", "@@@@-@@-@@", "2008-09-12"},
        {"912", "@@@@-@@-@@", "    - 9-12"},
        {"912", "&&&&-&&", "9-12"},
        {"912", "!@@@@x", "912 x"},
        {"120080912", "@@@@-@@-@@", "12008-09-12"},
        {"éa", "@-@", "é-a"},
        {"Ab", ">", "AB"},
        {"", "@@", "  "},
        {"as it is", "", "as it is"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        EXPECT_EQ(fFormatText(c.text, c.format), c.shown);
    }
}

TEST(IsNumeric, TakesMoneyAndCommasButNoRest) {
    for (const char* yes : {"1", " -1,234.5 ", "+$5", "$1,000", ".5", "5.", "1e5", "1.5E-3", "2d2"})
        EXPECT_TRUE(IsNumeric(yes)) << yes;
    for (const char* no : {"", " ", "-", "$", ".", ",", ",1", "1x", "1e", "1 2", "1.2.3", "--1", "0x1F", "1e+", "1.,2"})
        EXPECT_FALSE(IsNumeric(no)) << no;
}

}  // namespace
}  // namespace core
