#include "core/cds.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>

#include "core/cdslayout.h"
#include "core/numbers.h"

namespace core {
namespace {

template <typename Number>
std::vector<Number> NumbersOf(std::string_view list, bool readTail) {
    using Limits = std::numeric_limits<Number>;
    std::vector<Number> numbers;
    CDSReader reader(list, CDSLayout({}), readTail);
    while (const auto item = reader.Next()) {
        if constexpr (Limits::is_integer)
            numbers.push_back(
                static_cast<Number>(std::clamp<std::int64_t>(ToLong(fNum(*item)), Limits::min(), Limits::max())));
        else
            numbers.push_back(static_cast<Number>(std::clamp<double>(fNum(*item), Limits::lowest(), Limits::max())));
    }
    return numbers;
}

// Item n, counted from 0, without reading what follows it.
std::optional<std::string> ItemAt(long n, std::string_view list, const CDSForm& form) {
    if (n < 0) return std::nullopt;
    const auto most = static_cast<std::uint64_t>(n);
    if (most > list.size()) return std::nullopt;
    CDSReader reader(list, CDSLayout(form));
    for (long i = 0; i < n; ++i) reader.Skip();
    return reader.Next();
}

// The part of the array that a join takes.
std::span<const std::string> JoinRange(const StrArray& items, long lowerBound, long upperLimit) {
    if (!items.IsDim()) return {};
    const long first = std::max(lowerBound, items.Lower());
    const long last = upperLimit < 0 ? items.Upper() : std::min(upperLimit, items.Upper());
    if (first > last) return {};
    return items.Items().subspan(static_cast<std::size_t>(first - items.Lower()),
                                 static_cast<std::size_t>(last - first + 1));
}

bool IsDropped(const std::string& item, DropEmpty drop) { return drop == DropEmpty::Yes && fTrim(item).empty(); }

class Joiner {
public:
    Joiner(std::span<const std::string> items, const CDSForm& form, DropEmpty drop)
        : items_(items), layout_(form), delim_(form.delim), drop_(drop) {}

    std::string Text() const {
        std::string joined = Joined({}, Leading::No);
        // With no delimiter at all there is nothing to protect.
        if (delim_.empty() || !NeedsTail(joined)) return joined;
        std::vector<std::string_view> kept;
        for (const std::string& item : items_)
            if (!IsDropped(item, drop_)) kept.push_back(item);
        const CDSSubstitutes substitutes = ChooseSubstitutes(joined, kept, layout_);
        // In this form alone a first item that was dropped leaves its delimiter: stored lists have it.
        const Leading leading = layout_.HasBraces() ? Leading::Yes : Leading::No;
        return Joined(substitutes, leading) + TailText(substitutes, layout_);
    }

private:
    enum class Leading { No, Yes };

    bool NeedsTail(std::string_view joined) const {
        const auto needs = [&](const std::string& item) {
            return !IsDropped(item, drop_) && NeedsSubstitutes(item, layout_);
        };
        // Items such as "a{{", "" and "{{bc" would read as a list with a tail.
        return std::ranges::any_of(items_, needs) || TakeTail(joined, layout_).Any();
    }

    std::string Joined(const CDSSubstitutes& substitutes, Leading leading) const {
        std::string out;
        bool first = true;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            if (IsDropped(items_[i], drop_)) continue;
            if (leading == Leading::Yes ? i > 0 : !first) out += delim_;
            first = false;
            out.append(layout_.open);
            if (substitutes.Any())
                out += Protected(items_[i], substitutes, layout_);
            else
                out += items_[i];
            out.append(layout_.close);
        }
        return out;
    }

    std::span<const std::string> items_;
    CDSLayout layout_;
    std::string_view delim_;
    DropEmpty drop_;
};

}  // namespace

StrArray CDSSplit(std::string_view list, const CDSForm& form, long lowerBound) {
    if (list.empty()) return {0, {""}};
    std::vector<std::string> items;
    CDSReader reader(list, CDSLayout(form));
    while (auto item = reader.Next()) items.push_back(*std::move(item));
    return {lowerBound, std::move(items)};
}

StrArray CDSSplitPlain(std::string_view list, long lowerBound) { return CDSSplit(list, {}, lowerBound); }

std::vector<long> CDSSplitLong(std::string_view list, bool skipTrailer) { return NumbersOf<long>(list, !skipTrailer); }

std::vector<short> CDSSplitInt(std::string_view list) { return NumbersOf<short>(list, true); }

std::vector<float> CDSSplitSingle(std::string_view list) { return NumbersOf<float>(list, true); }

std::string CDSJoin(const StrArray& items, const CDSForm& form, long lowerBound, DropEmpty drop, long upperLimit) {
    return Joiner(JoinRange(items, lowerBound, upperLimit), form, drop).Text();
}

std::string CDSJoinPlain(const StrArray& items) { return CDSJoin(items, {}, items.Lower()); }

std::string CDSJoinPlain(const StrArray& items, long lowerBound) { return CDSJoin(items, {}, lowerBound); }

std::string CDSJoinVar(const std::vector<double>& numbers) {
    std::string out;
    for (std::size_t i = 0; i < numbers.size(); ++i) out.append(i == 0 ? "" : "|").append(NumText(numbers[i]));
    return out;
}

std::string CDSItem(long n, std::string_view list) { return ItemAt(n - 1, list, {}).value_or(""); }

double CDSItemNum(long n, std::string_view list) { return fNum(CDSItem(n, list)); }

std::string CDSBraceItem(long n, std::string_view list) { return ItemAt(n - 1, list, kBraceForm).value_or(""); }

double CDSBraceItemNum(long n, std::string_view list) { return fNum(CDSBraceItem(n, list)); }

std::string CDSItemX(long n, std::string_view list, const CDSForm& form, std::string_view otherwise) {
    return ItemAt(n, list, form).value_or(std::string(otherwise));
}

long CDSCount(std::string_view list) { return list.empty() ? 0 : static_cast<long>(std::ranges::count(list, '|')) + 1; }

long CDSFind(std::string_view list, std::string_view value, const CDSForm& form, Case mode) {
    if (list.empty()) return -1;
    CDSReader reader(list, CDSLayout(form));
    for (long position = 1; const auto item = reader.Next(); ++position)
        if (fEquals(*item, value, mode)) return position;
    return -1;
}

long CDSFindQuick(std::string_view list, std::string_view value, Case mode, long otherwise) {
    const auto wrapped = [](std::string_view text) { return std::string("|").append(text).append("|"); };
    const std::string text = wrapped(list);
    const std::size_t at = fFind(text, wrapped(value), mode);
    if (at == std::string::npos) return otherwise;
    return std::max(1L, CDSCount(std::string_view(text).substr(0, at)));
}

long CDSFindDflt(std::string_view list, std::string_view value, bool exact, Case mode, long otherwise) {
    if (!exact) return CDSFindQuick(list, value, mode, otherwise);
    const long position = CDSFind(list, value, {}, mode);
    return position < 0 ? otherwise : position;
}

CDSHit CDSHas(std::string_view value, std::string_view list, const CDSForm& form, Case mode) {
    const CDSLayout layout(form);
    const CDSSubstitutes substitutes = TakeTail(list, layout);
    if (!substitutes.Any() && NeedsSubstitutes(value, layout)) return {};
    std::string item = std::string(layout.delim).append(layout.open);
    item.append(Protected(value, substitutes, layout)).append(layout.close).append(layout.delim);
    const std::string text = std::string(layout.delim).append(list).append(layout.delim);
    const std::size_t at = fFind(text, item, mode);
    if (at == std::string::npos) return {};
    return {true, static_cast<long>(at + 1) - static_cast<long>(layout.delim.size()) - (layout.HasBraces() ? 0 : 1)};
}

}  // namespace core
