#pragma once

#include <string_view>
#include <vector>

#include "logdefs/literals.h"
#include "logdefs/rule.h"

namespace logdefs {

// The rules of a filter that all look at one value, made ready for values that are seen once: hundreds of robots by a
// part of their name cost one pass over the user agent.
class RuleMatcher {
public:
    // Keeps what it needs of the rules; they may go.
    explicit RuleMatcher(const std::vector<FltrRule>& rules);

    // The first satisfied rule, or the number of rules. `lowered` is the value in lower case.
    std::size_t FirstSatisfied(std::string_view value, std::string_view lowered) const;

private:
    struct Other {
        FltrRule rule{};
        std::size_t index = 0;
    };
    std::size_t count_ = 0;
    Literals parts_{};
    std::vector<std::size_t> partIndex_{};  // rule of each part, ascending
    std::vector<Other> others_{};           // rules that are no "contains" without case, ascending
};

}  // namespace logdefs
