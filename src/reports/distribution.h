#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/results.h"

namespace reports {

inline constexpr std::size_t kDistributionLimit = 600;

struct LabelCount {
    std::uint32_t label = 0;
    std::int64_t count = 0;
};

// "label count [percent%]" for each label, the highest count first (a later label first among equals), each followed
// by a line break, until the text is longer than `limit`; "..." when labels are left over.
std::string DistributionText(const analysis::CrossTable& table, std::vector<LabelCount> pairs, double visitors,
                             std::size_t limit = kDistributionLimit);
std::vector<LabelCount> PairsOfRow(const analysis::CrossTable& table, std::uint32_t row);

}  // namespace reports
