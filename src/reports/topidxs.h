#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace reports {

// A sorted list holds no more entries than this; a report sums no more lines.
inline constexpr std::size_t kListLimit = 32767;

// Indexes of the N highest counts (N negative: of all), highest first; among equal counts a later index stands first.
// Nothing when more values than the list can hold reach the lowest of these counts.
std::optional<std::vector<std::int32_t>> fTopIdxs(std::span<const std::int32_t> values, std::int32_t N);

}  // namespace reports
