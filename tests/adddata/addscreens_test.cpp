#include "adddata/addscreens.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "adddata/addlog.h"
#include "adddata/loglist.h"
#include "tests/adddata/screensite.h"
#include "tests/support/fulldisk.h"
#include "tests/support/packed.h"

namespace adddata {
namespace {

using dialogs::DialogModel;
using testsupport::Captioned;
using testsupport::Combined;
using testsupport::ScreenSite;
using testsupport::Set;

constexpr const char* kStart = "Start. Read Log File";
const std::string kRed = "https://www.google.de/search?q=red+shoes";
const std::string kLog = Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a.html", kRed, 200, 1234) +
                         Combined("1.1.1.1", "02/Mar/2009:08:00:01", "/style.css") +
                         Combined("1.1.1.3", "02/Mar/2009:08:00:02", "/b.html", "-", 200, 5, "Sosospider/2.1") +
                         Combined("1.1.1.4", "03/Mar/2009:18:10:02", "/c.html", kRed, 200, 66);

TEST(AddLogDataOnScreen, AFirstAddFromNothing) {
    ScreenSite home;
    const std::string log = home.folder.Write("access.log", kLog);
    home.host.WillPress(kStart, [](DialogModel& model) {
        EXPECT_EQ(model.focusButton, 0);
        EXPECT_EQ(model.title, "Add Log Data to Database. Select File, Processing to do, Filters. Site DB: Shop");
        EXPECT_EQ(model.message,
                  "Current Site DB: Shop\rSelect File to add, Processing to be done, Filters to be used.");
    });
    home.host.WillPress(kStart, Set("Log files", log), [&](DialogModel& model) {
        EXPECT_EQ(model.problem, "Name at least one log file.");
        const dialogs::Rows& rows = Captioned(model, "Files to be read").rows;
        ASSERT_EQ(rows.size(), 2U);
        EXPECT_EQ(rows[1][1], "apache-combined");
    });
    home.host.WillPress("Show SE Summary");
    home.host.WillPress("Close", [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows[1][2], "2"); });
    home.host.WillPress("OK");
    home.host.WillPress("SE Summary", [](DialogModel& model) {
        EXPECT_TRUE(model.message.starts_with("Data added.\r"));
        EXPECT_EQ(model.focusButton, model.defaultButton);
    });
    home.host.WillPress("Close");
    home.host.WillPress("List Problem Files for last read");
    home.host.WillPress("OK");
    home.host.WillPress("Done");
    AddLogDataOnScreen(home.at, {});
    EXPECT_TRUE(
        home.Showed("Read Log Data Complete. Site DB: Shop\r\rAdded: 2 in less than one minute\rTotal log lines "
                    "read: 4.\r"));
    EXPECT_TRUE(home.Showed("0 exist.0 filtered.1 bots.1 components."));
    EXPECT_TRUE(home.Showed("Files were all read without problems."));
    EXPECT_EQ(home.Lines(), 2);
    EXPECT_EQ(home.LastVal("PAFNlog"), "C:\\access.log");
    EXPECT_EQ(home.LastVal("Log Files"), "C:\\access.log");
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogDataOnScreen, DroppedFilesAreChosenAndBadOnesTold) {
    ScreenSite home;
    const std::string a = home.folder.Write("a.log", kLog), odd = home.folder.Write("a|b.log", kLog);
    const std::string b = home.folder.Write("b.log.gz", testsupport::Pack("gzip", kLog));
    home.host.WillPress("Done", [&](DialogModel& model) {
        EXPECT_NE(model.problem.find("/a|b.log<< cannot be used"), std::string::npos) << model.problem;
        EXPECT_EQ(Captioned(model, "Log files").value, a + "\r" + b);
        EXPECT_EQ(Captioned(model, "Files to be read").rows[2][1], "apache-combined");
    });
    AddLogDataOnScreen(home.at, {a, odd, b});
    EXPECT_EQ(home.LastVal("PAFNlog"), "C:\\a.log|C:\\b.log.gz");
    EXPECT_EQ(home.Lines(), 0);
}

TEST(AddLogDataOnScreen, AMisfitOrAFileThatIsGoneIsToldInPlace) {
    ScreenSite home;
    const std::string a = home.folder.Write("a.log", kLog), b = home.folder.Write("b.log", "nothing\nlike a log\n");
    home.host.WillPress(kStart, Set("Log format", "iis-w3c-iis6"), [](DialogModel& model) {
        EXPECT_NE(Captioned(model, "Files to be read").rows[1][2].find("\"apache-combined\" fits better"),
                  std::string::npos);
    });
    home.host.WillPress(kStart, [&](DialogModel& model) {
        EXPECT_NE(model.problem.find("The format that fits best is \"apache-combined\"."), std::string::npos);
        EXPECT_EQ(Captioned(model, "Log format").ComboText(), "iis-w3c-iis6");
        Captioned(model, "Log format").value = "The format that fits best";
        Captioned(model, "Log files").value = a + "\r" + b;
    });
    home.host.WillPress(kStart, [&](DialogModel& model) {
        EXPECT_NE(model.problem.find(b + ". No other format fits either"), std::string::npos) << model.problem;
        Captioned(model, "Log files").value = a;
        std::filesystem::remove(a);
    });
    home.host.WillPress(kStart, [&](DialogModel& model) {
        EXPECT_EQ(model.problem, "There is no such file: " + a);
        EXPECT_EQ(Captioned(model, "Log files").value, a);
        home.folder.Write("a.log", kLog);
        Captioned(model, "Main Processing - Add log lines to database.").value = "False";
    });
    home.host.WillPress("Done", [](DialogModel& model) { EXPECT_TRUE(model.problem.starts_with("Tick what")); });
    AddLogDataOnScreen(home.at, {a});
    EXPECT_EQ(home.LastVal("DoAdd"), "False");
    EXPECT_EQ(home.Lines(), 0);
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogDataOnScreen, FiltersAreChosenAndStored) {
    ScreenSite home;
    home.folder.Write("access.log", kLog);
    home.ini.IniPut("Filters", "Fltr Sel", "sel", home.site->Paths().mainFilter);
    logdefs::FltrRuleWrite(home.ini, "sel", home.site->Paths().mainFilter, {{logdefs::kContains, "c.html", false}, 1});
    home.host.WillPress(
        kStart,
        [](DialogModel& model) {
            Captioned(model, "Add all lines").value = "False";
            Captioned(model, "Add only lines of the filter").value = "True";
            Captioned(model, "Exclude robots and crawlers").value = "False";
        },
        [](DialogModel& model) {
            EXPECT_EQ(Captioned(model, "What the main filter does").value,
                      "Yes - Log line loaded when satisfy all filters. File Name Contains <c.html>.");
        });
    home.user.WillPressOk();  // the files of the wildcard
    home.host.WillPress("OK");
    home.host.WillPress("Done");
    AddLogDataOnScreen(home.at, {home.folder.File("acc*.log")});
    EXPECT_TRUE(home.Showed("Added: 1 in"));
    EXPECT_TRUE(home.Showed("Yes - Log line loaded when satisfy all filters.\r"));
    EXPECT_EQ(home.LastVal("All") + home.LastVal("Filter") + home.LastVal("nobots"), "FalseTrueFalse");
    EXPECT_EQ(home.Lines(), 1);
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogDataOnScreen, WhatIsNewAmongLinesThatAreThereAlready) {
    ScreenSite home;
    const std::string log = home.folder.Write("access.log", kLog);
    const auto add = [&] {
        home.host.WillPress(kStart);
        home.host.WillPress("OK");
        home.host.WillPress("Done");
        AddLogDataOnScreen(home.at, {log});
    };
    add();
    home.memory.options.NoPromptOverlap = true;
    add();
    EXPECT_TRUE(home.host.shown.back().message.starts_with("No new line was added.\r"));
    EXPECT_TRUE(home.Showed("2 exist."));
    EXPECT_EQ(home.Lines(), 2);
}

TEST(AddLogDataOnScreen, AfterPreprocessingTheAddIsConfirmed) {
    ScreenSite home;
    const std::string log = home.folder.Write("access.log", kLog);
    const auto newbots = Set("Preprocessing - Check for new robots", "True");
    home.host.WillPress(kStart, newbots);
    home.host.WillPress("OK");  // no new robots
    home.host.WillPress("List PageNames");
    home.host.WillPress("Done");
    home.host.WillPress("Edit Filters");
    home.host.WillPress("OK", Set("Skip page components (images, styles, scripts)", "False"));
    home.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_TRUE(
            model.message.starts_with("Preprocessing [check robots] - Done. \r----------\rMain Processing [add "
                                      "lines]. - To Do Next.\r\rFile Spec: /"));
        EXPECT_NE(model.message.find("Skip page components: No [page component]"), std::string::npos);
    });
    home.host.WillPress("OK");
    home.host.WillPress(kStart);
    home.host.WillPress("OK");
    home.host.WillPress("Cancel");
    home.host.WillPress(kStart, [](DialogModel& model) {
        EXPECT_TRUE(model.message.starts_with("Add log to database cancelled "));
        Captioned(model, "Main Processing - Add log lines to database.").value = "False";
    });
    home.host.WillPress("OK");
    home.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_TRUE(model.message.starts_with("Preprocessing [check robots] - Done. \r"));
    });
    AddLogDataOnScreen(home.at, {log});
    EXPECT_TRUE(home.Showed("Added: 3 [Preprocessing: less than one minute] in"));
    EXPECT_EQ(home.Lines(), 3);
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogDataOnScreen, AStoppedReadLeavesItsLinesForLater) {
    ScreenSite home;
    std::string text;
    for (int i = 0; i < 9; ++i) text += kLog;
    const std::string log = home.folder.Write("access.log", text + "no log line\n" + kLog);
    home.user.WillCancel();  // at the line that fits no format
    home.user.WillCancel();  // no visits now
    home.host.WillPress(kStart);
    home.host.WillPress("OK");
    home.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_TRUE(model.message.starts_with("Read raw log data cancelled or failed.\r"));
    });
    AddLogDataOnScreen(home.at, {log});
    EXPECT_TRUE(home.Showed("The visits of these lines are not built yet."));
    EXPECT_EQ(home.Lines(), 18);
    EXPECT_FALSE(home.memory.lastAdd.problems.empty());
    EXPECT_FALSE(home.site->UnfinishedAdd(home.env).empty());
    EXPECT_NE(core::ReadFile(AddLogFile(home.site->Paths())).text.find("File Read Stopped."), std::string::npos);
    EXPECT_TRUE(home.host.Done() && home.user.Done());
}

TEST(AddLogDataOnScreen, ReadOptionsAndTheErrorPagesOfTheRead) {
    sitedb::SiteOptions options = ScreenSite::Plain();
    options.Skip404 = true;
    ScreenSite home(options);
    const std::string log =
        home.folder.Write("access.log", kLog + Combined("1.1.1.1", "03/Mar/2009:19:00:00", "/gone.html", "-", 404));
    home.host.WillPress("Options");
    home.host.WillPress("OK", [](DialogModel& model) { model.controls[3].value = "True"; });
    home.host.WillPress(kStart);
    home.host.WillPress("List 404 filenames");
    home.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_EQ(model.controls[3].rows[1], (dialogs::ListRow{"/gone.html", "1"}));
    });
    home.host.WillPress("OK");
    home.host.WillPress("Done");
    AddLogDataOnScreen(home.at, {log});
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogDataOnScreen, ChoicesThatCannotBeStoredAreToldOnce) {
    ScreenSite home;
    const std::string log = home.folder.Write("access.log", kLog), lastVals = home.site->Paths().lastVals;
    std::optional<testsupport::FullDisk> disk;
    home.host.WillPress("Done", [&](DialogModel& model) {
        Captioned(model, "Exclude robots and crawlers").value = "False";
        disk.emplace(0);
    });
    home.host.WillPress("OK", [&](DialogModel&) { disk.reset(); });
    AddLogDataOnScreen(home.at, {log});
    EXPECT_TRUE(home.Showed("it cannot be stored in this file:\r" + lastVals));
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogDataOnScreen, ALongListIsLookedAtInPart) {
    ScreenSite home;
    std::vector<std::string> files;
    for (int i = 0; i < 60; ++i) {
        files.push_back(home.folder.Write("a" + std::to_string(i) + ".log",
                                          Combined("1.1.1.1", "03/Mar/20" + std::to_string(10 + i % 10) + ":08:00:00",
                                                   "/" + std::to_string(i) + ".html")));
    }
    home.host.WillPress(kStart, [](DialogModel& model) {
        const dialogs::Rows& rows = Captioned(model, "Files to be read").rows;
        ASSERT_EQ(rows.size(), 22U);
        EXPECT_EQ(rows.back()[0], "... and 40 more");
    });
    home.host.WillPress("OK");
    home.host.WillPress("Done");
    home.memory.options.NoPromptOverlap = true;
    AddLogDataOnScreen(home.at, files);
    EXPECT_EQ(home.Lines(), 60);
    EXPECT_EQ(ReadLogChoice(home.at).size(), 60U);
    EXPECT_EQ(ReadLogList(home.at).size(), kMostLogFiles);
}

TEST(AddLogDataOnScreen, BeforeAnyAddTheListsSaySo) {
    ScreenSite home;
    home.host.WillPress("SE Summary");
    home.host.WillPress("List Problem Files for last read",
                        [](DialogModel& model) { EXPECT_TRUE(model.message.starts_with("Nothing was added yet.")); });
    home.host.WillPress("Select log file and specify format ...",
                        [](DialogModel& model) { EXPECT_TRUE(model.message.starts_with("Nothing was read yet.")); });
    home.host.WillPress("Cancel");
    home.host.WillPress("Main filter ...");
    home.host.WillPress("Cancel");
    home.host.WillPress("Robot filters ...");
    home.host.WillPress("Cancel");
    home.host.WillPress("Page component filter ...");
    home.host.WillPress("Cancel");
    home.host.WillPress("Log formats ...");
    home.host.WillPress("Cancel");
    home.host.WillPress("Search engine definitions ...");
    home.host.WillPress("Cancel");
    home.host.WillPress("Done");
    AddLogDataOnScreen(home.at, {});
    EXPECT_TRUE(home.host.Done());
}

}  // namespace
}  // namespace adddata
