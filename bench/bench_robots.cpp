// bench_robots [--lines N] [--new-every N] [--runs N]: an add with all delivered robot rules beside one with none, on a
// log of browsers alone, so that both store the same lines. Every N-th line brings a user agent that was not seen yet.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "bench/support.h"

namespace {

using bench::Fail;
using bench::Stopwatch;

struct Arguments {
    std::uint64_t lines = 300000;
    std::uint64_t newEvery = 20;
    std::uint64_t runs = 3;
};

Arguments Parse(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        std::uint64_t* value = word == "--lines"       ? &arguments.lines
                               : word == "--new-every" ? &arguments.newEvery
                               : word == "--runs"      ? &arguments.runs
                                                       : nullptr;
        if (value == nullptr || i + 1 == argc) {
            std::puts("bench_robots [--lines N] [--new-every N] [--runs N]");
            std::exit(word == "--help" ? 0 : 2);
        }
        *value = std::max<std::uint64_t>(1, std::strtoull(argv[++i], nullptr, 10));
    }
    return arguments;
}

void WriteLog(const std::string& path, const Arguments& arguments) {
    std::ofstream out(path, std::ios::binary);
    std::string agent;
    for (std::uint64_t i = 0; i < arguments.lines; ++i) {
        const std::uint64_t known = i / arguments.newEvery;
        const std::uint64_t version = i % arguments.newEvery == 0 ? known : i * 7919 % (known + 1);
        char line[400];
        std::snprintf(line, sizeof line,
                      "10.%d.%d.%d - - [%02d/Mar/2024:%02d:%02d:%02d +0000] \"GET /p%d.html HTTP/1.1\" 200 %d \"-\" "
                      "\"Mozilla/5.0 (Linux; Android 13; SM-G%d Build/TP1A.%d) AppleWebKit/537.36 (KHTML, like Gecko) "
                      "Chrome/%d.0.%d.%d Mobile Safari/537.36\"\n",
                      static_cast<int>(i >> 12 & 63), static_cast<int>(i >> 5 & 127), static_cast<int>(i & 31),
                      static_cast<int>(i / 60000 % 28 + 1), static_cast<int>(i / 2500 % 24),
                      static_cast<int>(i / 42 % 60), static_cast<int>(i % 60), static_cast<int>(i % 997),
                      static_cast<int>(i % 9000), static_cast<int>(version % 900), static_cast<int>(version / 900),
                      static_cast<int>(60 + version % 60), static_cast<int>(version % 5000),
                      static_cast<int>(version % 200));
        out << line;
    }
    if (!out.flush()) Fail("the log cannot be written");
}

double Add(const std::string& log, bool robots, std::int64_t& stored) {
    sitedb::SiteOptions options;
    options.name = "Bench";
    bench::BenchSite site(BENCH_SHARE, options);
    adddata::AddRequest request;
    request.files = {{log, "apache-combined"}};
    request.mainFilter = logdefs::MainFilter::All;
    request.skipRobots = robots;
    request.skipComponents = false;
    const Stopwatch watch;
    const adddata::AddOutcome outcome =
        adddata::AddLogData(site.Session().Env(), site.Site(), site.Session().ProgramFiles(), request);
    if (outcome.Status() != 0) Fail("the add failed");
    stored = outcome.read.totals.AllLinesAdded;
    return watch.Seconds();
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = Parse(argc, argv);
    sitedb::SiteOptions options;
    options.name = "Logs";
    const bench::BenchSite home(BENCH_SHARE, options);  // for its folder
    const std::string log = home.Folder() + "/agents.log";
    WriteLog(log, arguments);
    std::int64_t without = 0, with = 0;
    std::vector<double> none, all;
    for (std::uint64_t i = 0; i < arguments.runs; ++i) {  // in turn, so that a busy machine hurts both
        none.push_back(Add(log, false, without));
        all.push_back(Add(log, true, with));
    }
    const double fastestNone = std::ranges::min(none), fastestAll = std::ranges::min(all);
    std::printf("%llu lines, a new user agent every %llu: %lld stored without, %lld with robot rules\n",
                static_cast<unsigned long long>(arguments.lines), static_cast<unsigned long long>(arguments.newEvery),
                static_cast<long long>(without), static_cast<long long>(with));
    std::printf("%-28s %9.2f s\n%-28s %9.2f s   (%+.1f %%)\n", "no robot rules", fastestNone, "all robot rules",
                fastestAll, (fastestAll / fastestNone - 1) * 100);
    return 0;
}
