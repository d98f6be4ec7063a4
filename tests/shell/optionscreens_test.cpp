#include "shell/optionscreens.h"

#include <filesystem>

#include "core/dates.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempsite.h"

namespace {

using dialogs::DialogModel;

struct OptionDesk : testsupport::TempSite {
    testsupport::ScriptedHost host{};
    dialogs::Desk desk{ini, host, "Corvane", folder.File("screens.ini")};

    OptionDesk() { std::filesystem::copy_file(PARAMS_DIR "/program/screens.ini", folder.File("screens.ini")); }
};

TEST(AskPlotDates, GivesWhatAPlotReads) {
    OptionDesk at;
    const std::int32_t first = *core::ParseIsoDate("2024-03-05"), last = *core::ParseIsoDate("2024-04-10");
    at.ini.IniPutBool("Main", "ColTitNum", true, core::kBySection);
    at.host.WillPress("Latest Month", [](DialogModel& model) {
        EXPECT_EQ(model.title, "Corvane - Enter date range to plot");
        EXPECT_NE(model.message.find("NB if dates are included"), std::string::npos);
        EXPECT_EQ(model.controls[2].value, "2024-03-05");
        EXPECT_EQ(model.controls[4].value, "2024-04-10");
        EXPECT_NE(model.controls[11].value.find("[Data available: 2024-03-05 to 2024-04-10]"), std::string::npos);
        int on = 0;
        for (const auto& control : model.controls.All())
            on += control.Is(dialogs::ControlType::OptionButton) && control.Ticked() ? 1 : 0;
        EXPECT_EQ(on, 1);
    });
    at.host.WillPress("OK");
    EXPECT_EQ(shell::AskPlotDates(at.desk, first, last, ""), "10 Mar 2024|10 Apr 2024");

    at.host.WillPress("OK", [](DialogModel& model) {
        EXPECT_EQ(model.controls[2].value, "2024-03-10");
        model.controls[4].value.clear();
    });
    EXPECT_EQ(shell::AskPlotDates(at.desk, first, last, "10 Mar 2024|10 Apr 2024"), "10 Mar 2024|10 Apr 2024");
    at.host.WillPress("Cancel");
    EXPECT_EQ(shell::AskPlotDates(at.desk, first, last, ""), std::nullopt);
}

TEST(ShowAnalysisOptions, StoresTheDatesOfTheAnalysis) {
    OptionDesk at;
    at.host.WillPress("This Year");
    at.host.WillPress("OK", {}, [](DialogModel& model) {
        EXPECT_NE(model.controls[11].value.find("[No data yet]"), std::string::npos);
        EXPECT_TRUE(core::ParseIsoDate(model.controls[2].value));
    });
    EXPECT_TRUE(shell::ShowAnalysisOptions(at.desk, *at.site));
    EXPECT_EQ(at.ini.IniGet("Main", "AnalStartEnd", core::kBySection).size(), 21U);
    EXPECT_EQ(at.host.shown[0].title, "Corvane - Enter date range to analyse");
}

}  // namespace
