#include "analysis/targetscreens.h"

#include <gtest/gtest.h>

#include "sitedb/site.h"
#include "tests/support/fulldisk.h"
#include "tests/support/testdesk.h"

namespace analysis {
namespace {

using dialogs::DialogModel;

struct TargetDesk : testsupport::TestDesk {
    sitedb::SitePaths site = sitedb::Site_Paths(folder.Path());
    TargetDesk() { EXPECT_TRUE(core::MakeDir(folder.File("param"))); }

    static void Enter(DialogModel& model, const std::string& caption, const std::string& value) {
        for (dialogs::Control& control : model.controls.All())
            if (dialogs::PlainCaption(control.caption) == caption && !control.Is(dialogs::ControlType::Label)) {
                control.value = value;
                return;
            }
        ADD_FAILURE() << caption;
    }
    static testsupport::ScriptedHost::Fill Entering(std::vector<std::pair<std::string, std::string>> values) {
        return [values = std::move(values)](DialogModel& model) {
            for (const auto& [caption, value] : values) Enter(model, caption, value);
        };
    }
};

TEST(TargetScreens, ASimpleTargetIsEnteredAndStored) {
    TargetDesk at;
    at.host.WillPress("New target");
    at.host.WillPress("OK", TargetDesk::Entering({{"Name of the target", "Orders"}}));  // a page is missing
    at.host.WillPress("OK", TargetDesk::Entering({{"Page", "/Order/Done"}}));
    at.host.WillPress("OK");
    at.host.WillPress("Yes");
    EXPECT_TRUE(ShowTargets(at.desk, at.site));
    EXPECT_TRUE(at.host.Done());
    EXPECT_NE(at.host.shown[2].problem.find("Name at least one page"), std::string::npos);
    EXPECT_EQ(at.ini.IniGet("Main", "LstTgts", at.site.lastVals), "Orders : any page with /order/done");
    EXPECT_TRUE(at.ini.IniGetBool("Main", "AnalTgt", at.site.lastVals));
    const std::vector<Target> targets = Tgt_ReadList(at.ini, at.site);
    ASSERT_EQ(targets.size(), 1U);
    EXPECT_EQ(targets[0].kind, kAny);
    EXPECT_TRUE(logdefs::FltrRuleTest("/shop/ORDER/done.htm", targets[0].filters[0]));
}

TEST(TargetScreens, TheFormsKeepWhatWasEnteredBetweenThem) {
    TargetDesk at;
    at.host.WillPress("Complex Target", TargetDesk::Entering({{"Name of the target", "Big"}, {"Page", "/file"}}));
    at.host.WillPress("OK", TargetDesk::Entering({{"Any of these pages was requested", "False"},
                                                  {"At least so many bytes of the first page were sent:", "True"}}));
    at.host.WillPress("OK", TargetDesk::Entering({{"Bytes", "5000"}}));
    const auto target = [&] {
        try {
            return Tgt_Edit(at.desk, {}, {});
        } catch (const std::exception&) {
            return std::optional<Target>();
        }
    }();
    ASSERT_TRUE(target);
    EXPECT_EQ(target->name, "Big");
    EXPECT_EQ(target->kind, kSize);
    EXPECT_EQ(target->bytes, 5000);
    ASSERT_EQ(target->filters.size(), 1U);
    EXPECT_EQ(target->filters[0].Val, "/file");
}

TEST(TargetStore, SectionsFollowTheList) {
    TargetDesk at;
    const Target a{"A", kAny, 0, {{logdefs::kContains, "a", false}, {logdefs::kEquals, "/A.htm", true}}};
    const Target b{"B", kSize, 700, {{logdefs::kContains, "b", false}}};
    ASSERT_TRUE(Tgt_WriteList(at.ini, at.site, {a, b}));
    EXPECT_EQ(at.ini.IniGet("Main", "LstTgts", at.site.lastVals),
              "A : any page with a / /A.htm|B : at least 700 bytes of a page with b");
    ASSERT_TRUE(Tgt_WriteList(at.ini, at.site, {b}));
    const std::vector<Target> targets = Tgt_ReadList(at.ini, at.site);
    ASSERT_EQ(targets.size(), 1U);
    EXPECT_EQ(targets[0].bytes, 700);
    EXPECT_FALSE(at.ini.IniHas("Target 2", "Typ", at.site.targets));
    const std::string before = at.folder.Read("param/targets.ini");
    {
        const testsupport::FullDisk full(20);
        EXPECT_FALSE(Tgt_WriteList(at.ini, at.site, {a, b}));
    }
    EXPECT_EQ(at.folder.Read("param/targets.ini"), before);
    EXPECT_EQ(Tgt_Problem({"b", kAny, 0, {{logdefs::kContains, "x", false}}}, {b}), "There is a target \"b\" already.");
}

}  // namespace
}  // namespace analysis
