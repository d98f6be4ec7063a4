#include "logdefs/filter.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "core/utf8.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"
#include "tests/support/tsv.h"

namespace logdefs {
namespace {

TEST(FltrRuleTest, ComparesTexts) {
    const struct {
        const char* value;
        FltrRule rule;
        bool satisfied;
    } cases[] = {
        {"aBcd", {kStartsWith, "abc"}, true},
        {"aBcd", {kStartsWith, "abc", true}, false},
        {"x", {kContains, ""}, true},
        {"", {kEquals, ""}, true},
        {"x", {kEquals, ""}, false},
        {"404", {kGreater, "399"}, true},
        {"99", {kGreater, "399"}, true},  // as texts
        {"200", {kGreater, "399"}, false},
        {"1", {kLess, "2"}, false},  // can be stored, is never true
        {" -$1,234.5e3 ", {kIsNumber, ""}, true},
        {"12abc", {kIsNumber, ""}, false},
        {"ÜBER", {kContains, "über"}, true},
        {"x", {9, "x"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.value) + " ? " + c.rule.Val);
        EXPECT_EQ(FltrRuleTest(c.value, c.rule), c.satisfied);
    }
}

struct LineOf {
    explicit LineOf(std::string_view file, std::string_view agent = {}) {
        fields.Set(kFile, file);
        fields.Set(kAgent, agent);
    }
    LogLnFields fields{};
};

TEST(FltrTestLine, InvertsTheWholeAndCountsWhatItSkips) {
    FltrRuleSet set;
    set.Rules = {{kContains, "a"}, {kContains, "b"}};
    set.FieldIdx = {kFile, kFile};
    set.oneField = true;
    EXPECT_FALSE(FltrTestLine(LineOf("ab").fields, set).skip);  // not active
    set.Active = true;
    const struct {
        bool any, invert;
        const char* skipped;
    } cases[] = {{false, false, "ab"}, {true, false, "a,b,ab"}, {false, true, "x,a,b"}, {true, true, "x"}};
    for (const auto& c : cases) {
        set.AnyRule = c.any;
        set.Invert = c.invert;
        set.seen.Clear();
        std::string skipped;
        for (const char* value : {"x", "a", "b", "ab"})
            if (FltrTestLine(LineOf(value).fields, set).skip)
                skipped += (skipped.empty() ? "" : ",") + std::string(value);
        EXPECT_EQ(skipped, c.skipped) << c.any << c.invert;
    }
    EXPECT_EQ(set.HitCount, 1 + 3 + 3 + 1);
}

TEST(FltrTestLine, GivesTheRuleThatSettledIt) {
    FltrRuleSet set;
    set.Active = set.AnyRule = true;
    set.Rules = {{kContains, "nobody"}, {kContains, "bot"}};
    set.FieldIdx = {kAgent, kAgent};
    set.oneField = true;
    for (int i = 0; i < 2; ++i) {  // worked out, then remembered
        const LineOf line("/", "GoodBot/1");
        const LineVerdict verdict = FltrTestLine(line.fields, set);
        EXPECT_TRUE(verdict.skip);
        EXPECT_EQ(verdict.index, 1U);
        EXPECT_EQ(verdict.text, "GoodBot/1");
    }
}

TEST(FltrLoadAddFilters, ReadsTheFamiliesOfASite) {
    const testsupport::TempFolder folder;
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    const FilterFiles files{folder.File("LdLnFltr.ini"), folder.File("FltrFiles.ini"), folder.File("fltrbots.ini"),
                            folder.File("LastVals.ini")};
    FltrRuleWrite(ini, "images", files.components, {{kContains, ".GIF", false}, 1});
    FltrRuleWrite(ini, "styles", files.components, {{kContains, ".css", false}, 1});
    ini.IniPut("20260101.1", "CDSCndns", "images|styles", files.components);
    ini.IniPut("20260101.1", "Any", "True", files.components);
    ini.IniPut("Filters", "Fltr Sel", "20260101.1", files.components);
    ini.IniPut("hand", "Val", "BOT", files.robots);  // edited by hand: capitals without Match Case
    ini.IniPut("hand", "Typ", "2", files.robots);
    ini.IniPut("hand", "ColType", "2", files.robots);
    ini.IniPut("Filters", "SkipRobotUserAgents", "hand|20260101.1", files.robots);

    AddFilters filters = FltrLoadAddFilters(ini, files, {MainFilter::Except, true, true});
    EXPECT_TRUE(FltrTestLine(LineOf("/a.gif").fields, filters.components).skip);
    EXPECT_FALSE(FltrTestLine(LineOf("/a.htm").fields, filters.components).skip);
    EXPECT_TRUE(FltrTestLine(LineOf("/", "some robot").fields, filters.robots).skip);
    EXPECT_FALSE(FltrTestLine(LineOf("/", "browser").fields, filters.robots).skip);
    // No rule selected, all must be satisfied, not inverted: every line would go, so the user is told.
    EXPECT_TRUE(FltrTestLine(LineOf("/a.htm").fields, filters.main).skip);
    ASSERT_EQ(filters.warnings.size(), 1U);
    EXPECT_NE(filters.warnings[0].find("main filter is on and has no rule selected"), std::string::npos);
    EXPECT_EQ(FltrCndnText(ini, "20260101.1", files.components),
              "<File Name Contains <.gif>> / <File Name Contains <.css>>");
}

TEST(DeliveredRobots, TakeTheirExamplesAndNoBrowser) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    FltrRuleSet robots = FltrLoad(ini, PARAMS_DIR "/program/fltrbots.ini", "SkipRobotUserAgents", true, false);
    robots.AnyRule = true;
    for (const auto& row : testsupport::ReadTsv(TEST_DATA "/params/robots.tsv")) {
        if (row.at("core") != "yes" || row.at("example").empty()) continue;
        EXPECT_TRUE(FltrTestLine(LineOf("/", row.at("example")).fields, robots).skip) << row.at("example");
    }
    for (const auto& row : testsupport::ReadTsv(TEST_DATA "/params/browsers.txt"))
        EXPECT_FALSE(FltrTestLine(LineOf("/", row.at("user_agent")).fields, robots).skip) << row.at("user_agent");
}

TEST(DeliveredComponents, TakeComponentsAndLeavePages) {
    testsupport::ScriptedUser user;
    core::IniStore ini(user);
    FltrRuleSet components = FltrLoad(ini, PARAMS_DIR "/site/param/FltrFiles.ini", "Fltr Sel", true, false);
    for (const char* file : {"/a.png", "/img/b.JPG?v=2", "/s.css", "/x/site.min.js", "/fonts/f.woff2", "/favicon.ico"})
        EXPECT_TRUE(FltrTestLine(LineOf(file).fields, components).skip) << file;
    for (const char* file : {"/", "/index.html", "/a.php?id=1", "/data.json", "/page.jsp", "/robots.txt"})
        EXPECT_FALSE(FltrTestLine(LineOf(file).fields, components).skip) << file;
}

}  // namespace
}  // namespace logdefs
