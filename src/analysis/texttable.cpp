#include "analysis/texttable.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace analysis {

std::uint32_t TextTable::FindOrAdd(std::string_view text) {
    const std::size_t wide = std::hash<std::string_view>{}(text);
    const auto hash = static_cast<std::uint32_t>(wide ^ (wide >> 32U));
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].id != kFree) {
        if (slots_[at].hash == hash && texts_[slots_[at].id] == text) return slots_[at].id;
        at = (at + 1) & (slots_.size() - 1);
    }
    const std::uint32_t id = Size();
    texts_.push_back(Keep(text));
    slots_[at] = {hash, id};
    if (texts_.size() * 3 > slots_.size() * 2) Grow();
    return id;
}

std::string_view TextTable::Keep(std::string_view text) {
    if (text.empty()) return {};
    if (text.size() > left_) {
        left_ = std::max(kBlock, text.size());
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
        free_ = blocks_.back().get();
    }
    std::memcpy(free_, text.data(), text.size());
    const std::string_view kept(free_, text.size());
    free_ += text.size();
    left_ -= text.size();
    return kept;
}

void TextTable::Grow() {
    std::vector<Slot> wider(slots_.size() * 2);
    for (const Slot& slot : slots_) {
        if (slot.id == kFree) continue;
        std::size_t at = slot.hash & (wider.size() - 1);
        while (wider[at].id != kFree) at = (at + 1) & (wider.size() - 1);
        wider[at] = slot;
    }
    slots_ = std::move(wider);
}

void IdSet::Clear() {
    if (++round_ != 0) return;
    std::ranges::fill(rounds_, 0);
    round_ = 1;
}

bool IdSet::Insert(std::uint32_t id) {
    if (id >= rounds_.size()) rounds_.resize(std::max<std::size_t>(id + 1, rounds_.size() * 2));
    if (rounds_[id] == round_) return false;
    rounds_[id] = round_;
    return true;
}

}  // namespace analysis
