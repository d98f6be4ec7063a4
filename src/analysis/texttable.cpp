#include "analysis/texttable.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace analysis {

bool TextTable::Is(const Slot& slot, std::uint32_t hash, std::string_view text) {
    if (slot.hash != hash) return false;
    std::uint32_t length = 0;
    std::memcpy(&length, slot.text - sizeof length, sizeof length);
    return length == text.size() && (length == 0 || std::memcmp(slot.text, text.data(), length) == 0);
}

std::size_t TextTable::PlaceOf(std::string_view text, std::uint32_t hash) const {
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].text != nullptr && !Is(slots_[at], hash, text)) at = (at + 1) & (slots_.size() - 1);
    return at;
}

std::optional<std::uint32_t> TextTable::Find(std::string_view text) const {
    const Slot& slot = slots_[PlaceOf(text, HashOf(text))];
    return slot.text != nullptr ? std::optional(slot.id) : std::nullopt;
}

std::uint32_t TextTable::FindOrAdd(std::string_view text) {
    const std::uint32_t hash = HashOf(text);
    const std::size_t at = PlaceOf(text, hash);
    if (slots_[at].text != nullptr) return slots_[at].id;
    const std::uint32_t id = Size();
    const char* kept = Keep(text);
    texts_.emplace_back(kept, text.size());
    slots_[at] = {hash, id, kept};
    if (texts_.size() * 3 > slots_.size() * 2) Grow();
    return id;
}

const char* TextTable::Keep(std::string_view text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    const std::size_t need = sizeof length + text.size();
    if (need > left_) {
        left_ = std::max(kBlock, need);
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
        free_ = blocks_.back().get();
    }
    std::memcpy(free_, &length, sizeof length);
    char* kept = free_ + sizeof length;
    if (!text.empty()) std::memcpy(kept, text.data(), text.size());
    free_ += need;
    left_ -= need;
    return kept;
}

void TextTable::Grow() {
    std::vector<Slot> wider(slots_.size() * 2);
    for (const Slot& slot : slots_) {
        if (slot.text == nullptr) continue;
        std::size_t at = slot.hash & (wider.size() - 1);
        while (wider[at].text != nullptr) at = (at + 1) & (wider.size() - 1);
        wider[at] = slot;
    }
    slots_ = std::move(wider);
}

PairTable::Slot& PairTable::SlotOf(std::uint64_t pair) {
    std::size_t at = HomeOf(pair);
    while (slots_[at].used && slots_[at].pair != pair) at = (at + 1) & (slots_.size() - 1);
    return slots_[at];
}

void PairTable::Grow() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
    for (const Slot& slot : old)
        if (slot.used) SlotOf(slot.pair) = slot;
}

std::int32_t& PairTable::Of(std::uint32_t first, std::uint32_t second) {
    const std::uint64_t pair = PairOf(first, second);
    Slot* slot = &SlotOf(pair);
    if (!slot->used) {
        if (++used_ * 3 > slots_.size() * 2) {
            Grow();
            slot = &SlotOf(pair);
        }
        *slot = {pair, 0, true};
    }
    return slot->count;
}

void IdSet::Clear() {
    if (++round_ != 0) return;
    std::ranges::fill(rounds_, 0);
    round_ = 1;
}

void IdSet::Grow(std::uint32_t id) { rounds_.resize(std::max<std::size_t>(id + 1, rounds_.size() * 2)); }

}  // namespace analysis
