#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "logdefs/memo.h"

namespace sitedb {

// Stored lines of the seconds that a read is at, by everything that makes two lines equal. A log's lines come nearly in
// order of time, so a second is read once from the table, whatever number of lines it has. Memory is bounded.
class LineGroups {
public:
    using Group = std::unordered_map<std::string, std::int32_t, logdefs::TextHash, std::equal_to<>>;

    // The group of a second, or nullptr. `Make` drops the oldest ones when they hold too much.
    Group* Find(std::int64_t timestamp);
    Group& Make(std::int64_t timestamp);
    // To be told of each text put into a group.
    void Count(std::size_t bytes) { bytes_ += bytes + kEntryCost; }
    void Clear();

private:
    static constexpr std::size_t kEntryCost = 96;
    static constexpr std::size_t kMaxBytes = 24U << 20U;

    std::unordered_map<std::int64_t, Group> groups_{};
    std::deque<std::int64_t> order_{};
    std::size_t bytes_ = 0;
};

}  // namespace sitedb
