#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace analysis {

// Gives each distinct text a number, from 0, in the order of its first sighting. Texts live in blocks that never move.
// A sighting of a known text allocates nothing.
class TextTable {
public:
    std::uint32_t FindOrAdd(std::string_view text);
    std::optional<std::uint32_t> Find(std::string_view text) const;
    // Fetches what a look-up of the text soon will need.
    void Expect(std::string_view text) const { __builtin_prefetch(&slots_[HashOf(text) & (slots_.size() - 1)]); }
    std::string_view Text(std::uint32_t id) const { return texts_[id]; }
    std::uint32_t Size() const { return static_cast<std::uint32_t>(texts_.size()); }

private:
    // A slot leads straight to its text: a look-up costs two cache misses, not three.
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t id = 0;
        const char* text = nullptr;  // the length in front of it; nullptr: free
    };
    static constexpr std::size_t kBlock = 64U << 10U;

    static std::uint32_t HashOf(std::string_view text) {
        const std::size_t wide = std::hash<std::string_view>{}(text);
        return static_cast<std::uint32_t>(wide ^ (wide >> 32U));
    }
    static bool Is(const Slot& slot, std::uint32_t hash, std::string_view text);
    // Where the text stands, or the free slot where it would.
    std::size_t PlaceOf(std::string_view text, std::uint32_t hash) const;
    const char* Keep(std::string_view text);
    void Grow();

    std::vector<Slot> slots_{std::vector<Slot>(64)};
    std::vector<std::string_view> texts_{};
    std::vector<std::unique_ptr<char[]>> blocks_{};
    char* free_ = nullptr;
    std::size_t left_ = 0;
};

// Where a number goes in a table. Visitors have a hand in the numbers that are given: no choice of them may crowd
// together.
constexpr std::uint64_t Scattered(std::uint64_t number) {
    constexpr std::uint64_t kFactor = 0xd6e8feb86659fd93U;
    number = (number ^ number >> 32U) * kFactor;
    number = (number ^ number >> 32U) * kFactor;
    return number ^ number >> 32U;
}

// A count for each pair of numbers, 0 at first.
class PairTable {
public:
    // Fetches what Of soon will need.
    void Expect(std::uint32_t first, std::uint32_t second) const {
        __builtin_prefetch(&slots_[HomeOf(PairOf(first, second))]);
    }
    // Stands until the next call.
    std::int32_t& Of(std::uint32_t first, std::uint32_t second);

private:
    struct Slot {
        std::uint64_t pair = 0;
        std::int32_t count = 0;
        bool used = false;
    };

    static std::uint64_t PairOf(std::uint32_t first, std::uint32_t second) {
        return std::uint64_t{first} << 32U | second;
    }
    std::size_t HomeOf(std::uint64_t pair) const {
        return static_cast<std::size_t>(Scattered(pair)) & (slots_.size() - 1);
    }
    Slot& SlotOf(std::uint64_t pair);
    void Grow();

    std::vector<Slot> slots_{std::vector<Slot>(64)};
    std::size_t used_ = 0;
};

// A set of small numbers that is emptied in no time.
class IdSet {
public:
    void Clear();
    // False: it was there.
    bool Insert(std::uint32_t id) {
        if (id >= rounds_.size()) Grow(id);
        if (rounds_[id] == round_) return false;
        rounds_[id] = round_;
        return true;
    }

private:
    void Grow(std::uint32_t id);

    std::vector<std::uint32_t> rounds_{};
    std::uint32_t round_ = 1;
};

}  // namespace analysis
