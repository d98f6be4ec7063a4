#include "logdefs/formatfinder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/dates.h"
#include "core/inistore.h"
#include "core/text.h"
#include "logdefs/formatplausible.h"
#include "logdefs/formatstore.h"
#include "logdefs/linedate.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"
#include "tests/support/tsv.h"

namespace logdefs {
namespace {

constexpr const char* kDelivered = PARAMS_DIR "/program/logfmts.ini";
const std::string kCombined = R"(%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] "%*r %r HTTP/%*s" %c %b "%f" "%B")";

std::string Line(const std::string& file, const std::string& rest = R"(200 512 "-" "Mozilla/5.0")") {
    return R"(192.0.2.7 - - [02/Mar/2009:08:01:02 +0100] "GET )" + file + R"( HTTP/1.1" )" + rest;
}

FormatTrial Try(const std::string& spec, const std::vector<std::string>& lines) {
    return TryFormat({"access.log", lines}, "mine", LogFormat({0, {"", spec}}), 2, 45000);
}

// The field that makes no sense in a line of this format.
std::string Doubt(const std::string& spec, const std::string& line) {
    LogLnFields fields;
    if (!LogFormat({0, {"", spec}}).LogLnInterpret(line, fields)) return "no match";
    return std::string(DoubtfulField(fields, line, core::DateSerial(2023, 3, 17).value_or(0)));
}

std::string DoubtOf(const std::string& letter, const std::string& text) {
    return Doubt("%d.%m.%Y~" + letter + "~", "2.3.2009~" + text + "~");
}

TEST(DoubtfulField, KnowsAddressesAndNames) {
    for (const char* good : {"192.0.2.7", "2001:db8::1", "fe80::1%eth0", "[::1]", "www.example.com", "localhost"})
        EXPECT_EQ(DoubtOf("%S", good), "") << good;
    for (const char* bad :
         {"", "-", "2009-03-02", "08:01:02", "GET", "a b", "\"a\"", "300.1.1.1", "Feb", "/index.html"})
        EXPECT_EQ(DoubtOf("%S", bad), "address") << bad;
    EXPECT_EQ(DoubtOf("%s", "3221226247"), "");
    EXPECT_EQ(DoubtOf("%v", "www.example.com:80"), "");
    EXPECT_EQ(DoubtOf("%v", "[02/Mar/2009"), "vhost");
}

TEST(DoubtfulField, KnowsNumbersFilesAndTexts) {
    for (const char* good : {"/a b", "http://x/", "*", "example.com:443"}) EXPECT_EQ(DoubtOf("%r", good), "") << good;
    for (const char* bad : {"", "GET /", "index.html", "200"}) EXPECT_EQ(DoubtOf("%r", bad), "file") << bad;
    EXPECT_EQ(Doubt("%d.%m.%Y~http://%v/%r~", "2.3.2009~http://x.org/~"), "");  // the slash is in the separator
    EXPECT_EQ(DoubtOf("%c", "404"), "");
    EXPECT_EQ(DoubtOf("%c", "2690"), "status");
    EXPECT_EQ(DoubtOf("%c", "600"), "status");
    EXPECT_EQ(DoubtOf("%b", "-"), "");
    EXPECT_EQ(DoubtOf("%b", "12 34"), "bytes");
    EXPECT_EQ(DoubtOf("%f", "Mozilla/5.0"), "referrer");
    EXPECT_EQ(DoubtOf("%B", "http://www.example.com/"), "agent");
    EXPECT_EQ(DoubtOf("%B", R"(say \"x\")"), "");
    EXPECT_EQ(DoubtOf("%u", "-\" \"x"), "user");
}

TEST(DoubtfulField, KnowsDates) {
    const std::string spec = "%d.%m.%Y %h:%n;";
    EXPECT_EQ(Doubt(spec, "29.2.2008 23:59;"), "");
    EXPECT_EQ(Doubt(spec, "17.3.2023 0:00;"), "");
    for (const char* bad : {"18.3.2023 0:00;", "31.12.1989 0:00;", "29.2.2009 0:00;", "1.13.2008 0:00;",
                            "x.1.2008 0:00;", "1.1.2008 24:00;", "1.1.2008 a:00;", ".1.2008 0:00;"})
        EXPECT_EQ(Doubt(spec, bad), "date") << bad;
    EXPECT_EQ(Doubt("%d %M %Y;", "2 17 2009;"), "date");
    EXPECT_EQ(Doubt("%Y-%m-%d;", "http 2008-1-1;"), "date");
    EXPECT_EQ(Doubt("%S;", "192.0.2.7;"), "date");  // no layout without one can be added
}

TEST(LogLnExplain, NamesTheSpecificationThatCameFurthest) {
    const LogFormat format({0, {"", "x%S %r;", "%S %r %c;", "%S %r;"}});
    const Misfit misfit = format.LogLnExplain("a b c");
    EXPECT_EQ(misfit.spec, 2);
    EXPECT_EQ(misfit.at, 4U);
    EXPECT_EQ(misfit.separator, ";");
    EXPECT_EQ(format.LogLnExplain("a b;").spec, 0);
    EXPECT_EQ(LogFormat({0, {"", "[%S]"}}).LogLnExplain("x[a]").separator, "[");
    EXPECT_EQ(LogFormat().LogLnExplain("x").spec, 0);
}

TEST(TryFormat, TellsWhereAndWhy) {
    const FormatTrial trial = Try(kCombined, {Line("/a"), Line("/b"), Line("/ü", "200 - -"), "x"});
    EXPECT_EQ(trial.lines, 4);
    EXPECT_EQ(trial.fit, 2);
    EXPECT_EQ(trial.plausible, 2);
    EXPECT_EQ(trial.sampleNumbers, (std::vector<std::int64_t>{1, 2}));
    EXPECT_EQ(trial.firstMisfitNumber, 3);
    EXPECT_EQ(trial.firstMisfit.substr(trial.firstMisfitColumn), "- -");
    EXPECT_EQ(trial.firstMisfitRest, "- -");
    EXPECT_TRUE(trial.missing.empty());
    EXPECT_EQ(FinderText(trial), "50 % of the first 4 lines fit.");
    EXPECT_EQ(MisfitText(trial), "Line 3 does not fit: " + Line("/ü", "200 - -") +
                                     "\rColumn 66: \" \"\" is looked for here and does not fit: \"- -\"");
    EXPECT_EQ(FinderText(Try(kCombined, {Line("/a")})), "The one line of the log fits.");
    EXPECT_EQ(MisfitText(Try(kCombined, {Line("/a")})), "");
    EXPECT_EQ(FinderText(Try(kCombined, {})), "The log has no lines.");
}

TEST(TryFormat, TellsWhatTheLayoutDoesNotHold) {
    const FormatTrial common = Try(R"(%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] "%*r %r HTTP/%*s" %c %b)", {Line("/a")});
    EXPECT_EQ(common.missing, (std::vector<std::string>{"referrer", "agent", "bytes"}));  // nothing ends the bytes
    EXPECT_EQ(FinderText(common),
              "The one line of the log fits. The layout holds no referrer, user agent or bytes, so search engines, "
              "robots and sizes cannot be told.");
    const FormatTrial swapped = Try(R"(%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] "%*r %r HTTP/%*s" %b %c "%f" "%B")",
                                    {Line("/a", R"(200 2690 "-" "x")"), Line("/b", R"(200 2691 "-" "x")")});
    EXPECT_EQ(swapped.plausible, 0);
    EXPECT_EQ(FinderText(swapped),
              "100 % of the first 2 lines fit. But it is probably another layout: in 2 lines a field is not what it is "
              "called, first the field \"HTTP Status\".");
}

TEST(TryFormat, StandsLongHostileLines) {
    std::string line(60000, ' ');
    line += "x \" \" \" HTTP/";
    const FormatTrial trial = Try(kCombined, {line});
    EXPECT_LE(MisfitText(trial).size(), 600U);
    EXPECT_EQ(FinderText(trial), "The one line of the log does not fit.");
}

TEST(FindFormats, PutsPlausibleFormatsFirst) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    testsupport::TempFolder folder;
    const std::string file = folder.File("logfmts.ini");
    EXPECT_FALSE(LogFmtStore(ini, "loose", {"%S %r "}, file));
    EXPECT_FALSE(LogFmtStore(ini, "common", {R"(%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] "%*r %r HTTP/%*s" %c %b )"}, file));
    EXPECT_FALSE(LogFmtStore(ini, "combined", {kCombined}, file));
    EXPECT_FALSE(LogFmtStore(ini, "tabs", {"%S\\t%r\\t"}, file));
    const std::vector<FormatTrial> trials = FindFormats(ini, file, {"", {Line("/a"), Line("/b"), "garbage is here"}});
    ASSERT_EQ(trials.size(), 3U);
    EXPECT_EQ(trials[0].format, "combined");
    EXPECT_EQ(trials[1].format, "common");
    EXPECT_EQ(trials[2].format, "loose");  // fits one line more
    EXPECT_EQ(trials[2].fit, 3);
}

TEST(FindFormats, PrefersTheVisitorToTheProxy) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    const std::string line = Line("/a", R"(200 512 "-" "Mozilla/5.0" "2001:db8::7, 10.0.0.1")");
    const std::vector<FormatTrial> trials = FindFormats(ini, kDelivered, {"", {line, line}});
    EXPECT_EQ(trials.at(0).format, "nginx-main");
    const auto plain = std::ranges::find(trials, "apache-combined", &FormatTrial::format);
    ASSERT_NE(plain, trials.end());
    EXPECT_LT(plain->filled, trials[0].filled);
}

// The fields of a line that reports see.
std::string Cut(core::IniStore& ini, const std::string& name, const std::string& line) {
    LogLnFields fields;
    if (!LogFmtLoad(ini, name, kDelivered).format.LogLnInterpret(line, fields)) return "no match";
    std::string text = std::to_string(LineClock().LogLnTimestamp(fields).timestamp);
    for (const FieldName& row : kFieldNames) text.append("\n").append(fields[row.field]);
    return text;
}

// Lines that two delivered layouts read in two ways, both good: the owner's choice.
bool IsChoice(const std::string& name) {
    return name == "apache-combined-query" ||  // the query apart
           name == "squid-combined";           // the host apart
}

TEST(FindFormats, FindsTheDeliveredFormatOfEachExample) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    int found = 0, same = 0;
    for (const testsupport::TsvRow& row : testsupport::ReadTsv(TEST_DATA "/params/formats.tsv")) {
        if (row.at("template").empty()) continue;
        SCOPED_TRACE(row.at("name"));
        const std::string name = row.at("name").substr(0, row.at("name").find('#'));
        const std::string line = core::fReplace(core::fReplace(row.at("example"), "\\t", "\t"), "\\r", "\r");
        const std::vector<FormatTrial> trials = FindFormats(ini, kDelivered, {"", {line}});
        ASSERT_FALSE(trials.empty());
        EXPECT_EQ(trials[0].plausible, 1);
        ++found;
        if (Cut(ini, trials[0].format, line) == Cut(ini, name, line))
            ++same;
        else
            EXPECT_TRUE(IsChoice(row.at("name"))) << trials[0].format << "\n" << Cut(ini, trials[0].format, line);
    }
    EXPECT_GE(found, 59);
    EXPECT_GE(same, found - 2);
}

TEST(LogSample, KeepsLinesAsAnAddReadsThem) {
    testsupport::TempFolder folder;
    LogSample sample;
    ASSERT_TRUE(ReadLogSample(folder.Write("a.log", " \r\n\nfirst\r\nsec\xFCnd\nthird"), 2, sample).ok);
    EXPECT_EQ(sample.lines, (std::vector<std::string>{"first\r", "sec\u00FCnd"}));
    EXPECT_FALSE(ReadLogSample(folder.File("none.log"), 2, sample).ok);
    const std::string line(100000, 'x');
    std::string big;
    for (int i = 0; i < 80; ++i) big += line + "\n";
    ASSERT_TRUE(ReadLogSample(folder.Write("big.log", big), 1000, sample).ok);
    EXPECT_EQ(sample.lines.size(), 64U);  // 4 MiB
    EXPECT_EQ(sample.lines[0].size(), 65536U);
}

}  // namespace
}  // namespace logdefs
