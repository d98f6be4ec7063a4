#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "core/inistore.h"
#include "tests/shell/fakefront.h"

namespace shell {
namespace {

namespace fs = std::filesystem;
using testsupport::TestShell;

TEST(FirstRun, ExitMakesNothing) {
    TestShell test;
    test.host.WillPress("Exit");
    EXPECT_FALSE(test.Load());
    EXPECT_EQ(test.front.mainShown, 1);
    EXPECT_EQ(test.shell->dHelpID(), "FW");
    EXPECT_EQ(test.host.shown.at(0).title, "Enter Site Name");
    EXPECT_TRUE(fs::is_empty(test.home + "/sites"));
    EXPECT_FALSE(fs::exists(test.home + "/param/sitedbs.ini"));
    EXPECT_FALSE(fs::exists(test.home + "/Dir.ini"));
}

TEST(FirstRun, RepeatsUntilTheNameIsGoodAndAsksOnlyOnce) {
    TestShell test;
    test.host.WillPress("OK", TestShell::Enter("  "));
    test.host.WillPress("OK", TestShell::Enter("a|b"));
    test.host.WillPress("OK", TestShell::Enter(" My shop "));
    ASSERT_TRUE(test.Load());
    EXPECT_EQ(test.host.opened, 1);
    EXPECT_NE(test.host.shown.at(1).problem.find("Name is required."), std::string::npos);
    EXPECT_NE(test.host.shown.at(2).problem.find("cannot contain"), std::string::npos);
    EXPECT_EQ(test.front.caption, "My shop - Current Site DB: Corvane");
    const sitedb::SiteOptions& made = test.shell->OpenSite()->Options();
    EXPECT_TRUE(made.LastKeepVal && made.Skip404 && made.EraseNonSE && made.RemQuery && made.RemFrag);

    test.host.WillPress("No");  // add data now?
    test.shell->MDIForm_Activate();
    test.shell->MDIForm_Activate();
    EXPECT_TRUE(test.Showed("Site DB >>My shop<<created."));
    test.Restart();
    ASSERT_TRUE(test.Load());
    test.shell->MDIForm_Activate();
    EXPECT_TRUE(test.host.Done());
}

TEST(FirstRun, SitesOfTheCommandLineCount) {
    TestShell test;
    ASSERT_TRUE(test.shell->TheSession().Prepare().ok);
    ASSERT_TRUE(test.Sites().Site_Create(AllOptionsOn("Mine")).result.ok);
    EXPECT_TRUE(test.Load());
    EXPECT_EQ(test.host.opened, 0);
}

TEST(Uninstall, NeverOpensAMainWindow) {
    TestShell test;
    test.host.WillPress("No");
    EXPECT_FALSE(test.Load({"/1UNINST"}));
    EXPECT_FALSE(fs::exists(test.home));
    test.LoadFirst();
    test.front.mainShown = 0;
    test.Restart();
    test.host.WillPress("Yes");
    test.host.WillPress("OK");
    EXPECT_FALSE(test.Load({"/1UNINST"}));
    EXPECT_EQ(test.front.mainShown, 0);
    EXPECT_TRUE(fs::exists(test.home + "/recycled/Shop/data/site1.mdb"));
    EXPECT_TRUE(test.Showed("Databases moved to recycle directory:"));
    test.Restart();
    test.host.WillPress("Exit");  // as before the first start
    EXPECT_FALSE(test.Load());
}

// What can be missing or damaged, each told by the same dialog.
class Recovery : public testing::Test {
protected:
    Recovery() {
        test.LoadFirst();
        site = test.Sites().CurrentFolder();
        test.shell.reset();
    }
    void ExpectDialogThenExit() {
        test.Restart();
        test.host.WillPress("Exit Corvane");
        EXPECT_FALSE(test.Load());
        EXPECT_TRUE(test.Showed("Site database cannot be read."));
        EXPECT_EQ(test.host.shown.back().buttons,
                  (std::vector<std::string>{"Select Database", "Create New Database", "Exit Corvane"}));
        EXPECT_TRUE(test.host.Done());
        EXPECT_EQ(test.shell->OpenSite(), nullptr);
        test.shell.reset();
    }
    static void Spoil(const std::string& file, const std::string& text) {
        std::ofstream(file, std::ios::binary) << text;
    }

    TestShell test{};
    std::string site{};
};

TEST_F(Recovery, EachDamageComesToTheDialog) {
    const fs::path home(test.home), away = test.folder.File("away");
    const std::string dirIni = test.home + "/Dir.ini", kept = test.folder.Read("home/Dir.ini");
    fs::rename(site, away);
    ExpectDialogThenExit();
    fs::create_directories(site);
    ExpectDialogThenExit();
    fs::remove_all(site);
    fs::rename(away, site);
    for (const char* text : {"", "\xFF\xFE garbage\n[Main\n", "[Main]\nMain Data Dir=Z:\\\n",
                             "[Main]\nMain Data Dir=Q:\\x\n", "[Main]\nMain Data Dir=C:\\sites\\..\\..\\..\n"}) {
        SCOPED_TRACE(text);
        Spoil(dirIni, text);
        ExpectDialogThenExit();
    }
    fs::remove(dirIni);
    ExpectDialogThenExit();
    Spoil(dirIni, kept);
    fs::rename(site + "/param/dbdef.ini", away);
    ExpectDialogThenExit();  // a database without its options is no site
    fs::rename(away, site + "/param/dbdef.ini");
    Spoil(site + "/data/site1.mdb", std::string(8192, 'x'));
    ExpectDialogThenExit();
    EXPECT_EQ(fs::file_size(site + "/data/site1.mdb"), 8192U);
    fs::remove(site + "/data/site1.mdb");
    ExpectDialogThenExit();
    EXPECT_FALSE(fs::exists(site + "/data/site1.mdb"));
}

TEST_F(Recovery, SelectAndCreateLeadBackToTheCheck) {
    test.Restart();
    ASSERT_TRUE(test.Load());
    ASSERT_TRUE(test.Sites().Site_Create(AllOptionsOn("Second")).result.ok);
    ASSERT_TRUE(test.Sites().Site_Select("Shop").ok);
    test.shell.reset();
    fs::rename(site, test.folder.File("away"));

    test.Restart();
    test.host.WillPress("Select Database");
    test.host.WillPress("OK", TestShell::Choose("Shop"));  // still gone
    test.host.WillPress("OK");                             // the message
    test.host.WillPress("OK", TestShell::Choose("Second"));
    ASSERT_TRUE(test.Load());
    EXPECT_TRUE(test.Showed("Database NOT changed."));
    EXPECT_EQ(test.front.caption, "Second - Current Site DB: Corvane");

    ASSERT_TRUE(test.Sites().MakeCurrent(site));
    test.Restart();
    test.host.WillPress("Select Database");
    test.host.WillPress("Cancel");
    test.host.WillPress("Create New Database");
    test.host.WillPress("Cancel");  // the dialog for a new one: the recovery site will do
    ASSERT_TRUE(test.Load());
    EXPECT_EQ(test.front.caption, "Site Created for Recover - Current Site DB: Corvane");
    ASSERT_TRUE(test.Sites().MakeCurrent(site));
    test.Restart();
    test.host.WillPress("Create New Database");
    test.host.WillPress("OK", TestShell::Enter("Anew"));
    ASSERT_TRUE(test.Load());
    EXPECT_EQ(test.front.caption, "Anew - Current Site DB: Corvane");
    EXPECT_TRUE(test.host.Done());
}

TEST_F(Recovery, ASecondProgramIsTold) {
    core::FileLock other;
    ASSERT_TRUE(other.Lock(site + "/data/site1.ldb").ok);
    ExpectDialogThenExit();
    EXPECT_TRUE(test.Showed("Another copy of this program is using the site's database."));
}

TEST_F(Recovery, ScreensIniIsRestoredAndADamagedOneIsTold) {
    const std::string screens = test.home + "/param/screens.ini";
    fs::remove(screens);
    test.Restart();
    ASSERT_TRUE(test.Load());
    EXPECT_TRUE(fs::exists(screens));
    for (const char* text : {"", "[NewDB\n1=", "[NewDB]\n1=Rubbish|x\n[EnterOps]\n1=Label|10\n", "\x00\xFF"}) {
        Spoil(screens, text);
        test.host.WillPress("OK");
        test.shell->Run("fMnu_FD");
        EXPECT_NE(test.host.shown.back().message.find(screens), std::string::npos);
    }
    fs::remove(screens);
    fs::create_directory(screens);
    test.host.WillPress("OK");  // cannot be written
    test.host.WillPress("OK");
    test.shell->Run("fMnu_FD");
    EXPECT_TRUE(test.host.Done());
    EXPECT_EQ(test.Recorded().size(), 0U);
}

}  // namespace
}  // namespace shell
