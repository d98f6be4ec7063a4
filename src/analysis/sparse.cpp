#include "analysis/sparse.h"

#include <algorithm>

namespace analysis {
namespace {

constexpr std::size_t kFirstPlaces = 8;

}  // namespace

RowParts Turned(const RowLists<std::uint32_t>& lists, std::uint32_t numbers) {
    std::vector<std::size_t> starts(std::size_t{numbers} + 1);
    for (std::uint32_t row = 0; row < lists.Rows(); ++row)
        for (const std::uint32_t number : lists.OfRow(row)) ++starts[std::size_t{number} + 1];
    for (std::size_t i = 1; i < starts.size(); ++i) starts[i] += starts[i - 1];
    std::vector<std::size_t> next = starts;
    std::vector<std::uint32_t> rows(starts.back());
    for (std::uint32_t row = 0; row < lists.Rows(); ++row)
        for (const std::uint32_t number : lists.OfRow(row)) rows[next[number]++] = row;
    return {std::move(rows), std::move(starts)};
}

SparseTable::Slot& SparseTable::SlotOf(Row& row, std::uint32_t column) {
    std::uint32_t at = Home(column, row.mask);
    while (row.places[at].column != kFree && row.places[at].column != column) at = (at + 1) & row.mask;
    return row.places[at];
}

void SparseTable::Grow(Row& row) {
    const std::span<const Slot> old = row.All();
    const std::size_t size = row.places == nullptr ? kFirstPlaces : old.size() * 2;
    row.places = static_cast<Slot*>(room_->allocate(size * sizeof(Slot), alignof(Slot)));
    row.mask = static_cast<std::uint32_t>(size - 1);
    std::uninitialized_fill_n(row.places, size, Slot{});
    for (const Slot& slot : old)
        if (slot.column != kFree) SlotOf(row, slot.column) = slot;
}

SparseTable::Slot& SparseTable::SlotFor(Row& row, std::uint32_t column) {
    if (row.places == nullptr) {
        for (Slot& slot : row.few)
            if (slot.column == column || slot.column == kFree) return slot;
        Grow(row);
    } else if (row.used * std::size_t{4} >= (std::size_t{row.mask} + 1) * 3) {
        Grow(row);
    }
    return SlotOf(row, column);
}

void SparseTable::Settle() {
    const std::span<const Waiting> all = std::span(waiting_).first(waits_);
    for (const Waiting& wait : all) {
        const Row& row = rows_[wait.row];
        if (row.places != nullptr) __builtin_prefetch(row.places + Home(wait.column, row.mask));
    }
    for (const Waiting& wait : all) {
        Row& row = rows_[wait.row];
        Slot& slot = SlotFor(row, wait.column);
        if (slot.column == kFree) {
            slot.column = wait.column;
            ++row.used;
        }
        slot.count += wait.count;
    }
    waits_ = 0;
}

RowLists<CrossCell> SparseTable::Finish() {
    Settle();
    RowLists<CrossCell> lists;
    for (const Row& row : rows_) {
        for (const Slot& slot : row.All())
            if (slot.column != kFree) lists.Add({slot.column, slot.count});
        lists.EndRow();
    }
    lists.Shrink();
    return lists;
}

RowLists<CrossCell> Joined(const RowLists<CrossCell>& cells, const RowParts& parts) {
    KeyedSums<std::int32_t> sums;
    RowLists<CrossCell> lists;
    for (std::uint32_t row = 0; row < parts.Rows(); ++row) {
        for (const std::uint32_t part : parts.OfRow(row))
            for (const CrossCell& cell : cells.OfRow(part)) sums.Of(cell.column) += cell.count;
        sums.Take([&lists](std::uint32_t column, std::int32_t count) { lists.Add({column, count}); });
        lists.EndRow();
    }
    lists.Shrink();
    return lists;
}

}  // namespace analysis
