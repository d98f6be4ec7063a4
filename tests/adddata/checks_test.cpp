#include "adddata/checks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "logdefs/rule.h"
#include "tests/support/tempsite.h"

namespace adddata {
namespace {

using testsupport::Combined;
using testsupport::TempSite;
using Texts = std::vector<std::string>;

struct CheckSite : TempSite {
    explicit CheckSite(sitedb::SiteOptions options = Plain()) : TempSite(options) {
        Rule(program.robots, "Bot", {{logdefs::kContains, "bot", false}, 2});
        Rule(program.robots, "Spam", {{logdefs::kContains, "spam", false}, 0});
        Rule(program.robots, "Idle", {{logdefs::kContains, "idle", false}, 2});
        ini.IniPut("Filters", "SkipRobotUserAgents", "Idle|Bot|Spam", program.robots);
    }
    void Rule(const std::string& file, const std::string& name, const logdefs::StoredRule& rule) {
        EXPECT_TRUE(logdefs::FltrRuleWrite(ini, name, file, rule));
    }
    AddRequest Request(const std::string& log) const {
        AddRequest request;
        request.files = {{folder.Write("access.log", log), ""}};
        return request;
    }
    void ExpectUntouched() {
        EXPECT_EQ(Rows("SELECT count(*) FROM logline", 1), (Texts{"0"}));
        EXPECT_TRUE(site->UnfinishedAdd(env).empty());
        EXPECT_TRUE(user.asked.empty());
    }

    ProgramFiles program{folder.File("param/logfmts.ini"), PARAMS_DIR "/program/lastinstvals.ini",
                         folder.File("param/fltrbots.ini")};
    bool copied = core::FileCopy(PARAMS_DIR "/program/logfmts.ini", program.formats).ok;
};

std::string Line(std::string_view file, std::string_view referrer = "-", std::string_view agent = "Firefox/3",
                 int status = 200) {
    return Combined("1.1.1.1", "02/Mar/2009:08:00:00", file, referrer, status, 5, agent);
}

// "lines text" of each.
Texts Shown(const std::vector<CountedText>& texts) {
    Texts shown;
    for (const CountedText& text : texts) shown.push_back(std::to_string(text.lines) + " " + text.text);
    return shown;
}
// "lines name: text, text".
Texts Shown(const std::vector<CheckGroup>& groups) {
    Texts shown;
    for (const CheckGroup& group : groups) {
        std::string text = std::to_string(group.lines) + " " + group.name + ":";
        for (const CountedText& referrer : group.texts) text += " " + referrer.text;
        shown.push_back(text);
    }
    return shown;
}

TEST(CheckReferrers, TellsEnginesWithoutTermFromSitesOfNoEngine) {
    CheckSite home;
    ASSERT_TRUE(logdefs::SEDefsWrite(home.ini, home.program.Engines(),
                                     {"http://*.finder.example/* ?q", "http://other.example/* ?p"}));
    const std::string noTerm = "http://www.finder.example/|maps?x=1";
    const std::string log = Line("/a", "https://www.finder.example/?q=shoes") + Line("/b", noTerm) +
                            Line("/c", noTerm) + Line("/d", "http://www.Blog.example/1") +
                            Line("/e", "https://blog.example/2?a=b") + Line("/f", "android-app://finder") + Line("/g") +
                            Line("/h", noTerm, "robot") + Line("/i.css", "http://skipped.example/");
    const ReferrerCheck check = CheckReferrers(home.env, *home.site, home.program, home.Request(log));
    EXPECT_EQ(check.read.totals.AllLinesAdded, 7);  // the filters are those of an add
    EXPECT_EQ(check.all.size(), 6U);
    EXPECT_EQ(Shown(check.noTerm), (Texts{"2 http://*.finder.example/*: " + noTerm}));
    EXPECT_EQ(Shown(check.unknown), (Texts{"2 : android-app://finder -",
                                           "2 blog.example: http://www.Blog.example/1 https://blog.example/2?a=b"}));
    home.ExpectUntouched();
}

TEST(CheckReferrers, TheSiteIsTheHostInLowerCase) {
    EXPECT_EQ(ReferrerSite("HTTP://WWW.Shop.example:8080/a"), "shop.example:8080");
    EXPECT_EQ(ReferrerSite("\"https://a.example"), "a.example");
    for (const std::string_view none : {"", "-", "www.a.example/b", "http", "http:", "http://", "httpx"})
        EXPECT_EQ(ReferrerSite(none), "") << none;
}

Texts Shown(const std::vector<PageRow>& rows) {
    Texts shown;
    for (const PageRow& row : rows)
        shown.push_back(row.page + " " + row.file + " " + row.type + " " + std::to_string(row.lines) +
                        (row.skipped ? " skipped"
                         : row.isNew ? " new"
                                     : " stored"));
    return shown;
}

const std::string kPages = Line("/a.html?x=1") + Line("/a.html?x=2") + Line("/A.CSS", "-", "robot") + Line("/") +
                           Line("/gone.html", "-", "Firefox/3", 404) + Line("/b.PHP#top") + Line("/dir.d/file");

TEST(CheckPages, AppliesTheComponentFilterToTheNamesOfTheSite) {
    sitedb::SiteOptions options = TempSite::Plain();
    options.RemQuery = options.Skip404 = true;
    options.RemFrag = false;
    CheckSite home(options);
    AddLogData(home.env, *home.site, home.program, home.Request(Line("/a.html?x=9")));
    home.ini.IniPutBool("Main", "nocomp", false, home.site->Paths().lastVals);
    const PageCheck check = CheckPages(home.env, *home.site, home.program, home.Request(kPages));
    EXPECT_EQ(check.read.totals.AllLinesAdded, 6);
    EXPECT_EQ(Shown(check.rows),
              (Texts{"a.html /a.html?x=1 html 2 stored", "A.CSS /A.CSS css 1 skipped", "ROOT /  1 stored",
                     "b.PHP#top /b.PHP#top php 1 new", "dir.d/file /dir.d/file  1 new"}));
    EXPECT_TRUE(check.queryRemoved && check.errorsSkipped && !check.fragmentRemoved && !check.otherRules);
    EXPECT_EQ(home.Rows("SELECT count(*) FROM logline", 1), (Texts{"1"}));
}

TEST(CheckPages, RulesOnOtherFieldsAreNamedAndNeverSatisfied) {
    CheckSite home;
    const std::string file = home.site->Paths().componentFilter;
    home.Rule(file, "Style", {{logdefs::kContains, ".css", false}, 1});
    home.Rule(file, "Agent", {{logdefs::kContains, "", false}, 2});
    home.ini.IniPut("Both", "CDSCndns", "Agent|Style", file);
    home.ini.IniPut("Filters", "Fltr Sel", "Both", file);
    const auto skipped = [&](bool any) {
        home.ini.IniPutBool("Both", "Any", any, file);
        const PageCheck check = CheckPages(home.env, *home.site, home.program, home.Request(kPages));
        EXPECT_TRUE(check.otherRules);
        return std::ranges::count(check.rows, true, &PageRow::skipped);
    };
    EXPECT_EQ(skipped(true), 1);
    EXPECT_EQ(skipped(false), 0);
}

TEST(CheckRobots, ListsWhatEachFilterRejects) {
    CheckSite home;
    home.ini.IniPutBool("Main", "nobots", false, home.site->Paths().lastVals);  // they are on for this read
    const std::string log = Line("/a", "-", "Bot|1") + Line("/b") + Line("/c", "-", "Bot|1") +
                            Line("/d", "http://spam.example/") + Line("/e", "-", "xBOT") + Line("/f", "-", "Opera/9");
    const RobotCheck check = CheckRobots(home.env, *home.site, home.program, home.Request(log));
    EXPECT_EQ(Shown(check.rejected), (Texts{"0 Idle:", "3 Bot: Bot|1 xBOT", "1 Spam: http://spam.example/"}));
    EXPECT_EQ(check.rejected[1].description, "User agent (browser) Contains <bot>");
    EXPECT_EQ(Shown(check.agents), (Texts{"1 Firefox/3", "1 Opera/9", "2 Bot|1", "1 xBOT"}));
    home.ExpectUntouched();
}

TEST(CheckRobots, AStoppedReadKeepsWhatItFound) {
    CheckSite home;
    home.user.WillCancel();
    const RobotCheck check = CheckRobots(home.env, *home.site, home.program,
                                         home.Request(Line("/a", "-", "bot") + "garbage\n" + Line("/b", "-", "bot2")));
    EXPECT_FALSE(check.read.ok);
    EXPECT_EQ(Shown(check.agents), (Texts{"1 bot"}));
    EXPECT_EQ(home.user.ids, (Texts{"LogLnInvalid"}));
}

}  // namespace
}  // namespace adddata
