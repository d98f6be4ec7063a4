#include "adddata/checkscreens.h"

#include <gtest/gtest.h>

#include "core/inistore.h"
#include "logdefs/rule.h"
#include "tests/adddata/screensite.h"

namespace adddata {
namespace {

using dialogs::DialogModel;
using dialogs::Rows;
using testsupport::Combined;
using Texts = std::vector<std::string>;

constexpr std::string_view kChanged = " [** SELECTED FILE CHANGED. Press New .. to read new file. **]";
constexpr const char* kStart = "Start. Read Log File";
constexpr const char* kNewRead = "New Read - Chk another log or Read Again with Other Filters";

std::string Line(std::string_view file, std::string_view referrer = "-", std::string_view agent = "Firefox/3") {
    return Combined("1.1.1.1", "02/Mar/2009:08:00:00", file, referrer, 200, 5, agent);
}

struct CheckScreens : testing::Test {
    CheckScreens() {
        EXPECT_TRUE(logdefs::SEDefsWrite(home.ini, home.program.Engines(), {"http://*.finder.example/* ?q"}));
        home.ini.IniPut("Main", "LFmtDflt", "apache-combined", LastVals());
    }
    ~CheckScreens() override {
        EXPECT_TRUE(home.host.Done());
        EXPECT_EQ(home.Lines(), 0);
        EXPECT_TRUE(home.site->UnfinishedAdd(home.env).empty());
    }
    const std::string& LastVals() const { return home.site->Paths().lastVals; }
    void Choose(const std::string& name, const std::string& log) {
        home.ini.IniPut("Main", "PAFNlog", home.Stored(home.folder.Write(name, log)), LastVals());
    }
    void Press(const std::string& caption, testsupport::ScriptedHost::Fill fill = {}) {
        home.host.WillPress(caption, std::move(fill));
    }
    // Leaves a list after a look at its rows, the headers left out.
    void Leave(const Rows& rows) {
        home.host.WillPress("Done", [rows](DialogModel& model) {
            Rows shown = model.controls[3].rows;
            ASSERT_FALSE(shown.empty());
            shown.erase(shown.begin());
            EXPECT_EQ(shown, rows);
        });
    }
    static testsupport::ScriptedHost::Fill Select(int row) {
        return [row](DialogModel& model) { model.controls[3].Select({row}); };
    }
    const testsupport::ScriptedHost::Shown& Last() const { return home.host.shown.back(); }

    testsupport::ScreenSite home{};
};

TEST_F(CheckScreens, ReferrersAreListedByEngineAndBySite) {
    const std::string noTerm = "http://www.finder.example/|maps?x=1";
    Choose("a.log", Line("/a", "https://www.finder.example/?q=shoes") + Line("/b", noTerm) + Line("/c", noTerm) +
                        Line("/d", "http://www.Blog.example/1") + Line("/e", "https://blog.example/2") +
                        Line("/f", "app://x"));
    Press(kStart);
    Press("List All Referrer strings");
    Leave({{"https://www.finder.example/?q=shoes", "1"},
           {noTerm, "2"},
           {"http://www.Blog.example/1", "1"},
           {"https://blog.example/2", "1"},
           {"app://x", "1"}});
    Press("Undefined ST - ST not found in referrer for known SE domain");
    Press("List Referrers [selected SE]");  // none is selected
    Press("OK");
    Press("List Referrers [selected SE]", Select(0));
    Leave({{noTerm, "2"}});
    Leave({{"http://*.finder.example/*", noTerm, "1", "2"}});
    Press("Unknown SE.s  - domain in referrer string not defined");
    Press("Change # referrers reqd to list");
    Press("OK", [](DialogModel& model) { model.controls[1].value = "0"; });
    Press("OK", [](DialogModel& model) { model.controls[1].value = "2"; });
    Leave({{"blog.example", "http://www.Blog.example/1 | https://blog.example/2", "2", "2"}});
    Press("Done");
    CheckReferrersOnScreen(home.at);
    EXPECT_TRUE(home.Showed("Last Read Found 5 referrers in 6 log lines."));
    EXPECT_TRUE(home.Showed("Showing Only Items with at least 1 unique referrers"));
    EXPECT_TRUE(home.Showed("Showing Only Items with at least 2 unique referrers"));
    EXPECT_TRUE(home.Showed("Check Definitions of SE Referrer Strings VS. Log File"));
}

TEST_F(CheckScreens, WhatWasReadStaysAndIsJudgedByTheDefinitionsAsTheyAre) {
    Choose("a.log", Line("/a", "http://www.finder.example/?p=shoes"));
    Press(kStart);
    Press("Back to Definitions");
    Press("Edit SE Def", [](DialogModel& model) { model.controls[1].Select({0}); });
    Press("OK", [](DialogModel& model) { model.controls[4].value = "?q,?p"; });
    Press("OK");
    Press("Undefined ST - ST not found in referrer for known SE domain");
    home.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_EQ(model.controls[3].rows.size(), 1U);
        EXPECT_EQ(model.controls[3].emptyText, "No lines found for which could not determine search term.");
    });
    Press("Done");
    CheckReferrersOnScreen(home.at);

    Choose("b.log", Line("/a", "http://other.example/"));
    Press("Done");
    CheckReferrersOnScreen(home.at);
    EXPECT_NE(Last().message.find("a.log" + std::string(kChanged)), std::string::npos) << Last().message;
    Press(kNewRead);
    Press("Done");
    CheckReferrersOnScreen(home.at);
    EXPECT_EQ(home.memory.referrers.found, nullptr);
    Press(kStart);
    Press("Back to Definitions");  // the editor is below
    CheckReferrersOnScreen(home.at, OpenedFrom::Editor);
    EXPECT_EQ(Last().message.find(kChanged), std::string::npos);
}

TEST_F(CheckScreens, AReadThatFailsIsToldAndKeepsNothing) {
    home.host.WillPress(kStart, [](DialogModel& model) {
        EXPECT_NE(
            model.controls[1].value.find("To get started select an *uncompressed* log file and specify it's format."),
            std::string::npos);
    });
    Press("Read Options");
    Press("OK");
    Press("Done");
    CheckRobotsOnScreen(home.at);
    EXPECT_TRUE(home.Showed("No log file is selected."));

    Choose("a.log", Line("/a") + "garbage\n" + Line("/b"));
    home.user.WillCancel();
    Press(kStart);
    Press("OK");
    Press("Done");
    CheckRobotsOnScreen(home.at);
    EXPECT_TRUE(home.Showed("Read raw log data cancelled or failed."));
    EXPECT_EQ(home.memory.robots.found, nullptr);
    home.memory.options.NoPromptInvalid = true;
    Press(kStart);
    Press("Done");
    CheckRobotsOnScreen(home.at);
    EXPECT_NE(home.memory.robots.found, nullptr);
}

TEST_F(CheckScreens, PagesAreListedByWhatTheFilterDoes) {
    const std::string filter = home.site->Paths().componentFilter;
    Choose("a.log", Line("/a.html") + Line("/b.css") + Line("/a.html") + Line("/|.css"));
    Press(kStart);
    Press("List All PageNames");
    Leave({{"a.html", "/a.html", "2", "html"}, {"b.css", "/b.css", "1", "css"}, {"|.css", "/|.css", "1", "css"}});
    Press("List PageNames SKIPPED using selected filter");
    Leave({{"b.css", "/b.css", "1", "css"}, {"|.css", "/|.css", "1", "css"}});
    Press("List PageNames ACCEPTED using selected filter");
    Leave({{"a.html", "/a.html", "2", "html"}});
    Press("List PageNames that do not already exist");
    Leave({{"a.html", "/a.html", "2", "html"}});
    Press("Done");
    CheckPagesOnScreen(home.at);
    EXPECT_TRUE(home.Showed("Found: 3 pages and component filenames in 4 log lines."));
    EXPECT_TRUE(home.Showed("PageName-URLs that will be **SKIPPED** due to selected file filter."));

    // Another filter, and the rows of the last read follow.
    EXPECT_TRUE(logdefs::FltrRuleWrite(home.ini, "Html", filter, {{logdefs::kContains, "html", false}, 1}));
    EXPECT_TRUE(logdefs::FltrRuleWrite(home.ini, "Agent", filter, {{logdefs::kContains, "x", false}, 2}));
    home.ini.IniPut("Both", "CDSCndns", "Html|Agent", filter);
    home.ini.IniPutBool("Both", "Any", true, filter);
    home.ini.IniPut("Filters", "Fltr Sel", "Both", filter);
    Press("List PageNames SKIPPED using selected filter");
    Leave({{"a.html", "/a.html", "2", "html"}});
    Press("Done");
    CheckPagesOnScreen(home.at);
    EXPECT_TRUE(home.Showed(std::string(kOtherPageRules)));
}

TEST_F(CheckScreens, RobotFiltersShowTheAgentsThatTheyReject) {
    home.ini.IniPut("Filters", "SkipRobotUserAgents", "Idle|Bot", home.program.robots);
    for (const std::string name : {"Idle", "Bot"})
        EXPECT_TRUE(
            logdefs::FltrRuleWrite(home.ini, name, home.program.robots, {{logdefs::kContains, name, false}, 2}));
    Choose("a.log", Line("/a", "-", "aBot") + Line("/b", "-", "bBot") + Line("/c", "-", "aBot") + Line("/d"));
    Press(kStart);
    Press("User Agents Rejected by each Robot Filter");
    Press("List User Agents [for selected filter]", Select(0));
    Leave({{"aBot", "2"}, {"bBot", "1"}});
    Leave({{"Bot: User agent (browser) Contains <bot>", "aBot | bBot", "3"},
           {"Idle: User agent (browser) Contains <idle>", "", "0"}});
    Press("List All User Agent [Browser] strings");
    Leave({{"Firefox/3", "1"}, {"aBot", "2"}, {"bBot", "1"}});
    Press("Done");
    CheckRobotsOnScreen(home.at);

    home.ini.IniPut("Filters", "SkipRobotUserAgents", "", home.program.robots);
    home.user.WillPressOk();  // told that there is none
    Press(kNewRead);
    Press(kStart);
    Press("User Agents Rejected by each Robot Filter");
    home.host.WillPress("Done", [](DialogModel& model) { EXPECT_EQ(model.controls[3].emptyText, "No filters used"); });
    Press("Done");
    CheckRobotsOnScreen(home.at);
}

}  // namespace
}  // namespace adddata
