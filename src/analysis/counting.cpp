#include "analysis/counting.h"

namespace analysis {
namespace {

constexpr std::array kTables{&SrchTrmData::DistSE, &SrchTrmData::DistAlternate, &SrchTrmData::DistClickThru};
static_assert(kTables.size() == kAxes);

void operator+=(DayCounts& sum, const DayCounts& counts) {
    sum.visitors += counts.visitors;
    sum.stayed += counts.stayed;
    for (std::size_t t = 0; t < kMaxTargets; ++t) sum.targets[t] += counts.targets[t];
}

using DaySums = KeyedSums<DayCounts>;

void WriteRow(DaySums& sums, bool withTargets, DaySeries& series) {
    sums.Take([&](std::uint32_t day, const DayCounts& counts) {
        series.Add(static_cast<std::int32_t>(day), counts, withTargets);
    });
    series.EndRow();
}

DaySeries Joined(const DaySeries& days, const RowParts& parts, bool withTargets) {
    DaySeries series;
    DaySums sums;
    for (std::uint32_t row = 0; row < parts.Rows(); ++row) {
        for (const std::uint32_t part : parts.OfRow(row))
            days.ForEach(part, [&sums](std::int32_t day, const DayCounts& counts) {
                sums.Of(static_cast<std::uint32_t>(day)) += counts;
            });
        WriteRow(sums, withTargets, series);
    }
    return series;
}

}  // namespace

CrossTable& Counting::TableOf(Axis axis) const { return results_.*kTables[axis]; }

std::uint32_t Counting::NewRow(std::string_view value) {
    std::vector<std::string>& texts = results_.table.STs;
    if (texts.empty()) texts.emplace_back();
    texts.emplace_back(value);
    return static_cast<std::uint32_t>(texts.size() - 1);
}

std::uint32_t Counting::NewBundle(std::span<const std::uint32_t> rows) {
    for (const std::uint32_t row : rows) bundles_.Add(row);
    bundles_.EndRow();
    return bundles_.Rows() - 1;
}

void Counting::Settle() {
    const std::span<const Waiting> all = std::span(waiting_).first(waits_);
    for (const Waiting& wait : all) {
        const std::uint32_t last = tallies_[wait.number].last;
        if (last == kNone) continue;
        __builtin_prefetch(&days_[last]);
        if (!targets_.empty()) __builtin_prefetch(&targets_[last]);
    }
    for (const Waiting& wait : all) Add(wait);
    waits_ = 0;
}

void Counting::Add(const Waiting& wait) {
    const VisitCounts& counts = wait.counts;
    Tally& tally = tallies_[wait.number];
    tally.visitors += counts.visitors;
    tally.stayed += counts.stayed;
    tally.pages += counts.pages;
    for (std::size_t t = 0; t < kMaxTargets; ++t) tally.targets[t] += counts.targets[t];
    if (wait.day < 0) return;
    const bool withTargets = !results_.Targets.empty();
    if (tally.last == kNone || days_[tally.last].day != wait.day) {
        days_.push_back({wait.day, 0, 0, tally.last});
        if (withTargets) targets_.emplace_back();
        tally.last = static_cast<std::uint32_t>(days_.size() - 1);
    }
    days_[tally.last].visitors += counts.visitors;
    days_[tally.last].stayed += counts.stayed;
    if (!withTargets) return;
    for (std::size_t t = 0; t < kMaxTargets; ++t) targets_[tally.last][t] += counts.targets[t];
}

void Counting::AddTally(std::uint32_t row, std::uint32_t number) {
    if (number >= tallies_.size()) return;
    ResultTable& table = results_.table;
    const Tally& tally = tallies_[number];
    table.Visitors[row] += tally.visitors;
    table.Stayed[row] += tally.stayed;
    table.HtmPages[row] += tally.pages;
    for (std::size_t t = 0; t < results_.Targets.size(); ++t) table.TargetCnt[t][row] += tally.targets[t];
}

DaySeries Counting::SeriesOfNumbers() {
    DaySeries series;
    DaySums sums;
    for (const Tally& tally : tallies_) {
        for (std::uint32_t at = tally.last; at != kNone; at = days_[at].before) {
            DayCounts counts{days_[at].visitors, days_[at].stayed, {}};
            if (!targets_.empty()) counts.targets = targets_[at];
            sums.Of(static_cast<std::uint32_t>(days_[at].day)) += counts;
        }
        WriteRow(sums, !targets_.empty(), series);
    }
    days_ = {};
    targets_ = {};
    return series;
}

void Counting::Finish() {
    Settle();
    ResultTable& table = results_.table;
    const auto rows = static_cast<std::uint32_t>(table.STs.size());
    for (std::vector<std::int32_t>* counts : {&table.Visitors, &table.Stayed, &table.HtmPages}) counts->resize(rows);
    for (std::size_t t = 0; t < results_.Targets.size(); ++t) table.TargetCnt[t].resize(rows);
    table.days = SeriesOfNumbers();
    for (std::size_t axis = 0; axis < kAxes; ++axis) {
        (results_.*kTables[axis]).cells = axes_[axis].Finish();
        axes_[axis] = {};
    }
    if (bundles_.Rows() == 0) {
        for (std::uint32_t row = 0; row < rows; ++row) AddTally(row, row);
    } else {
        DealOut(Turned(bundles_, rows));
    }
    table.days.Shrink();
}

// From bundles to their rows.
void Counting::DealOut(const RowParts& bundlesOfRows) {
    ResultTable& table = results_.table;
    for (std::uint32_t row = 0; row < bundlesOfRows.Rows(); ++row)
        for (const std::uint32_t bundle : bundlesOfRows.OfRow(row)) AddTally(row, bundle);
    table.days = Joined(table.days, bundlesOfRows, !results_.Targets.empty());
    for (const auto member : kTables) {
        RowLists<CrossCell>& cells = (results_.*member).cells;
        cells = Joined(cells, bundlesOfRows);
    }
}

}  // namespace analysis
