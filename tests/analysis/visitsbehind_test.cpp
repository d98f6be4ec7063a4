#include "analysis/visitsbehind.h"

#include "analysis/areas.h"
#include "analysis/fields.h"
#include "core/dates.h"
#include "tests/analysis/testsite.h"

namespace analysis {
namespace {

using testsupport::TestSite;

// Three terms, visits without one, two areas' pages, overflow of none; one visitor a second.
void Fill(TestSite& s) {
    for (int i = 0; i < 5; ++i)
        s.Visit({.stamp = 20260105120000 + i,
                 .term = "red shoes",
                 .engine = i % 2 == 0 ? "G" : "B",
                 .pages = {"shop/a.htm", "shop/b.htm?q=1", "shop/b.htm?q=2", "logo.gif"},
                 .end = 20260105120100 + i});
    s.Visits(4, {.stamp = 20260106120000, .term = "red boots red", .engine = "G", .pages = {"b.htm", "shop/a.htm"}});
    s.Visits(3, {.stamp = 20260107120000, .pages = {"/", "shop/a.htm", "c/d.htm"}});
    s.Visits(2, {.stamp = 20260108120000, .term = "rare", .engine = "G", .pages = {"shop/a.htm"}});
    s.Visits(6, {.stamp = 20260109120000, .term = "red shoes", .engine = "G", .pages = {"other.htm"}});
    s.Visits(3, {.stamp = 20260109130000, .pages = {"logo.gif"}});
}

// A list of visits that does not add up to the number in the report explains nothing.
TEST(FindVisitsBehind, FindsTheSightingsThatTheReportCounted) {
    TestSite s;
    s.Put("CDSNoCntSurfToFileTypes", "gif");
    Fill(s);
    ASSERT_TRUE(Area_Put(s.ini, s.site->Paths(), {"Shop", {"/shop/a.htm"}}));
    for (const int field : {kTerm, kStartPage, kTermAndStart, kExitPage, kTrack, kPage, kDir, kReferrer, kEngine,
                            kWordsAndPhrases, kWords}) {
        for (const bool limited : {false, true}) {
            for (const bool notSearch : {false, true}) {
                AnalysisRequest request = s.Request(field);
                request.threshold = 3;
                request.ShowNotSEitem = notSearch;
                request.options.dates.last = core::ParseIsoDate("2026-01-09");
                if (limited) request.siteArea = "Shop";
                const auto results = s.Analyse(request);
                ASSERT_TRUE(results);
                EXPECT_GT(results->table.UpperBound(), 0) << field;
                for (std::int32_t i = 1; i <= results->table.UpperBound(); ++i) {
                    const VisitsBehind found = FindVisitsBehind(s.env, *s.site, *results, std::span(&i, 1));
                    const auto at = static_cast<std::size_t>(i);
                    EXPECT_EQ(found.count, results->table.Visitors[at])
                        << field << " " << results->table.STs[at] << limited << notSearch;
                    EXPECT_EQ(found.visits.size(), static_cast<std::size_t>(found.count));
                }
            }
        }
    }
}

TEST(FindVisitsBehind, TellsWhatAVisitWas) {
    TestSite s;
    s.Put("CDSNoCntSurfToFileTypes", "gif");
    s.Put("CDSCntAsPageForAvgPages", "htm");
    Fill(s);
    s.site->Db().Exec("UPDATE visit SET FirstIP='192.0.2.1', SearchTerm='Red Shoes' WHERE VisitID=1");
    const auto results = s.Analyse(s.Request(kWords));
    const std::int32_t all[] = {0, 1, 2, 3, 4};  // red, shoes, boots, rare: a visit has several of them
    const VisitsBehind found = FindVisitsBehind(s.env, *s.site, *results, all, 7);
    EXPECT_EQ(found.count, 17);
    ASSERT_EQ(found.visits.size(), 7U);
    EXPECT_FALSE(found.stopped);
    const VisitFacts& first = found.visits[0];
    EXPECT_EQ(first.VisitID, 1);
    EXPECT_EQ(first.StartTimeStamp, 20260105120000);
    EXPECT_EQ(first.EndTimeStamp, 20260105120100);
    EXPECT_EQ(first.address + " " + first.term + " " + first.engine, "192.0.2.1 Red Shoes G");
    EXPECT_EQ(first.startPage, "/shop/a.htm");
    EXPECT_EQ(first.further, 2);
    EXPECT_EQ(found.visits[1].term, "red shoes");
    EXPECT_EQ(found.visits[1].engine, "B");
    EXPECT_TRUE(FindVisitsBehind(s.env, *s.site, *results, std::span(all, 1)).visits.empty());
}

TEST(FindVisitsBehind, AStopKeepsWhatWasFound) {
    TestSite s;
    s.Visits(1500, {.term = "x", .engine = "G", .pages = {"a.htm"}});
    const auto results = s.Analyse(s.Request(kTerm));
    s.progress.stopAtStep = s.progress.steps + 2;  // behind visit 1025
    const std::int32_t index = 1;
    const VisitsBehind found = FindVisitsBehind(s.env, *s.site, *results, std::span(&index, 1), 10);
    EXPECT_TRUE(found.stopped);
    EXPECT_EQ(found.count, 1025);
    EXPECT_EQ(found.visits.size(), 10U);
    EXPECT_EQ(s.progress.open, 0);
}

TEST(LinesOfVisit, StandInOrderOfTimeWithWhatIsKept) {
    TestSite s;
    const std::int32_t page = s.Page("a.htm");
    const auto add = [&](int id, std::int64_t stamp, int visit, const std::string& more) {
        s.site->Db().Exec(
            "INSERT INTO logline (LogLnID, VisitID, PageID, Bytes, CntDupes, Timestamp, IP, Referrer, "
            "Browser, HTTPStatus) VALUES (" +
            std::to_string(id) + "," + std::to_string(visit) + "," + std::to_string(page) + ",700,2," +
            std::to_string(stamp) + ",'192.0.2.1'," + more + ")");
    };
    add(1, 20260105120009, 7, "'-','Agent','404'");
    add(2, 20260105120001, 7, "'http://x/','Agent','200'");
    add(3, 20260105120001, 8, "'','',''");
    const std::vector<LineFacts> lines = LinesOfVisit(*s.site, 7);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].Timestamp, 20260105120001);
    EXPECT_EQ(lines[0].page + " " + lines[0].referrer + " " + lines[0].userAgent, "a.htm http://x/ Agent");
    EXPECT_EQ(lines[1].status, "404");
    EXPECT_EQ(lines[1].bytes, 700);
    EXPECT_EQ(lines[1].repeated, 2);
    EXPECT_TRUE(LinesOfVisit(*s.site, 9).empty());
}

}  // namespace
}  // namespace analysis
