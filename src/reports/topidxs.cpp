#include "reports/topidxs.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>

namespace reports {
namespace {

// The highest count down to which N values stand.
std::int32_t LowestCount(std::span<const std::int32_t> values, std::int32_t N) {
    std::map<std::int32_t, std::int64_t, std::greater<>> numbers;
    for (const std::int32_t value : values) ++numbers[value];
    std::int64_t reached = 0;
    for (const auto& [count, number] : numbers) {
        reached += number;
        if (reached >= N) return count;
    }
    return std::numeric_limits<std::int32_t>::min();
}

}  // namespace

std::optional<std::vector<std::int32_t>> fTopIdxs(std::span<const std::int32_t> values, std::int32_t N) {
    std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    if (values.size() > kListLimit && N >= 0) lowest = LowestCount(values, N);
    std::vector<std::int32_t> list;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] >= lowest) list.push_back(static_cast<std::int32_t>(i));
    if (list.size() > kListLimit) return std::nullopt;
    std::ranges::sort(list, [values](std::int32_t a, std::int32_t b) {
        const std::int32_t countA = values[static_cast<std::size_t>(a)];
        const std::int32_t countB = values[static_cast<std::size_t>(b)];
        return countA != countB ? countA > countB : a > b;
    });
    if (N >= 0 && list.size() > static_cast<std::size_t>(N)) list.resize(static_cast<std::size_t>(N));
    return list;
}

}  // namespace reports
