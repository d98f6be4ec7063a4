#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "logdefs/literals.h"

namespace logdefs {

// Of many patterns those that a value may match, in one pass over it: of each, the longest piece without wildcards must
// be in the value.
class PatternFilter {
public:
    PatternFilter() = default;
    explicit PatternFilter(const std::vector<std::string_view>& patterns);

    // Their numbers, ascending. All others do not match.
    std::vector<std::size_t> Candidates(std::string_view value) const;

private:
    Literals pieces_{};
    std::vector<std::size_t> pieceOf_{};  // pattern of each piece, ascending
    std::vector<std::size_t> always_{};   // patterns without a piece that tells anything
};

}  // namespace logdefs
