#include "tests/support/packed.h"

#include <gtest/gtest.h>

#include "logread/probe.h"
#include "tests/logread/readsite.h"

namespace logread {
namespace {

using testsupport::Combined;
using testsupport::kPackedKinds;
using testsupport::Pack;

// Repeats, lines that do not fit, blank lines, a line that is too long, and no line feed at the end.
std::string SomeLog(int lines) {
    std::string log;
    for (int i = 0; i < lines; ++i) {
        const std::string second = std::to_string(10 + i % 50);
        log += Combined("1.1.1." + std::to_string(i % 7), "02/Mar/2009:08:00:" + second,
                        "/p" + std::to_string(i * 31 % 101), i % 5 == 0 ? "http://x.example/?q=a" : "-");
        if (i % 100 == 0) log += "garbage " + second + "\n \t\r\n";
        if (i == lines / 2) log += std::string(kMaxLine + 5, 'y') + "\n";
    }
    log.pop_back();
    return log;
}

std::vector<std::string> Tables(ReadSite& home) {
    auto rows =
        home.Rows("SELECT LogLnID, IP, PageID, Timestamp, Bytes, CntDupes, Filename FROM logline ORDER BY 1", 7);
    for (std::string& row : home.Rows("SELECT PageID, Filename FROM page ORDER BY 1", 2))
        rows.push_back(std::move(row));
    return rows;
}

std::string CountersOf(const ReadOutcome& read) {
    const AllCounters& all = read.totals;
    std::string text;
    for (const double value : {all.AllFirstDate, all.AllLastDate, all.AllBytesRead, all.AllBytesAdded})
        text += std::to_string(value) + " ";
    for (const std::int64_t value : {all.AllLinesRead, all.AllLinesAdded, all.AllLinesExist})
        text += std::to_string(value) + " ";
    for (const ProblemList::File& file : read.problems.Files())
        for (const std::string& problem : file.texts) text += problem + "; ";
    return text;
}

TEST(PackedLogs, GiveTheTablesOfThePlainFile) {
    const std::string log = SomeLog(3000);
    ReadSite plain;
    const ReadOutcome read = plain.Read({log});
    const std::string again = CountersOf(plain.Read({log}));
    EXPECT_EQ(read.totals.AllLinesRead, 3000);
    for (const std::string_view kind : kPackedKinds) {
        SCOPED_TRACE(kind);
        ReadSite home;
        const ReadOutcome packed = home.Read({Pack(kind, log)});
        EXPECT_TRUE(packed.ok && packed.errors.empty());
        EXPECT_EQ(CountersOf(packed), CountersOf(read));
        // The plain file after the packed one, and the other way round, store nothing new.
        EXPECT_EQ(CountersOf(home.Read({kind == "xz" ? Pack(kind, log) : log})), again);
        EXPECT_EQ(Tables(home), Tables(plain));
        EXPECT_EQ(home.progress.open, 0);
    }
}

TEST(PackedLogs, ShowTheirProgressInPackedBytes) {
    ReadSite home;
    const std::string log = SomeLog(300), packed = Pack("gzip", log);
    home.Read({packed});
    EXPECT_LE(home.progress.lastCount, static_cast<double>(packed.size()));
}

TEST(PackedLogs, OfADamagedOneTheCompleteLinesCountOnce) {
    std::string log;
    for (int i = 0; i < 2000; ++i) log += Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/p" + std::to_string(i * i));
    for (const std::string_view kind : {"gzip", "zstd"}) {
        SCOPED_TRACE(kind);
        ReadSite home;
        // A complete member, then one that is cut within a line.
        const std::size_t middle = log.find('\n', log.size() / 2) + 1;
        const std::string rest = Pack(kind, log.substr(middle));
        const std::string cut = Pack(kind, log.substr(0, middle)) + rest.substr(0, rest.size() / 2);
        const ReadOutcome read = home.Read({cut});
        EXPECT_TRUE(read.ok && !read.files[0].stopped);
        ASSERT_EQ(read.errors.size(), 1U);
        EXPECT_NE(read.errors[0].find("not complete"), std::string::npos);
        ASSERT_EQ(read.problems.Files().size(), 1U);
        EXPECT_EQ(read.problems.Files()[0].texts.size(), 1U);  // the half line before the damage is no misfit
        EXPECT_GE(home.Lines(), 1000);
        EXPECT_LT(home.Lines(), 2000);
        EXPECT_EQ(home.Lines(), read.totals.AllLinesRead);
        const ReadOutcome whole = home.Read({log});
        EXPECT_EQ(whole.totals.AllLinesExist, read.totals.AllLinesRead);
        EXPECT_EQ(home.Lines(), 2000);
    }
}

LogFileDates Probe(const testsupport::TempFolder& folder, const std::string& bytes) {
    const logdefs::LogFormat format({0, {"", std::string(testsupport::kCombinedSpec)}});
    core::UnpackReader file;
    EXPECT_TRUE(file.Open(folder.Write("log", bytes)).ok);
    const LogFileDates dates = LogFileDateRange(file, format);
    char first = 0;
    EXPECT_TRUE(file.Read(&first, 1) == 0 || first == dates.start[0]);
    return dates;
}

TEST(PackedLogs, HaveTheDatesOfThePlainFile) {
    using Outcome = LogFileDates::Outcome;
    const testsupport::TempFolder folder;
    const std::string a = Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a");
    const std::string b = Combined("1.1.1.1", "02/Mar/2009:08:00:01", "/b");
    const std::string longMiddle(3 * kPackedTail / 2, 'm');
    for (const std::string& log : {a, a + b, b + longMiddle + "\n" + a, a + b + std::string(5000, 'j') + "\n",
                                   std::string(5000, 'j') + "\n" + a, std::string()}) {
        const LogFileDates plain = Probe(folder, log);
        for (const std::string_view kind : kPackedKinds) {
            const LogFileDates packed = Probe(folder, Pack(kind, log));
            EXPECT_TRUE(packed.outcome == plain.outcome && packed.start == plain.start);
            EXPECT_EQ(packed.first, plain.first);
            EXPECT_EQ(packed.last, plain.last);
        }
    }
    // In a packed file no line is looked for farther back than what is kept of its end.
    EXPECT_EQ(Probe(folder, a + longMiddle).outcome, Outcome::Ok);
    EXPECT_EQ(Probe(folder, Pack("gzip", a + longMiddle)).outcome, Outcome::EndsCorrupt);
}

// Time goes on with each look at it.
class TickingClock final : public core::Clock {
public:
    double Now() const override { return 45000.5; }
    double Seconds() const override { return seconds_ += 1; }

private:
    mutable double seconds_ = 0;
};

TEST(PackedLogs, CanBeStoppedWhileABombIsUnpacked) {
    const std::string line = Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a");
    std::string bomb = Pack("gzip", line);
    for (int i = 0; i < 8; ++i) bomb += Pack("gzip", std::string(1 << 24, 'x'));  // one line of 128 MiB
    bomb += Pack("gzip", "\n" + line);
    const auto read = [&](int stopAtStep, int& steps) {
        ReadSite home;
        const TickingClock clock;
        core::Env env{home.ini, home.user, home.progress, home.events, clock};
        home.progress.steps = 0;  // without those of the site's making
        home.progress.stopAtStep = stopAtStep;
        ReadRequest request;
        request.files.push_back({home.folder.Write("log", bomb), "combined"});
        request.formatFile = home.Formats();
        request.NoPromptInvalid = true;
        ReadOutcome outcome = RawLog_AddData_ReadLogFiles(env, *home.site, std::move(request));
        steps = home.progress.steps;
        EXPECT_EQ(home.progress.open, 0);
        return outcome;
    };
    int all = 0, steps = 0;
    EXPECT_EQ(read(-1, all).totals.AllLinesRead, 2);
    EXPECT_GT(all, 200);  // in both passes, at least one for each MiB
    for (const int stop : {1, all / 4, 3 * all / 4}) {
        const ReadOutcome stopped = read(stop, steps);
        EXPECT_FALSE(stopped.ok);
        EXPECT_TRUE(stopped.files[0].stopped);
        EXPECT_EQ(steps, stop);
        EXPECT_EQ(stopped.totals.AllLinesRead, stop > all / 2 ? 1 : 0);
    }
}

}  // namespace
}  // namespace logread
