#include "logdefs/rulematcher.h"

namespace logdefs {

RuleMatcher::RuleMatcher(const std::vector<FltrRule>& rules) : count_(rules.size()) {
    std::vector<std::string_view> parts;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (rules[i].Typ == kContains && !rules[i].MC) {
            parts.push_back(rules[i].Val);
            partIndex_.push_back(i);
        } else {
            others_.push_back({rules[i], i});
        }
    }
    parts_ = Literals(parts);
}

std::size_t RuleMatcher::FirstSatisfied(std::string_view value, std::string_view lowered) const {
    const std::size_t part = parts_.First(lowered);
    const std::size_t first = part == Literals::kNone ? count_ : partIndex_[part];
    for (const Other& other : others_) {
        if (other.index > first) break;
        if (FltrTestPrepared(other.rule.MC ? value : lowered, other.rule)) return other.index;
    }
    return first;
}

}  // namespace logdefs
