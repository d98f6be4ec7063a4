#include "analysis/run.h"

#include <algorithm>
#include <map>

#include "analysis/fields.h"
#include "core/dates.h"
#include "tests/analysis/testsite.h"

namespace analysis {
namespace {

using testsupport::Rows;
using testsupport::TestSite;
using Texts = std::vector<std::string>;

TEST(CVNA_VisitsAnalyse, OpensARowAtTheThresholdAndCreditsVisitorsAlone) {
    TestSite s;
    for (int i = 0; i < 5; ++i)
        s.Visit({.stamp = 20260105120000 + i, .term = "shoes", .engine = "G", .pages = {"a.htm", "b.htm", "c.htm"}});
    s.Visits(3, {.term = "rare", .engine = "G", .pages = {"a.htm"}});
    AnalysisRequest request = s.Request(kTerm);
    request.options.ShowDist1 = true;
    request.threshold = 4;
    const auto results = s.Analyse(request);
    ASSERT_TRUE(results);
    EXPECT_EQ(results->threshold, 3);
    EXPECT_EQ(Rows(*results), (Texts{"shoes 5/2/4"}));  // what was done on the site is known of two visits
    ASSERT_EQ(results->DistSE.cells.OfRow(1).size(), 1U);
    EXPECT_EQ(results->DistSE.cells.OfRow(1)[0].count, 5);
    EXPECT_EQ(results->table.STs[0], "");
    EXPECT_EQ(results->table.Visitors[0], 0);

    request.threshold = 1;
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"shoes 5/5/10", "rare 3/0/0"}));
    request.threshold.reset();  // the stored key, 4
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"shoes 5/2/4"}));
}

TEST(CVNA_VisitsAnalyse, TellsValuesApartByTheirExactText) {
    TestSite s;
    for (const char* term : {"a|b", "ab", "a|b", "Ab"}) s.Visit({.term = term, .engine = "G", .pages = {"x.htm"}});
    EXPECT_EQ(Rows(*s.Analyse(s.Request(kTerm))), (Texts{"a|b 2/0/0", "ab 1/0/0", "Ab 1/0/0"}));
}

TEST(CVNA_VisitsAnalyse, TakesTermsAndStartsOfOneJoinedTextForOneValue) {
    TestSite s;
    const auto visit = [&s](const char* term, const char* page) {
        s.Visit({.term = term, .engine = *term != 0 ? "G" : "", .pages = {page}});
    };
    for (int round = 0; round < 2; ++round) {
        visit("x", "b.htm");
        visit("x - a", "b.htm");
        visit("x", "a - b.htm");
        visit("x -", "y.htm");
        visit("x", "- y.htm");
        visit("", "b.htm");
    }
    AnalysisRequest request = s.Request(kTermAndStart);
    request.options.SepQuery = request.options.SepFrag = true;  // names as they are stored
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"x - b.htm 2/0/0", "x - a - b.htm 4/0/0", "x - - y.htm 4/0/0",
                                                " .. NOT SEARCH ENGINE ..  - b.htm 2/0/0"}));
    request.threshold = 4;
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"x - a - b.htm 4/0/0", "x - - y.htm 4/0/0"}));
}

// One visit of every odd kind, and what each field makes of it.
TEST(CVNA_VisitsAnalyse, TakesTheValuesOfItsFieldFromAVisit) {
    const TestSite::V walk{
        .term = "red shoes", .engine = "G", .pages = {"x/a.htm", "b.htm", "x/c.htm?q=1", "x/c.htm?q=2"}};
    const TestSite::V fromRoot{.pages = {"/", "b.htm", "/", "y/data.xyz"}};
    const TestSite::V skippedStart{.engine = "B", .pages = {"logo.gif", "p/late.htm", "b.htm"}};
    const TestSite::V onlySkipped{.pages = {"logo.gif", "site.css"}};
    const struct {
        int field;
        const TestSite::V* visit;
        Texts rows;
    } cases[] = {
        {kTerm, &walk, {"red shoes 1/1/3"}},  // each page number counts, also where two share a name
        {kTerm, &fromRoot, {" .. NOT SEARCH ENGINE ..  1/1/1"}},
        {kTerm, &skippedStart, {" .. NOT SEARCH ENGINE ..  1/1/1"}},
        {kTerm, &onlySkipped, {" .. NOT SEARCH ENGINE ..  1/0/0"}},
        {kStartPage, &walk, {"/x/a.htm 1/1/3"}},
        {kStartPage, &fromRoot, {"ROOT 1/1/1"}},
        {kStartPage, &skippedStart, {"/p/late.htm 1/1/1"}},
        {kStartPage, &onlySkipped, {"No pages requested of selected types 1/0/0"}},
        {kTermAndStart, &walk, {"red shoes - /x/a.htm 1/1/3"}},
        {kExitPage, &walk, {"/x/c.htm 1/1/3"}},
        {kExitPage, &fromRoot, {"/y/data.xyz 1/1/1"}},
        {kExitPage, &onlySkipped, {"No pages requested of selected types 1/0/0"}},
        {kTrack, &walk, {"/x/a.htm\r\n/b.htm\r\n/x/c.htm\r\n 1/1/3"}},
        {kTrack, &skippedStart, {"/p/late.htm\r\n/b.htm\r\n 1/1/1"}},
        {kTrack, &onlySkipped, {"Only Skipped File Types 1/0/0"}},
        {kPage, &walk, {"/x/a.htm 1/1/3", "/b.htm 1/1/3", "/x/c.htm 1/1/3"}},
        {kPage, &onlySkipped, {}},
        {kDir, &walk, {"/x/ 1/1/3", "/ 1/1/3"}},
        {kDir, &fromRoot, {"/ 1/1/1", "/y/ 1/1/1"}},
        {kReferrer, &walk, {"G 1/1/3"}},
        {kReferrer, &fromRoot, {"UNKNOWN referrer 1/1/1"}},
        {kEngine, &walk, {"G 1/1/3"}},
        {kEngine, &fromRoot, {" .. NOT SEARCH ENGINE ..  1/1/1"}},
        {kWordsAndPhrases, &walk, {"red 1/1/3", "shoes 1/1/3", "red shoes 1/1/3"}},
        {kWords, &fromRoot, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.field) + " " + c.visit->pages[0]);
        TestSite s;
        s.Visit(*c.visit);
        EXPECT_EQ(Rows(*s.Analyse(s.Request(c.field))), c.rows);
    }
}

TEST(CVNA_VisitsAnalyse, CountsAVisitOncePerPageThatTwoNumbersShare) {
    TestSite s;
    s.Visit({.pages = {"a.htm?x=1", "a.htm?x=2", "b.htm"}});
    AnalysisRequest request = s.Request(kPage);
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"/a.htm 1/1/2", "/b.htm 1/1/2"}));
    request.options.SepQuery = true;  // the file type of a shown query is "htm?x=2", which is none that counts
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"/a.htm?x=1 1/1/1", "/a.htm?x=2 1/1/1", "/b.htm 1/1/1"}));
    request.options.SepFrag = true;  // both parts kept: names as they are stored
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"a.htm?x=1 1/1/1", "a.htm?x=2 1/1/1", "b.htm 1/1/1"}));
}

std::string Cross(const CrossTable& table, std::uint32_t row) {
    std::string text;
    std::vector<CrossCell> cells(table.cells.OfRow(row).begin(), table.cells.OfRow(row).end());
    std::ranges::sort(cells, {}, &CrossCell::column);
    for (const CrossCell& cell : cells)
        text += std::string(table.second.Text(cell.column)) + "=" + std::to_string(cell.count) + ";";
    return text;
}

TEST(CVNA_VisitsAnalyse, CollectsDistributionsAndClickThrough) {
    TestSite s;
    s.Visit({.stamp = 20260105000001, .term = "t", .engine = "G", .pages = {"a.htm", "b.htm", "c.htm"}});
    s.Visit({.stamp = 20260105000002, .pages = {"b.htm", "c.htm"}});
    AnalysisRequest request = s.Request(kExitPage);
    request.options.ShowDist1 = request.options.ShowDist2 = request.options.ShowClickThru = true;
    auto results = s.Analyse(request);
    EXPECT_EQ(Rows(*results), (Texts{"/c.htm 2/2/3"}));
    EXPECT_EQ(Cross(results->DistSE, 1), "G=1; .. NOT SEARCH ENGINE .. =1;");
    EXPECT_EQ(Cross(results->DistAlternate, 1), "t=1; .. NOT SEARCH ENGINE .. =1;");
    EXPECT_EQ(Cross(results->DistClickThru, 1), "/b.htm=2;/a.htm=1;");  // what led to the exit

    request.field = kEngine;
    results = s.Analyse(request);
    EXPECT_EQ(Cross(results->DistSE, 1), "t=1;");
    EXPECT_EQ(Cross(results->DistAlternate, 1), "/a.htm=1;");
    EXPECT_EQ(Cross(results->DistClickThru, 1), "/b.htm=1;/c.htm=1;");

    request.field = kTermAndStart;  // has no alternate
    EXPECT_EQ(Cross(s.Analyse(request)->DistAlternate, 1), "");

    request.field = kPage;
    s.user.WillPress(1);
    EXPECT_FALSE(s.Analyse(request)->options.ShowClickThru);
    EXPECT_EQ(s.user.asked.size(), 1U);
}

std::string Series(const SrchTrmData& results, std::uint32_t row) {
    std::map<std::int32_t, DayCounts> days;
    results.table.days.ForEach(
        row, [&](std::int32_t day, const DayCounts& counts) { EXPECT_TRUE(days.emplace(day, counts).second) << day; });
    std::string text;
    for (const auto& [day, counts] : days)
        text += std::to_string(day) + ":" + std::to_string(counts.visitors) + "/" + std::to_string(counts.stayed) +
                "/" + std::to_string(counts.targets[0]) + " ";
    return text;
}

// Words come up one after the other, some through another term than the one that brought them first.
TEST(CVNA_VisitsAnalyse, CountsEachValueOfATermFromItsOwnThresholdOn) {
    TestSite s;
    s.Visit({.stamp = 20260105100000, .term = "red shoes", .engine = "G", .pages = {"a.htm", "b.htm"}});
    s.Visit({.stamp = 20260105110000, .term = "red hat", .engine = "G", .pages = {"a.htm"}});
    s.Visit({.stamp = 20260106100000, .term = "red shoes", .engine = "G", .pages = {"a.htm", "b.htm"}});
    s.Visit({.stamp = 20260106110000, .term = "red shoes", .engine = "G", .pages = {"a.htm"}});
    s.Visit({.stamp = 20260107100000, .term = "red hat", .engine = "G", .pages = {"a.htm", "b.htm", "c.htm"}});
    s.Put("LstTgts", "C : x");
    Tgt_WriteSection(s.ini, "Target 1", {"", kAny, 0, {{logdefs::kContains, "b.htm", false}}}, s.site->Paths().targets);
    AnalysisRequest request = s.Request(kWords);
    request.options.ShowDist1 = request.options.ShowClickThru = request.AnalTgt = true;
    request.threshold = 2;
    const auto results = s.Analyse(request);
    EXPECT_EQ(Rows(*results), (Texts{"red 5/2/3", "shoes 3/1/1", "hat 2/1/2"}));
    EXPECT_EQ(results->table.TargetCnt[0], (std::vector<std::int32_t>{0, 2, 1, 1}));
    const struct {
        const char *terms, *further, *days;
    } rows[] = {
        {"red hat=3;red shoes=2;", "/b.htm=2;/c.htm=1;", "0:2/0/0 1:2/1/1 2:1/1/1 "},
        {"red shoes=3;", "/b.htm=2;", "1:3/1/1 "},
        {"red hat=2;", "/b.htm=2;/c.htm=2;", "2:2/1/1 "},
    };
    for (std::uint32_t row = 1; row <= std::size(rows); ++row) {
        EXPECT_EQ(Cross(results->DistSE, row), rows[row - 1].terms);
        EXPECT_EQ(Cross(results->DistClickThru, row), rows[row - 1].further);
        EXPECT_EQ(Series(*results, row), rows[row - 1].days);
    }
}

// What is remembered of terms is bounded; what is counted goes on where it was.
TEST(CVNA_VisitsAnalyse, CountsOnAfterMoreWordsThanItRemembers) {
    TestSite s;
    sitedb::Transaction all(s.site->Db());
    int last = 100000;
    for (int round = 0; round < 3; ++round) {
        s.Visit({.term = "red shoes", .engine = "G", .pages = {"a.htm", "b.htm"}});
        for (int visit = 0; visit < 2400; ++visit) {
            std::string flood;
            for (int word = 0; word < 35; ++word) flood += std::to_string(++last) + " ";
            s.Visit({.term = flood, .engine = "G", .pages = {"a.htm"}});
        }
    }
    all.Commit();
    AnalysisRequest request = s.Request(kWordsAndPhrases);
    request.options.ShowDist1 = true;
    request.threshold = 2;
    const auto results = s.Analyse(request);
    EXPECT_EQ(Rows(*results), (Texts{"red 3/2/2", "shoes 3/2/2", "red shoes 3/2/2"}));
    EXPECT_EQ(Cross(results->DistSE, 1), "red shoes=3;");
}

TEST(CVNA_VisitsAnalyse, LimitsVisitsByTermDateAndArea) {
    TestSite s;
    s.Visit({.stamp = 20260104235959, .term = "early", .engine = "G", .pages = {"a.htm"}});
    s.Visit({.stamp = 20260105000000, .term = "in", .engine = "G", .pages = {"a.htm", "shop/buy.htm"}});
    s.Visit({.stamp = 20260106235959, .pages = {"/"}, .end = 20260107001000});
    AnalysisRequest request = s.Request(kTerm);
    s.ini.IniPut("SiteAreas", "Shop", "/shop/buy.htm|/nowhere.htm", s.site->Paths().siteAreas);
    s.ini.IniPut("SiteAreas", "Front", "/", s.site->Paths().siteAreas);

    request.ShowNotSEitem = false;
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"early 1/0/0", "in 1/1/1"}));
    request.ShowNotSEitem = true;
    request.options.dates = {core::ParseIsoDate("2026-01-05"), core::ParseIsoDate("2026-01-06")};
    const auto results = s.Analyse(request);
    EXPECT_EQ(Rows(*results), (Texts{"in 1/1/1", " .. NOT SEARCH ENGINE ..  1/0/0"}));
    EXPECT_EQ(results->visits, 2);
    EXPECT_EQ(results->days.Text(0) + "-" + results->days.Text(results->days.count - 1), "05 Jan 2026-06 Jan 2026");
    request.siteArea = "Shop";
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{"in 1/1/1"}));
    request.siteArea = "Front";  // the root enters no click list, but a visit can start there
    EXPECT_EQ(Rows(*s.Analyse(request)), (Texts{" .. NOT SEARCH ENGINE ..  1/0/0"}));

    request.options.dates = {core::ParseIsoDate("2027-01-01"), std::nullopt};
    s.user.WillPress(1);
    const AnalysisOutcome none = CVNA_VisitsAnalyse(s.env, *s.site, request);
    EXPECT_FALSE(none.results);
    EXPECT_EQ(none.messages.size(), 1U);
}

TEST(CVNA_VisitsAnalyse, ReadsOverflowedClickListsAndKeepsTheSeriesByDay) {
    TestSite s;
    std::vector<std::string> many;
    for (int i = 0; i < 200; ++i) many.push_back("p" + std::to_string(i) + ".htm");
    s.Visit({.stamp = 20260101100000, .term = "t", .engine = "G", .pages = many});
    s.Visit({.stamp = 20260103100000, .term = "t", .engine = "G", .pages = {"a.htm"}});
    s.Visit({.stamp = 20260103240000, .term = "t", .engine = "G", .pages = {"a.htm"}, .end = 20260105000000});
    const auto results = s.Analyse(s.Request(kTerm));
    EXPECT_EQ(Rows(*results), (Texts{"t 3/1/199"}));
    EXPECT_EQ(Series(*results, 1), "0:1/1/0 2:1/0/0 3:1/0/0 ");  // 24:00:00 lies in the next day
}

TEST(CVNA_VisitsAnalyse, CountsTheWordsOfTerms) {
    TestSite s;
    s.Visit({.term = "\"Red shoes\"  red+shoes", .engine = "G", .pages = {"a.htm"}});
    AnalysisRequest request = s.Request(kTerm);
    request.WordListsOn = true;
    const auto results = s.Analyse(request);
    std::string words;
    for (std::uint32_t i = 0; i < results->words.STs.Size(); ++i)
        words += std::string(results->words.STs.Text(i)) + "=" + std::to_string(results->words.Visitors[i]) + ";";
    EXPECT_EQ(words, "Red=1;shoes=2;red=1;");
}

TEST(CVNA_VisitsAnalyse, StopsWithoutResultsAndTakesTheProgressDown) {
    TestSite s;
    s.Visit({.term = "t", .engine = "G", .pages = {"a.htm"}});
    for (int step = 1; step <= 7; ++step) {
        s.progress.steps = 0;
        s.progress.stopAtStep = step;
        const AnalysisOutcome outcome = CVNA_VisitsAnalyse(s.env, *s.site, s.Request(kTerm));
        EXPECT_TRUE(outcome.stopped) << step;
        EXPECT_FALSE(outcome.results);
        EXPECT_EQ(s.progress.open, 0);
    }
}

TEST(Visit_RefrLabel, TakesTheFirstOutsideHostOfTheLines) {
    TestSite s;
    s.Visit({.pages = {"a.htm"}});
    sitedb::Statement add = s.site->Db().Prepare(
        "INSERT INTO logline (LogLnID, VisitID, PageID, Timestamp, Referrer) VALUES (?, 1, 1, ?, ?)");
    const struct {
        int id;
        std::int64_t stamp;
        const char* referrer;
    } lines[] = {
        {1, 20260105120005, "http://late.example/"},
        {2, 20260105120000, "-"},
        {3, 20260105120000, "https://Referrer.invalid/x"},
        {4, 20260105120001, "https://www.Forum.example:8080/t?x=http://no.example/"},
    };
    for (const auto& line : lines)
        add.Bind(1, std::int64_t{line.id}).Bind(2, line.stamp).Bind(3, std::string_view(line.referrer)).Run();
    EXPECT_EQ(Rows(*s.Analyse(s.Request(kReferrer))), (Texts{"Forum.example:8080 1/0/0"}));
    s.site->Db().Exec("UPDATE visit SET NONSERefr='a-*-b'");
    EXPECT_EQ(Rows(*s.Analyse(s.Request(kReferrer))), (Texts{"a|b 1/0/0"}));
}

}  // namespace
}  // namespace analysis
