// Numbers for the generator: few, fast, and a function of the seed alone.
#pragma once

#include <cstddef>
#include <cstdint>

namespace loggen {

// splitmix64: the same numbers on every machine, which the standard distributions do not promise.
constexpr std::uint64_t Mix(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(Mix(seed)) {}
    std::uint64_t Next() { return Mix(state_ += 0x9E3779B97F4A7C15U); }
    std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(((Next() >> 32U) * limit) >> 32U); }
    std::int64_t Between(std::int64_t low, std::int64_t high) {
        return low + static_cast<std::int64_t>(Next() % static_cast<std::uint64_t>(high - low + 1));
    }
    // One of `count` things that are numbered from `first`.
    std::size_t Pick(std::size_t first, std::size_t count) { return first + Below(static_cast<std::uint32_t>(count)); }
    bool Chance(std::uint32_t perMille) { return Below(1000) < perMille; }

private:
    std::uint64_t state_;
};

}  // namespace loggen
