#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "analysis/targets.h"

// Tables of which few cells exist: memory goes with the cells alone.
namespace analysis {

// Counts by (row, column), both numbered from 0 without large gaps. Cells can be listed by row after Finish.
class SparseTable {
public:
    struct Cell {
        std::uint32_t row = 0;
        std::uint32_t column = 0;
        std::int32_t count = 0;
    };

    void Sparse_Add(std::int32_t amount, std::uint32_t row, std::uint32_t column) {
        if (row >= rows_.size()) rows_.resize(std::size_t{row} + 1);
        const Row& of = rows_[row];
        __builtin_prefetch(of.places.data() + Home(column, of.mask));
        waiting_[waits_++] = {row, column, amount};
        if (waits_ == waiting_.size()) Settle();
    }
    // Orders the cells by row and column; nothing is added afterwards.
    void Finish();
    std::span<const Cell> OfRow(std::uint32_t row) const {
        if (std::size_t{row} + 1 >= starts_.size()) return {};
        return std::span(cells_).subspan(starts_[row], starts_[row + 1] - starts_[row]);
    }

private:
    struct Slot {
        std::uint32_t column = kFree;
        std::int32_t count = 0;
    };
    // A table of its own for each row: what is counted often lies together.
    struct Row {
        std::vector<Slot> places{};
        std::uint32_t mask = 0;  // number of places, a power of two, less one
        std::uint32_t used = 0;
    };
    static constexpr std::uint32_t kFree = 0xffffffff;
    static constexpr std::size_t kWaiting = 64;

    static std::uint32_t Home(std::uint32_t column, std::uint32_t mask) {
        return static_cast<std::uint32_t>((column * std::uint64_t{0x9e3779b97f4a7c15U}) >> 32U) & mask;
    }
    static Slot& SlotOf(Row& row, std::uint32_t column);
    static void Grow(Row& row);
    void Settle();

    // What was added last. Their places are fetched meanwhile, many at a time, so that no addition waits for memory.
    std::array<Cell, kWaiting> waiting_{};
    std::size_t waits_ = 0;
    std::vector<Row> rows_{};
    std::vector<Cell> cells_{};
    std::vector<std::size_t> starts_{};  // by row: where its cells begin; one element more for the end
};

// What a row gathers on one day.
struct DayCounts {
    std::int32_t visitors = 0;
    std::int32_t stayed = 0;
    std::int32_t targets[kMaxTargets] = {};
};

// Counters by (row, day). Visits come in order of time, so a row's last cell is nearly always the one to add to.
class DaySeries {
public:
    void Add(std::uint32_t row, std::int32_t day, const DayCounts& counts, bool withTargets);
    // Latest day first. A day can come in more than one piece: sum them.
    template <typename See>
    void ForEach(std::uint32_t row, See see) const {
        for (std::uint32_t at = row < last_.size() ? last_[row] : kNone; at != kNone; at = cells_[at].before) {
            DayCounts counts{cells_[at].visitors, cells_[at].stayed, {}};
            if (!targets_.empty()) std::ranges::copy(targets_[at].counts, counts.targets);
            see(cells_[at].day, counts);
        }
    }

private:
    struct Cell {
        std::int32_t day = 0;
        std::int32_t visitors = 0;
        std::int32_t stayed = 0;
        std::uint32_t before = kNone;
    };
    static constexpr std::uint32_t kNone = 0xffffffff;
    struct TargetCell {
        std::int32_t counts[kMaxTargets] = {};
    };

    std::vector<std::uint32_t> last_{};  // by row
    std::vector<Cell> cells_{};
    std::vector<TargetCell> targets_{};  // goes along with cells_; empty without targets
};

}  // namespace analysis
