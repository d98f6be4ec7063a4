#include "logdefs/format.h"

#include <gtest/gtest.h>

#include "core/dates.h"
#include "logdefs/linedate.h"

namespace logdefs {
namespace {

LogFormat Format(const std::string& spec) { return LogFormat({0, {"", spec}}); }

// The fields in brackets, or "no match".
std::string Cut(const std::string& spec, const std::string& line, std::initializer_list<int> wanted) {
    LogLnFields fields;
    if (!Format(spec).LogLnInterpret(line, fields)) return "no match";
    std::string text;
    for (const int field : wanted) text += "[" + std::string(fields[field]) + "]";
    return text;
}

TEST(LogLnInterpret, CapturesOnlyWhatASeparatorEnds) {
    const std::string common = R"(%S %*s %u [%d/%M/%Y:%h:%n:%e %*s] "%*s %r %*s" %c %b)";
    const std::string line = R"(1.2.3.4 - ann [02/Mar/2009:08:01:02 +0100] "GET /a.htm HTTP/1.1" 200 512)";
    EXPECT_EQ(Cut(common, line, {kIP, kUserNo, kFile, kStatus, kBytes}), "[1.2.3.4][ann][/a.htm][200][]");
    EXPECT_EQ(Cut(common + " ", line + " ", {kStatus, kBytes}), "[200][512]");
    EXPECT_EQ(Cut(common + " ", line, {kBytes}), "no match");
}

TEST(LogLnInterpret, TextInFrontStandsAtTheVeryStart) {
    EXPECT_EQ(Cut("[%S] %r ", "[a] b ", {kIP, kFile}), "[a][b]");
    EXPECT_EQ(Cut("[%S] %r ", "x[a] b ", {kIP, kFile}), "no match");
    EXPECT_EQ(Cut("%S;", ";rest", {kIP}), "[]");
}

TEST(LogLnInterpret, SearchesForwardToTheFirstSeparator) {
    EXPECT_EQ(Cut("\"%r\" %c ", "\"a\" b\" 200 ", {kFile, kStatus}), "[a][b\"]");
    EXPECT_EQ(Cut("%S %S ", "one two ", {kIP}), "[two]");  // a field named twice keeps its last value
}

TEST(LogLnInterpret, TakesTheFirstSpecificationThatFitsAndNothingOfTheOthers) {
    const LogFormat format({0, {"", "%S %u %r|", "%S %r;"}});
    LogLnFields fields;
    ASSERT_TRUE(format.LogLnInterpret("a b;", fields));
    EXPECT_EQ(fields[kFile], "b");
    EXPECT_EQ(fields[kUserNo], "");
    EXPECT_FALSE(format.LogLnInterpret(" \t\r", fields));
}

TEST(LogLnInterpret, UnescapesSeparatorsInTheOrderOfTheTable) {
    EXPECT_EQ(Cut("%S%%%r;", "a%b;", {kIP, kFile}), "[a][b]");
    EXPECT_EQ(Cut("%S\\t%r;", "a\tb;", {kIP, kFile}), "[a][b]");
    EXPECT_EQ(Cut("%S\\\\t%r;", "a\\\tb;", {kIP, kFile}), "[a][b]");   // the tab row runs first
    EXPECT_EQ(Cut("%S%%%%x%r;", "a%%xb;", {kIP, kFile}), "no match");  // reads as a reference to nothing
}

TEST(LogLnInterpret, MatchesWhitespaceTokens) {
    EXPECT_EQ(Cut("%S%w%r;", "a \t b;", {kIP, kFile}), "[a][b]");
    EXPECT_EQ(Cut("%S%w%r;", "ab;", {kIP, kFile}), "no match");
    EXPECT_EQ(Cut("%S:%W%r;", "a:b;", {kIP, kFile}), "[a][b]");
    EXPECT_EQ(Cut("%S:%W\"%r;", "a:x:  \"b;", {kIP, kFile}), "[a:x][b]");
    EXPECT_EQ(Cut("%S%W%r;", "a b;", {kIP, kFile}), "no match");   // %W alone has no anchor
    EXPECT_EQ(Cut("%S\\n%r;", "a\\nb;", {kIP, kFile}), "[a][b]");  // the two characters, not a line end
    EXPECT_EQ(Cut("%STrue%w%r;", "a\r b;", {kIP, kFile}), "[a][b]");
    EXPECT_EQ(Cut("%S,%w%r;", "a,b, c;", {kIP, kFile}), "[a,b][c]");
}

TEST(LogLnInterpret, ALeadingOptionalBlankIsNotConsumed) {
    EXPECT_EQ(Cut("%S%W,%r;", "a  ,b;", {kIP, kFile}), "[a  ][,b]");  // does not move from the comma
    EXPECT_EQ(Cut("%S%W%w%r;", "a \t b;", {kIP, kFile}), "[a][ \t b]");
    EXPECT_EQ(Cut("%S%W%w%r;", "  b;", {kIP, kFile}), "no match");  // walks off the front
}

TEST(LogFormat, WarnsOfPlaceholdersThatTouchAndAssumesABlank) {
    const LogFormat format = Format("%S%r;");
    ASSERT_EQ(format.Warnings().size(), 1U);
    EXPECT_NE(format.Warnings()[0].find("no seperation space or other characters after %r"), std::string::npos);
    LogLnFields fields;
    EXPECT_TRUE(format.LogLnInterpret("a b;", fields));
    EXPECT_FALSE(format.LogLnInterpret("ab;", fields));
}

TEST(LineClock, ReadsTheDatesOfLogs) {
    const struct {
        const char* spec;
        const char* line;
        std::int64_t stamp;
    } cases[] = {
        {"%d/%M/%Y:%h:%n:%e;", "02/Mar/2009:08:01:02;", 20090302080102},
        {"%d/%m/%y;", "1/2/03;", 20030201000000},
        {"%d/%m/%y;", "1/2/61;", 19610201000000},
        {"%d/%m/%Z;", "1/2/1999;", 19990201000000},
        {"%d %M;", "5 february;", 20000205000000},     // no year
        {"%d %M %Y;", "5 17 2009;", 20090105000000},   // a number where a month's name should be
        {"%d %M %Y;", "5 Foo 2009;", 20081205000000},  // month 0 is December of the year before
        {"%d/%m/%Y;", "0/3/2009;", 20090228000000},
        {"%d/%m/%Y;", "31/4/2009;", 20090501000000},
        {"%d/%m/%Y;", "1/1/99999;", 18991230000000},
        {"%d/%m/%Y;", "1e300/1/2009;", 18991230000000},
        {"%h:%n %a;%d;", "12:00 a;1;", 19991201000000},
        {"%h:%n %a;%d;", "11:30 P;1;", 19991201233000},
        {"%h:%n %a;%d;", "11:30 pm;1;", 19991201113000},  // written in full it does nothing
        {"%h:%n;%d;", "25:00;1;", 19991201010000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.spec) + " " + c.line);
        LogLnFields fields;
        ASSERT_TRUE(Format(c.spec).LogLnInterpret(c.line, fields));
        EXPECT_EQ(LineClock().LogLnTimestamp(fields).timestamp, c.stamp);
    }
}

TEST(LogFileSpec, SplitsAtTheFirstMark) {
    const LogFileSpec spec = LogFileSpecSplit("/a/b.log [LogFormat: apache-combined]");
    EXPECT_EQ(spec.file, "/a/b.log");
    EXPECT_EQ(spec.format, "apache-combined");
    EXPECT_EQ(LogFileSpecJoin(spec), "/a/b.log [LogFormat: apache-combined]");
    EXPECT_EQ(LogFileSpecJoin({"x", ""}), "x");
}

}  // namespace
}  // namespace logdefs
