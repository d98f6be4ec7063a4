#include "sitedb/sites.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "core/text.h"
#include "tests/support/fulldisk.h"
#include "tests/support/tempsite.h"

namespace sitedb {
namespace {

namespace fs = std::filesystem;

SiteOptions Named(const std::string& name) {
    SiteOptions options;
    options.name = name;
    return options;
}

// Two sites, "Shop" and the current one, "Blog"; none is open.
class SitesTest : public testing::Test {
protected:
    SitesTest() {
        home.site.reset();
        EXPECT_TRUE(home.sites.Site_Create(Named("Blog")).result.ok);
        shop = home.sites.Folder("Shop");
    }
    void PointShopTo(const std::string& folder) {
        home.ini.IniPut("Shop", "Parm", "Z:" + core::fReplace(folder, "/", "\\"), home.sites.ListFile());
    }
    std::string Told() const { return home.user.asked.empty() ? "" : home.user.asked.back(); }

    testsupport::TempSite home{};
    std::string shop{};
};

TEST_F(SitesTest, RemovalTakesTheNameOffTheListAndMovesTheFolderOnYesOnly) {
    home.user.WillPress(2);
    const Sites::Removed kept = home.sites.Site_Remove("SHOP");
    EXPECT_TRUE(kept.result.ok && kept.movedTo.empty() && kept.kept.empty());
    EXPECT_EQ(home.sites.Names(), std::vector<std::string>{"Blog"});
    EXPECT_FALSE(home.ini.IniHas("Shop", "Parm", home.sites.ListFile()));
    EXPECT_TRUE(fs::exists(shop + "/data/site1.mdb"));
    EXPECT_EQ(home.user.ids.back(), "SiteRemoveFolder");
    EXPECT_NE(Told().find("Press YES to erase folder: " + shop), std::string::npos);

    // Two sites of one folder name: neither lands on the other.
    for (const char* target : {"/recycled/Two", "/recycled/Two-1"}) {
        ASSERT_TRUE(home.sites.Site_Create(Named("Two")).result.ok);
        ASSERT_TRUE(home.sites.Site_Select("Blog").ok);
        home.user.WillPress(1);
        EXPECT_EQ(home.sites.Site_Remove("Two").movedTo, home.folder.Path() + target);
        EXPECT_TRUE(fs::exists(home.folder.Path() + target + "/data/site1.mdb"));
    }
    EXPECT_TRUE(home.user.Done());
}

TEST_F(SitesTest, TheCurrentSiteStaysAndSoDoesItsFolderUnderAnotherName) {
    EXPECT_FALSE(home.sites.Site_Remove("blog").result.ok);
    EXPECT_FALSE(home.sites.Site_Remove("None").result.ok);
    EXPECT_EQ(home.sites.Names().size(), 2U);
    PointShopTo(home.sites.CurrentFolder() + "/.");
    home.user.WillPressOk();
    EXPECT_FALSE(home.sites.Site_Remove("Shop").kept.empty());
    EXPECT_TRUE(fs::exists(home.sites.CurrentFolder() + "/data/site1.mdb"));
}

TEST_F(SitesTest, NothingButASiteFolderIsSelectedOrMoved) {
    const fs::path root(home.folder.Path());
    const fs::path outside = root / "outside";
    fs::create_directories(outside / "param");
    fs::create_directories(outside / "data");
    home.folder.Write("outside/param/dbdef.ini", "[Main]\n");
    fs::create_directory_symlink(shop, root / "link");
    fs::create_directories(root / "half/param");
    home.folder.Write("half/param/dbdef.ini", "");
    const std::string program = fs::read_symlink("/proc/self/exe").parent_path().string();
    const char* userHome = std::getenv("HOME");
    const std::string folders[] = {"/",
                                   userHome != nullptr ? userHome : "/root",
                                   root.string(),
                                   root.parent_path().string(),
                                   (root / "link").string(),
                                   (root / "link").string() + "/",
                                   (root / "sites/../outside").string(),
                                   (root / "sites").string(),
                                   (root / "param").string(),
                                   (root / "half").string(),
                                   (root / "gone").string(),
                                   program,
                                   PARAMS_DIR,
                                   std::string(PARAMS_DIR) + "/site"};
    const std::string before = home.sites.CurrentFolder();
    for (const std::string& folder : folders) {
        SCOPED_TRACE(folder);
        const bool there = fs::exists(folder);
        home.ini.IniPut("Main", "DBNameLst", "Blog|Shop", home.sites.ListFile());
        PointShopTo(folder);
        const core::Result selected = home.sites.Site_Select("Shop");
        EXPECT_FALSE(selected.ok);
        EXPECT_TRUE(selected.error.starts_with("Database NOT changed.")) << selected.error;
        EXPECT_EQ(home.sites.CurrentFolder(), before);
        home.user.WillPressOk();  // the message; no question
        const Sites::Removed removed = home.sites.Site_Remove("Shop");
        EXPECT_TRUE(removed.result.ok && removed.movedTo.empty() && !removed.kept.empty());
        EXPECT_EQ(home.user.ids.back(), "SiteRemoveFailed");
        EXPECT_EQ(fs::exists(folder), there);
    }
    EXPECT_FALSE(fs::exists(root / "recycled"));
    EXPECT_TRUE(fs::exists(outside / "param/dbdef.ini"));
}

TEST_F(SitesTest, ASiteThatAnotherProgramHasOpenIsNotMoved) {
    core::FileLock other;
    ASSERT_TRUE(other.Lock(Site_Paths(shop).lock).ok);
    home.user.WillPress(1);
    home.user.WillPressOk();
    const Sites::Removed removed = home.sites.Site_Remove("Shop");
    EXPECT_TRUE(removed.movedTo.empty());
    EXPECT_NE(Told().find("Delete folder " + shop + " FAILED."), std::string::npos);
    EXPECT_TRUE(fs::exists(shop + "/data/site1.mdb"));
}

TEST_F(SitesTest, RecyclingMovesAllThatCanBeMovedAndTellsTheRest) {
    ASSERT_TRUE(home.sites.Site_Create(Named("Root")).result.ok);
    home.ini.IniPut("Root", "Parm", "Z:\\", home.sites.ListFile());
    home.user.WillPress(2);
    EXPECT_FALSE(home.sites.Sites_DeleteAll());
    home.user.WillPress(1, -99, true);
    home.user.WillPressOk();
    EXPECT_TRUE(home.sites.Sites_DeleteAll());
    const std::string told = Told();
    EXPECT_TRUE(told.starts_with("Databases moved to recycle directory:\r\rShop - " + shop + "\rBlog - ")) << told;
    EXPECT_NE(told.find("Not moved:\r\rRoot - "), std::string::npos) << told;
    EXPECT_EQ(home.sites.Names(), std::vector<std::string>{"Root"});
    EXPECT_TRUE(fs::exists(home.folder.File("recycled/Shop/data/site1.mdb")));
    EXPECT_FALSE(home.sites.Sites_DeleteAll());  // the box was ticked: not asked again
    EXPECT_TRUE(home.user.Done());
}

TEST_F(SitesTest, AStaleSectionIsNoSiteAndANewOneTakesItsPlace) {
    home.ini.IniPut("Old", "Parm", "Z:\\etc", home.sites.ListFile());
    EXPECT_EQ(home.sites.Folder("Old"), "");
    EXPECT_FALSE(home.sites.Site_Select("Old").ok);
    ASSERT_TRUE(home.sites.Site_Create(Named("Old")).result.ok);
    EXPECT_EQ(home.sites.Folder("Old"), home.folder.File("sites/Old"));
}

TEST_F(SitesTest, WhatAKillLeavesIsUsable) {
    // The folder alone, or a link that leads nowhere: the name is free, and nothing lands there.
    fs::create_directories(home.folder.File("sites/Third"));
    fs::create_symlink(home.folder.File("nowhere"), home.folder.File("sites/Fourth"));
    for (const char* name : {"Third", "Fourth"}) {
        ASSERT_TRUE(home.sites.Site_Create(Named(name)).result.ok);
        EXPECT_EQ(home.sites.Folder(name), home.folder.File(std::string("sites/") + name + "-1"));
    }
    EXPECT_FALSE(fs::exists(home.folder.File("nowhere")));
    // Moved, and not yet off the list: it cannot be selected, and comes off without a question.
    fs::create_directories(home.folder.File("recycled"));
    fs::rename(shop, home.folder.File("recycled/Shop"));
    EXPECT_TRUE(home.sites.Site_Select("Shop").error.starts_with("Database NOT changed."));
    EXPECT_FALSE(home.sites.Sites_Recycle().all);
    EXPECT_EQ(home.sites.Names(), std::vector<std::string>{"Shop"});
    home.user.WillPressOk();
    EXPECT_TRUE(home.sites.Site_Remove("Shop").result.ok);
    EXPECT_TRUE(fs::exists(home.folder.File("recycled/Shop/data/site1.mdb")));
    ASSERT_TRUE(home.sites.Site_Create(Named("Shop")).result.ok);
    EXPECT_EQ(home.sites.Folder("Shop"), shop);
}

TEST_F(SitesTest, ASiteThatCannotBeMadeIsNotListed) {
    const std::string current = home.sites.CurrentFolder();
    for (const rlim_t most : {rlim_t{0}, rlim_t{1000}, rlim_t{4000}}) {
        SCOPED_TRACE(most);
        const testsupport::FullDisk full(most);
        const Sites::Created created = home.sites.Site_Create(Named("New"));
        EXPECT_FALSE(created.result.ok);
        EXPECT_FALSE(created.result.error.empty());
    }
    fs::remove(home.folder.File("Dir.ini"));
    fs::create_directory(home.folder.File("Dir.ini"));
    EXPECT_FALSE(home.sites.Site_Create(Named("New")).result.ok);
    fs::remove(home.folder.File("Dir.ini"));
    EXPECT_EQ(home.sites.Names(), (std::vector<std::string>{"Shop", "Blog"}));
    EXPECT_TRUE(home.sites.Site_Create(Named("New")).result.ok);
    EXPECT_TRUE(home.sites.Site_Select("Blog").ok);
    EXPECT_EQ(home.sites.CurrentFolder(), current);
}

TEST_F(SitesTest, ARemovedNameNeverTakesTheListAlong) {
    home.ini.IniPut("Main", "DBNameLst", "Shop|Main|Blog", home.sites.ListFile());
    home.user.WillPressOk();
    EXPECT_TRUE(home.sites.Site_Remove("main").result.ok);
    EXPECT_EQ(home.sites.Names(), (std::vector<std::string>{"Shop", "Blog"}));
}

TEST_F(SitesTest, OptionsAreShownInWords) {
    EXPECT_EQ(
        home.sites.Site_ShowOptions("Shop"),
        "Database Options for Site DB: Shop\r\rSkip 404s [Skip Log Lines with HTTP status 4xx or 5xx]: No\rSkip "
        "visitors NOT referred by a search engine: No\r\rAdvanced:\rRemove Query String from page name stored: "
        "No\rRemove Fragment from page name stored: No\rStore (Keep) Extra data [referrer, user agent etc.]: Yes");
    EXPECT_EQ(home.sites.Site_ShowOptions("None"), "");
}

}  // namespace
}  // namespace sitedb
