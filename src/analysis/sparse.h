#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "analysis/targets.h"

// Tables of which few cells exist: memory goes with the cells alone.
namespace analysis {

// Counts by (row, column). Cells can be listed by row after Finish.
class SparseTable {
public:
    struct Cell {
        std::uint32_t row = 0;
        std::uint32_t column = 0;
        std::int32_t count = 0;
    };

    void Sparse_Add(std::int32_t amount, std::uint32_t row, std::uint32_t column);
    // Orders the cells by row and column; nothing is added afterwards.
    void Finish();
    std::span<const Cell> OfRow(std::uint32_t row) const;

private:
    struct Slot {
        std::uint64_t key = kFree;
        std::int32_t count = 0;
    };
    static constexpr std::uint64_t kFree = ~std::uint64_t{0};

    std::size_t SlotOf(std::uint64_t key) const;
    void Grow();

    std::vector<Slot> slots_{};
    std::size_t used_ = 0;
    std::vector<Cell> cells_{};
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
    void ForEach(std::uint32_t row, const std::function<void(std::int32_t day, const DayCounts&)>& see) const;

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
