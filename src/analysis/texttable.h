#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace analysis {

// Gives each distinct text a number, from 0, in the order of its first sighting. Texts live in blocks that never move.
// A sighting of a known text allocates nothing.
class TextTable {
public:
    std::uint32_t FindOrAdd(std::string_view text);
    std::string_view Text(std::uint32_t id) const { return texts_[id]; }
    std::uint32_t Size() const { return static_cast<std::uint32_t>(texts_.size()); }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t id = kFree;
    };
    static constexpr std::uint32_t kFree = 0xffffffff;
    static constexpr std::size_t kBlock = 64U << 10U;

    std::string_view Keep(std::string_view text);
    void Grow();

    std::vector<Slot> slots_{std::vector<Slot>(64)};
    std::vector<std::string_view> texts_{};
    std::vector<std::unique_ptr<char[]>> blocks_{};
    char* free_ = nullptr;
    std::size_t left_ = 0;
};

// A set of small numbers that is emptied in no time.
class IdSet {
public:
    void Clear();
    bool Insert(std::uint32_t id);  // false: it was there

private:
    std::vector<std::uint32_t> rounds_{};
    std::uint32_t round_ = 1;
};

}  // namespace analysis
