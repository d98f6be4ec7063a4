#include <gtest/gtest.h>

#include "logread/probe.h"
#include "tests/logread/readsite.h"

namespace logread {
namespace {

using testsupport::Combined;
using testsupport::kCombinedSpec;
using testsupport::TempSite;

const std::string kA = Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a");
const std::string kB = Combined("1.1.1.2", "02/Mar/2009:08:00:01", "/b");

TEST(RawLog_AddData_ReadLogFiles, CountsEachLineWhereItBelongs) {
    ReadSite home;
    const ReadOutcome read = home.Read({kA + "garbage\n\n \t\r\n" + kB.substr(0, kB.size() - 1)});
    EXPECT_TRUE(read.ok);
    EXPECT_EQ(read.totals.AllLinesRead, 2);  // the last line needs no line feed; blank lines are no lines
    EXPECT_EQ(read.totals.AllLinesAdded, 2);
    EXPECT_EQ(read.totals.AllBytesRead, 200);
    EXPECT_EQ(home.Rows("SELECT LogLnID, PageID, IP, VisitID FROM logline ORDER BY 1", 4),
              (std::vector<std::string>{"0|2|1.1.1.1|NULL", "1|3|1.1.1.2|NULL"}));
    EXPECT_EQ(home.Rows("SELECT Filename FROM page ORDER BY PageID", 1)[0], ".. Page does not exist ..");
    ASSERT_EQ(read.problems.Files().size(), 1U);
    EXPECT_EQ(read.problems.Files()[0].texts[0],
              "Log Line Found cannot be matched for specified format. Line[s] Skipped.");
    EXPECT_FALSE(home.ini.IniGet("Main", "AddedLogLns_MustDoVisitsAdd", home.site->Paths().lastVals).empty());
}

TEST(RawLog_AddData_ReadLogFiles, ASecondReadOfTheSameFileStoresNothing) {
    ReadSite home;
    home.Read({kA + kB});
    const ReadOutcome again = home.Read({kA + kB});
    EXPECT_EQ(again.totals.AllLinesExist, 2);
    EXPECT_EQ(again.totals.AllLinesAdded, 0);
    EXPECT_EQ(home.Rows("SELECT sum(CntDupes) FROM logline", 1)[0], "0");
    // Once a file has added a line, further lines that exist are counted at the stored ones.
    const std::string newLine = Combined("1.1.1.3", "02/Mar/2009:08:00:01", "/c");
    const ReadOutcome more = home.Read({kA + newLine + kB + newLine});
    EXPECT_EQ(more.totals.AllLinesExist, 3);
    EXPECT_EQ(home.Rows("SELECT IP, CntDupes FROM logline ORDER BY LogLnID", 2),
              (std::vector<std::string>{"1.1.1.1|0", "1.1.1.2|1", "1.1.1.3|1"}));
}

TEST(RawLog_AddData_ReadLogFiles, ComparesWhatTheSiteStores) {
    for (const bool keep : {true, false}) {
        sitedb::SiteOptions options = TempSite::Plain();
        options.LastKeepVal = keep;
        ReadSite home(options);
        home.Read({Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a", "http://x/")});
        const ReadOutcome other = home.Read({Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a", "http://y/")});
        EXPECT_EQ(other.totals.AllLinesExist, keep ? 0 : 1);
    }
}

TEST(RawLog_AddData_ReadLogFiles, TestsStatusThenFiltersInTheirOrder) {
    sitedb::SiteOptions options = TempSite::Plain();
    options.Skip404 = true;
    ReadSite home(options);
    const auto filter = [](int field, const char* text) {
        logdefs::FltrRuleSet set;
        set.Active = true;
        set.Rules = {{logdefs::kContains, text}};
        set.FieldIdx = {field};
        set.oneField = true;
        return set;
    };
    ReadRequest request;
    request.filters.main = filter(logdefs::kFile, "x");
    request.filters.components = filter(logdefs::kFile, ".gif");
    request.filters.robots = filter(logdefs::kAgent, "bot");
    const auto line = [](const char* file, int status, const char* agent) {
        return Combined("1.1.1.1", "02/Mar/2009:08:00:00", file, "-", status, 10, agent);
    };
    const ReadOutcome read =
        home.Read({line("/x.gif", 404, "bot") + line("/x.gif", 200, "bot") + line("/a.gif", 200, "bot") +
                   line("/a", 200, "bot") + line("/a", 200, "browser") + line("/b", 600, "browser")},
                  std::move(request));
    EXPECT_EQ(read.totals.AllLinesRead, 6);
    EXPECT_EQ(read.totals.AllFiltered, 1);
    EXPECT_EQ(read.totals.AllComps, 1);
    EXPECT_EQ(read.totals.AllBots, 1);
    EXPECT_EQ(read.totals.AllLinesAdded, 2);  // the 404 is in no counter but LinesRead and BytesRead
    EXPECT_EQ(read.totals.AllBytesRead, 60);
}

TEST(RawLog_AddData_ReadLogFiles, AFileThatCannotBeReadDoesNotStopTheOthers) {
    ReadSite home;
    home.user.WillPressOk();  // the empty file's message
    const ReadOutcome read = home.Read({"", "\x1f\x8b\b junk", "PK\x03\x04 junk", kA});
    EXPECT_EQ(read.totals.AllLinesAdded, 1);
    ASSERT_EQ(read.errors.size(), 3U);
    EXPECT_NE(read.errors[1].find("damaged (gzip)"), std::string::npos);
    EXPECT_NE(read.errors[2].find("packed (zip)"), std::string::npos);
    EXPECT_TRUE(read.files[0].skipped && read.files[1].skipped && !read.files[3].skipped);
}

TEST(RawLog_AddData_ReadLogFiles, AStopKeepsTheLinesSoFar) {
    ReadSite home;
    ReadRequest request;
    request.files.push_back({home.folder.Write("log", kA + "garbage\n" + kB), "combined"});
    request.formatFile = home.Formats();
    home.user.WillCancel();
    const ReadOutcome read = RawLog_AddData_ReadLogFiles(home.env, *home.site, std::move(request));
    EXPECT_FALSE(read.ok);
    EXPECT_TRUE(read.files[0].stopped);
    EXPECT_EQ(home.Lines(), 1);
    EXPECT_EQ(home.user.ids[0], "LogLnInvalid");
    EXPECT_EQ(home.progress.open, 0);
}

TEST(RawLog_AddData_ReadLogFiles, GivesTheSameLinesForAnyChunkAndBatch) {
    std::string log;
    for (int i = 0; i < 300; ++i)
        log += Combined("1.1.1." + std::to_string(i % 7), "02/Mar/2009:08:00:00", "/p" + std::to_string(i % 11)) +
               (i % 50 == 0 ? "x\n" : "");
    std::vector<std::string> first;
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{7}, std::size_t{4096}, std::size_t{1} << 20}) {
        ReadSite home;
        ReadRequest request;
        request.chunk = chunk;
        request.batchLines = static_cast<std::int64_t>(chunk % 100 + 1);
        home.Read({log}, std::move(request));
        const auto rows = home.Rows("SELECT LogLnID, IP, PageID, Filename, Timestamp FROM logline ORDER BY 1", 5);
        if (first.empty()) first = rows;
        EXPECT_EQ(rows, first) << chunk;
        EXPECT_EQ(rows.size(), 300U);
    }
}

TEST(LineReader, LinesOverAMegabyteFitNothingAndCostNoMemory) {
    const testsupport::TempFolder folder;
    const std::string path =
        folder.Write("log", "a\n" + std::string(kMaxLine, 'x') + "\n" + std::string(kMaxLine + 1, 'y') + "\n" +
                                std::string(3 * kMaxLine, ' ') + "\nb");
    core::ChunkReader file;
    ASSERT_TRUE(file.Open(path).ok);
    LineReader reader(file, 1000);
    RawLine line;
    std::string seen;
    while (reader.Next(line))
        seen += std::string(line.text.substr(0, 1)) + (line.tooLong ? line.blank ? "B" : "L" : "") + ";";
    EXPECT_EQ(seen, "a;x;yL; B;b;");
    EXPECT_EQ(reader.Position(), core::FileSize(path));
}

TEST(LineReader, LeavesAHalfLineOfAFileThatGrows) {
    const testsupport::TempFolder folder;
    const std::string path = folder.Write("log", "one\nhal");
    core::ChunkReader file;
    ASSERT_TRUE(file.Open(path).ok);
    std::ofstream(path, std::ios::app) << "f\n";
    LineReader reader(file);
    RawLine line;
    ASSERT_TRUE(reader.Next(line));
    EXPECT_EQ(line.text, "one");
    EXPECT_FALSE(reader.Next(line));
}

TEST(LogFileDateRange, LooksAtBothEndsOfAFile) {
    using Outcome = LogFileDates::Outcome;
    const testsupport::TempFolder folder;
    const logdefs::LogFormat format({0, {"", std::string(kCombinedSpec)}});
    const auto probe = [&](const std::string& text) {
        core::UnpackReader file;
        EXPECT_TRUE(file.Open(folder.Write("log", text)).ok);
        return LogFileDateRange(file, format);
    };
    const std::string junk(5000, 'j');
    EXPECT_EQ(probe("").outcome, Outcome::EmptyOrMissing);
    EXPECT_EQ(probe(junk + "\n" + kA).outcome, Outcome::NoValidLines);  // only the first 3000 bytes decide
    const LogFileDates moved = probe(kB + kA + junk + "\n");
    EXPECT_EQ(moved.outcome, Outcome::Ok);
    EXPECT_EQ(moved.first, 20090302080001);
    EXPECT_EQ(moved.last, 20090302080000);  // the window moved back; the dates are as they stand
    EXPECT_EQ(probe(kA).last, 20090302080000);
}

}  // namespace
}  // namespace logread
