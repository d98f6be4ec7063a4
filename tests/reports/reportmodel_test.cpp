#include "reports/reportmodel.h"

#include <gtest/gtest.h>

#include "tests/reports/handmade.h"

namespace reports {
namespace {

using testsupport::Texts;

// Reports of one analysis of 40 days: three terms, and the empty value.
class Model : public testsupport::Handmade {
protected:
    Model() {
        Add("one", 3, 1, 2);
        Add("two", 8, 0, 0);
        More(2, 4, 20);
        Add("three", 1, 0, 0);
        results.CntTopVals = 2;
        ini.SetSectionFile("Main", folder.File("LastVals.ini"));
        ini.SetSectionFile("Groups", folder.File("STgroups.ini"));
    }
    AnalysisPtr Open() {
        Finish();
        return analyses.Analysis_New(std::make_unique<analysis::SrchTrmData>(std::move(results)));
    }
    static std::size_t RowOf(const ReportModel& model, std::string_view leftCell) {
        for (std::size_t row = 0; row < model.Grid().rows.size(); ++row)
            if (model.Grid().Cell(row, 0) == leftCell) return row;
        ADD_FAILURE() << leftCell;
        return 0;
    }
    testsupport::TempFolder folder{};
    OpenAnalyses analyses{};
};

TEST_F(Model, OpensWithTheTotalAndPlotsWhatIsSelected) {
    ReportModel model(env, Open(), ReportKind::Top, "Targets");
    EXPECT_EQ(model.PlottedLine(), kTotal);
    EXPECT_EQ(model.Chart().rows.front().values[0], 12);  // "one", "two", "three" on the first day
    EXPECT_TRUE(model.pPlotRow(RowOf(model, "two")));
    EXPECT_FALSE(model.pPlotRow(RowOf(model, "two")));
    EXPECT_EQ(model.Chart().rows[20].values[0], 4);
    EXPECT_FALSE(model.pPlotRow(3));  // the gap
    EXPECT_FALSE(model.pPlotRow(99));
    EXPECT_EQ(model.PlottedLine(), "two");
    model.RemoveFirstSeries();
    EXPECT_TRUE(model.Chart().Removed(0));
    EXPECT_TRUE(model.pPlotRow(RowOf(model, kRest)));
    EXPECT_TRUE(model.Chart().Removed(0));  // until it is restored
    model.RestoreSeries();
    EXPECT_FALSE(model.Chart().Removed(0));
    for (int i = 0; i < 9; ++i) model.RemoveFirstSeries();
    EXPECT_FALSE(model.CanRemove());
}

TEST_F(Model, SortingMovesLinesAndKeepsThePlot) {
    ReportModel model(env, Open(), ReportKind::All, "Targets");
    model.pPlotRow(RowOf(model, "one"));
    model.SortBy(ReportModel::ViewSort::Value);
    EXPECT_FALSE(model.pPlotRow(RowOf(model, "one")));
    EXPECT_EQ(model.PlottedLine(), "one");
    model.SortBy(ReportModel::ViewSort::Visitors);
    EXPECT_EQ(model.Grid().Cell(0, 0), kTotal);
    model.SortBy(ReportModel::ViewSort::Selected, 99);  // no such column
}

TEST_F(Model, MembersOfALine) {
    ini.IniPutWhole("Groups", "STgrps", "Pair", folder.File("STgroups.ini"));
    ini.IniPutWhole("Groups", "Pair", "one|three", folder.File("STgroups.ini"));
    const ReportModel grouped(env, Open(), ReportKind::Grouped, "Targets");
    const ReportModel members(env, ReportModel::Members{grouped, "Pair"});
    ASSERT_TRUE(members.HasMembers());
    EXPECT_EQ(members.Grid().Cell(0, 0), "one");
    EXPECT_EQ(members.Grid().Cell(1, 0), "three");
    EXPECT_EQ(members.PlottedLine(), kTotal);
    EXPECT_FALSE(ReportModel(env, ReportModel::Members{grouped, "nothing"}).HasMembers());
}

TEST_F(Model, TheDeviationSettingsAreThoseOfTheFirstReport) {
    const AnalysisPtr analysis = Open();
    ini.IniPutBool("Main", "DevShow", true, "::*");
    ini.IniPut("Main", "DevDays", "3", "::*");
    const auto header = [&] {
        const ReportModel model(env, analysis, ReportKind::Top, "");
        return model.Grid().columns[static_cast<std::size_t>(model.Grid().dGCol_Deviation)].header;
    };
    EXPECT_EQ(header(), "last 3 d. avg users per day");
    ini.IniPut("Main", "DevDays", "9", "::*");
    EXPECT_EQ(header(), "last 3 d. avg users per day");
}

TEST(Catalogue, LinesOfReportsAndBack) {
    const std::vector<std::string> lines = ReportLines({1, 3});
    EXPECT_EQ(lines, (Texts{"1\tTop Search Term [Distr: Srch Engine & First Page (Found)]", "1\tAll Search Term",
                            "1\tGrouped Search Term", "3\tTop Search Term // Page Found [Distr: Srch Engine]",
                            "3\tAll Search Term // Page Found"}));
    EXPECT_EQ(ReportOfLine(lines[2])->kind, ReportKind::Grouped);
    EXPECT_EQ(ReportOfLine(lines[4])->field, 3);
    EXPECT_FALSE(ReportOfLine("1 Top"));
    EXPECT_EQ(ReportOfMenu("fMnu_RQ")->field, 5);
    EXPECT_FALSE(ReportOfMenu("fMnu_RR"));
}

}  // namespace
}  // namespace reports
