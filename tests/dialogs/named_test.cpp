#include "dialogs/named.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/cds.h"
#include "tests/support/testdesk.h"

namespace {

using dialogs::Controls;
using dialogs::DialogModel;
using dialogs::NamedBox;
using dialogs::NamedDialog;
using dialogs::Pick;
using testsupport::TestDesk;

constexpr std::string_view kScreens =
    "[Ops]\r\n"
    "Text=Enter the options.\r\n"
    "Help=EO\r\n"
    "Options=48|DfltButton=1\r\n"
    "1=Label|3000\r\n"
    "1T=Site:\r\n"
    "1K=Site\r\n"
    "2=TextBox_|4000\r\n"
    "2T=&Days\r\n"
    "2K=Days\r\n"
    "2D=30\r\n"
    "2C=N|+|<100\r\n"
    "3=CheckBox\r\n"
    "3T=&Limit days\r\n"
    "3K=Limit\r\n"
    "3D=True\r\n"
    "3E=2|-5\r\n"
    "4=ComboBox|4000\r\n"
    "4L=One|Two|Three\r\n"
    "4K=Kind\r\n"
    "4D=Two\r\n"
    "5=ListBox|4000\r\n"
    "5L=x|y|z\r\n"
    "5K=Row\r\n"
    "5V=index\r\n"
    "6=TextBox\r\n"
    "6K=Other|Dates||2\r\n"
    "6D=2008-01-01\r\n"
    "6P=folder\r\n"
    "6H=A day\r\n"
    "7=ListBox|4000||||||||||||||True\r\n"
    "7L=p|q|r\r\n"
    "7K=Many\r\n";

struct Named : TestDesk {
    explicit Named(std::string_view more = {}) { folder.Write("screens.ini", std::string(kScreens).append(more)); }
};

TEST(NamedDialog, IsFilledWithDefaultsAndKeptValues) {
    Named at(
        "[Last]\r\nSite=a|b{c}\r\nKind=Own|kind\r\nRow=2\r\nMany=r|nothing|p\r\nLimit=0\r\n[Other]\r\nDates=x|2009-05-"
        "05\r\n");
    NamedDialog own(at.desk, {.dialog = "Ops"});
    EXPECT_EQ(own.Problem(), "");
    ASSERT_EQ(own.Ctls().Count(), 7);
    EXPECT_EQ(own.Ctls()[1].value, "Site:");
    EXPECT_EQ(own.Ctls()[2].value, "30");
    EXPECT_TRUE(own.Ctls()[2].sameLine);
    EXPECT_EQ(own.Ctls()[3].value, "True");
    EXPECT_EQ(own.Ctls()[4].value, "1|Two");
    EXPECT_EQ(own.Ctls()[5].value, "-1");
    EXPECT_EQ(own.Ctls()[6].value, "2009-05-05");
    EXPECT_EQ(own.Ctls()[6].pick, Pick::Folder);
    EXPECT_EQ(own.NumberOf("dates"), 6);
    EXPECT_EQ(own.NumberOf("none"), 0);

    NamedDialog last(at.desk, {.dialog = "Ops", .valueSection = "Last"});
    EXPECT_EQ(last.Ctls()[1].value, "Site: a|b{c}");
    EXPECT_EQ(last.Ctls()[3].value, "False");
    EXPECT_EQ(last.Ctls()[4].value, "-1|Own|kind");
    EXPECT_EQ(last.Ctls()[5].value, "2");
    EXPECT_EQ(last.Ctls()[7].Selected(), (std::vector<int>{0, 2}));
}

TEST(NamedDialog, StoresWhatWasEnteredUnlessCancelled) {
    Named at("[Other]\r\nDates=2007-01-01\r\n");
    const auto enter = [](DialogModel& model) {
        model.controls[2].value = "$7";  // kept as a plain number
        model.controls[3].value = "False";
        model.controls[4].value = "-1|a|b";
        model.controls[5].Select({1});
        model.controls[6].value = "2010|x";
        model.controls[7].Select({0, 2});
    };
    NamedDialog cancelled(at.desk, {.dialog = "Ops"});
    at.host.WillPress("Cancel", enter);
    EXPECT_TRUE(cancelled.Show().Cancelled());
    EXPECT_EQ(cancelled.Ctls()[2].value, "30");
    EXPECT_EQ(at.Entry("Ops", "Days"), "");

    NamedDialog dialog(at.desk, {.dialog = "Ops", .title = "- Enter Options.", .width = 9000, .message = "Wait."});
    at.host.WillPress("OK", [&](DialogModel& model) {
        EXPECT_EQ(model.message, "Wait.\r\rEnter the options.");
        EXPECT_EQ(model.title, "Corvane - Enter Options.");
        EXPECT_EQ(model.helpId, "EO");
        EXPECT_EQ(model.options.minWidth, 9000);
        EXPECT_EQ(model.options.icon, dialogs::Icon::Exclamation);
        EXPECT_FALSE(model.controls[5].enabled);  // while days are limited
        enter(model);
        model.place = "1|2|3|4";
    });
    EXPECT_EQ(dialog.Show().button, 1);
    EXPECT_EQ(at.Entry("Ops", "Days"), "7");
    EXPECT_EQ(at.Entry("Ops", "Limit"), "False");
    EXPECT_EQ(at.Entry("Ops", "Kind"), "a|b");
    EXPECT_EQ(at.Entry("Ops", "Row"), "1");
    EXPECT_EQ(at.Entry("Ops", "Many"), "p|r");
    EXPECT_EQ(at.Entry("Ops", "MBPlace"), "1|2|3|4");
    EXPECT_FALSE(at.ini.IniHas("Ops", "Site", at.desk.screens));  // a label is not entered

    // Item 2 of a list beside the item that stood there, its own bar kept.
    NamedDialog again(at.desk, {.dialog = "Ops"});
    EXPECT_EQ(again.Ctls()[6].value, "2010|x");
    EXPECT_EQ(again.Ctls()[4].value, "-1|a|b");
    EXPECT_EQ(again.Ctls()[7].Selected(), (std::vector<int>{0, 2}));
    EXPECT_EQ(core::CDSItem(1, at.Entry("Other", "Dates")), "2007-01-01");
}

TEST(NamedDialog, EntriesAreCheckedBeforeTheCaller) {
    Named at;
    NamedDialog dialog(at.desk, {.dialog = "Ops"});
    at.host.WillPress("OK", [](DialogModel& model) { model.controls[2].value = "x"; });
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.problem, "Problem with data entered: Days: Must be Numeric");
        model.controls[2].value = "13";
    });
    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.problem, "Problem with data entered: Unlucky");
        // What is disabled is not entered.
        model.controls[2].value = "x";
        model.controls[3].value = "False";
    });
    const auto more = [](Controls& controls, int) { return std::string(controls[2].value == "13" ? "Unlucky" : ""); };
    EXPECT_EQ(dialog.Show(more).button, 1);
    EXPECT_TRUE(at.host.Done());
}

TEST(NamedDialog, AMissingOrDamagedSectionIsTold) {
    const struct {
        const char* section;
        const char* name;
        const char* why;
    } cases[] = {
        {"", "Nowhere", "it has no controls"},
        {"[Bad]\r\n1=Label\r\n2=Slider|100\r\n", "Bad", "control 2 is of no known type"},
        {"[Bad]\r\n1=|~~|\r\n", "Bad", "control 1 is of no known type"},
        {"[Bad]\r\n2=Label\r\n", "Bad", "it has no controls"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.section);
        Named at(c.section);
        NamedDialog dialog(at.desk, {.dialog = c.name});
        EXPECT_EQ(dialog.Ctls().Count(), 0);
        EXPECT_NE(dialog.Problem().find(c.why), std::string::npos) << dialog.Problem();
        EXPECT_NE(dialog.Problem().find(at.desk.screens), std::string::npos);
        at.host.WillPress("OK");
        EXPECT_TRUE(dialog.Show().Cancelled());
        EXPECT_EQ(at.host.shown[0].message, dialog.Problem());
    }
}

TEST(NamedDialog, AFailedWriteIsTold) {
    Named at;
    NamedDialog dialog(at.desk, {.dialog = "Ops"});
    dialog.Ctls()[2].value = "8";
    std::filesystem::remove(at.desk.screens);
    std::filesystem::create_directory(at.desk.screens);
    for (int i = 0; i < 6; ++i) at.user.WillPress(1);
    EXPECT_FALSE(dialog.Store());
    EXPECT_FALSE(at.user.asked.empty());
}

}  // namespace
