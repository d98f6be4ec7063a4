// bench_reports [--values N] [--days N]: the grid of all values with its columns of deviations, the plot of a line and
// of a group, and what both keep in memory. Made results; CPU time, beside a bare walk over the same data.
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "analysis/counting.h"
#include "analysis/fields.h"
#include "bench/support.h"
#include "reports/deviation.h"
#include "reports/lines.h"
#include "reports/plot.h"
#include "tools/loggen/random.h"

namespace {

constexpr std::int32_t kFirstDay = 45658;
constexpr std::int32_t kGroup = 10000;
constexpr int kVisitsOfValue = 10;  // on average
constexpr std::size_t kTargets = 4;

// CPU time, the best of three runs.
double Best(const std::function<void()>& work) {
    double best = 0;
    for (int run = 0; run < 3; ++run) {
        const bench::CpuWatch watch;
        work();
        best = run == 0 ? watch.Seconds() : std::min(best, watch.Seconds());
    }
    return best;
}

void Line(const std::string& what, double seconds, double limit, const char* yardstick, double beside) {
    std::printf("%-46s %9.4f s  (limit %5.3f)   %-28s %9.4f s   ratio %6.1f\n", what.c_str(), seconds, limit, yardstick,
                beside, beside > 0 ? seconds / beside : 0);
}

// Bytes that are allocated and in use.
double HeapBytes() {
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

// In order of time, as an analysis counts them: few values are frequent and on nearly all days, most are rare.
void MakeResults(analysis::SrchTrmData& results, std::int32_t values, std::int32_t days) {
    loggen::Random random(1);
    results.siteName = "Bench";
    results.Analyzed_Field = analysis::kTerm;
    results.days = {kFirstDay, days};
    results.Targets.resize(kTargets);
    std::vector<std::uint32_t> rows(static_cast<std::size_t>(values));
    analysis::Counting counting(results);
    const std::int64_t visits = std::int64_t{values} * kVisitsOfValue;
    const auto all = static_cast<std::uint32_t>(values);
    for (std::int64_t i = 0; i < visits; ++i) {
        const std::uint32_t value = i % kVisitsOfValue == 0 ? static_cast<std::uint32_t>(i / kVisitsOfValue)
                                                            : random.Below(std::min(all, 1U << random.Below(17)));
        analysis::VisitCounts counts;
        counts.stayed = static_cast<std::int32_t>(random.Below(2));
        counts.pages = counts.stayed * 3;
        for (std::int32_t& target : counts.targets) target = random.Below(10) == 0 ? 1 : 0;
        std::uint32_t& row = rows[value];
        if (row == 0) row = counting.NewRow("term " + std::to_string(value) + " of a visitor");
        counting.Result_Add(row, static_cast<std::int32_t>(i * days / visits), counts);
    }
    counting.Finish();
    results.visits = static_cast<double>(visits);
}

double CellsOf(const analysis::ResultTable& table, std::span<const std::int32_t> indexes) {
    double cells = 0;
    for (const std::int32_t index : indexes)
        table.days.ForEach(static_cast<std::uint32_t>(index),
                           [&](std::int32_t, const analysis::DayCounts&) { ++cells; });
    return cells;
}

double BareSum(const analysis::ResultTable& table, std::span<const std::int32_t> indexes) {
    double sum = 0;
    const double seconds = Best([&] {
        for (const std::int32_t index : indexes)
            table.days.ForEach(static_cast<std::uint32_t>(index),
                               [&](std::int32_t, const analysis::DayCounts& counts) { sum += counts.visitors; });
    });
    if (sum <= 0) bench::Fail("nothing to sum");
    return seconds;
}

void Plot(core::Env& env, const analysis::SrchTrmData& results, std::span<const std::int32_t> indexes, const char* what,
          double limit) {
    const reports::PlotRequest request{.leftCell = "line", .indexes = indexes};
    const double seconds = Best([&] {
        if (PlotTtl4IndexesSTByDate(env, results, request).rows.empty()) bench::Fail("no plot");
    });
    const std::string cells = std::to_string(static_cast<long>(CellsOf(results.table, indexes)));
    Line(what + (", " + cells + " cells"), seconds, limit, "a bare sum of the cells", BareSum(results.table, indexes));
}

}  // namespace

int main(int argc, char** argv) {
    std::int32_t values = 100000, days = 400;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (i + 1 < argc && word == "--values") {
            values = std::max(kGroup, std::atoi(argv[++i]));
        } else if (i + 1 < argc && word == "--days") {
            days = std::max(1, std::atoi(argv[++i]));
        } else {
            std::puts("bench_reports [--values N] [--days N]");
            return word == "--help" ? 0 : 2;
        }
    }
    sitedb::SiteOptions options;
    options.name = "Bench";
    bench::BenchSite site(BENCH_SHARE, options);
    core::Env& env = site.Session().Env();
    const double empty = HeapBytes();
    analysis::SrchTrmData results;
    MakeResults(results, values, days);
    const double withResults = HeapBytes();

    const reports::Deviation deviation(results.days, reports::ReadDevSettings(env.ini));
    const auto show = [&](const reports::Deviation* columns) {
        return reports::pShowReport({env, results, columns}, reports::ReportKind::All, 0);
    };
    const double sorting = Best([&] {
        std::vector<std::string> texts = results.table.STs;
        std::ranges::sort(texts);
    });
    const std::string all = "all " + std::to_string(results.table.UpperBound()) + " values";
    Line(all + " with deviations", Best([&] { show(&deviation); }), 2, "sorting the values", sorting);
    Line(all + " without", Best([&] { show(nullptr); }), 2, "sorting the values", sorting);

    const auto most = std::ranges::max_element(results.table.Visitors) - results.table.Visitors.begin();
    const std::vector<std::int32_t> line{static_cast<std::int32_t>(most)};
    std::vector<std::int32_t> group(kGroup);
    std::iota(group.begin(), group.end(), 1);
    Plot(env, results, line, "plot of a value", 0.02);
    Plot(env, results, group, "plot of 10,000 values", 0.2);

    std::vector<std::int32_t> every(static_cast<std::size_t>(results.table.UpperBound()));
    std::iota(every.begin(), every.end(), 1);
    const double cells = CellsOf(results.table, every);
    const double before = HeapBytes();
    const reports::ReportGrid grid = show(&deviation);
    const double ofGrid = HeapBytes() - before;
    std::printf(
        "%.0f counters of a value and day; results %.1f MiB, %.1f bytes each; grid %.1f MiB, %.1f bytes for each of "
        "%zu x %zu cells; both %.1f bytes for each counter; peak %lld MiB\n",
        cells, (withResults - empty) / 1048576, (withResults - empty) / cells, ofGrid / 1048576,
        ofGrid / static_cast<double>(grid.rows.size() * grid.columns.size()), grid.rows.size(), grid.columns.size(),
        (withResults - empty + ofGrid) / cells, static_cast<long long>(bench::PeakMemoryKiB() / 1024));
    return 0;
}
