#include <gtest/gtest.h>

#include "sitedb/loglines.h"
#include "sitedb/visitrows.h"
#include "tests/support/tempsite.h"

namespace sitedb {
namespace {

using testsupport::TempSite;

TEST(LogLn_Fill, CutsAndClamps) {
    logdefs::LogLnFields fields;
    const std::string longText(300, 'x');
    fields.Set(logdefs::kIP, std::string_view(longText).substr(0, 49));
    fields.Set(logdefs::kQuery, std::string_view(longText).substr(0, 198));
    fields.Set(logdefs::kReferrer, longText);
    fields.Set(logdefs::kBytes, "3000000000");
    fields.Set(logdefs::kNumIP, "-3000000000");
    fields.Set(logdefs::kProcTime, "12.5");
    LogLnRecord record;
    LogLn_Fill(record, fields, 20090101000000, true);
    EXPECT_EQ(record.IP, longText.substr(0, 48) + "..");
    EXPECT_EQ(record.texts[1].size(), 198U);  // 200 less the mark fits
    EXPECT_EQ(record.texts[kReferrerColumn], longText.substr(0, 251) + "..");
    EXPECT_TRUE(record.referrerCut);
    EXPECT_EQ(record.Bytes, 2147483647);
    EXPECT_EQ(record.numIP, -2147483647);
    EXPECT_EQ(record.ProcTimeMicroSecs, 12);  // half to even
}

TEST(Visit_ListClicks, GivesTheBytesOfDuplicatesToThePageBefore) {
    EXPECT_EQ(Visit_ListClicks({}).pages, "");
    // Time, line, page, bytes, duplicates. The root's duplicates before any page are dropped.
    const Clicks clicks = Visit_ListClicks(
        {{1, 1, 0, 10, 5}, {2, 2, 7, 100, 0}, {3, 3, 0, 10, 2}, {4, 4, 8, 50, 1}, {5, 5, 7, 1, 0}, {6, 6, 0, 3, 1}});
    EXPECT_EQ(clicks.pages, "7|8");
    EXPECT_EQ(clicks.bytes, std::to_string(100 + 20 + 1 + 3) + "|" + std::to_string(50 + 50));
}

TEST(VisitPg_Store, KeepsPairsTogetherInRowsOf253) {
    TempSite home;
    Database& db = home.site->Db();
    VisitStore store(db);
    Clicks clicks;
    for (int page = 1000; page < 1051; ++page) {  // 51 items of 4: 254 with their bars
        clicks.pages += (page > 1000 ? "|" : "") + std::to_string(page);
        clicks.bytes += (page > 1000 ? "|" : "") + std::to_string(page % 10);
    }
    ASSERT_EQ(clicks.pages.size(), 254U);
    VisitRow row;
    row.VisitID = 0;
    store.Insert(row, clicks);
    EXPECT_EQ(home.Rows("SELECT CDSClickFurtherPageIDs, CDSBytesClickFurtherPageIDs FROM visit", 2)[0], "|||");
    const auto parts =
        home.Rows("SELECT length(CDSClickFurtherPageIDs), length(CDSBytesClickFurtherPageIDs) FROM visitpages", 2);
    EXPECT_EQ(parts, (std::vector<std::string>{"249|99", "4|1"}));
    const auto read = VisitPages(db).VisitPg_Read(0);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->pages, clicks.pages);
    EXPECT_EQ(read->bytes, clicks.bytes);

    clicks.pages.resize(253);  // one less stays in the row; the old overflow rows are not looked at again
    row.VisitID = 1;
    store.Insert(row, clicks);
    EXPECT_EQ(home.Rows("SELECT length(CDSClickFurtherPageIDs) FROM visit WHERE VisitID=1", 1)[0], "253");
}

TEST(LogLnRaw_Add, StepsPastATakenNumber) {
    TempSite home;
    Database& db = home.site->Db();
    LogLines lines(db, {});
    lines.StartFrom(-1);
    const LogLnRecord record;
    EXPECT_EQ(lines.LogLnRaw_Add(record), 0);
    db.Exec("INSERT INTO logline (LogLnID) VALUES (1), (2)");
    EXPECT_EQ(lines.LogLnRaw_Add(record), 3);
    LogLines later(db, {});
    later.StartFrom(1);  // a generator that lags behind the table
    EXPECT_EQ(later.LogLnRaw_Add(record), 4);
}

}  // namespace
}  // namespace sitedb
