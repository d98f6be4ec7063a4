#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <span>
#include <utility>
#include <vector>

#include "analysis/texttable.h"

// Tables of which few cells exist: memory goes with the cells alone.
namespace analysis {

// Lists of cells, one for each row from 0 on, filled row by row.
template <typename Cell>
class RowLists {
public:
    RowLists() = default;
    // `starts`: where the cells of each row begin, and the end behind them.
    RowLists(std::vector<Cell> cells, std::vector<std::size_t> starts)
        : cells_(std::move(cells)), starts_(std::move(starts)) {}

    void Add(const Cell& cell) { cells_.push_back(cell); }
    void EndRow() { starts_.push_back(cells_.size()); }
    void Shrink() {
        cells_.shrink_to_fit();
        starts_.shrink_to_fit();
    }
    std::uint32_t Rows() const { return static_cast<std::uint32_t>(starts_.size() - 1); }
    std::size_t StartOf(std::uint32_t row) const { return starts_[row]; }
    // Empty for a row that was never filled.
    std::span<const Cell> OfRow(std::uint32_t row) const {
        if (row >= Rows()) return {};
        return std::span(cells_).subspan(starts_[row], starts_[row + 1] - starts_[row]);
    }

private:
    std::vector<Cell> cells_{};
    std::vector<std::size_t> starts_ = {0};  // by row; one element more for the end
};

// Of each row the numbers under which it was counted.
using RowParts = RowLists<std::uint32_t>;

// Sums by key, numbered from 0 without large gaps. Emptied in no time.
template <typename Sum>
class KeyedSums {
public:
    Sum& Of(std::uint32_t key) {
        if (key >= sums_.size()) sums_.resize(std::size_t{key} + 1);
        if (seen_.Insert(key)) {
            keys_.push_back(key);
            sums_[key] = {};
        }
        return sums_[key];
    }
    // Calls `write` with each key and its sum, then starts anew.
    template <typename Write>
    void Take(Write write) {
        for (const std::uint32_t key : keys_) write(key, sums_[key]);
        keys_.clear();
        seen_.Clear();
    }

private:
    std::vector<Sum> sums_{};
    std::vector<std::uint32_t> keys_{};
    IdSet seen_{};
};

// For each number below `numbers` the rows whose lists it stands in.
RowParts Turned(const RowLists<std::uint32_t>& lists, std::uint32_t numbers);

struct CrossCell {
    std::uint32_t column = 0;
    std::int32_t count = 0;
};

// The cells of rows that have parts: each part's cells summed.
RowLists<CrossCell> Joined(const RowLists<CrossCell>& cells, const RowParts& parts);

// Counts by (row, column), both numbered from 0 without large gaps.
class SparseTable {
public:
    void Sparse_Add(std::int32_t amount, std::uint32_t row, std::uint32_t column) {
        if (row >= rows_.size()) rows_.resize(std::size_t{row} + 1);
        __builtin_prefetch(&rows_[row]);
        waiting_[waits_++] = {row, column, amount};
        if (waits_ == waiting_.size()) Settle();
    }
    // The cells of each row, each column once, in no order. Nothing is added afterwards.
    RowLists<CrossCell> Finish();

private:
    static constexpr std::uint32_t kFree = 0xffffffff;
    static constexpr std::size_t kFew = 2;
    static constexpr std::size_t kWaiting = 64;

    struct Slot {
        std::uint32_t column = kFree;
        std::int32_t count = 0;
    };
    // A table of its own for each row: what is counted often lies together. Rows of few cells have them here.
    struct Row {
        std::array<Slot, kFew> few{};
        Slot* places = nullptr;  // in place of the few
        std::uint32_t mask = 0;  // number of places, a power of two, less one
        std::uint32_t used = 0;
        std::span<const Slot> All() const {
            return places != nullptr ? std::span<const Slot>(places, std::size_t{mask} + 1) : few;
        }
    };
    struct Waiting {
        std::uint32_t row = 0;
        std::uint32_t column = 0;
        std::int32_t count = 0;
    };

    static std::uint32_t Home(std::uint32_t column, std::uint32_t mask) {
        return static_cast<std::uint32_t>(Scattered(column)) & mask;
    }
    static Slot& SlotOf(Row& row, std::uint32_t column);
    Slot& SlotFor(Row& row, std::uint32_t column);
    void Grow(Row& row);
    void Settle();

    // What was added last. Its memory is fetched meanwhile, many places at a time, so that no addition waits for it.
    std::array<Waiting, kWaiting> waiting_{};
    std::size_t waits_ = 0;
    std::vector<Row> rows_{};
    std::unique_ptr<std::pmr::monotonic_buffer_resource> room_ =
        std::make_unique<std::pmr::monotonic_buffer_resource>();  // of the places
};

}  // namespace analysis
