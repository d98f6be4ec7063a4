#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "core/files.h"
#include "core/inistore.h"
#include "core/text.h"
#include "tests/shell/fakefront.h"
#include "tests/support/fulldisk.h"

namespace shell {
namespace {

namespace fs = std::filesystem;
using testsupport::FullDisk;
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
        test.host.shown.clear();
        test.host.WillPress("Exit Corvane");
        EXPECT_FALSE(test.Load());
        ASSERT_EQ(test.host.shown.size(), 1U);
        EXPECT_TRUE(test.Showed("Site database cannot be read."));
        EXPECT_EQ(test.host.shown.back().buttons,
                  (std::vector<std::string>{"Select Database", "Create New Database", "Exit Corvane"}));
        EXPECT_TRUE(test.host.Done());
        EXPECT_EQ(test.shell->OpenSite(), nullptr);
        test.shell.reset();
    }
    // Every file below the data home, with its content.
    std::map<std::string, std::string> Files() const {
        std::map<std::string, std::string> files;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(test.home))
            if (entry.is_regular_file())
                files[entry.path().string()] = core::ReadFile(entry.path().string()).text +
                                               std::to_string(entry.last_write_time().time_since_epoch().count());
        return files;
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
    fs::create_directories(test.home + "/none");
    const std::string outside = "Z:" + core::fReplace(test.folder.Path(), "/", "\\"), entry = "[Main]\nMain Data Dir=";
    const std::string damages[] = {"",
                                   "\xFF\xFE garbage\n[Main\n",
                                   entry + std::string("C:\\sites\\Sh\0op\n", 18),
                                   std::string(100000, '\0'),
                                   entry + "Z:\\\n",
                                   entry + "/\n",
                                   entry + "C:\\\n",
                                   entry + outside + "\n",
                                   entry + "sites\\Shop\n",
                                   entry + "Q:\\x\n",
                                   entry + "C:\\none\n",
                                   entry + "C:\\param\n",
                                   entry + "C:\\sites\\..\\..\\..\n",
                                   entry + "C:\\sites\\..\\sites\\Shop\n"};
    for (const std::string& text : damages) {
        SCOPED_TRACE(text.substr(0, 60));
        Spoil(dirIni, text);
        ExpectDialogThenExit();
        EXPECT_EQ(test.folder.Read("home/Dir.ini"), text);
    }
    fs::remove(dirIni);
    ExpectDialogThenExit();
    fs::create_directory(dirIni);
    ExpectDialogThenExit();
    fs::remove(dirIni);
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

TEST_F(Recovery, ASecondProgramIsToldAndWritesNothing) {
    core::FileLock other;
    ASSERT_TRUE(other.Lock(site + "/data/site1.ldb").ok);
    test.folder.Write("home/param/sitedbs.ini",
                      "[Main]\nDBNameLst=Shop\n[Shop]\nParm=C:\\sites\\Shop\n");  // no first one
    test.folder.Write("home/sites/Shop/data/site1.mdb.temp", "the other one compacts");
    const auto before = Files();
    test.Restart();
    test.host.shown.clear();
    test.front.mainShown = 0;
    test.host.WillPress("Retry");
    test.host.WillPress("Exit Corvane");
    EXPECT_FALSE(test.Load());
    EXPECT_EQ(test.host.shown.at(1).message,
              "Another copy of this program is using the site's database. Close it and try again.");
    EXPECT_EQ(test.host.shown.at(1).buttons, (std::vector<std::string>{"Retry", "Select Database", "Exit Corvane"}));
    EXPECT_EQ(test.front.mainShown, 0);
    EXPECT_EQ(Files(), before);

    test.Restart();
    test.host.WillPress("Select Database");
    test.host.WillPress("OK", TestShell::Choose("Shop"));
    test.host.WillPress("OK");
    test.host.WillPress("Cancel");
    test.host.WillPress("Retry", [&](dialogs::DialogModel&) { other.Unlock(); });
    ASSERT_TRUE(test.Load());
    EXPECT_TRUE(test.Showed("Database NOT changed.\r\rProblem Details:\rAnother copy"));
    EXPECT_FALSE(fs::exists(site + "/data/site1.mdb.temp"));
    EXPECT_TRUE(test.host.Done());
}

TEST_F(Recovery, AFullDiskLeadsBackToTheDialog) {
    fs::rename(site, test.folder.File("away"));
    for (const rlim_t most : {rlim_t{0}, rlim_t{4000}}) {
        SCOPED_TRACE(most);
        test.Restart();
        const FullDisk full(most);
        test.host.shown.clear();
        for (int i = 0; i < 2; ++i) {
            test.host.WillPress("Create New Database");
            test.host.WillPress("OK");      // why the site for recovery could not be made
            test.host.WillPress("Cancel");  // no other new site
        }
        test.host.WillPress("Exit Corvane");
        EXPECT_FALSE(test.Load());
        EXPECT_TRUE(test.host.Done());
        EXPECT_EQ(test.Sites().Names(), std::vector<std::string>{"Shop"});
    }
    EXPECT_EQ(test.Recorded().size(), 0U);
    test.Restart();
    test.host.WillPress("Create New Database");
    test.host.WillPress("OK", TestShell::Enter("Anew"));
    EXPECT_TRUE(test.Load());  // no name was used up
}

TEST_F(Recovery, ALostListBeginsAnewWithTheCurrentSite) {
    const std::string list = test.home + "/param/sitedbs.ini";
    for (const std::string& text :
         {std::string(), std::string("\x00\xFF[\n]=\r\r\x00", 9), std::string("[Main]\nNmFirstSite=Shop\nDBNam")}) {
        Spoil(list, text);
        test.Restart();
        ASSERT_TRUE(test.Load());
        EXPECT_EQ(test.Sites().Names(), std::vector<std::string>{"Shop"});
        EXPECT_EQ(test.Sites().Folder("Shop"), site);
    }
    // What cannot be read is told, and never written.
    for (const bool folder : {false, true}) {
        test.shell.reset();
        Spoil(list, "\xFF\xFE[");
        if (folder) fs::remove(list);
        if (folder) fs::create_directory(list);
        test.Restart();
        test.host.shown.clear();
        test.host.WillPress("OK");
        EXPECT_FALSE(test.Load());
        EXPECT_TRUE(test.Showed("the list of sites cannot be read."));
        EXPECT_TRUE(folder || test.folder.Read("home/param/sitedbs.ini") == "\xFF\xFE[");
    }
    EXPECT_TRUE(test.host.Done());
}

// As a kill behind each write of the first start leaves it.
TEST_F(Recovery, AFirstStartThatWasKilledGoesOn) {
    test.folder.Write("home/param/sitedbs.ini", "[Main]\nDBNameLst=Shop\n[Shop]\nParm=C:\\sites\\Shop\n");
    fs::remove(test.home + "/Dir.ini");  // listed, and not yet the current one
    test.Restart();
    ASSERT_TRUE(test.Load());
    EXPECT_EQ(test.front.caption, "Shop - Current Site DB: Corvane");
    test.shell.reset();
    fs::remove(test.home + "/Dir.ini");
    for (const char* list : {"[Shop]\nParm=C:\\sites\\Shop\n", ""}) {  // its section alone, its folder alone
        test.folder.Write("home/param/sitedbs.ini", list);
        fs::remove(test.home + "/Dir.ini");
        test.Restart();
        test.LoadFirst("Shop");
        EXPECT_EQ(test.Sites().Names(), std::vector<std::string>{"Shop"});
        EXPECT_NE(test.Sites().CurrentFolder(), site);
        EXPECT_TRUE(fs::exists(site + "/data/site1.mdb"));
        test.shell.reset();
    }
}

TEST_F(Recovery, ScreensIniIsRestoredAndADamagedOneIsTold) {
    const std::string screens = test.home + "/param/screens.ini";
    fs::remove(screens);
    test.Restart();
    ASSERT_TRUE(test.Load());
    EXPECT_TRUE(fs::exists(screens));
    const std::string delivered = test.folder.Read("home/param/screens.ini");
    const std::string damages[] = {"", "[NewDB\n1=", "[NewDB]\n1=Rubbish|x\n[EnterOps]\n1=Lab",
                                   std::string(70000, '\0'), "\xFF\xFE\x01[\n=\n]"};
    for (const std::string& text : damages) {
        SCOPED_TRACE(text.substr(0, 60));
        for (const char* control : {"fMnu_FD", "fMnu_ER", "fMnu_EO", "fMnu_SD", "fMnu_SC"}) {
            Spoil(screens, text);
            test.host.WillPress("OK");
            test.shell->Run(control);
            EXPECT_NE(test.host.shown.back().message.find(screens), std::string::npos) << control;
        }
        test.host.WillPress("Cancel");  // the list of sites needs no file
        test.shell->Run("fMnu_FS");
    }
    // Cut anywhere, as a disk that ran full leaves it: a dialog or the message, and never a failure.
    for (std::size_t cut = 0; cut < delivered.size(); cut += delivered.size() / 20) {
        for (const char* control : {"fMnu_FD", "fMnu_ER", "fMnu_EO", "fMnu_SD", "fMnu_SC"}) {
            Spoil(screens, delivered.substr(0, cut));
            // Cancel, which of the dates stands behind six buttons that fill them.
            test.host.WillPressNumber(control == std::string_view("fMnu_SD") ? 8 : 2);
            test.shell->Run(control);
        }
    }
    fs::remove(screens);
    fs::create_directory(screens);
    test.host.WillPress("OK");
    test.shell->Run("fMnu_FD");
    EXPECT_TRUE(test.host.Done());
    EXPECT_EQ(test.Recorded().size(), 0U);
}

}  // namespace
}  // namespace shell
