#include "reports/areascreens.h"

#include "analysis/areas.h"
#include "sitedb/pagelist.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempsite.h"

namespace reports {
namespace {

using analysis::Area_Limit;
using analysis::Area_List;
using dialogs::DialogModel;
using Texts = std::vector<std::string>;

struct AreaDesk : testsupport::TempSite {
    testsupport::ScriptedHost host{};
    dialogs::Desk desk{ini, host, "Corvane", folder.File("screens.ini")};
    const sitedb::SitePaths& files = site->Paths();

    AreaDesk() {
        for (const char* page : {"shop/b.htm", "a.htm", "odd|name.htm"})
            site->Pages().Page_FindOrAdd(page, sitedb::Add::Yes, site->Db());
    }
    bool Show() {
        const bool ok = ShowSiteAreas(env, desk, *site);
        EXPECT_TRUE(host.Done());
        return ok;
    }
    static testsupport::ScriptedHost::Fill Type(const std::string& text) {
        return [=](DialogModel& model) { model.controls[1].value = text; };
    }
    static testsupport::ScriptedHost::Fill Limit(int row) {
        return [=](DialogModel& model) {
            model.controls[2].value = std::to_string(row);
            model.controls[3].value = "True";
        };
    }
    Texts Stored() {
        Texts lines;
        for (const analysis::SiteArea& area : Area_List(ini, files)) {
            std::string line = area.name + ":";
            for (const std::string& page : area.pages) line += " " + page;
            lines.push_back(line);
        }
        return lines;
    }
};

TEST(SiteAreas, AnAreaIsMadeOfPagesAndLimitsTheAnalysis) {
    AreaDesk at;
    at.host.WillPress("New area");
    at.host.WillPress("OK", AreaDesk::Type("a|b"));
    at.host.WillPress("OK", AreaDesk::Type("Shop"));
    at.host.WillPress("OK", [](DialogModel& model) {
        Texts offered;
        for (const auto& control : model.controls.All())
            for (const auto& row : control.rows)
                if (!row.empty()) offered.push_back(row[0]);
        EXPECT_EQ(offered, (Texts{"/", "/a.htm", "/shop/b.htm"}));
    });
    at.host.WillPress("OK", AreaDesk::Limit(0));
    EXPECT_TRUE(at.Show());
    EXPECT_EQ(at.Stored(), (Texts{"Shop:"}));
    EXPECT_EQ(Area_Limit(at.ini, at.files), "Shop");
    EXPECT_NE(at.host.shown[2].problem.find("cannot hold |"), std::string::npos);
}

// What is limited stays so until somebody says otherwise.
TEST(SiteAreas, TheLimitFollowsItsArea) {
    AreaDesk at;
    ASSERT_TRUE(analysis::Area_Put(at.ini, at.files, {"All", {"/"}}));
    ASSERT_TRUE(analysis::Area_Put(at.ini, at.files, {"Shop", {"/shop/b.htm", "/x.htm"}}));
    ASSERT_TRUE(analysis::Area_SetLimit(at.ini, at.files, "shop"));

    at.host.WillPress("Copy", {}, [](DialogModel& model) { EXPECT_EQ(model.controls[2].value, "1"); });
    at.host.WillPress("OK", AreaDesk::Type("SHOP"));  // taken
    at.host.WillPress("OK", AreaDesk::Type("Shop 2"));
    at.host.WillPress("Rename", {}, [](DialogModel& model) { EXPECT_EQ(model.controls[2].value, "1"); });
    at.host.WillPress("OK", AreaDesk::Type("Store"));
    at.host.WillPress("OK");
    EXPECT_TRUE(at.Show());
    EXPECT_EQ(at.Stored(), (Texts{"All: /", "Shop 2: /shop/b.htm /x.htm", "Store: /shop/b.htm /x.htm"}));
    EXPECT_EQ(Area_Limit(at.ini, at.files), "Store");

    at.host.WillPress("Remove");
    at.host.WillPress("Remove");
    at.host.WillPress("Cancel", {}, [](DialogModel& model) { EXPECT_EQ(model.controls[3].value, "False"); });
    at.host.WillPress("Give up");
    EXPECT_FALSE(at.Show());
    EXPECT_EQ(at.Stored().size(), 3U);
    EXPECT_EQ(Area_Limit(at.ini, at.files), "Store");

    at.host.WillPress("Remove");
    at.host.WillPress("Remove");
    at.host.WillPress("OK");
    EXPECT_TRUE(at.Show());
    EXPECT_EQ(at.Stored().size(), 2U);
    EXPECT_EQ(Area_Limit(at.ini, at.files), std::nullopt);
}

}  // namespace
}  // namespace reports
