#include "analysis/sparse.h"

#include <algorithm>
#include <utility>

namespace analysis {
namespace {

constexpr std::size_t kFirstSlots = 256;

std::uint64_t Mix(std::uint64_t key) {
    key ^= key >> 32U;
    key *= 0x9e3779b97f4a7c15U;
    return key ^ (key >> 29U);
}

}  // namespace

std::size_t SparseTable::SlotOf(std::uint64_t key) const {
    std::size_t at = Mix(key) & (slots_.size() - 1);
    while (slots_[at].key != kFree && slots_[at].key != key) at = (at + 1) & (slots_.size() - 1);
    return at;
}

void SparseTable::Sparse_Add(std::int32_t amount, std::uint32_t row, std::uint32_t column) {
    if (used_ * 3 >= slots_.size() * 2) Grow();
    const std::uint64_t key = (std::uint64_t{row} << 32U) | column;
    Slot& slot = slots_[SlotOf(key)];
    if (slot.key == kFree) {
        slot.key = key;
        ++used_;
    }
    slot.count += amount;
}

void SparseTable::Grow() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(std::max(kFirstSlots, slots_.size() * 2)));
    for (const Slot& slot : old)
        if (slot.key != kFree) slots_[SlotOf(slot.key)] = slot;
}

void SparseTable::Finish() {
    cells_.clear();
    cells_.reserve(used_);
    for (const Slot& slot : slots_)
        if (slot.key != kFree)
            cells_.push_back(
                {static_cast<std::uint32_t>(slot.key >> 32U), static_cast<std::uint32_t>(slot.key), slot.count});
    std::ranges::sort(
        cells_, [](const Cell& a, const Cell& b) { return a.row != b.row ? a.row < b.row : a.column < b.column; });
    std::vector<Slot>().swap(slots_);
    used_ = 0;
}

std::span<const SparseTable::Cell> SparseTable::OfRow(std::uint32_t row) const {
    const auto range = std::ranges::equal_range(cells_, row, {}, &Cell::row);
    return {range.begin(), range.end()};
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

void DaySeries::ForEach(std::uint32_t row, const std::function<void(std::int32_t, const DayCounts&)>& see) const {
    for (std::uint32_t at = row < last_.size() ? last_[row] : kNone; at != kNone; at = cells_[at].before) {
        DayCounts counts{cells_[at].visitors, cells_[at].stayed, {}};
        if (!targets_.empty()) std::ranges::copy(targets_[at].counts, counts.targets);
        see(cells_[at].day, counts);
    }
}

}  // namespace analysis
