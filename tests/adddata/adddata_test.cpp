#include "adddata/adddata.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/tempsite.h"

namespace adddata {
namespace {

using testsupport::Combined;
using testsupport::TempSite;

struct AddSite : TempSite {
    ProgramFiles program{PARAMS_DIR "/program/logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini",
                         PARAMS_DIR "/program/fltrbots.ini"};
    AddRequest Request(const std::string& log) const {
        AddRequest request;
        request.files = {{folder.Write("access.log", log), ""}};
        return request;
    }
};

const std::string kLog =
    Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a.html", "https://www.google.de/search?q=red+shoes") +
    Combined("1.1.1.1", "02/Mar/2009:08:00:01", "/style.css") +
    Combined("1.1.1.2", "02/Mar/2009:08:00:02", "/b.html", "-", 200, 5, "Googlebot/2.1");

TEST(AddLogData, RunsFromTheLogToTheVisits) {
    AddSite home;
    const AddOutcome outcome = AddLogData(home.env, *home.site, home.program, home.Request(kLog));
    EXPECT_EQ(outcome.Status(), 0);
    EXPECT_EQ(outcome.format, "apache-combined");
    EXPECT_EQ(outcome.read.totals.AllLinesAdded, 1);  // the stored options leave out the style sheet and the robot
    EXPECT_EQ(home.Rows("SELECT StzdSearchTerm, SearchEngine, CDSClickFurtherPageIDs FROM visit", 3),
              (std::vector<std::string>{"red shoes|GOOGLE|2"}));
    EXPECT_TRUE(home.site->UnfinishedAdd(home.env).empty());
    EXPECT_FALSE(std::filesystem::exists(home.site->Paths().temp));
}

TEST(AddLogData, AStoppedReadMayLeaveItsVisitsForLater) {
    AddSite home;
    AddRequest request = home.Request(kLog + "garbage\n" + kLog);
    request.skipRobots = request.skipComponents = false;
    home.user.WillCancel();  // the line that does not fit
    home.user.WillCancel();  // no visits now
    const AddOutcome outcome = AddLogData(home.env, *home.site, home.program, request);
    EXPECT_EQ(outcome.Status(), 1);
    EXPECT_EQ(home.user.ids, (std::vector<std::string>{"LogLnInvalid", "ReadStoppedAddVisits"}));
    EXPECT_EQ(home.site->WaitingLines(), 3);

    home.Reopen();  // the next start offers to complete it, as often as it is refused
    home.user.WillCancel();
    EXPECT_FALSE(VisitsAdd_Resume(home.env, *home.site, home.program).has_value());
    home.user.WillPressOk();
    const auto resumed = VisitsAdd_Resume(home.env, *home.site, home.program);
    ASSERT_TRUE(resumed.has_value());
    EXPECT_EQ(resumed->visitsMade, 2);
    EXPECT_NE(home.user.asked.back().find("Date Last Added: Mar 15 2023 12:00"), std::string::npos);
    EXPECT_FALSE(VisitsAdd_Resume(home.env, *home.site, home.program).has_value());
}

TEST(AddLogData, WaitingLinesWithoutAMarkCountAsUnfinished) {
    AddSite home;
    home.site->Db().Exec("INSERT INTO logline (LogLnID, IP, Timestamp, PageID) VALUES (1, 'a', 20090302080000, 0)");
    EXPECT_FALSE(home.site->UnfinishedAdd(home.env).empty());
    EXPECT_TRUE(ResumeAdd(home.env, *home.site, home.program).done);
    EXPECT_EQ(home.Rows("SELECT count(*) FROM visit", 1)[0], "1");
}

}  // namespace
}  // namespace adddata
