// bench_add [LOG | --lines N] [--again] [--all-lines]: how fast a log is added, beside what must be done in any case:
// splitting its lines, and a bare insert of the rows that were stored. Lines are those of the file.
#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "bench/support.h"
#include "core/files.h"
#include "logread/linereader.h"
#include "sitedb/columns.h"

namespace {

using bench::Fail;
using bench::Stopwatch;

struct Arguments {
    std::string log{};
    std::uint64_t lines = 2000000;
    bool again = false;
    bool allLines = false;  // filters off, so that every line is stored
    bool yardsticks = true;
};

Arguments Parse(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--again") {
            arguments.again = true;
        } else if (word == "--all-lines") {
            arguments.allLines = true;
        } else if (word == "--no-yardsticks") {
            arguments.yardsticks = false;
        } else if (word == "--lines" && i + 1 < argc) {
            arguments.lines = std::strtoull(argv[++i], nullptr, 10);
        } else if (word == "--help" || word.starts_with("--")) {
            std::puts("bench_add [LOG | --lines N] [--again] [--all-lines] [--no-yardsticks]");
            std::exit(word == "--help" ? 0 : 2);
        } else {
            arguments.log = word;
        }
    }
    return arguments;
}

double SplitAlone(const std::string& log, std::int64_t& lines) {
    const Stopwatch watch;
    core::ChunkReader file;
    if (const core::Result opened = file.Open(log); !opened) Fail(opened.error);
    logread::LineReader reader(file);
    logread::RawLine line;
    for (lines = 0; reader.Next(line);) ++lines;
    return watch.Seconds();
}

void Check(int code, sqlite3* db) {
    if (code != SQLITE_OK && code != SQLITE_DONE && code != SQLITE_ROW) Fail(sqlite3_errmsg(db));
}

// Row by row out of the site's table into a new one with the same indexes, through the library alone.
double BareInsert(const std::string& database, const std::string& target, std::int64_t& rows) {
    sqlite3* db = nullptr;
    Check(sqlite3_open(target.c_str(), &db), db);
    const auto exec = [&](const std::string& sql) {
        Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db);
    };
    exec("ATTACH '" + database + "' AS site");
    exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-49152");
    std::vector<std::string> create;
    sqlite3_stmt* schema = nullptr;
    Check(sqlite3_prepare_v2(
              db, "SELECT sql FROM site.sqlite_schema WHERE tbl_name='logline' AND sql NOT NULL ORDER BY type DESC", -1,
              &schema, nullptr),
          db);
    while (sqlite3_step(schema) == SQLITE_ROW)
        create.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(schema, 0)));
    sqlite3_finalize(schema);
    for (const std::string& sql : create) exec(sql);
    sqlite3_stmt* read = nullptr;
    Check(sqlite3_prepare_v2(db, "SELECT * FROM site.logline", -1, &read, nullptr), db);
    const int columns = sqlite3_column_count(read);
    std::string marks = "?";
    for (int i = 1; i < columns; ++i) marks += ",?";
    sqlite3_stmt* write = nullptr;
    Check(sqlite3_prepare_v2(db, ("INSERT INTO main.logline VALUES (" + marks + ")").c_str(), -1, &write, nullptr), db);
    const Stopwatch watch;
    exec("BEGIN");
    for (rows = 0; sqlite3_step(read) == SQLITE_ROW; ++rows) {
        for (int i = 0; i < columns; ++i) Check(sqlite3_bind_value(write, i + 1, sqlite3_column_value(read, i)), db);
        Check(sqlite3_step(write), db);
        Check(sqlite3_reset(write), db);
    }
    exec("COMMIT");
    const double seconds = watch.Seconds();
    sqlite3_finalize(read);
    sqlite3_finalize(write);
    Check(sqlite3_close(db), db);
    return seconds;
}

adddata::AddOutcome AddOnce(bench::BenchSite& site, const Arguments& arguments) {
    adddata::AddRequest request;
    request.files = {{arguments.log, "apache-combined"}};
    request.skipRobots = !arguments.allLines;
    request.skipComponents = !arguments.allLines;
    request.NoPromptInvalid = request.NoPromptOverlap = true;
    site.Progress().Forget();
    return adddata::AddLogData(site.Session().Env(), site.Site(), site.Session().ProgramFiles(), request);
}

void Row(const char* what, double seconds, std::int64_t lines) {
    std::printf("%-28s %9.2f s %12.0f lines/s\n", what, seconds,
                seconds > 0 ? static_cast<double>(lines) / seconds : 0);
}

double PrintAdd(const char* title, const adddata::AddOutcome& outcome, double seconds, std::int64_t lines) {
    if (outcome.Status() != 0) Fail(outcome.read.errors.empty() ? outcome.visits.error : outcome.read.errors.front());
    std::printf("\n%s: %lld lines stored, %lld exist, %lld visits\n", title,
                static_cast<long long>(outcome.read.totals.AllLinesAdded),
                static_cast<long long>(outcome.read.totals.AllLinesExist),
                static_cast<long long>(outcome.visits.visitsMade));
    Row("read", outcome.read.seconds, lines);
    Row("visits", outcome.visits.buildSeconds, lines);
    Row("compaction", outcome.visits.compactSeconds, lines);
    Row("in all", seconds, lines);
    std::printf("%-28s %9lld MiB\n", "peak memory so far", static_cast<long long>(bench::PeakMemoryKiB() / 1024));
    return seconds;
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments = Parse(argc, argv);
    sitedb::SiteOptions options;
    options.name = "Bench";
    bench::BenchSite site(BENCH_SHARE, options);
    if (arguments.log.empty()) {
        arguments.log = site.Folder() + "/generated.log";
        bench::WriteLog(arguments.log, arguments.lines, 1);
    }
    std::int64_t lines = 0;
    const double split = SplitAlone(arguments.log, lines);
    std::printf("%lld lines, %lld bytes\n", static_cast<long long>(lines),
                static_cast<long long>(core::FileSize(arguments.log)));
    Row("splitting alone", split, lines);
    Stopwatch watch;
    adddata::AddOutcome outcome = AddOnce(site, arguments);
    const double first = PrintAdd("add", outcome, watch.Seconds(), lines);
    std::printf("%-28s %9.2f s   (%s)\n", "longest without a beat", site.Progress().LongestSilence(),
                site.Progress().SilentIn().c_str());
    if (arguments.again) {
        const Stopwatch second;
        outcome = AddOnce(site, arguments);
        const double again = PrintAdd("the same log again", outcome, second.Seconds(), lines);
        std::printf("%-28s %9.2f times the first\n", "again", again / first);
    }
    if (!arguments.yardsticks) return 0;
    std::int64_t rows = 0;
    const double bare = BareInsert(site.Site().Paths().database, site.Folder() + "/bare.db", rows);
    std::printf("\n");
    Row("bare insert of the rows", bare, rows);
    std::printf("%-28s %9.2f times the bare insert of what it stored, %.1f times splitting\n", "the whole add",
                first / bare, first / split);
    return 0;
}
