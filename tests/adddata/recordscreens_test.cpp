#include "adddata/recordscreens.h"

#include <gtest/gtest.h>

#include "adddata/addlog.h"
#include "adddata/problemstore.h"
#include "adddata/robotcopy.h"
#include "adddata/summaryscreens.h"
#include "tests/adddata/screensite.h"

namespace adddata {
namespace {

using dialogs::DialogModel;
using dialogs::Rows;
using testsupport::ScreenSite;

const EngineCounts kCounts{{"GOOGLE|20090302", 3}, {"GOOGLE|20090304", 1}, {"GOOGLE|20090305", 5},
                           {"BING|20090302", 2},   {"a|b|20090302", 9},    {"Old|", 1}};

TEST(EnginesOf, AverageIsPerDayWithVisitorsAndSharesAreOfAll) {
    const std::vector<EngineDays> engines = EnginesOf(kCounts);
    const Rows rows = SummaryRows(engines);
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_EQ(rows[1], (dialogs::ListRow{"GOOGLE", "3 days. [2009-03-02 to 2009-03-05 ]", "9", "3.0", "42.9 %"}));
    EXPECT_EQ(rows[2], (dialogs::ListRow{"a|b", "1 days. [2009-03-02 to 2009-03-02 ]", "9", "9.0", "42.9 %"}));
    EXPECT_EQ(rows[3], (dialogs::ListRow{"BING", "1 days. [2009-03-02 to 2009-03-02 ]", "2", "2.0", "9.5 %"}));
    EXPECT_EQ(rows[4], (dialogs::ListRow{"Old", "none", "1", "none", "4.8 %"}));
    const Rows detail = DetailRows(engines.front());
    EXPECT_EQ(detail[1], (dialogs::ListRow{"GOOGLE", "2009-03-02", "3", "0 %"}));
    EXPECT_EQ(detail[2], (dialogs::ListRow{"GOOGLE", "2009-03-04", "1", "-67 %"}));
    EXPECT_EQ(detail[3], (dialogs::ListRow{"GOOGLE", "2009-03-05", "5", "+67 %"}));
    // What rounds to nothing has no sign.
    const Rows even = DetailRows({"X", 1001, {{"20090302", 500}, {"20090303", 501}}});
    EXPECT_EQ(even[1][3], "0 %");
    EXPECT_EQ(even[2][3], "0 %");
}

AddOutcome SomeOutcome() {
    AddOutcome outcome;
    logread::AllCounters& all = outcome.read.totals;
    all = {.AllFirstDate = 39874.3, .AllLastDate = 39905.9, .AllBytesRead = 2540000, .AllLinesRead = 5000};
    all.AllLinesAdded = 1200;
    all.AllLinesExist = 2000;
    all.AllFiltered = 500;
    all.AllBots = 270;
    all.AllComps = 30;
    return outcome;
}

TEST(AddTotalsText, OneLineForEachTotal) {
    AddOutcome outcome = SomeOutcome();
    EXPECT_EQ(AddTotalsText({outcome, "3 minutes", "Yes - Log line loaded when satisfy any filters. Referrer <x>."}),
              "Added: 1,200 in 3 minutes\rTotal log lines read: 5,000.\r"
              "Add Only/Except Filtered: Yes - Log line loaded when satisfy any filters.\r"
              "Data from 02 Mar 2009 to 02 Apr 2009\rTotal bandwidth for all lines read: 2.5 Meg.\r"
              "2,800 lines (70% of TTL) skipped\r2,000 exist.500 filtered.270 bots.30 components.");
    outcome.read.totals = {};
    outcome.preprocessSeconds = 130;
    EXPECT_EQ(AddTotalsText({outcome, "less than one minute", "No"}),
              "Added: 0 [Preprocessing: 2 minutes] in less than one minute\rTotal log lines read: 0.\r"
              "Add Only/Except Filtered: No\rTotal bandwidth for all lines read: 0.0 Meg.\r"
              "0 lines (None of TTL) skipped\r0 exist.0 filtered.0 bots.0 components.");
}

TEST(AddOptionsText, FilesAndFilters) {
    EXPECT_EQ(AddOptionsText({{{"/a", ""}, {"/b", "iis"}}, {.skipComponents = true}, "No"}),
              "File Spec: /a\r/b [LogFormat: iis]\rAdd Only/Except Filtered: No\rSkip robots n crawlers: No [user "
              "agent]\rSkip page components: Yes [page component]");
}

TEST(SEsummaryShow, AnEngineLeadsToItsDates) {
    ScreenSite home;
    home.host.WillPress("Show Detail", [](DialogModel& model) { model.controls[1].value = "-1"; });
    home.host.WillPress("Show Detail", [](DialogModel& model) { model.controls[1].value = "2"; });
    home.host.WillPress("Done");
    home.host.WillPress("Close");
    SEsummaryShow(home.desk, kCounts);
    EXPECT_EQ(home.host.shown[2].message,
              "Detail for SE: BING. Show visitor counts for each date.\r% Deviation is change in no of visitors from "
              "average # of visitors per day [2.0]");
    home.host.WillPress("OK");
    SEsummaryShow(home.desk, {});
    EXPECT_EQ(home.host.shown.back().message, "No SE referrals found.");
    EXPECT_TRUE(home.host.Done());
}

TEST(ProblemFilesShow, AFileLeadsToItsProblems) {
    ScreenSite home;
    home.host.WillPress("OK", [](DialogModel& model) { model.controls[1].value = "1"; });
    home.host.WillPress("Done", [](DialogModel& model) {
        ASSERT_EQ(model.controls[3].rows.size(), 2U);
        EXPECT_EQ(model.controls[3].rows[1][0], "two");
    });
    home.host.WillPress("Cancel");
    ProblemFilesShow(home.desk, {{"/a", {"x"}}, {"/b", {"one", "two"}}});
    EXPECT_TRUE(home.Showed("Log files with problems. Select file & press OK to see problem list."));
    EXPECT_EQ(home.host.shown[1].title, "List Problems for: /b");
    home.host.WillPress("OK");
    ProblemFilesShow(home.desk, {});
    EXPECT_EQ(home.host.shown.back().message, "Files were all read without problems.");
}

class AddLogListTest : public testing::Test {
protected:
    AddLogListTest() {
        EXPECT_TRUE(core::FileDelete(home.program.robots).ok);
        home.folder.Write("param/fltrbots.ini",
                          "[Filters]\r\nSkipRobotUserAgents=bot|spam\r\n[bot]\r\nTyp=2\r\nVal=bot\r\nColType=2\r\n"
                          "[spam]\r\nTyp=1\r\nVal=Spam\r\nMC=True\r\nColType=0\r\n");
        robots = CopyRobotFilter(home.ini, home.program.robots, home.site->Paths()).name;
        logread::ProblemList problems;
        problems.LogFileProblemAdd("/a.log", "bad");
        EXPECT_EQ(StoreProblems(home.ini, ProblemStoreFile(home.site->Paths()), problems).number, 1);
        summary = SaveEngineSummary(home.ini, home.site->Paths(), kCounts).name;
        const std::vector<AddLogRecord> records{Record("15 Mar 2023 12:00.00", "START Read File.", "?", "?"),
                                                Record("15 Mar 2023 12:00.01", "Done. Read File. 1 minutes", "?", "?"),
                                                Record("** Done **", "END ADD", robots, "1"),
                                                Record("** Part Done **", "END ADD", "../../fltrbots.ini", "7")};
        EXPECT_TRUE(AppendAddLog(AddLogFile(home.site->Paths()), records).ok);
    }
    AddLogRecord Record(const char* date, const char* action, const std::string& copy, const char* number) const {
        AddLogRecord record;
        record.fields[AddLogAt("date")] = date;
        record.fields[AddLogAt("action")] = action;
        record.fields[AddLogAt("robotFilterCopy")] = copy;
        record.fields[AddLogAt("problems")] = number;
        if (number == std::string_view("1")) record.fields[AddLogAt("engineSummary")] = summary;
        return record;
    }
    void Press(const char* button, const char* row) {
        home.host.WillPress(button, [=](DialogModel& model) { model.controls[1].value = row; });
    }

    ScreenSite home{};
    std::string robots{}, summary{};
};

TEST_F(AddLogListTest, TheNewestFirstAndStartLinesCanBeHidden) {
    home.host.WillPress("Hide Lines: Start Read File", [](DialogModel& model) {
        const Rows& rows = model.controls[1].rows;
        ASSERT_EQ(rows.size(), 5U);
        EXPECT_EQ(rows[0].size(), 36U);
        EXPECT_EQ(rows[1][0], "** Part Done **");
        EXPECT_EQ(rows[4][2], "START Read File.");
        EXPECT_FALSE(model.buttons[5].enabled);
    });
    home.host.WillPress("Show Line", [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows.size(), 4U);
        EXPECT_TRUE(model.buttons[5].enabled);
        model.controls[1].value = "2";
    });
    home.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_EQ(model.controls[3].rows[1], (dialogs::ListRow{"Date", "15 Mar 2023 12:00.01"}));
    });
    home.host.WillPress("Show Lines: Start Read File");
    home.host.WillPress("Close", [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows.size(), 5U); });
    AddLogShowList(home.at);
    EXPECT_TRUE(home.host.Done());
}

TEST_F(AddLogListTest, ATotalsLineHasFiltersProblemsAndASummary) {
    Press("List Exclude Robots Filters", "1");
    home.host.WillPress("Done", [](DialogModel& model) {
        EXPECT_EQ(dialogs::ItemsOf(model.controls[3].rows),
                  (std::vector<std::string>{"User agent (browser) Contains <bot>", "Referrer Starts with <Spam> MC"}));
    });
    Press("List Problems", "1");
    home.host.WillPress("Cancel", [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows[0][0], "/a.log"); });
    Press("SE Summary", "1");
    home.host.WillPress("Close", [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows.size(), 5U); });
    home.host.WillPress("Close");
    AddLogShowList(home.at);
    EXPECT_TRUE(home.host.Done());
}

TEST_F(AddLogListTest, OtherLinesSayWhatTheyLack) {
    for (const char* button : {"List Exclude Robots Filters", "List Problems", "SE Summary"}) Press(button, "2");
    // A record's name never leads out of the site's folder.
    Press("List Exclude Robots Filters", "0");
    Press("List Problems", "0");
    Press("SE Summary", "0");
    home.host.WillPress("OK");
    home.host.WillPress("Close");
    AddLogShowList(home.at);
    for (const std::size_t shown : {1U, 2U, 3U})
        EXPECT_EQ(home.host.shown[shown].problem, "First select a line with \"** Done **\" in first column.");
    EXPECT_EQ(home.host.shown[4].problem, "Filters not available for that line.");
    EXPECT_EQ(home.host.shown[5].problem, "Error List not available for that line.");
    EXPECT_EQ(home.host.shown[6].message, "No SE referrals found.");
    EXPECT_TRUE(home.host.Done());
}

TEST(AddLogShowList, AnEmptyLogSaysSo) {
    ScreenSite home;
    home.host.WillPress("OK");
    AddLogShowList(home.at);
    EXPECT_EQ(home.host.shown[0].message, "No data has been added to this database.");
}

}  // namespace
}  // namespace adddata
