#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <set>

#include "core/files.h"
#include "core/inistore.h"
#include "dialogs/named.h"
#include "tests/support/fakes.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempfolder.h"

// The delivered dialogs: every one can be shown, and keeps what was entered where it belongs.
namespace dialogs {
namespace {

const std::vector<std::string> kDialogs{"RepFmt",     "EnterOps", "analopsadvnc", "AnalOpsScreens",
                                        "ConfirmRep", "PlotOpt",  "NewDB"};

struct ScreensTest : testing::Test {
    ScreensTest() {
        EXPECT_TRUE(core::FileCopy(PARAMS_DIR "/program/screens.ini", screens).ok);
        EXPECT_TRUE(core::FileCopy(PARAMS_DIR "/site/param/LastVals.ini", lastVals).ok);
        ini.SetSectionFile("Main", lastVals);
    }
    NamedDialog Open(const std::string& name) { return {desk, {.dialog = name}}; }
    // What a person enters into the control that keeps `entry`.
    static testsupport::ScriptedHost::Fill Enter(const NamedDialog& dialog, std::string_view entry, std::string text) {
        return [number = dialog.NumberOf(entry), text](DialogModel& model) { model.controls[number].value = text; };
    }
    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    testsupport::ScriptedHost host{};
    core::IniStore ini{user};
    std::string screens = folder.File("screens.ini"), lastVals = folder.File("LastVals.ini");
    Desk desk{.ini = ini, .host = host, .screens = screens};
};

// The letters that a dialog's captions and labels give to the keyboard, buttons included.
std::vector<char> Mnemonics(const Controls& controls) {
    std::string text = "&OK|&Cancel|";
    for (const Control& control : controls.All())
        text += control.Is(ControlType::Label) ? LabelCaption(control.value) : control.caption;
    std::vector<char> letters;
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
        if (text[at] != '&') continue;
        if (text[++at] != '&') letters.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(text[at]))));
    }
    return letters;
}

TEST_F(ScreensTest, EveryDialogCanBeShownAndReachedByKeyboard) {
    for (const std::string& name : kDialogs) {
        SCOPED_TRACE(name);
        NamedDialog dialog = Open(name);
        ASSERT_EQ(dialog.Problem(), "");
        const std::vector<char> letters = Mnemonics(dialog.Ctls());
        EXPECT_EQ(std::set<char>(letters.begin(), letters.end()).size(), letters.size())
            << std::string(letters.begin(), letters.end());
        for (const std::string& entry : ini.IniEntries(name, screens)) {
            const int number = static_cast<int>(std::strtol(entry.c_str(), nullptr, 10));
            EXPECT_LE(number, dialog.Ctls().Count()) << "behind a gap: " << entry;
        }
        for (const Control& control : dialog.Ctls().All())
            EXPECT_TRUE(control.Is(ControlType::Line) || !(control.value.empty() && control.caption.empty()));
    }
}

TEST_F(ScreensTest, TheDefaultsPassTheirOwnChecksAndCancelWritesNothing) {
    const std::string before = folder.Read("screens.ini"), site = folder.Read("LastVals.ini");
    for (const std::string& name : kDialogs) {
        host.WillPress("Cancel");
        EXPECT_TRUE(Open(name).Show().Cancelled());
    }
    EXPECT_EQ(folder.Read("screens.ini"), before);
    EXPECT_EQ(folder.Read("LastVals.ini"), site);
    for (const std::string& name : kDialogs) {
        SCOPED_TRACE(name);
        host.WillPress("OK");
        EXPECT_EQ(Open(name).Show().button, 1);
    }
    EXPECT_TRUE(host.Done());
    EXPECT_EQ(ini.IniGet("Main", "DevFmtVD", lastVals), "#,###,##0.00");
    EXPECT_EQ(ini.IniGet("Main", "CntTopVals", lastVals), "20");
}

TEST_F(ScreensTest, ValuesLandWhereTheyAreReadAndTheFileKeepsItsComments) {
    const auto set = [&](const std::string& name, std::string_view entry, std::string text) {
        NamedDialog dialog = Open(name);
        ASSERT_NE(dialog.NumberOf(entry), 0) << entry;
        host.WillPress("OK", Enter(dialog, entry, std::move(text)));
        EXPECT_EQ(dialog.Show().button, 1);
    };
    set("RepFmt", "CntTopVals", "50");
    set("EnterOps", "ShowTabs", "False");
    set("analopsadvnc", "CDSCntAsPageForAvgPages", "||htm");
    set("NewDB", "SiteName", "a|b {c} & d");
    NamedDialog dates = Open("AnalOpsScreens");
    host.WillPress("OK", [](DialogModel& model) {
        model.controls[2].value = "2009-03-01";
        model.controls[4].value = "2009-03-31";
    });
    EXPECT_EQ(dates.Show().button, 1);
    EXPECT_EQ(ini.IniGet("Main", "CntTopVals", lastVals), "50");
    EXPECT_EQ(ini.IniGet("Main", "CDSCntAsPageForAvgPages", lastVals), "||htm");
    EXPECT_EQ(ini.IniGet("Main", "AnalStartEnd", lastVals), "2009-03-01|2009-03-31");
    EXPECT_EQ(ini.IniGet("Parm", "ShowTabs", screens), "False");
    EXPECT_EQ(Open("ConfirmRep").Ctls()[4].value, "2009-03-31");
    NamedDialog newSite = Open("NewDB");
    EXPECT_EQ(newSite.Ctls()[newSite.NumberOf("SiteName")].value, "a|b {c} & d");
    const std::string text = folder.Read("screens.ini");
    for (const char* kept : {"; Option dialogs of the program.", "; Edit, Program Options.", "[TmpVals]"})
        EXPECT_NE(text.find(kept), std::string::npos) << kept;
}

TEST_F(ScreensTest, GreysWhatCannotBeChosen) {
    NamedDialog dialog = Open("RepFmt");
    const int days = dialog.NumberOf("DevDays"), show = dialog.NumberOf("DevShow");
    bool off = true, on = false;
    host.WillPress("Cancel", [&](DialogModel& model) {
        off = model.controls[days].enabled;
        model.controls[show].value = "True";
        ApplyFollowers(model.followers, model.controls);
        on = model.controls[days].enabled;
    });
    EXPECT_TRUE(dialog.Show().Cancelled());
    EXPECT_TRUE(!off && on);
    // The two controls that the site's own options may grey stand under fixed numbers.
    EXPECT_EQ(Open("analopsadvnc").NumberOf("SepFrag"), 21);
    EXPECT_EQ(Open("analopsadvnc").NumberOf("SepQuery"), 22);
    EXPECT_EQ(Open("AnalOpsScreens").NumberOf("ShowNotSEitem"), 11);
}

}  // namespace
}  // namespace dialogs
