#include "analysis/counting.h"

#include "analysis/texttable.h"

namespace analysis {
namespace {

constexpr std::array kTables{&SrchTrmData::DistSE, &SrchTrmData::DistAlternate, &SrchTrmData::DistClickThru};
static_assert(kTables.size() == kAxes);

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

RowParts Counting::PartsOfRows() const {
    const auto rows = static_cast<std::uint32_t>(results_.table.STs.size());
    RowParts parts;
    if (bundles_.Rows() == 0) {
        for (std::uint32_t row = 0; row < rows; ++row) {
            parts.Add(row);
            parts.EndRow();
        }
        return parts;
    }
    return Turned(bundles_, rows);
}

// Sums by day over the parts of a row.
class Counting::DaySums {
public:
    DaySums(DaySeries& series, const DaysList& days, bool withTargets)
        : series_(series), withTargets_(withTargets), counts_(static_cast<std::size_t>(days.count)) {}

    DayCounts& Of(std::int32_t day) {
        DayCounts& counts = counts_[static_cast<std::size_t>(day)];
        if (seen_.Insert(static_cast<std::uint32_t>(day))) {
            days_.push_back(day);
            counts = {};
        }
        return counts;
    }
    void Write() {
        for (const std::int32_t day : days_) series_.Add(day, counts_[static_cast<std::size_t>(day)], withTargets_);
        series_.EndRow();
        days_.clear();
        seen_.Clear();
    }

private:
    DaySeries& series_;
    bool withTargets_;
    std::vector<DayCounts> counts_;
    std::vector<std::int32_t> days_{};
    IdSet seen_{};
};

void Counting::FinishRow(std::uint32_t row, std::span<const std::uint32_t> parts, DaySums& days) {
    ResultTable& table = results_.table;
    for (const std::uint32_t part : parts) {
        if (part >= tallies_.size()) continue;
        const Tally& tally = tallies_[part];
        table.Visitors[row] += tally.visitors;
        table.Stayed[row] += tally.stayed;
        table.HtmPages[row] += tally.pages;
        for (std::size_t t = 0; t < results_.Targets.size(); ++t) table.TargetCnt[t][row] += tally.targets[t];
        for (std::uint32_t at = tally.last; at != kNone; at = days_[at].before) {
            DayCounts& sum = days.Of(days_[at].day);
            sum.visitors += days_[at].visitors;
            sum.stayed += days_[at].stayed;
            if (targets_.empty()) continue;
            for (std::size_t t = 0; t < kMaxTargets; ++t) sum.targets[t] += targets_[at][t];
        }
    }
    days.Write();
}

void Counting::FinishRows(const RowParts& parts) {
    ResultTable& table = results_.table;
    table.Visitors.resize(parts.Rows());
    table.Stayed.resize(parts.Rows());
    table.HtmPages.resize(parts.Rows());
    for (std::size_t t = 0; t < results_.Targets.size(); ++t) table.TargetCnt[t].resize(parts.Rows());
    DaySums days(table.days, results_.days, !results_.Targets.empty());
    for (std::uint32_t row = 0; row < parts.Rows(); ++row) FinishRow(row, parts.OfRow(row), days);
    table.days.Shrink();
}

void Counting::Finish() {
    Settle();
    const RowParts parts = PartsOfRows();
    FinishRows(parts);
    for (std::size_t axis = 0; axis < kAxes; ++axis) {
        (results_.*kTables[axis]).cells = axes_[axis].Finish(parts);
        axes_[axis] = {};
    }
}

}  // namespace analysis
