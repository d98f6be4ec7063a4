#include "shell/commands.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/inistore.h"
#include "shell/activeresults.h"
#include "tests/shell/fakefront.h"
#include "tests/support/tempsite.h"

namespace shell {
namespace {

namespace fs = std::filesystem;
using testsupport::Combined;
using testsupport::TestShell;

// "Shop" is open, "Other" is on the list.
class CommandsTest : public testing::Test {
protected:
    CommandsTest() { test.LoadWithTwoSites(); }
    std::string Stored(const char* section, const char* key) {
        return test.shell->Desk().ini.IniGet(section, key, test.shell->Desk().screens);
    }
    std::int64_t Lines() { return test.shell->OpenSite()->Db().Scalar("SELECT count(*) FROM logline"); }

    TestShell test{};
};

TEST_F(CommandsTest, SelectingChangesTheSiteOnlyWhenItCanBeOpened) {
    const std::string other = test.Sites().Folder("Other"), shop = test.Sites().CurrentFolder();
    fs::rename(other, test.folder.File("away"));
    test.host.WillPress("OK", TestShell::Choose("Other"));
    test.host.WillPress("OK");
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_FS");
    EXPECT_TRUE(test.Showed("Database NOT changed."));
    EXPECT_EQ(test.Sites().CurrentFolder(), shop);
    EXPECT_EQ(test.front.reportsClosed, 0);

    fs::rename(test.folder.File("away"), other);
    fs::rename(other + "/data/site1.mdb", other + "/kept");  // the folder is sound, the database is not
    test.host.WillPress("OK", TestShell::Choose("Other"));
    test.host.WillPress("OK");
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_FS");
    EXPECT_EQ(test.Sites().CurrentFolder(), shop);
    ASSERT_NE(test.shell->OpenSite(), nullptr);
    EXPECT_EQ(test.shell->OpenSite()->Options().name, "Shop");

    fs::rename(other + "/kept", other + "/data/site1.mdb");
    test.host.WillPress("Show Options for Site DB", TestShell::Choose("Other"));
    test.host.WillPress("OK");
    test.host.WillPress("OK", TestShell::Choose("Other"));
    test.shell->Run("fMnu_FS");
    EXPECT_TRUE(test.Showed("Database Options for Site DB: Other"));
    EXPECT_EQ(test.front.caption, "Other - Current Site DB: Corvane");
    EXPECT_EQ(test.Sites().CurrentFolder(), other);
    EXPECT_TRUE(test.host.Done());
}

TEST_F(CommandsTest, RemovingRefusesTheCurrentSiteAndKeepsTheListUp) {
    const std::string other = test.Sites().Folder("Other");
    test.host.WillPress("Remove ", TestShell::Choose("Shop"));
    test.host.WillPress("Remove ", TestShell::Choose("Other"));
    test.host.WillPress("Yes");
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_FS");
    EXPECT_TRUE(test.Showed("The current site cannot be removed."));
    EXPECT_EQ(test.Sites().Names(), std::vector<std::string>{"Shop"});
    EXPECT_FALSE(fs::exists(other));
    EXPECT_TRUE(fs::exists(test.home + "/recycled/Other/param/dbdef.ini"));
    EXPECT_EQ(test.host.open, 0);
    EXPECT_TRUE(test.host.Done());
}

TEST_F(CommandsTest, ANewSiteTakesTheOptionsEntered) {
    const auto enter = [](dialogs::DialogModel& model) {
        TestShell::Enter("Blog")(model);
        for (dialogs::Control& control : model.controls.All())
            if (control.Is(dialogs::ControlType::CheckBox)) control.value = "False";
    };
    test.host.WillPress("OK", TestShell::Enter(""));
    test.host.WillPress("OK", TestShell::Enter("shop"));
    test.host.WillPress("OK", enter);
    test.host.WillPress("No");
    test.shell->Run("fMnu_FD");
    EXPECT_TRUE(test.Showed("Name is required."));
    EXPECT_TRUE(test.Showed("There is a site of that name already"));
    EXPECT_EQ(Stored("NewDB", "CurrDB"), "Shop");
    EXPECT_EQ(test.front.caption, "Blog - Current Site DB: Corvane");
    EXPECT_EQ(test.front.reportsClosed, 1);
    const sitedb::SiteOptions& made = test.shell->OpenSite()->Options();
    EXPECT_FALSE(made.LastKeepVal || made.Skip404 || made.EraseNonSE || made.RemQuery || made.RemFrag);
    test.host.WillPress("Cancel", TestShell::Enter("Never"));
    test.shell->Run("fMnu_FD");
    EXPECT_EQ(test.Sites().Names().size(), 3U);
}

TEST_F(CommandsTest, OptionDialogsOpenAndStore) {
    for (const char* control : {"fMnu_ER", "fMnu_EO", "fMnu_SC", "fMnu_SD"}) {
        SCOPED_TRACE(control);
        test.host.WillPress("Cancel");
        test.shell->Run(control);
        test.host.WillPress("OK");
        test.shell->Run(control);
        EXPECT_EQ(test.shell->dHelpID(), std::string(control).substr(5));
    }
    EXPECT_EQ(test.host.shown.at(0).title, "Corvane - Enter Report Options.");
    EXPECT_EQ(test.front.optionsChanged, 1);
    EXPECT_EQ(Stored("Parm", "ConfirmStop"), "True");
    test.host.WillPress("OK", TestShell::Enter("2024-13-01"));
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_SD");
    EXPECT_NE(test.host.shown.back().problem.find("First value is not a date ."), std::string::npos);
}

TEST_F(CommandsTest, FilesAreAddedFromTheMenuOrDroppedAndThenListed) {
    const std::string log = test.folder.Write("a.log", Combined("1.1.1.1", "02/Mar/2009:08:01:02", "/a.htm") +
                                                           Combined("1.1.1.2", "02/Mar/2009:08:02:02", "/b.htm"));
    test.host.WillPress("Done");
    test.shell->AddFiles({log});
    EXPECT_EQ(Lines(), 0);
    EXPECT_EQ(test.shell->dHelpID(), "FW");

    test.host.WillPress("Start. Read Log File", TestShell::Enter("/no/such.log"));
    test.host.WillPress("Start. Read Log File", TestShell::Enter(log));
    test.host.WillPress("OK");
    test.host.WillPress("List Problem Files for last read");
    test.host.WillPress("OK");
    test.host.WillPress("Done");
    test.shell->Run("fMnu_FW");
    EXPECT_TRUE(test.Showed("There is no such file: /no/such.log"));
    EXPECT_TRUE(test.Showed("Files were all read without problems."));
    EXPECT_EQ(Lines(), 2);

    test.host.WillPress("Close");
    test.shell->Run("fMnu_FL");
    EXPECT_EQ(test.host.shown.back().message, "Logged Additions of raw log data to this site database");
    // What the last add found belongs to its site.
    test.host.WillPress("OK", TestShell::Choose("Other"));
    test.shell->Run("fMnu_FS");
    test.host.WillPress("List Problem Files for last read");
    test.host.WillPress("Done");
    test.shell->Run("fMnu_FW");
    EXPECT_TRUE(test.Showed("Nothing was read yet."));
    EXPECT_TRUE(test.host.Done());
}

TEST_F(CommandsTest, DefinitionsAreEditedFromTheMenu) {
    for (const char* control : {"fMnu_FM", "fMnu_FG"}) {
        SCOPED_TRACE(control);
        test.host.WillPress("Cancel");
        test.shell->Run(control);
        EXPECT_EQ(test.shell->dHelpID(), std::string(control).substr(5));
    }
    EXPECT_TRUE(test.host.Done());
}

TEST_F(CommandsTest, UnfinishedWorkIsOfferedOnceAfterTheStart) {
    test.shell->Desk().ini.IniPut("Main", "AddedLogLns_MustDoVisitsAdd", "2024-03-01 10:00:00",
                                  test.shell->OpenSite()->Paths().lastVals);
    test.host.WillPress("No");
    test.shell->MDIForm_Activate();
    test.shell->MDIForm_Activate();
    EXPECT_TRUE(test.Showed("process to create visits data was not completed"));
    EXPECT_TRUE(test.host.Done());
}

TEST_F(CommandsTest, HelpLeavesTheLastCommandAndFindsItsPage) {
    test.shell->MenuOpened("fMnu_F");
    EXPECT_EQ(test.shell->dHelpID(), "F");
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_EO");
    test.shell->MenuOpened("fMnu_H");
    test.shell->Run("fMnu_HG");
    test.shell->Run("fMnu_HM");
    test.shell->Run("fMnu_HL");
    EXPECT_EQ(test.shell->dHelpID(), "EO");
    ASSERT_EQ(test.front.helpShown.size(), 3U);
    EXPECT_EQ(test.front.helpShown[0], "helpcont.htm#start");
    EXPECT_EQ(test.front.helpShown[1], test.front.helpShown[0]);
    test.front.hasHelp = false;
    test.host.WillPress("OK");
    test.shell->ShowHelpOn("no such id");
    EXPECT_EQ(test.front.helpShown[3], "helpcont.htm#");
    test.host.WillPress("OK");
    test.shell->Run("fMnu_HA");
    EXPECT_TRUE(test.Showed("Shared Parameters from Directory: " + test.home));
}

TEST_F(CommandsTest, WindowsAreArranged) {
    for (const char* control : {"fMnu_WC", "fMnu_WH", "fMnu_WV", "fMnu_WF"}) test.shell->Run(control);
    EXPECT_EQ(test.front.arranged,
              (std::vector<Arrange>{Arrange::Cascade, Arrange::TileHorizontal, Arrange::TileVertical, Arrange::Fill}));
    test.shell->Run("fMnu_none");
    EXPECT_EQ(test.shell->dHelpID(), "WF");
    EXPECT_EQ(test.host.opened, 0);
    test.shell->Run("fMnu_FX");
    EXPECT_EQ(test.front.quits, 1);
}

TEST_F(CommandsTest, OnlyAReportWindowHoldsResults) {
    const auto ask = [&](bool mustBeResults) { return pActiveResults(test.shell->Desk(), test.front, mustBeResults); };
    for (const char* id : {"", "Ifrm", "7|STLstX", "7STLst"}) {
        test.front.windowId = id;
        EXPECT_TRUE(ask(false).ok);
        test.host.WillPress("OK");
        EXPECT_FALSE(ask(true).ok) << id;
        EXPECT_EQ(test.host.shown.back().message, "Only available when Results are displayed");
    }
    test.front.windowId = "34567.5|STLst";
    EXPECT_TRUE(ask(true).ok);
    EXPECT_EQ(ask(true).id, test.front.windowId);
    EXPECT_TRUE(test.host.Done());
}

TEST_F(CommandsTest, AboutHoldsTheRecordedFailures) {
    std::string details;
    const auto about = [&] {
        test.host.WillPress("OK", [&](dialogs::DialogModel& model) { details = model.details; });
        test.shell->Run("fMnu_HA");
    };
    about();
    EXPECT_TRUE(details.ends_with("No errors have been recorded.")) << details;
    test.box.script = {1, 1};
    for (const char* what : {"the first", "the second"})
        test.shell->Trap("Proc", [what] { throw std::runtime_error(what); });
    about();
    EXPECT_LT(details.find("<<0 - the second>>"), details.find("<<0 - the first>>"));
    EXPECT_EQ(details.find('\n'), std::string::npos);
}

TEST_F(CommandsTest, ANewSiteTakesTheOptionsEnteredEvenWhenTheyCannotBeStored) {
    const std::string screens = test.shell->Desk().screens;
    test.host.WillPress("OK", [&](dialogs::DialogModel& model) {
        TestShell::Enter("Blog")(model);
        for (dialogs::Control& control : model.controls.All())
            if (control.Is(dialogs::ControlType::CheckBox)) control.value = control.Ticked() ? "False" : "True";
        fs::remove(screens);
        fs::create_directory(screens);
    });
    for (int told = 0; told < 6; ++told) test.host.WillPress("OK");  // the name and five options
    test.host.WillPress("No");
    test.shell->Run("fMnu_FD");
    ASSERT_NE(test.shell->OpenSite(), nullptr);
    const sitedb::SiteOptions& made = test.shell->OpenSite()->Options();
    EXPECT_EQ(made.name, "Blog");
    EXPECT_FALSE(made.LastKeepVal);
    EXPECT_TRUE(test.host.Done());
}

}  // namespace
}  // namespace shell
