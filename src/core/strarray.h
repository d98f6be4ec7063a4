#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/text.h"

namespace core {

// A list of texts whose first index is part of its value: a log line's fields
// start at 0, a split list usually at 1. A fresh array has no bounds at all,
// which is not the same as being empty; ask IsDim.
class StrArray {
public:
    StrArray() = default;
    StrArray(long lower, std::vector<std::string> items) : lower_(lower), items_(std::move(items)) {}

    bool IsDim() const { return !items_.empty(); }
    long Lower() const { return lower_; }
    long Upper() const { return lower_ + static_cast<long>(items_.size()) - 1; }

    // Raises run-time error 9 outside the bounds.
    std::string& operator[](long index);
    const std::string& operator[](long index) const;

    // The element, or `otherwise` outside the bounds.
    const std::string& Item(long index, const std::string& otherwise) const;

    // Moves the upper bound, keeping what is inside the new bounds.
    void ReDim(long upper);
    void Append(std::string item) { items_.push_back(std::move(item)); }

    std::span<const std::string> Items() const& { return items_; }
    std::vector<std::string> Items() && { return std::move(items_); }  // so that a loop over a fresh list owns it

    friend bool operator==(const StrArray&, const StrArray&) = default;

private:
    std::size_t Offset(long index) const;

    long lower_ = 0;
    std::vector<std::string> items_;
};

inline long ArrUBound(const StrArray& array, long otherwise) { return array.IsDim() ? array.Upper() : otherwise; }

// Index of the first match from `from` (below 0: the lower bound), or -1.
long ArrFind(const StrArray& array, std::string_view value, long from = -1, Case mode = Case::Exact);

struct ArrAdded {
    long index = 0;
    bool added = false;
};
// mode 0: no uniqueness test, 1: exact, 2: ignoring case. `index` -1 appends, with `reuseEmptyFirst` into
// a lone blank slot 0; an index of 0 or more grows the array to it.
ArrAdded ArrAdd(StrArray& array, long index, std::string_view value, int mode, bool reuseEmptyFirst = false);

// A window of `count` elements from `start`, limited by the source's bounds.
StrArray ArrCopyRange(const StrArray& array, long start, long count);

}  // namespace core
