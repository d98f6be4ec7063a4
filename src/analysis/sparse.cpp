#include "analysis/sparse.h"

#include <algorithm>
#include <utility>

namespace analysis {
namespace {

constexpr std::size_t kFirstSlots = 4;

using Cells = std::vector<SparseTable::Cell>;

// Counting sort: puts the cells in order of one of their numbers, those of equal number as they stood. Gives where the
// cells of each number begin.
std::vector<std::size_t> OrderBy(std::uint32_t SparseTable::Cell::*number, const Cells& from, Cells& to) {
    std::uint32_t highest = 0;
    for (const SparseTable::Cell& cell : from) highest = std::max(highest, cell.*number);
    std::vector<std::size_t> starts(std::size_t{highest} + 2);
    for (const SparseTable::Cell& cell : from) ++starts[std::size_t{cell.*number} + 1];
    for (std::size_t i = 1; i < starts.size(); ++i) starts[i] += starts[i - 1];
    std::vector<std::size_t> next = starts;
    to.resize(from.size());
    for (const SparseTable::Cell& cell : from) to[next[cell.*number]++] = cell;
    return starts;
}

}  // namespace

SparseTable::Slot& SparseTable::SlotOf(Row& row, std::uint32_t column) {
    std::uint32_t at = Home(column, row.mask);
    while (row.places[at].column != kFree && row.places[at].column != column) at = (at + 1) & row.mask;
    return row.places[at];
}

void SparseTable::Grow(Row& row) {
    const std::size_t size = std::max(kFirstSlots, row.places.size() * 2);
    const std::vector<Slot> old = std::exchange(row.places, std::vector<Slot>(size));
    row.mask = static_cast<std::uint32_t>(size - 1);
    for (const Slot& slot : old)
        if (slot.column != kFree) SlotOf(row, slot.column) = slot;
}

void SparseTable::Settle() {
    for (const Cell& cell : std::span(waiting_).first(waits_)) {
        Row& row = rows_[cell.row];
        if (row.used * std::size_t{4} >= row.places.size() * 3) Grow(row);
        Slot& slot = SlotOf(row, cell.column);
        if (slot.column == kFree) {
            slot.column = cell.column;
            ++row.used;
        }
        slot.count += cell.count;
    }
    waits_ = 0;
}

void SparseTable::Finish() {
    Settle();
    if (rows_.empty()) return;
    Cells cells, byColumn;
    std::size_t used = 0;
    for (const Row& row : rows_) used += row.used;
    cells.reserve(used);
    for (std::uint32_t row = 0; row < rows_.size(); ++row)
        for (const Slot& slot : std::exchange(rows_[row].places, {}))
            if (slot.column != kFree) cells.push_back({row, slot.column, slot.count});
    std::vector<Row>().swap(rows_);
    OrderBy(&Cell::column, cells, byColumn);
    cells_ = std::move(cells);
    starts_ = OrderBy(&Cell::row, byColumn, cells_);
}

void DaySeries::Add(std::uint32_t row, std::int32_t day, const DayCounts& counts, bool withTargets) {
    if (row >= last_.size()) last_.resize(row + 1, kNone);
    std::uint32_t at = last_[row];
    if (at == kNone || cells_[at].day != day) {
        cells_.push_back({day, 0, 0, at});
        if (withTargets) targets_.emplace_back();
        at = static_cast<std::uint32_t>(cells_.size() - 1);
        last_[row] = at;
    }
    cells_[at].visitors += counts.visitors;
    cells_[at].stayed += counts.stayed;
    if (!withTargets) return;
    for (std::size_t t = 0; t < kMaxTargets; ++t) targets_[at].counts[t] += counts.targets[t];
}

}  // namespace analysis
