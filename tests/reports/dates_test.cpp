#include "reports/dates.h"

#include <gtest/gtest.h>

#include "core/dates.h"
#include "tests/support/testdesk.h"

namespace reports {
namespace {

using dialogs::DialogModel;

struct DatesDesk : testsupport::TestDesk {
    DatesDesk() {
        folder.Write("screens.ini",
                     "[Ask]\r\n1=Label|2200\r\n1T=First:\r\n2=TextBox_|1800\r\n2K=Ask|Days||1\r\n3=Label_|1800\r\n"
                     "4=TextBox_|1800\r\n4K=Ask|Days||2\r\n5=Label|9000\r\n5T=\"No limit. \"\r\n5K=Ask|DataDates|\r\n"
                     "6=CheckBox|9000\r\n6T=More\r\n6K=Ask|More|\r\nDataDates=[Data available: of old]\r\n");
    }
    dialogs::Pressed Ask(const dialogs::EntryCheck& more = {}) {
        dialogs::NamedDialog dialog(desk, {.dialog = "Ask", .title = "T", .buttons = "&Use|&Read|&Cancel"});
        return Dates_Ask(desk, dialog, part, more);
    }
    static testsupport::ScriptedHost::Fill Days(const std::string& first, const std::string& last) {
        return [=](DialogModel& model) {
            model.controls[2].value = first;
            model.controls[4].value = last;
        };
    }
    DatesPart part{.entry = "Days",
                   .data = DataDays{*core::ParseIsoDate("2023-11-02"), *core::ParseIsoDate("2024-03-31")},
                   .today = *core::ParseIsoDate("2024-05-17")};
};

TEST(Dates_Ask, ButtonsFillTheBoxesAndTheDialogStays) {
    DatesDesk at;
    const struct {
        const char* button;
        const char* first;
        const char* last;
    } cases[] = {
        {"All Dates", "2023-11-02", "2024-03-31"},  {"This Year", "2024-01-01", "2024-12-31"},
        {"Last Year", "2023-01-01", "2023-12-31"},  {"This Month", "2024-05-01", "2024-05-31"},
        {"Last Month", "2024-04-01", "2024-04-30"}, {"Latest Month", "2024-02-29", "2024-03-31"},
    };
    const char *first = "", *last = "";
    for (const auto& row : cases) {
        at.host.WillPress(row.button, [=](DialogModel& model) {
            EXPECT_EQ(model.controls[2].value, first) << row.button;
            EXPECT_EQ(model.controls[4].value, last) << row.button;
        });
        first = row.first;
        last = row.last;
    }
    at.host.WillPress("Read", {}, [](DialogModel& model) {
        EXPECT_EQ(model.controls[2].value, "2024-02-29");
        EXPECT_EQ(model.controls[11].value, "No limit. [Data available: 2023-11-02 to 2024-03-31]");
        EXPECT_EQ(model.defaultButton, 7);
        EXPECT_EQ(model.escButton, 9);
    });
    int asked = 0;
    EXPECT_EQ(at.Ask([&](dialogs::Controls&, int button) {
                    asked = button;
                    return std::string();
                }).button,
              2);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(at.host.opened, 1);
    EXPECT_EQ(at.Entry("Ask", "Days"), "2024-02-29|2024-03-31");

    at.host.WillPress("This Year");
    at.host.WillPress("Cancel");
    EXPECT_TRUE(at.Ask().Cancelled());
    EXPECT_EQ(at.Entry("Ask", "Days"), "2024-02-29|2024-03-31");
}

TEST(Dates_Ask, TellsAllThatIsWrongAtOnce) {
    DatesDesk at;
    at.part.data.reset();
    at.host.WillPress("Use", DatesDesk::Days("31 Feb 2024", "soon"));
    at.host.WillPress("Use", DatesDesk::Days("2024-03-02", "2024-03-01"));
    at.host.WillPress("This Month");
    at.host.WillPress("Use", DatesDesk::Days("2024-03-02", " 2 Mar 2024 "), [](DialogModel& model) {
        EXPECT_FALSE(model.controls[5].enabled);  // all dates of no data
        EXPECT_TRUE(model.controls[6].enabled);
    });
    EXPECT_EQ(at.Ask().button, 1);
    EXPECT_EQ(at.host.shown[1].problem,
              "Problem with data entered: First value is not a date .\rSecond value is not a date .");
    EXPECT_EQ(at.host.shown[2].problem, "Problem with data entered: Second date must be later than first date.");
    EXPECT_EQ(at.host.shown[3].problem, "");
    at.host.WillPress("Use", DatesDesk::Days("", "2024-03-01"));  // an open beginning
    EXPECT_EQ(at.Ask().button, 1);
    EXPECT_EQ(at.Entry("Ask", "Days"), "|2024-03-01");
}

}  // namespace
}  // namespace reports
