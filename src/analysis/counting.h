#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/results.h"
#include "analysis/sparse.h"

namespace analysis {

struct VisitCounts {
    std::int32_t visitors = 1;  // a row's first visit brings those of the threshold along
    std::int32_t pages = 0;
    std::int32_t stayed = 0;
    std::array<std::int32_t, kMaxTargets> targets{};
};

// The second axes of a run.
enum Axis : std::size_t { kDistSE, kDistAlternate, kDistClickThru, kAxes };

// Results in the making. Counts go to a number: that of a row, or that of a bundle of rows, which is counted once for
// all of them and dealt out at the end. A run has numbers of one of the two kinds.
class Counting {
public:
    explicit Counting(SrchTrmData& results) : results_(results) {}
    Counting(const Counting&) = delete;
    Counting& operator=(const Counting&) = delete;

    // Appends a row to the results.
    std::uint32_t NewRow(std::string_view value);
    // A row that is there twice counts twice.
    std::uint32_t NewBundle(std::span<const std::uint32_t> rows);

    // Day -1: in no series.
    void Result_Add(std::uint32_t number, std::int32_t day, const VisitCounts& counts) {
        if (number >= tallies_.size()) tallies_.resize(std::size_t{number} + 1);
        __builtin_prefetch(&tallies_[number]);
        waiting_[waits_++] = {number, day, counts};
        if (waits_ == waiting_.size()) Settle();
    }
    // `label` is a number of the axis' texts.
    void Cross_Add(Axis axis, std::uint32_t number, std::uint32_t label, std::int32_t count) {
        axes_[axis].Sparse_Add(count, number, label);
    }
    CrossTable& TableOf(Axis axis) const;

    // Writes what was counted into the results. Nothing is added afterwards.
    void Finish();

private:
    static constexpr std::uint32_t kNone = 0xffffffff;
    static constexpr std::size_t kWaiting = 64;

    struct Tally {
        std::int32_t visitors = 0;
        std::int32_t stayed = 0;
        std::int32_t pages = 0;
        std::array<std::int32_t, kMaxTargets> targets{};
        std::uint32_t last = kNone;  // its cell of the last day
    };
    struct DayCell {
        std::int32_t day = 0;
        std::int32_t visitors = 0;
        std::int32_t stayed = 0;
        std::uint32_t before = kNone;
    };
    struct Waiting {
        std::uint32_t number = 0;
        std::int32_t day = 0;
        VisitCounts counts{};
    };

    void Settle();
    void Add(const Waiting& wait);
    void AddTally(std::uint32_t row, std::uint32_t number);
    DaySeries SeriesOfNumbers();
    void DealOut(const RowParts& bundlesOfRows);

    SrchTrmData& results_;
    // What was added last. Its memory is fetched meanwhile, many places at a time, so that no addition waits for it.
    std::array<Waiting, kWaiting> waiting_{};
    std::size_t waits_ = 0;
    std::vector<Tally> tallies_{};
    // Visits come in order of time, so a number's last cell is nearly always the one to add to.
    std::vector<DayCell> days_{};
    std::vector<std::array<std::int32_t, kMaxTargets>> targets_{};  // goes along with days_; empty without targets
    std::array<SparseTable, kAxes> axes_{};
    RowLists<std::uint32_t> bundles_{};  // rows of each
};

}  // namespace analysis
