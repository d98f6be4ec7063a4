// bench_analyse [--visits N] [--field F] [--everything]: how fast each field is analysed over N made visits, beside a
// bare pass over the same rows in the same order through the store's C interface. With everything: three distributions,
// four targets, words, and behind each analysis the grid of all its values with deviations. CPU time.
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "analysis/options.h"
#include "analysis/run.h"
#include "analysis/targetstore.h"
#include "bench/support.h"
#include "reports/deviation.h"
#include "reports/fieldtable.h"
#include "reports/lines.h"
#include "sitedb/analysisrows.h"
#include "sitedb/visitrows.h"
#include "tools/loggen/random.h"

namespace {

using bench::CpuWatch;
using bench::Fail;

constexpr int kPages = 3000;
constexpr int kTerms = 40000;

// Few values are frequent and most are rare, as terms and pages are.
std::uint32_t Skewed(loggen::Random& random, std::uint32_t count) {
    const std::uint32_t limit = std::uint32_t{1} << random.Below(17);
    return random.Below(std::min(limit, count));
}

std::string Term(std::uint64_t number) {
    static const char* const words[] = {"red",   "garden", "cheap", "buy",  "old",
                                        "tulip", "paris",  "chair", "blue", "map"};
    std::string term = words[number % 10];
    for (std::uint64_t rest = number / 10; rest > 0; rest /= 10) term.append(" ").append(words[rest % 10]);
    return term;
}

sitedb::Clicks ClicksOf(loggen::Random& random, std::uint64_t start) {
    sitedb::Clicks clicks{std::to_string(start), "4000"};
    for (std::uint64_t more = random.Below(6); more > 0; --more) {
        clicks.pages.append("|").append(std::to_string(1 + Skewed(random, kPages)));
        clicks.bytes += "|5000";
    }
    return clicks;
}

void MakeVisits(sitedb::Site& site, std::int32_t visits) {
    loggen::Random random(1);
    sitedb::Transaction all(site.Db());
    sitedb::Statement page = site.Db().Prepare("INSERT INTO page VALUES (?, ?)");
    for (std::int64_t i = 1; i <= kPages; ++i) {
        const std::string name = "shop/part" + std::to_string(i % 40) + "/page" + std::to_string(i) + ".html";
        page.Bind(1, i).Bind(2, std::string_view(name)).Run();
    }
    sitedb::VisitStore store(site.Db());
    for (std::int32_t i = 0; i < visits; ++i) {
        const std::int64_t second = std::int64_t{i} * 90 * 86400 / visits;
        const std::int64_t day = second / 86400, time = second % 86400;
        sitedb::VisitRow row;
        row.VisitID = i;
        row.StartPageID = static_cast<std::int32_t>(1 + Skewed(random, kPages));
        row.StartTimeStamp =
            (20260101 + day / 28 * 100 + day % 28) * 1000000 + time / 3600 * 10000 + time / 60 % 60 * 100 + time % 60;
        row.EndTimeStamp = row.StartTimeStamp;
        row.FirstIP = row.CDSIPs = "10." + std::to_string(i % 250) + ".1." + std::to_string(i / 250 % 250);
        row.Files = 3;
        if (i % 3 != 0) row.StzdSearchTerm = Term(Skewed(random, kTerms));
        if (i % 3 != 0) row.SearchEngine = i % 5 == 0 ? "BING" : "GOOGLE";
        store.Insert(row, ClicksOf(random, static_cast<std::uint64_t>(row.StartPageID)));
    }
    page = sitedb::Statement();
    all.Commit();
    site.Pages().Load(site.Db());
}

double BarePass(const std::string& database, std::int64_t& rows) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(database.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) Fail(sqlite3_errmsg(db));
    sqlite3_stmt* query = nullptr;
    const char* sql =
        "SELECT "
        "StartPageID,VisitID,CDSClickFurtherPageIDs,CDSBytesClickFurtherPageIDs,StzdSearchTerm,NONSERefr,SearchEngine,"
        "StartLogLnID,StartTimeStamp,EndTimeStamp FROM visit ORDER BY StartTimeStamp";
    if (sqlite3_prepare_v2(db, sql, -1, &query, nullptr) != SQLITE_OK) Fail(sqlite3_errmsg(db));
    const CpuWatch watch;
    std::int64_t sum = 0;
    for (rows = 0; sqlite3_step(query) == SQLITE_ROW; ++rows) {
        for (const int column : {0, 1, 7, 8, 9}) sum += sqlite3_column_int64(query, column);
        for (const int column : {2, 3, 4, 5, 6}) {
            sqlite3_column_text(query, column);
            sum += sqlite3_column_bytes(query, column);
        }
    }
    const double seconds = watch.Seconds();
    if (sum == 0) Fail("no rows");
    sqlite3_finalize(query);
    if (sqlite3_close(db) != SQLITE_OK) Fail("close");
    return seconds;
}

void MakeTargets(bench::BenchSite& site) {
    std::vector<analysis::Target> targets;
    for (const char* page : {"page7", "page12", "part3/", "page9.html"})
        targets.push_back({.name = page, .kind = analysis::kAny, .filters = {{logdefs::kContains, page, false}}});
    const core::Result written = analysis::Tgt_WriteList(site.Session().Env().ini, site.Site().Paths(), targets);
    if (!written) Fail(written.error);
}

analysis::AnalysisRequest RequestOf(core::Env& env, int field, bool everything) {
    analysis::AnalysisRequest request = analysis::Analyse_Request(env.ini, field);
    if (!everything) return request;
    request.options.ShowDist1 = request.options.ShowDist2 = true;
    request.options.ShowClickThru = field != analysis::kPage;
    request.AnalTgt = request.WordListsOn = true;
    return request;
}

struct Times {
    double analysis = 0;
    double grid = 0;
};

Times Analyse(bench::BenchSite& site, int field, bool everything) {
    core::Env& env = site.Session().Env();
    const CpuWatch watch;
    const auto outcome = analysis::CVNA_VisitsAnalyse(env, site.Site(), RequestOf(env, field, everything));
    if (!outcome.results) Fail("no results");
    Times times{watch.Seconds()};
    if (!everything) return times;
    if (outcome.results->Targets.size() != analysis::kMaxTargets) Fail("no targets");
    const reports::Deviation deviation(outcome.results->days, reports::ReadDevSettings(env.ini));
    reports::pShowReport({env, *outcome.results, &deviation}, reports::ReportKind::All, 0);
    times.grid = watch.Seconds() - times.analysis;
    return times;
}

void Compare(bench::BenchSite& site, const reports::FieldRow& field, const std::string& database, bool everything) {
    std::int64_t rows = 0;
    const double bare = std::min(BarePass(database, rows), BarePass(database, rows));
    const Times first = Analyse(site, field.code, everything), second = Analyse(site, field.code, everything);
    const Times best = first.analysis < second.analysis ? first : second;
    std::printf("%-50s %10.3f %14.0f %8.0f %%", std::string(field.name).c_str(), best.analysis,
                static_cast<double>(rows) / best.analysis, 100 * bare / best.analysis);
    if (everything) std::printf(" %10.3f %12.1f", best.grid, (best.analysis + best.grid) / bare);
    std::puts("");
}

}  // namespace

int main(int argc, char** argv) {
    std::int32_t visits = 1000000;
    int only = 0;
    bool everything = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (i + 1 < argc && word == "--visits") {
            visits = std::atoi(argv[++i]);
        } else if (i + 1 < argc && word == "--field") {
            only = std::atoi(argv[++i]);
        } else if (word == "--everything") {
            everything = true;
        } else {
            std::puts("bench_analyse [--visits N] [--field F] [--everything]");
            return word == "--help" ? 0 : 2;
        }
    }
    sitedb::SiteOptions options;
    options.name = "Bench";
    bench::BenchSite site(BENCH_SHARE, options);
    MakeVisits(site.Site(), visits);
    if (everything) MakeTargets(site);
    const std::string database = site.Site().Paths().database;
    std::int64_t rows = 0;
    BarePass(database, rows);  // warms the file
    std::printf("%-50s %10s %14s %10s%s\n", "field", "seconds", "visits/s", "of bare",
                everything ? "       grid  all in bare" : "");
    for (const reports::FieldRow& row : reports::kFieldTable)
        if (analysis::HasField(row.code) && (only == 0 || row.code == only)) Compare(site, row, database, everything);
    std::printf("%-50s %10.3f %14.0f\n", "bare pass", BarePass(database, rows),
                static_cast<double>(rows) / BarePass(database, rows));
    std::printf("peak memory %lld MiB\n", static_cast<long long>(bench::PeakMemoryKiB() / 1024));
    return 0;
}
