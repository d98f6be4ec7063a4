#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace logdefs {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

// Remembers what was worked out for a text. Its memory is bounded: when full it starts anew, so a visitor who
// sends ever new texts costs no more than without it.
template <typename Value>
class BoundedMemo {
public:
    explicit BoundedMemo(std::size_t maxEntries = 1 << 15, std::size_t maxBytes = 8U << 20U)
        : maxEntries_(maxEntries), maxBytes_(maxBytes) {}

    const Value* Find(std::string_view text) const {
        const auto at = values_.find(text);
        return at == values_.end() ? nullptr : &at->second;
    }

    const Value& Put(std::string_view text, Value value) {
        if (values_.size() >= maxEntries_ || bytes_ + text.size() > maxBytes_) Clear();
        bytes_ += text.size();
        return values_.insert_or_assign(std::string(text), std::move(value)).first->second;
    }

    void Clear() {
        values_.clear();
        bytes_ = 0;
    }

private:
    std::unordered_map<std::string, Value, TextHash, std::equal_to<>> values_{};
    std::size_t maxEntries_;
    std::size_t maxBytes_;
    std::size_t bytes_ = 0;
};

}  // namespace logdefs
