#include <gtest/gtest.h>

#include "tests/support/tempsite.h"
#include "visits/assignments.h"
#include "visits/finder.h"
#include "visits/visitsadd.h"

namespace visits {
namespace {

using testsupport::TempSite;

const logdefs::SearchEngines& Engines() {
    static const logdefs::SearchEngines engines({"http://*.finder.test/* ?q", "http://*.other.test/* ?q"});
    return engines;
}

std::string Finder(const std::string& term) { return "http://www.finder.test/s?q=" + term; }

// Stored lines as a read leaves them, put straight into the tables.
struct VisitSite : TempSite {
    explicit VisitSite(sitedb::SiteOptions options = Plain()) : TempSite(std::move(options)) {
        site->Db().Exec("INSERT INTO page VALUES (1,'p1'),(2,'p2'),(3,'p3')");
        site->Pages().Load(site->Db());
    }

    void Line(int id, const std::string& ip, int hour, int minute, int second, const std::string& referrer = "-",
              int page = 1, int bytes = 10, int dupes = 0) {
        const std::int64_t stamp = 20090302000000 + hour * 10000 + minute * 100 + second;
        sitedb::Statement insert = site->Db().Prepare(
            "INSERT INTO logline (LogLnID, IP, Timestamp, PageID, Bytes, CntDupes, Referrer) VALUES (?,?,?,?,?,?,?)");
        insert.Bind(1, std::int64_t{id}).Bind(2, std::string_view(ip)).Bind(3, stamp).Bind(4, std::int64_t{page});
        insert.Bind(5, std::int64_t{bytes}).Bind(6, std::int64_t{dupes}).Bind(7, std::string_view(referrer)).Run();
    }

    VisitsOutcome Build() {
        const VisitsOutcome outcome = VisitsAdd(env, *site, Engines());
        EXPECT_TRUE(outcome.done) << outcome.error;
        return outcome;
    }
    std::vector<std::string> LineVisits() { return Rows("SELECT LogLnID, VisitID FROM logline ORDER BY 1", 2); }
    std::vector<std::string> Visits(const std::string& columns, int count) {
        return Rows("SELECT " + columns + " FROM visit ORDER BY VisitID", count);
    }
};

using Lines = std::vector<std::string>;

TEST(VisitsAdd, ATimeOutOfTwoHoursPartsVisits) {
    VisitSite site;
    site.Line(1, "a", 8, 0, 0);
    site.Line(2, "a", 10, 0, 0);  // 7200 seconds
    site.Line(3, "b", 8, 0, 0);
    site.Line(4, "b", 10, 0, 1);  // 7201
    site.Build();
    EXPECT_EQ(site.LineVisits(), (Lines{"1|0", "2|0", "3|1", "4|2"}));
    EXPECT_EQ(
        site.Visits("Files, StartTimeStamp, EndTimeStamp, FirstIP, CDSIPs, SearchTerm, StzdSearchTerm, SearchEngine",
                    8)[0],
        "2|20090302080000.0|20090302100000.0|a|a|NULL|NULL|NULL");
}

TEST(VisitsAdd, LinesComeByTheTextOfAddressAndNumber) {
    // Number 10 stands before number 9, so the later line makes the visit and the earlier one becomes its start.
    VisitSite site;
    site.Line(9, "a", 8, 0, 0, "-", 1);
    site.Line(10, "a", 8, 5, 0, "-", 2);
    site.Build();
    EXPECT_EQ(site.Visits("VisitID, StartLogLnID, StartPageID, CDSClickFurtherPageIDs", 4), (Lines{"0|9|1|1|2"}));

    // "1.1" + "12" stands between "1.1" + "11" and "1.1" + "2": here the lines of 1.1 and 1.11 are interleaved, and the
    // numbers of their visits go with it.
    VisitSite mixed;
    mixed.Line(5, "1.11", 8, 0, 0);
    mixed.Line(11, "1.1", 8, 0, 0);
    mixed.Line(16, "1.1", 12, 0, 0);
    mixed.Build();  // 1.111 (1.1, 11), 1.1 15 = "1.115" (1.11, 5), "1.116" (1.1, 16)
    EXPECT_EQ(mixed.Visits("VisitID, FirstIP, StartTimeStamp", 3),
              (Lines{"0|1.1|20090302080000.0", "1|1.11|20090302080000.0", "2|1.1|20090302120000.0"}));
}

TEST(VisitsAdd, AVisitIsFoundAgainAfterAnotherAddressCameBetween) {
    VisitSite site;
    site.Line(11, "1.1", 8, 0, 0);
    site.Line(5, "1.11", 8, 0, 0);
    site.Line(16, "1.1", 8, 30, 0);
    site.Build();
    EXPECT_EQ(site.LineVisits(), (Lines{"5|1", "11|0", "16|0"}));
}

TEST(VisitsAdd, AThirdHourOfALongVisitIsMeasuredFromItsStart) {
    VisitSite site;
    site.Line(1, "a", 8, 0, 0);
    site.Line(2, "a", 9, 30, 0);
    site.Line(3, "a", 11, 0, 0);
    site.Line(4, "a", 12, 0, 0);
    site.Line(5, "a", 10, 30, 0);  // inside, but more than two hours from the start
    site.Build();
    EXPECT_EQ(site.LineVisits(), (Lines{"1|0", "2|0", "3|0", "4|0", "5|1"}));
}

TEST(VisitsAdd, ATermIsComparedBeforeItIsStandardised) {
    VisitSite site;
    site.Line(1, "a", 8, 0, 0, Finder("shoes"));
    site.Line(2, "a", 8, 1, 0, Finder("shoes"));      // equal: the same visit
    site.Line(3, "a", 8, 2, 0, Finder("Red+Shoes"));  // another term
    site.Line(4, "a", 8, 3, 0, Finder("Red+Shoes"));  // standardised "red shoes" is not "Red+Shoes"
    site.Line(5, "a", 8, 4, 0, Finder("shoes"));      // the first visit again
    site.Line(6, "a", 8, 5, 0, "http://www.other.test/s?q=shoes");
    site.Line(7, "a", 8, 6, 0, "-");  // a click stays with the visit at hand
    const VisitsOutcome outcome = site.Build();
    EXPECT_EQ(site.LineVisits(), (Lines{"1|0", "2|0", "3|1", "4|2", "5|0", "6|3", "7|3"}));
    EXPECT_EQ(site.Visits("SearchTerm, StzdSearchTerm, SearchEngine", 3),
              (Lines{"NULL|shoes|FINDER", "NULL|red shoes|FINDER", "NULL|red shoes|FINDER", "NULL|shoes|OTHER"}));
    EXPECT_EQ(outcome.foundTerms.at("FINDER|20090302"), 5);
}

TEST(VisitsAdd, ATermJoinsAVisitThatHasNone) {
    VisitSite site;
    site.Line(1, "a", 8, 0, 0);
    site.Line(2, "a", 8, 1, 0, Finder("x+"));
    site.Line(3, "a", 8, 2, 0, Finder("+++"));  // standardises to nothing and is written nowhere
    site.Build();
    EXPECT_EQ(site.Visits("Files, SearchTerm, StzdSearchTerm", 3), (Lines{"2|x |x", "1|NULL|NULL"}));
}

TEST(VisitsAdd, AnAssistantIsCountedAndItsVisitHasNoTerm) {
    VisitSite site(TempSite::Plain());
    site.Line(1, "a", 8, 0, 0, "https://chat.test/");
    site.Line(2, "a", 8, 1, 0, "-");
    site.Line(3, "b", 8, 0, 0, Finder("x"));
    site.Line(4, "b", 8, 1, 0, "https://chat.test/c");  // the visit keeps its engine
    site.Line(5, "c", 8, 0, 0, "http://www.finder.test/");
    const logdefs::SearchEngines engines({"http://*.finder.test/* ?q", "http://chat.test/*"});
    const VisitsOutcome outcome = VisitsAdd(site.env, *site.site, engines);
    EXPECT_TRUE(outcome.done) << outcome.error;
    EXPECT_EQ(site.Visits("FirstIP, Files, StzdSearchTerm, SearchEngine", 4),
              (Lines{"a|2|NULL|NULL", "b|2|x|FINDER", "c|1|NULL|NULL"}));
    EXPECT_EQ(outcome.foundTerms, (std::map<std::string, std::int64_t>{{"CHAT|20090302", 2}, {"FINDER|20090302", 1}}));
}

TEST(VisitsAdd, StopsStoringAtTheLimitAndGoesOnCounting) {
    sitedb::SiteOptions options = TempSite::Plain();
    VisitSite site(options);
    site.ini.IniPut("Main", "LmtVisitLines", "3", site.site->Paths().dbdef);
    site.Reopen();
    for (int i = 1; i <= 5; ++i) site.Line(i, "a", 8, i, 0, "-", i % 3 + 1);
    const VisitsOutcome outcome = site.Build();
    EXPECT_EQ(site.LineVisits(), (Lines{"1|0", "2|0", "3|0"}));
    EXPECT_EQ(site.Visits("Files, EndTimeStamp, CDSClickFurtherPageIDs", 3), (Lines{"5|20090302080500.0|2|3|1"}));
    EXPECT_EQ(outcome.linesIgnored, 2);
    ASSERT_EQ(outcome.messages.size(), 2U);
    EXPECT_EQ(outcome.messages[0],
              "Probable Bot. Single visitor accessed more than 3 files. Only first 3 log lines saved for that visit. "
              "Visit at: 20090302080100");
}

TEST(VisitsAdd, ALaterReadContinuesAnEarlierVisit) {
    VisitSite site;
    site.Line(1, "a", 8, 0, 0, "-", 2, 100);
    site.Build();
    site.Line(2, "a", 7, 58, 20, "-", 3, 7);  // 100 seconds before its start
    site.Line(3, "a", 9, 0, 0, "-", 2, 5, 1);
    const VisitsOutcome outcome = site.Build();
    EXPECT_EQ(outcome.visitsContinued, 1);
    EXPECT_EQ(site.Visits("VisitID, StartLogLnID, StartPageID, StartTimeStamp, EndTimeStamp, Files, "
                          "CDSClickFurtherPageIDs, CDSBytesClickFurtherPageIDs",
                          8),
              (Lines{"0|2|3|20090302075820.0|20090302090000.0|3|3|2|7|110"}));
}

TEST(VisitsAdd, ErasesVisitsWithoutATermWhereTheSiteKeepsNone) {
    sitedb::SiteOptions options = TempSite::Plain();
    options.EraseNonSE = true;
    VisitSite site(options);
    site.Line(1, "a", 8, 0, 0);
    site.Line(2, "b", 8, 0, 0, Finder("x"));
    EXPECT_EQ(site.Build().visitsErased, 1);
    EXPECT_EQ(site.LineVisits(), (Lines{"2|1"}));
    EXPECT_EQ(site.Visits("VisitID", 1), (Lines{"1"}));
}

TEST(VisitsAdd, AStopLeavesEverythingWaiting) {
    VisitSite site;
    sitedb::Transaction all(site.site->Db());
    for (int i = 0; i < 2000; ++i) site.Line(i, "a" + std::to_string(i), 8, 0, 0);
    all.Commit();
    site.ini.IniPut("Main", "AddedLogLns_MustDoVisitsAdd", "2009-03-02 08:00:00", site.site->Paths().lastVals);
    site.progress.stopAtStep = site.progress.steps + 1;
    const VisitsOutcome stopped = VisitsAdd(site.env, *site.site, Engines());
    EXPECT_TRUE(stopped.cancelled && !stopped.done);
    EXPECT_EQ(site.site->WaitingLines(), 2000);
    EXPECT_TRUE(site.Visits("VisitID", 1).empty());
    EXPECT_FALSE(site.site->UnfinishedAdd(site.env).empty());
    site.progress.stopAtStep = -1;
    EXPECT_EQ(site.Build().visitsMade, 2000);
    EXPECT_TRUE(site.site->UnfinishedAdd(site.env).empty());
}

TEST(VisitsAdd, TheReferrerOfASiteWithoutExtraDataWaitsWhole) {
    sitedb::SiteOptions options = TempSite::Plain();
    options.LastKeepVal = false;
    TempSite site(options);
    site.site->Db().Exec(
        "INSERT INTO logline (LogLnID, IP, Timestamp, PageID, Bytes) VALUES (1,'a',20090302080000,0,1),"
        "(2,'b',20090302080000,0,1)");
    sitedb::Statement wait = site.site->Db().Prepare("INSERT INTO referrerwait VALUES (?,?)");
    const std::string referrer = "http://www.finder.test/s?" + std::string(400, 'x') + "&q=term";
    wait.Bind(1, std::int64_t{1}).Bind(2, std::string_view(referrer)).Run();
    wait.Bind(1, std::int64_t{2}).Bind(2, std::string_view("::::")).Run();
    wait = sitedb::Statement();
    EXPECT_TRUE(VisitsAdd(site.env, *site.site, Engines()).done);
    EXPECT_EQ(site.Rows("SELECT StzdSearchTerm FROM visit ORDER BY VisitID", 1), (Lines{"term", "NULL"}));
    EXPECT_EQ(site.Rows("SELECT count(*) FROM referrerwait", 1)[0], "0");
}

TEST(Assignments, ComeBackByLineFromMemoryAndFromRuns) {
    const testsupport::TempFolder folder;
    for (const std::size_t room : {std::size_t{1}, std::size_t{7}, std::size_t{100000}}) {
        Assignments assignments(folder.Path(), room);
        for (int i = 0; i < 20000; ++i) assignments.Add({static_cast<std::int32_t>(i * 7919LL % 20000), i});
        Assignment next;
        int line = 0;
        while (assignments.Next(next)) ASSERT_EQ(next.line, line++);
        EXPECT_EQ(line, 20000);
        if (room == 1) break;  // 20,000 runs of one
    }
    EXPECT_EQ(folder.Count(), 0U);
}

TEST(VisitFinder, GivesTheLowestNumberThatALineCanJoin) {
    std::vector<std::unique_ptr<OpenVisit>> visits;
    VisitFinder finder;
    const auto add = [&](std::int64_t start, std::int64_t end, const char* term) {
        visits.push_back(std::make_unique<OpenVisit>());
        visits.back()->startSeconds = start;
        visits.back()->endSeconds = end;
        if (*term != '\0') visits.back()->row.StzdSearchTerm = term;
        finder.Put(*visits.back(), visits.size() - 1);
    };
    add(100000, 100000, "x");
    add(90000, 130000, "");  // ends too late for the window
    add(100000, 101000, "");
    EXPECT_EQ(finder.Find(visits, "", "", 103000), 0U);
    EXPECT_EQ(finder.Find(visits, "y", "", 103000), 2U);
    EXPECT_EQ(finder.Find(visits, "x", "", 103000), 0U);
    EXPECT_EQ(finder.Find(visits, "x", "E", 103000), 2U);
    EXPECT_EQ(finder.Find(visits, "", "", 92800), 0U);
    EXPECT_EQ(finder.Find(visits, "", "", 92799), VisitFinder::npos);
    visits[0]->startSeconds = visits[0]->endSeconds = 50000;  // a visit whose start has moved
    finder.Put(*visits[0], 0);
    EXPECT_EQ(finder.Find(visits, "", "", 103000), 2U);
    EXPECT_EQ(finder.Find(visits, "", "", 51000), 0U);
}

}  // namespace
}  // namespace visits
