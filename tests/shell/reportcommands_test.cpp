#include "shell/reportcommands.h"

#include <gtest/gtest.h>

#include <set>

#include "core/inistore.h"
#include "reports/lines.h"
#include "shell/popups.h"
#include "tests/shell/fakefront.h"
#include "tests/support/tempsite.h"

namespace shell {
namespace {

using dialogs::DialogModel;
using testsupport::Combined;
using testsupport::TestShell;

std::string Search(const char* term) { return std::string("https://www.google.com/search?q=") + term; }

// "Shop" is open and has three visits from a search engine; "Other" is empty.
class ReportCommandsTest : public testing::Test {
protected:
    ReportCommandsTest() {
        test.LoadWithTwoSites();
        const std::string log = Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a.htm", Search("red+shoes")) +
                                Combined("1.1.1.1", "02/Mar/2009:08:01:00", "/b.htm") +
                                Combined("1.1.1.2", "03/Mar/2009:08:00:00", "/a.htm", Search("hat")) +
                                Combined("1.1.1.3", "20/Mar/2009:08:00:00", "/a.htm", Search("hat"));
        adddata::AddRequest request;
        request.files = {{test.folder.Write("a.log", log), ""}};
        Session& session = test.shell->TheSession();
        EXPECT_EQ(AddLogData(session.Env(), *test.shell->OpenSite(), session.ProgramFiles(), request).Status(), 0);
        Put("ThresholdST", "1");
    }
    void Put(const char* key, const char* value) {
        test.shell->Desk().ini.IniPut("Main", key, value, core::kBySection);
    }
    testsupport::FakeReport& Open(const char* control) {
        test.host.WillPress(" OK - Start New Analysis ");
        test.shell->Run(control);
        EXPECT_TRUE(test.host.Done());
        return *test.front.reports.back();
    }
    // The item of the first list whose text begins so.
    static testsupport::ScriptedHost::Fill Line(const std::string& start) {
        return [start](DialogModel& model) {
            for (dialogs::Control& control : model.controls.All()) {
                if (!control.Is(dialogs::ControlType::ListBox)) continue;
                for (std::size_t i = 0; i < control.rows.size(); ++i)
                    if (control.rows[i][0].starts_with(start)) control.value = std::to_string(i);
                return;
            }
        };
    }

    TestShell test{};
};

TEST_F(ReportCommandsTest, EveryEntryOfTheCatalogueOpensItsReport) {
    Put("ConfirmRepOps", "True");  // one analysis of a field serves its reports
    std::set<int> analysed;
    for (const reports::CatalogueRow& row : reports::kCatalogue) {
        SCOPED_TRACE(std::string(row.control));
        if (analysed.insert(row.report.field).second) test.host.WillPress(" OK - Start New Analysis ");
        const std::size_t before = test.front.reports.size();
        test.shell->Run(row.control);
        ASSERT_EQ(test.front.reports.size(), before + 1);
        const reports::ReportModel& report = test.front.reports.back()->Report();
        EXPECT_EQ(report.Results().Analyzed_Field, row.report.field);
        EXPECT_EQ(report.Kind(), row.report.kind);
    }
    EXPECT_TRUE(test.host.Done());
    EXPECT_EQ(test.front.reports[2]->Report().Grid().Cell(0, 0), "hat");
}

TEST_F(ReportCommandsTest, AnAnalysisServesAgainUntilTheSiteChanges) {
    Open("fMnu_RT");
    test.host.WillPress("Use selected analysis (dates & options as selected above)", Line("Dates"));
    test.shell->Run("fMnu_RA");
    ASSERT_EQ(test.front.reports.size(), 2U);
    EXPECT_EQ(test.front.reports[0]->Report().Analysis(), test.front.reports[1]->Report().Analysis());
    test.host.WillPress("OK - Use selected analysis to make new report", Line("Dates"));
    test.host.WillPress("OK", Line("Grouped"));
    test.shell->Run("fMnu_SN");
    EXPECT_TRUE(test.front.reports.back()->Report().Grid().grouped);

    test.host.WillPress("OK", TestShell::Choose("Other"));  // a site without data: nothing to analyse
    test.shell->Run("fMnu_FS");
    test.host.WillPress("OK", TestShell::Choose("Shop"));
    test.host.WillPress("Cancel");  // the offer of a new analysis
    test.shell->Run("fMnu_FS");
    EXPECT_TRUE(test.Showed("To use site database Shop you must analyse now."));
    EXPECT_TRUE(test.front.reports.empty());
    test.host.WillPress("Cancel");  // no analysis is left, so the list of reports comes at once
    test.shell->Run("fMnu_SN");
    EXPECT_TRUE(test.host.Done());
}

TEST_F(ReportCommandsTest, CommandsOnResultsNeedAReportAndSomeALine) {
    for (const char* control : {"fMnu_VV", "fMnu_VP", "fMnu_RR"}) {
        test.host.WillPress("OK");
        test.shell->Run(control);
        EXPECT_EQ(test.host.shown.back().message, "Only available when Results are displayed");
    }
    testsupport::FakeReport& report = Open("fMnu_RA");
    for (const char* control : {"fMnu_RR", "fMnu_BV"}) {
        test.host.WillPress("OK");
        test.shell->Run(control);
        EXPECT_EQ(test.host.shown.back().message, "First select row.");
    }
    report.Select(reports::kTotal);
    test.shell->Run("fMnu_RR");
    EXPECT_EQ(test.front.reports.back()->Report().Grid().Cell(0, 0), "hat");
    EXPECT_EQ(test.front.reports.size(), 2U);
}

TEST_F(ReportCommandsTest, SortsHeightsAndSeries) {
    testsupport::FakeReport& report = Open("fMnu_RA");
    test.shell->Run("fMnu_VF");
    EXPECT_EQ(report.Report().Grid().Cell(3, 0), "hat");  // the empty value, the gap and the total stand before it
    test.shell->Run("fMnu_VV");
    EXPECT_EQ(report.Report().Grid().Cell(0, 0), reports::kTotal);
    report.column = reports::kColStayed;
    test.shell->Run("fMnu_VX");
    test.shell->Run("fMnu_BK");
    EXPECT_EQ(report.Report().Grid().lineHeight, reports::kThickLine);
    EXPECT_EQ(report.gridChanges, 4);
    test.shell->Run("fMnu_VE");
    test.shell->Run("fMnu_CE");
    EXPECT_TRUE(report.Report().Chart().Removed(1));
    test.shell->Run("fMnu_VS");
    EXPECT_FALSE(report.Report().Chart().Removed(0));
    EXPECT_EQ(report.chartChanges, 3);
    test.host.WillPress("OK", {}, [](DialogModel& model) {
        EXPECT_EQ(model.controls[1].rows.at(0).at(0), " 1 d. from 02 Mar [1] 2009");
    });
    test.shell->Run("fMnu_CX");
    test.host.WillPress("OK");
    test.shell->Run("fMnu_BM");
    EXPECT_TRUE(test.Showed("Total Visits: 3"));
}

TEST_F(ReportCommandsTest, PlotOptionsReplotWithAllSeries) {
    testsupport::FakeReport& report = Open("fMnu_RA");
    test.shell->Run("fMnu_VE");
    test.host.WillPress("OK", [](DialogModel& model) {
        int box = 0;
        for (dialogs::Control& control : model.controls.All())
            if (control.Is(dialogs::ControlType::TextBox) && ++box == 2) control.value = "2009-03-10";
    });
    test.shell->Run("fMnu_VP");
    EXPECT_FALSE(report.Report().Chart().Removed(0));
    EXPECT_EQ(report.Report().Chart().rows.size(), 9U);
    EXPECT_NE(report.Report().Chart().desc.find("Selected Date Range: 2 Mar 09 to 10 Mar 09"), std::string::npos);
}

TEST_F(ReportCommandsTest, WordsGroupsAndVisitsOfALine) {
    testsupport::FakeReport& report = Open("fMnu_RA");
    test.host.WillPress("2 Words");
    test.host.WillPress("OK", {},
                        [](DialogModel& model) { EXPECT_EQ(model.controls[1].rows.at(0).at(0), "red shoes - 1"); });
    test.shell->Run("fMnu_W");
    EXPECT_EQ(test.host.shown.back().title, "Total users for each 2 word combination in Search term");
    report.Select("hat");
    test.host.WillPress("Close");
    test.shell->Run("fMnu_BV");
    EXPECT_TRUE(test.Showed("2 visits"));
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_S");
    test.host.WillPress("Use selected analysis (dates & options as selected above)", Line("Dates"));
    test.host.WillPress("OK");
    test.shell->Run("fMnu_EG");
    EXPECT_TRUE(test.front.reports.back()->Report().Grid().grouped);
    EXPECT_TRUE(test.host.Done());
}

TEST_F(ReportCommandsTest, WhatIsShownCanBeSaved) {
    testsupport::FakeReport& report = Open("fMnu_RA");
    const std::string page = test.folder.File("report.html"), csv = test.folder.File("report.csv");
    test.host.WillPress("OK", TestShell::Enter("report.html"));
    test.host.WillPress("OK", TestShell::Enter(test.folder.File("none/report.html")));
    test.host.WillPress("OK", TestShell::Enter(page));
    test.host.WillPress("OK");
    test.shell->Run("fMnu_BP");
    EXPECT_TRUE(test.Showed("Data written successfully to file: " + page));
    EXPECT_NE(core::ReadFile(page).text.find("<td class=\"l\">red shoes</td>"), std::string::npos);
    test.host.WillPress("OK", TestShell::Enter(csv));
    test.host.WillPress("OK");
    test.shell->Run("fMnu_CD");
    EXPECT_NE(core::ReadFile(csv).text.find("02 Mar [1]"), std::string::npos);
    report.saved = {false, "no room"};
    test.host.WillPress("OK", TestShell::Enter("/x.png"));
    test.host.WillPress("Cancel");
    test.shell->Run("fMnu_CP");
    EXPECT_EQ(report.pictures, std::vector<std::string>{"/x.png"});
    EXPECT_TRUE(test.Showed("no room"));
}

TEST_F(ReportCommandsTest, PopupEntriesFollowTheReport) {
    const auto offered = [](const reports::ReportModel& report) {
        std::string controls;
        for (const PopupRow& row : kPopupRows)
            if (row.offered != Offered::Always && IsOffered(row, report))
                controls += std::string(row.entry.HelpId()) + " ";
        return controls;
    };
    EXPECT_EQ(offered(Open("fMnu_RA").Report()), "W S ");
    EXPECT_EQ(offered(Open("fMnu_RV").Report()), "BG ");
    EXPECT_EQ(offered(Open("fMnu_RN").Report()), "");
    Put("ConfirmRepOps", "True");
    test.shell->Run("fMnu_RG");
    EXPECT_EQ(offered(test.front.reports.back()->Report()), "L W S ");
}

}  // namespace
}  // namespace shell
