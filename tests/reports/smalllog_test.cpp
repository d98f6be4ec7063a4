#include <gtest/gtest.h>

#include <map>

#include "adddata/adddata.h"
#include "analysis/run.h"
#include "analysis/targetstore.h"
#include "core/cds.h"
#include "reports/groups.h"
#include "reports/reportmodel.h"
#include "reports/reportscreens.h"
#include "tests/support/scriptedhost.h"
#include "tests/support/tempsite.h"

// One small log worked through by hand: 54 days from 10 February to 3 April 2024, six visits.
namespace reports {
namespace {

using testsupport::Combined;
using Texts = std::vector<std::string>;

std::string Search(const std::string& term) { return "https://www.google.com/search?q=" + term; }

const std::string kLog = Combined("10.0.0.1", "10/Feb/2024:08:00:00", "/a.html", Search("red+shoes")) +
                         Combined("10.0.0.1", "10/Feb/2024:08:01:00", "/big.html", "-", 200, 2000) +
                         Combined("10.0.0.1", "10/Feb/2024:08:02:00", "/buy.html") +
                         Combined("10.0.0.2", "11/Feb/2024:08:00:00", "/a.html", Search("red+shoes")) +
                         Combined("10.0.0.3", "05/Mar/2024:08:00:00", "/b.html", Search("blue+hat")) +
                         Combined("10.0.0.4", "05/Mar/2024:09:00:00", "/a.html") +
                         Combined("10.0.0.5", "02/Apr/2024:08:00:00", "/a.html", Search("green")) +
                         Combined("10.0.0.5", "02/Apr/2024:08:01:00", "/thanks.html") +
                         Combined("10.0.0.6", "03/Apr/2024:08:00:00", "/b.html", Search("red+shoes")) +
                         Combined("10.0.0.6", "03/Apr/2024:08:01:00", "/order.html");

class SmallLog : public testing::Test, protected testsupport::TempSite {
protected:
    SmallLog() {
        sitedb::SetSectionFiles(ini, paths, site->Paths());
        const adddata::ProgramFiles program{PARAMS_DIR "/program/logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini",
                                            PARAMS_DIR "/program/fltrbots.ini"};
        adddata::AddRequest request;
        request.files = {{folder.Write("access.log", kLog), ""}};
        EXPECT_EQ(AddLogData(env, *site, program, request).Status(), 0);
        const std::map<const char*, const char*> keys{
            {"ThresholdST", "1"},      {"DevShow", "True"},   {"DevDays", "3"},
            {"DevTxtNoneVD", "-"},     {"AnalTgt", "True"},   {"DevTxtNonePct", "none"},
            {"DevTxtFrom0Pct", "new"}, {"ShowDist1", "True"}, {"DaysToPlot", "20"}};
        for (const auto& [key, value] : keys) ini.IniPut("Main", key, value, core::kBySection);
        const auto pages = [](std::vector<std::string> texts) {
            std::vector<logdefs::FltrRule> filters;
            for (const std::string& text : texts) filters.push_back({.Typ = logdefs::kContains, .Val = text});
            return filters;
        };
        EXPECT_TRUE(analysis::Tgt_WriteList(ini, site->Paths(),
                                            {{"Big", analysis::kSize, 1000, pages({"big"})},
                                             {"Buy", analysis::kAny, 0, pages({"buy", "order"})},
                                             {"Both", analysis::kAll, 0, pages({"big", "buy"})},
                                             {"Thanks", analysis::kAny, 0, pages({"thanks"})}})
                        .ok);
        Group("Warm", "red shoes|missing");
        Group("Both", "red shoes|green");
    }
    void Group(const std::string& name, const std::string& members) {
        dialogs::GroupLists groups(ini, GroupPlaceOf(analysis::kTerm));
        const core::StrArray items = core::CDSSplitPlain(members);
        groups.SetMembers(groups.Add(name), {items.Items().begin(), items.Items().end()});
        EXPECT_TRUE(groups.Save());
    }
    AnalysisPtr Analyse() {
        analysis::AnalysisRequest request = analysis::Analyse_Request(ini, analysis::kTerm);
        request.WordListsOn = true;
        return analyses.Analysis_New(CVNA_VisitsAnalyse(env, *site, request).results);
    }
    // Cells from `first` on, those of the separators left out.
    static std::string Cells(const ReportModel& model, std::string_view leftCell, int first, int last) {
        for (const GridRow& row : model.Grid().rows) {
            if (row.cells[0] != leftCell) continue;
            std::string text;
            for (int column = first; column <= last; ++column)
                if (model.Grid().columns[static_cast<std::size_t>(column)].kind != ColumnKind::Separator)
                    text += row.cells[static_cast<std::size_t>(column)] + "; ";
            return text;
        }
        ADD_FAILURE() << "no line " << leftCell;
        return {};
    }
    static Texts LeftCells(const ReportModel& model) {
        Texts cells;
        for (const GridRow& row : model.Grid().rows) cells.push_back(row.cells[0]);
        return cells;
    }

    OpenAnalyses analyses{};
};

TEST_F(SmallLog, CountsTargetsAndShares) {
    const ReportModel model(env, Analyse(), ReportKind::All, "Targets");
    EXPECT_EQ(LeftCells(model),
              (Texts{"red shoes", "blue hat", " .. NOT SEARCH ENGINE .. ", "green", "", "", kTotal.data()}));
    // Visitors, stayed, per cent, pages, share; then each target: count, of the visitors, of those who stayed.
    EXPECT_EQ(Cells(model, "red shoes", 1, 21),
              "3; 2; 67 %; 1.5; 50.0 %; 1; 33 %; 50 %; 2; 67 %; 100 %; 0; 0 %; 0 %; 0; 0 %; 0 %; ");
    EXPECT_EQ(Cells(model, "blue hat", 1, 21),
              "1; 0; 0 %; na; 16.7 %; 0; 0 %; na; 0; 0 %; na; 0; 0 %; na; 0; 0 %; na; ");
    EXPECT_EQ(Cells(model, "green", 1, 21),
              "1; 1; 100 %; 1.0; 16.7 %; 0; 0 %; 0 %; 0; 0 %; 0 %; 0; 0 %; 0 %; 1; 100 %; 100 %; ");
    EXPECT_EQ(Cells(model, "", 1, 21), "0; 0; na; na; 0.0 %; 0; na; na; 0; na; na; 0; na; na; 0; na; na; ");
    // The pages of the total are the shown averages added up: (1.5 + 1.0) / 3 who stayed.
    EXPECT_EQ(Cells(model, kTotal, 1, 21),
              "6; 3; 50 %; 0.8; ; 1; 17 %; 33 %; 2; 33 %; 67 %; 0; 0 %; 0 %; 1; 17 %; 33 %; ");
    EXPECT_EQ(Cells(model, "red shoes", 22, 22), "GOOGLE 3 [100%]\r\n; ");
}

// Recent: 1 to 3 April; before them 29 to 31 March; this month 3 days; last month 31; the one before 20, as the data
// begin in its middle; this year all 54; no year before.
TEST_F(SmallLog, Deviations) {
    const ReportModel model(env, Analyse(), ReportKind::All, "Targets");
    const int first = model.Grid().dGCol_Deviation;
    Texts headers;
    for (int i = 0; i < kDevColumns; ++i)
        headers.push_back(model.Grid().columns[static_cast<std::size_t>(first + i)].header);
    EXPECT_EQ(headers[0], "last 3 d. avg users per day");
    EXPECT_EQ(headers[6], "this mo 3 d. avg users per day");
    EXPECT_EQ(headers[20], "this yr.54 d. avg users per day");
    EXPECT_EQ(headers[23], "no last yr. data");
    EXPECT_EQ(headers[24], "");
    EXPECT_EQ(Cells(model, "red shoes", first, first + kDevColumns - 1),
              "0.33; +500 %; +750 %; new; -; -100 %; 0.33; +500 %; new; +233 %; +500 %; ; -; -100 %; -100 %; -100 %; ; "
              "0.10; +80 %; ; 0.06; 0 %; ; ; ; 0.06; ");
    EXPECT_EQ(Cells(model, "green", first, first + kDevColumns - 1),
              "0.33; +1700 %; new; new; -; -100 %; 0.33; +1700 %; new; new; +1700 %; ; -; -100 %; none %; -100 %; ; "
              "-; -100 %; ; 0.02; 0 %; ; ; ; 0.02; ");
    EXPECT_EQ(Cells(model, "blue hat", first, first + kDevColumns - 1),
              "-; -100 %; -100 %; none %; -; -100 %; -; -100 %; -100 %; none %; -100 %; ; 0.03; +74 %; new; +74 %; ; "
              "-; -100 %; ; 0.02; 0 %; ; ; ; 0.02; ");
}

// A value in two groups counts in both lines and twice in the total; a missing member counts nothing.
TEST_F(SmallLog, Groups) {
    const AnalysisPtr analysis = Analyse();
    const ReportModel grouped(env, analysis, ReportKind::Grouped, "Targets");
    EXPECT_EQ(LeftCells(grouped), (Texts{"Both", "Warm", kRest.data(), "", kTotal.data()}));
    EXPECT_EQ(Cells(grouped, "Both", 1, 8), "4; 3; 75 %; 1.3; 44.4 %; 1; 25 %; 33 %; ");
    EXPECT_EQ(Cells(grouped, "Warm", 1, 5), "3; 2; 67 %; 1.5; 33.3 %; ");
    EXPECT_EQ(Cells(grouped, kRest, 1, 5), "2; 0; 0 %; na; 22.2 %; ");
    EXPECT_EQ(Cells(grouped, kTotal, 1, 5), "9; 5; 56 %; 0.6; ; ");
    EXPECT_EQ(grouped.Grid().dGCol_Deviation, -1);
    const ReportModel members(env, ReportModel::Members{grouped, "Both"});
    EXPECT_EQ(LeftCells(members), (Texts{"red shoes", "green", "", kTotal.data()}));
    EXPECT_EQ(members.Words().front().text, "red");
    EXPECT_EQ(members.Words().front().count, 3);
}

TEST_F(SmallLog, TrendInPeriodsOfTwentyDays) {
    ReportModel model(env, Analyse(), ReportKind::All, "Targets");
    const ChartData& chart = model.Chart();
    EXPECT_EQ(chart.dPlotColLabelsCDS, (Texts{" 20 d. from 10 Feb [2] 2024", " 20 d. from 01 Mar [2] 2024",
                                              " 14 d. from 21 Mar [2 /14d.] 2024"}));
    const auto series = [&](std::size_t s) {
        std::string text;
        for (const ChartRow& row : model.Chart().rows)
            text += (row.values[s] ? std::to_string(static_cast<int>(*row.values[s])) : "none") + " ";
        return text;
    };
    EXPECT_EQ(series(0), "2 2 2 ");
    EXPECT_EQ(series(1), "1 0 2 ");
    EXPECT_EQ(series(2), "1 0 0 ");
    EXPECT_EQ(series(3), "1 0 1 ");
    EXPECT_EQ(series(5), "0 0 1 ");
    EXPECT_EQ(series(kScaleHelper), "none none none ");
    ini.IniPut("Main", "Plotpct", "True", core::kBySection);
    model.RemoveFirstSeries();
    EXPECT_EQ(chart.headers[1], "Pct. of total who Stayed on site - surfed to other pages");
    EXPECT_EQ(series(1), "50 0 100 ");
    EXPECT_EQ(series(kScaleHelper), "none none 10 ");
    EXPECT_NE(model.Summary().find("Total Visits: 6"), std::string::npos);
}

// An analysis that is stopped leaves the ones before it.
TEST_F(SmallLog, StoppingLeavesWhatIsOpen) {
    testsupport::ScriptedHost host;
    const dialogs::Desk desk{ini, host, "Corvane", folder.File("screens.ini")};
    ReportScreens screens(env, desk, *site, analyses);
    const AnalysisPtr first = screens.Analyse(analysis::kTerm);
    ASSERT_NE(first, nullptr);
    progress.steps = 0;
    progress.stopAtStep = 5;
    EXPECT_EQ(screens.Analyse(analysis::kTerm), nullptr);
    EXPECT_EQ(progress.open, 0);
    EXPECT_EQ(analyses.Analyses_List("Shop", analysis::kTerm), std::vector<AnalysisPtr>{first});
    EXPECT_EQ(Cells(ReportModel(env, first, ReportKind::All, "Targets"), kTotal, 1, 1), "6; ");
}

}  // namespace
}  // namespace reports
