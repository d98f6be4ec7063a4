#include "adddata/readscreens.h"

#include <gtest/gtest.h>

#include "adddata/loglist.h"
#include "tests/adddata/screensite.h"

namespace adddata {
namespace {

using dialogs::DialogModel;
using dialogs::ListRow;
using testsupport::Captioned;
using testsupport::Combined;
using testsupport::ScreenSite;

const std::string kLines = Combined("1.1.1.1", "02/Mar/2009:08:01:02", "/a.htm") +
                           Combined("1.1.1.2", "02/Mar/2009:08:02:02", "/b.htm", "http://www.shop.test/a");

TEST(PathsOf, LinesOrAPickersList) {
    testsupport::TempFolder folder;
    const std::string odd = folder.Write("a|b", "");
    EXPECT_EQ(PathsOf(odd + "\r\n /x y \r\r/a|/b\n"), (std::vector<std::string>{odd, " /x y ", "/a", "/b"}));
    EXPECT_TRUE(PathsOf(" \r\n").empty());
}

TEST(LogList, KeepsPathsInStoredFormOnceTheNewestFirst) {
    ScreenSite home;
    const std::string log = home.folder.Write("access.log", kLines), odd = home.folder.Write("a|b.log", kLines);
    EXPECT_TRUE(ChooseLogs(home.at, {{log, "iis"}, {"/var//log/x*.log", ""}}));
    EXPECT_EQ(home.LastVal("Log Files"), "C:\\access.log [LogFormat: iis]|Z:\\var\\log\\x*.log");
    EXPECT_TRUE(ChooseLogs(home.at, {{"/b.log", ""}, {log, ""}, {odd, ""}}));
    EXPECT_EQ(home.LastVal("Log Files"), "Z:\\b.log|C:\\access.log|Z:\\var\\log\\x*.log");
    EXPECT_EQ(home.LastVal("PAFNlog"), "Z:\\b.log|C:\\access.log");
    EXPECT_EQ(ReadLogList(home.at)[2].file, "/var/log/x*.log");
    EXPECT_EQ(ChosenText(home.at), "/b.log\r" + log);
    LogSpecs many;
    for (int i = 0; i < 60; ++i) many.push_back({"/m" + std::to_string(i), ""});
    EXPECT_TRUE(ChooseLogs(home.at, many));
    EXPECT_EQ(ReadLogList(home.at).size(), kMostLogFiles);
    EXPECT_EQ(ReadLogChoice(home.at).size(), 60U);  // what is to be read is never cut

    EXPECT_NE(LogFileProblem(home.at, odd).find("cannot be used"), std::string::npos);
    EXPECT_NE(LogFileProblem(home.at, home.folder.Write("x [LogFormat: y]", "")).find("rename"), std::string::npos);
    EXPECT_EQ(LogFileProblem(home.at, home.folder.File("acc*.log")), "");
    EXPECT_NE(LogFileProblem(home.at, home.folder.File("none*.log")), "");
    EXPECT_NE(LogFileProblem(home.at, "access.log").find("full path"), std::string::npos);
}

TEST(EnterLogFiles, AddedFilesAreChosenAndMarksGiveTheOrder) {
    ScreenSite home;
    const std::string a = home.folder.Write("a.log", kLines), b = home.folder.Write("b.log", kLines);
    home.host.WillPress("Add log files ...");
    home.host.WillPress("OK", [](DialogModel& model) { Captioned(model, "Log files").value = "/no/such.log"; });
    home.host.WillPress(
        "OK", [&](DialogModel& model) { Captioned(model, "Log files").value = a + "\r" + b; },
        [&](DialogModel& model) {
            const dialogs::Rows& rows = Captioned(model, "Files to be read").rows;
            ASSERT_EQ(rows.size(), 3U);
            EXPECT_EQ(rows[1][1], "apache-combined");
            EXPECT_TRUE(rows[1][2].starts_with("100 %")) << rows[1][2];
        });
    home.host.WillPress("Read / do not read", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows[1][0], "1");
        model.controls[1].value = "0";
    });
    home.host.WillPress("Read / do not read", [](DialogModel& model) { model.controls[1].value = "0"; });
    home.host.WillPress("Log format ...", [](DialogModel& model) { model.controls[1].value = "1"; });
    home.host.WillPress(
        "OK", [](DialogModel& model) { Captioned(model, "Log format").value = "apache-common"; },
        [](DialogModel& model) {
            EXPECT_NE(Captioned(model, "How it fits").value.find("\"apache-combined\" fits better"), std::string::npos)
                << Captioned(model, "How it fits").value;
        });
    home.host.WillPress("OK", [&](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows[1], (ListRow{"2", a, "(apache-combined)"}));
        EXPECT_EQ(model.controls[1].rows[2], (ListRow{"1", b, "apache-common"}));
    });
    EXPECT_TRUE(EnterLogFiles(home.at));
    EXPECT_TRUE(home.Showed("There is no such file: /no/such.log"));
    EXPECT_EQ(home.LastVal("Log Files"), "C:\\a.log|C:\\b.log [LogFormat: apache-common]");
    EXPECT_EQ(home.LastVal("PAFNlog"), "C:\\b.log [LogFormat: apache-common]|C:\\a.log");
    EXPECT_EQ(home.at.Editing().trial.file, b);
    EXPECT_EQ(home.at.Editing().trial.format, "apache-common");

    home.host.WillPress("Remove from list", [](DialogModel& model) { model.controls[1].value = "1"; });
    home.host.WillPress("Read only this one", [](DialogModel& model) { model.controls[1].value = "-1"; });
    home.host.WillPress("Cancel");
    EXPECT_FALSE(EnterLogFiles(home.at));
    EXPECT_TRUE(home.Showed("Select a log file in the list first."));
    EXPECT_EQ(ReadLogList(home.at).size(), 2U);
    EXPECT_TRUE(home.host.Done());
}

TEST(ChosenRead, ADefaultFormatThatFitsNothingGivesWay) {
    ScreenSite home;
    const std::string log = home.folder.Write("a.log", kLines);
    EXPECT_TRUE(ChosenRead(home.at).files.empty());
    EXPECT_TRUE(ChooseLogs(home.at, {{log, ""}, {"/gone.log", ""}}));
    home.ini.IniPut("Main", "LFmtDflt", "iis-w3c-iis6", home.site->Paths().lastVals);
    home.memory.options.NoPromptOverlap = true;
    const AddRequest request = ChosenRead(home.at);
    ASSERT_EQ(request.files.size(), 2U);
    EXPECT_EQ(request.files[0].format, "apache-combined");
    EXPECT_EQ(request.files[1].format, "");
    EXPECT_EQ(request.format, "iis-w3c-iis6");
    EXPECT_TRUE(request.NoPromptOverlap);
}

TEST(EnterReadOptions, HoldUntilTheProgramEnds) {
    ScreenSite home;
    home.host.WillPress("OK", [](DialogModel& model) {
        model.controls[1].value = "True";
        model.controls[3].value = "True";
    });
    EXPECT_TRUE(EnterReadOptions(home.at));
    home.host.WillPress("Cancel", [](DialogModel& model) {
        EXPECT_TRUE(model.controls[1].Ticked());
        model.controls[2].value = "True";
    });
    EXPECT_FALSE(EnterReadOptions(home.at));
    EXPECT_TRUE(home.memory.options.NoPromptInvalid && home.memory.options.Keep404List);
    EXPECT_FALSE(home.memory.options.NoPromptOverlap);
}

}  // namespace
}  // namespace adddata
