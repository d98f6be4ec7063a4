#include "sitedb/site.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "sitedb/storeerror.h"
#include "tests/support/tempsite.h"

namespace sitedb {
namespace {

using testsupport::TempSite;

TEST(Site_Create, MakesAFolderThatOpens) {
    TempSite home;
    EXPECT_EQ(home.sites.Site_Name(), "Shop");
    EXPECT_EQ(home.Rows("SELECT count(*) FROM logline, page, visit, visitpages", 1)[0], "0");
    EXPECT_EQ(home.ini.IniGet("Shop", "Parm", home.folder.File("param/sitedbs.ini")), "C:\\sites\\Shop");
    SiteOptions small = TempSite::Plain();
    small.name = "../Ünï x";
    EXPECT_FALSE(home.sites.Site_Create(small).result.ok);
    small.name = "Ünï x.";
    small.LastKeepVal = false;
    ASSERT_TRUE(home.sites.Site_Create(small).result.ok);
    home.Reopen();
    EXPECT_EQ(std::filesystem::path(home.sites.CurrentFolder()).filename(), "Ünï_x_");
    EXPECT_THROW(home.Rows("SELECT Referrer FROM logline", 1), StoreError);  // a table without extra data
    EXPECT_FALSE(home.sites.Site_Create(small).result.ok);                   // the name is taken
}

TEST(Site_Create, RefusesNamesThatListsAndFoldersCannotHold) {
    TempSite home;
    for (const char* name : {"", " a", "a|b", "[x]", "a/b", "a\\b", "a\nb", "Main", "altno.x", "\xFF"}) {
        SiteOptions options;
        options.name = name;
        EXPECT_FALSE(home.sites.Site_Create(options).result.ok) << name;
    }
    EXPECT_EQ(home.sites.Names().size(), 1U);
}

TEST(Site_Select, LeavesTheCurrentSiteWhenTheFolderIsGone) {
    TempSite home;
    SiteOptions second = TempSite::Plain();
    second.name = "Second";
    const auto made = home.sites.Site_Create(second);
    ASSERT_TRUE(home.sites.Site_Select("shop").ok);  // names ignore case
    std::filesystem::remove_all(made.folder);
    const core::Result gone = home.sites.Site_Select("Second");
    EXPECT_FALSE(gone.ok);
    EXPECT_TRUE(gone.error.starts_with("Database NOT changed."));
    EXPECT_EQ(home.sites.Site_Name(), "Shop");
}

TEST(Site_Open, OneProgramAtATime) {
    TempSite home;
    OpenFailure failure;
    EXPECT_EQ(Site::Site_Open(home.env, home.sites.CurrentFolder(), failure), nullptr);
    EXPECT_TRUE(failure.taken);
}

TEST(Site_Open, NeverReplacesAMissingOrForeignDatabase) {
    TempSite home;
    const std::string database = home.site->Paths().database;
    home.site.reset();
    const auto open = [&] {
        OpenFailure failure;
        EXPECT_EQ(Site::Site_Open(home.env, home.sites.CurrentFolder(), failure), nullptr);
        return failure;
    };
    std::filesystem::rename(database, database + ".away");
    EXPECT_TRUE(open().missing);
    EXPECT_FALSE(std::filesystem::exists(database));
    home.folder.Write("other.mdb", "no database at all");
    std::filesystem::rename(home.folder.File("other.mdb"), database);
    EXPECT_FALSE(open().error.empty());
    EXPECT_EQ(std::filesystem::file_size(database), 18U);
}

TEST(Site_Open, BuildsATableThatWasDeleted) {
    TempSite home;
    home.site->Db().Exec("DROP TABLE visitpages");
    home.site->Db().Exec("DROP INDEX logline_Time");
    home.Reopen();
    EXPECT_TRUE(home.Rows("SELECT * FROM visitpages", 1).empty());
    EXPECT_EQ(home.Rows("SELECT name FROM sqlite_schema WHERE name='logline_Time'", 1).size(), 1U);
}

TEST(BLDTBL_CompactDB, KeepsADatabaseUnderItsNameThroughout) {
    TempSite home;
    Database& db = home.site->Db();
    const std::string path = home.site->Paths().database;
    db.Exec("INSERT INTO page VALUES (1, 'a'), (2, 'b')");
    EXPECT_TRUE(BLDTBL_CompactDB(db));
    EXPECT_FALSE(core::Exists(path + ".temp"));
    EXPECT_EQ(home.Rows("SELECT count(*) FROM page", 1)[0], "2");

    // A stop between writing the copy and its renaming leaves a stale copy, which the next opening removes; one
    // that is all there is left is taken back.
    home.site.reset();
    std::filesystem::copy_file(path, path + ".temp");
    home.Reopen();
    EXPECT_FALSE(core::Exists(path + ".temp"));
    home.site.reset();
    std::filesystem::rename(path, path + ".temp");
    home.Reopen();
    EXPECT_EQ(home.Rows("SELECT count(*) FROM page", 1)[0], "2");

    std::filesystem::create_directory(path + ".temp");  // cannot be cleared away
    home.folder.Write("x", "");
    std::filesystem::copy_file(home.folder.File("x"), path + ".temp/x");
    EXPECT_FALSE(BLDTBL_CompactDB(home.site->Db()));
    EXPECT_EQ(home.Rows("SELECT count(*) FROM page", 1)[0], "2");
}

TEST(PageList, FindsAddsAndGoesBackWithTheTable) {
    TempSite home;
    PageList& pages = home.site->Pages();
    Database& db = home.site->Db();
    EXPECT_EQ(pages.Page_FindOrAdd("/a", Add::No, db), -1);
    EXPECT_EQ(pages.Page_FindOrAdd("/a", Add::Yes, db), 1);
    EXPECT_EQ(pages.Page_FindOrAdd("http://www.shop.test/", Add::Yes, db), 0);  // the root has no row
    {
        const Transaction undone(db);
        EXPECT_EQ(pages.FindRaw("/b?x=1", {.query = true}, Add::Yes, db), 2);
        EXPECT_EQ(pages.FindRaw("/b?x=2", {.query = true}, Add::Yes, db), 2);
    }
    pages.CutBack(1);
    EXPECT_EQ(pages.FindRaw("/b?x=1", {.query = true}, Add::No, db), -1);
    EXPECT_EQ(pages.Page_FindOrAdd("/c", Add::Yes, db), 2);
    home.Reopen();
    EXPECT_EQ(home.site->Pages().Page_Name(2), "c");
    EXPECT_EQ(home.site->Pages().Page_Name(3), "");
    home.site->Db().Exec("INSERT INTO page VALUES (2000000000, 'far')");
    home.site.reset();
    OpenFailure failure;
    EXPECT_EQ(Site::Site_Open(home.env, home.sites.CurrentFolder(), failure), nullptr);
    EXPECT_NE(failure.error.find("damaged"), std::string::npos);
}

TEST(Statement, TellsDuplicatesFromOtherFailures) {
    TempSite home;
    Database& db = home.site->Db();
    db.Exec("INSERT INTO page VALUES (1, 'a')");
    try {
        db.Exec("INSERT INTO page VALUES (1, 'b')");
        FAIL() << "no error";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.number(), 3022);
    }
    try {
        db.Exec("INSERT INTO nothing VALUES (1)");
        FAIL() << "no error";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.number(), 3051);
    }
}

}  // namespace
}  // namespace sitedb
