#include "adddata/robotscreens.h"

#include <gtest/gtest.h>

#include "adddata/robots.h"
#include "core/cds.h"
#include "logdefs/formatstore.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempsite.h"

namespace adddata {
namespace {

using dialogs::Control;
using dialogs::DialogModel;
using testsupport::Combined;
using testsupport::TempSite;
using Texts = std::vector<std::string>;

constexpr std::string_view kBrowser = "Mozilla/5.0 (Windows NT 10.0; Win64; x64) Own/1";

std::string Asks(std::string_view agent) {
    return Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/robots.txt", "-", 200, 5, agent);
}

struct RobotScreensTest : testing::Test {
    RobotScreensTest() {
        logdefs::FltrRuleWrite(home.ini, "Known", files.robots, {{logdefs::kContains, "known", false}, 2});
        home.ini.IniPut("Filters", "SkipRobotUserAgents", "Known", files.robots);
    }
    ~RobotScreensTest() override {
        EXPECT_TRUE(host.Done());
        EXPECT_EQ(host.open, 0);
        EXPECT_EQ(home.progress.open, 0);
        EXPECT_EQ(home.Rows("SELECT count(*) FROM logline", 1), (Texts{"0"}));
    }
    static Control& Named(DialogModel& model, std::string_view caption) {
        for (Control& control : model.controls.All())
            if (dialogs::PlainCaption(control.caption) == caption) return control;
        throw std::runtime_error("no control " + std::string(caption));
    }
    // Selects user agents on the left and presses a button.
    void Press(const std::string& caption, const std::vector<int>& rows) {
        host.WillPress(caption, [rows](DialogModel& model) { Named(model, "user agents").Select(rows); });
    }
    // Presses a button on the lists, which show this on the left.
    void SeesLeft(const std::string& caption, const dialogs::Rows& rows) {
        host.WillPress(caption, [rows](DialogModel& model) { EXPECT_EQ(Named(model, "user agents").rows, rows); });
    }
    PreprocessShown Run(const std::string& text) {
        AddRequest request;
        request.files = {{home.folder.Write("access.log", text), ""}};
        return PreprocessBotsOnScreen(at, request);
    }
    Texts Rules() {
        Texts texts;
        core::IniStore disk(home.user);
        for (const std::string& name :
             core::CDSSplitPlain(disk.IniGet("Filters", "SkipRobotUserAgents", files.robots)).Items())
            texts.push_back(logdefs::FltrCndnText(disk, name, files.robots));
        return texts;
    }
    const testsupport::ScriptedHost::Shown& Shown(std::size_t fromEnd) const {
        return host.shown[host.shown.size() - 1 - fromEnd];
    }

    TempSite home{};
    testsupport::ScriptedHost host{};
    dialogs::Desk desk{home.ini, host, "Corvane", home.folder.File("screens.ini")};
    ReadMemory memory{};
    AddDesk at{home.env,
               desk,
               *home.site,
               home.paths,
               memory,
               {PARAMS_DIR "/program/logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini",
                home.folder.File("param/fltrbots.ini")}};
    const RobotFiles files = RobotFilesOf(at.program);
    const std::string log = Asks("Zeta/1") + Asks("Alpha|{2}") + Asks("Zeta/1") + Asks("KNOWN bot") +
                            Asks(std::string(kBrowser)) +
                            Combined("2.2.2.2", "02/Mar/2009:08:00:00", "/", "-", 200, 5, "Visitor/1");
};

TEST_F(RobotScreensTest, MakesTwoRulesAndOpensTheEditor) {
    SeesLeft("Add -->", {{"Alpha|{2}  [1 line]"}, {std::string(kBrowser) + "  [1 line]"}, {"Zeta/1  [2 lines]"}});
    host.WillPress("OK");  // nothing was selected
    Press("Add -->", {0, 2});
    host.WillPress("OK");
    host.WillPress("OK");
    host.WillPress("Cancel", [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows.size(), 4U); });
    const PreprocessShown shown = Run(log);
    EXPECT_TRUE(shown.ok);
    EXPECT_EQ(shown.rulesMade, 2U);
    EXPECT_TRUE(host.shown[0].message.starts_with(
        "Select from user agent string from HTTP request\rThe following user agents were found"));
    EXPECT_EQ(Shown(1).message, "New filters for robot and crawler user agents created successfully.");
    EXPECT_EQ(Shown(0).title, "Change filters as required");
    EXPECT_EQ(Rules(), (Texts{"User agent (browser) Contains <known>", "User agent (browser) Starts with <alpha|{2}>",
                              "User agent (browser) Starts with <zeta/1>"}));
}

TEST_F(RobotScreensTest, AsksBeforeARuleTakesBrowsers) {
    Press("Add -->", {1});
    host.WillPress("OK");
    host.WillPress("Back to the lists");
    host.WillPress("Cancel");
    host.WillPress("Cancel");
    EXPECT_EQ(Run(log).rulesMade, 0U);
    EXPECT_NE(host.shown[2].message.find(kBrowser), std::string::npos);
    EXPECT_EQ(Rules().size(), 1U);
}

TEST_F(RobotScreensTest, TheSkipListAndTheSkipFiltersKeepAgentsAway) {
    ASSERT_TRUE(BotsSkipListWrite(home.ini, files, {"Gone/1"}));
    Press("More", {1});
    host.WillPress("Copy selected to Skip List");
    host.WillPress("Change Skip Filters");
    host.WillPress("New Skip Filter", [](DialogModel& model) {
        EXPECT_TRUE(model.message.starts_with("Define Skip Filter.\rThis gives a shorter list"));
        EXPECT_EQ(
            model.controls[4].rows,
            (dialogs::Rows{{"User agent [Browser]", "not used"}, {"Gone/1", "not used"}, {std::string(kBrowser), ""}}));
    });
    host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(Named(model, "Where").rows, (dialogs::Rows{{"User agent [Browser]"}}));
        Named(model, "Name on List").value = "Zeta";
        Named(model, "Value").value = "ZETA";
    });
    host.WillPress("OK");
    SeesLeft("OK", {{"Alpha|{2}  [1 line]"}});
    host.WillPress("OK");
    EXPECT_EQ(Run(log).rulesMade, 0U);
    EXPECT_EQ(Shown(0).message, kNoNewFilters);
    EXPECT_EQ(BotsSkipList(home.ini, files), (Texts{"Gone/1", std::string(kBrowser)}));
    EXPECT_EQ(home.ini.IniGet("Filters", "skipFtrs", files.skip), "Zeta");

    // All that is left is kept away, too: the lists come when they are asked for.
    ASSERT_TRUE(BotsSkipListWrite(home.ini, files, {"Alpha|{2}", std::string(kBrowser)}));
    host.WillPress("OK");
    EXPECT_TRUE(Run(log).ok);
    host.WillPress("Show the lists");
    host.WillPress("More");
    host.WillPress("Edit Skip List");
    host.WillPress("Remove user agent", [](DialogModel& model) { model.controls[1].Select({0}); });
    host.WillPress("OK");
    SeesLeft("Cancel", {{"Alpha|{2}  [1 line]"}});
    host.WillPress("Cancel");
    EXPECT_TRUE(Run(log).ok);
}

TEST_F(RobotScreensTest, ALogWithoutRobotsEndsWithAMessage) {
    host.WillPress("OK");
    const PreprocessShown shown = Run(Asks("known"));
    EXPECT_TRUE(shown.ok);
    EXPECT_EQ(Shown(0).message, kNoNewFilters);
}

TEST_F(RobotScreensTest, WithoutAFileTheAddDoesNotRun) {
    AddRequest request;
    request.files = {{home.folder.File("gone.log"), ""}};
    host.WillPress("OK");
    home.user.WillPressOk(3);
    EXPECT_FALSE(PreprocessBotsOnScreen(at, request).ok);
    EXPECT_TRUE(Shown(0).message.starts_with(kReadFailed));
}

TEST_F(RobotScreensTest, AStopEndsIt) {
    home.user.WillCancel();  // at the line that does not fit
    host.WillPress("OK");
    EXPECT_FALSE(Run(log + "not a line\n" + log).ok);
    EXPECT_EQ(Shown(0).message, kReadFailed);
}

TEST_F(RobotScreensTest, RulesThatCannotBeWrittenAreTold) {
    at.program.robots = home.folder.File("nowhere/fltrbots.ini");
    Press("Add -->", {0});
    host.WillPress("OK");
    host.WillPress("OK");
    home.user.WillPressOk(3);
    EXPECT_EQ(Run(log).rulesMade, 0U);
    EXPECT_TRUE(Shown(0).message.starts_with("The filters could not be written to "));
}

TEST_F(RobotScreensTest, TheFinderFilterIsChosenForAllSites) {
    logdefs::FltrRuleWrite(home.ini, "Trap", files.finder, {{logdefs::kStartsWith, "/trap", false}, 1});
    home.ini.IniPut("Filters", "SelLst", "Trap", files.finder);
    host.WillPress("OK", [](DialogModel& model) { model.controls[1].Select({0}); });
    EXPECT_TRUE(BotsFinderEdit(at));
    EXPECT_EQ(home.ini.IniGet("Filters", "Fltr Sel", files.finder), "Trap");
}

}  // namespace
}  // namespace adddata
