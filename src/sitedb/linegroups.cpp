#include "sitedb/linegroups.h"

namespace sitedb {

LineGroups::Group* LineGroups::Find(std::int64_t timestamp) {
    const auto at = groups_.find(timestamp);
    return at == groups_.end() ? nullptr : &at->second;
}

LineGroups::Group& LineGroups::Make(std::int64_t timestamp) {
    constexpr std::size_t kMaxGroups = 4096;
    while (!order_.empty() && (bytes_ > kMaxBytes || order_.size() >= kMaxGroups)) {
        const auto oldest = groups_.find(order_.front());
        for (const auto& entry : oldest->second) bytes_ -= entry.first.size() + kEntryCost;
        groups_.erase(oldest);
        order_.pop_front();
    }
    order_.push_back(timestamp);
    return groups_[timestamp];
}

void LineGroups::Clear() {
    groups_.clear();
    order_.clear();
    bytes_ = 0;
}

}  // namespace sitedb
