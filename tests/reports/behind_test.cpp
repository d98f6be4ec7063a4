#include "reports/behind.h"

#include "analysis/fields.h"
#include "tests/analysis/testsite.h"
#include "tests/support/scriptedhost.h"

namespace reports {
namespace {

using dialogs::DialogModel;
using testsupport::TestSite;

struct BehindDesk : TestSite {
    testsupport::ScriptedHost host{};
    dialogs::Desk desk{ini, host, "Corvane", folder.Path() + "/screens.ini"};
    std::unique_ptr<analysis::SrchTrmData> results{};
    std::vector<std::int32_t> indexes{1};

    BehindDesk() {
        Visits(2, {.term = "shoes", .engine = "G", .pages = {"a.htm"}});
        Visit({.term = "boots", .engine = "G", .pages = {"b.htm"}});
        site->Db().Exec("UPDATE visit SET FirstIP='192.0.2.7' WHERE VisitID=2");
        site->Db().Exec(
            "INSERT INTO logline (LogLnID, VisitID, PageID, Bytes, CntDupes, Timestamp, IP) "
            "VALUES (1, 2, 0, 5, 0, 20260105120000, '192.0.2.7')");
        results = Analyse(Request(analysis::kTerm));
    }
    void Show(const std::string& leftCell) {
        ShowVisitsBehind(env, desk, *site, {.results = *results, .indexes = indexes, .leftCell = leftCell});
        EXPECT_TRUE(host.Done());
    }
};

TEST(ShowVisitsBehind, LeadsFromALineToVisitsToLogLines) {
    BehindDesk at;
    at.host.WillPress("Show log lines", [](DialogModel& model) {
        EXPECT_EQ(model.ButtonCaption(model.defaultButton), "Show &log lines");
        ASSERT_EQ(model.controls[1].rows.size(), 3U);
        EXPECT_EQ(model.controls[1].rows[1][0], "2026-01-05 12:00:00");
        EXPECT_EQ(model.controls[1].rows[1][3], "shoes");
        EXPECT_EQ(model.controls[1].value, "0");  // so that Enter leads on
        model.controls[1].value = "-1";
    });
    at.host.WillPress("Show log lines", [](DialogModel& model) { model.controls[1].value = "1"; });
    at.host.WillPress("Close", [](DialogModel& model) {
        ASSERT_EQ(model.controls[1].rows.size(), 2U);
        EXPECT_EQ(model.controls[1].rows[1][1], "ROOT");
        EXPECT_NE(model.message.find("192.0.2.7"), std::string::npos);
    });
    at.host.WillPress("Close");
    at.Show("a track\r\nof " + std::string(80, 'x'));
    EXPECT_EQ(at.host.shown[1].problem, "Select a line first.");
    EXPECT_EQ(at.host.shown[3].problem, "");
    EXPECT_EQ(at.host.shown[0].message, "2 visits.");
    EXPECT_TRUE(at.host.shown[0].title.starts_with("Corvane - Visits behind: a track  of xx"));
    EXPECT_LT(at.host.shown[0].title.size(), 90U);
}

TEST(ShowVisitsBehind, TellsWhyNumbersDiffer) {
    BehindDesk at;
    at.Visit({.term = "shoes", .engine = "G", .pages = {"c.htm"}});  // read since
    at.host.WillPress("Close");
    at.Show("shoes");
    EXPECT_NE(at.host.shown[0].message.find("3 visits.\rThe report counted 2."), std::string::npos)
        << at.host.shown[0].message;
    at.results->Analyzed_Field = analysis::kWords;
    at.indexes = {0, 1, 2};
    at.host.WillPress("Save as CSV");
    at.host.WillPress("OK", [&](DialogModel& model) { model.controls[1].value = at.folder.Path() + "/visits.csv"; });
    at.host.WillPress("OK");
    at.host.WillPress("Close");
    at.Show(".. Total ..");
    EXPECT_NE(at.host.shown[1].message.find("counts once here"), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(at.folder.Path() + "/visits.csv"));
    at.site->Db().Exec("DELETE FROM visit");
    at.host.WillPress("OK");
    at.Show("shoes");
    EXPECT_TRUE(at.host.shown.back().message.starts_with("No visits were found."));
}

}  // namespace
}  // namespace reports
