#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "core/cds.h"
#include "core/cdslayout.h"
#include "core/numbers.h"

namespace core {
namespace {

constexpr std::string_view kAlreadyThere = "Item already exists. List can contain unique items only.";
constexpr std::string_view kUnknownMode = "Internal parameter err Chunks/0088";

// The items; none for the empty list, where a split gives one empty item.
std::vector<std::string> ItemsOf(std::string_view list, const CDSForm& form) {
    std::vector<std::string> items;
    if (list.empty()) return items;
    CDSReader reader(list, CDSLayout(form));
    while (auto item = reader.Next()) items.push_back(*std::move(item));
    return items;
}

std::string JoinAll(std::vector<std::string> items, const CDSForm& form) {
    return CDSJoin(StrArray(1, std::move(items)), form, 1);
}

std::string Wrapped(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout) {
    return std::string(layout.open).append(Protected(item, substitutes, layout)).append(layout.close);
}

std::string Placed(std::string_view body, std::string_view item, const CDSLayout& layout, bool atHead) {
    const std::string_view delim = body.empty() ? std::string_view() : layout.delim;
    return std::string(atHead ? item : body).append(delim).append(atHead ? body : item);
}

// The list with `item` under substitutes chosen anew for all items.
std::string Rewritten(std::string_view list, std::string_view body, std::string_view item, const CDSForm& form,
                      bool atHead) {
    const CDSLayout layout(form);
    std::vector<std::string> items = ItemsOf(list, form);
    items.insert(atHead ? items.begin() : items.end(), std::string(item));
    const std::vector<std::string_view> views(items.begin(), items.end());
    const CDSSubstitutes chosen = ChooseSubstitutes(std::string(body).append(item), views, layout);
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i)
        text.append(i == 0 ? "" : layout.delim).append(Wrapped(items[i], chosen, layout));
    return text + TailText(chosen, layout);
}

std::string WithItem(std::string_view list, std::string_view item, const CDSForm& form, bool atHead) {
    const CDSLayout layout(form);
    std::string_view body = list;
    const CDSSubstitutes old = TakeTail(body, layout);
    if (old.Any() ? ComesBack(item, old, layout) : !NeedsSubstitutes(item, layout)) {
        std::string text = Placed(body, Wrapped(item, old, layout), layout, atHead) + TailText(old, layout);
        // Without a tail of its own a plain list may come to look as if it had one.
        if (std::string_view rest = text; old.Any() || !TakeTail(rest, layout).Any()) return text;
    }
    return Rewritten(list, body, item, form, atHead);
}

bool Holds(std::string_view list, std::string_view item, const CDSForm& form, Case mode) {
    CDSReader reader(list, CDSLayout(form));
    while (const auto next = reader.Next())
        if (fEquals(*next, item, mode)) return true;
    return false;
}

// Takes out the items at which `isOut(position, item)` is true.
template <typename IsOut>
CDSRemoved RemoveWhere(std::string_view list, const CDSForm& form, IsOut isOut) {
    CDSRemoved result{std::string(list)};
    std::vector<std::string> kept;
    long position = 0;
    for (std::string& item : ItemsOf(list, form)) {
        if (!isOut(++position, item)) {
            kept.push_back(std::move(item));
            continue;
        }
        result.positions.append(result.removed ? "|" : "").append(std::to_string(position));
        result.removed = true;
    }
    if (result.removed) result.list = kept.empty() ? std::string() : JoinAll(std::move(kept), form);
    return result;
}

std::string Formatted(const std::string& text, const std::string& format) {
    if (format.empty()) return text;
    return format.find_first_of("#0") != std::string::npos ? fFormat(fNum(text), format) : fFormatText(text, format);
}

}  // namespace

std::string CDSSetItem(long n, std::string_view value, std::string_view list) {
    return CDSSetItemX(n, list, {}, value);
}

std::string CDSSetItemX(long n, std::string_view list, const CDSForm& form, std::string_view value) {
    if (n < 1) return std::string(list);
    std::vector<std::string> items = ItemsOf(list, form);
    const auto index = static_cast<std::size_t>(n);
    if (items.size() < index) items.resize(index);
    items[index - 1] = value;
    return JoinAll(std::move(items), form);
}

std::string CDSAppend(std::string_view list, std::string_view item) {
    const CDSLayout layout({});
    std::string_view body = list;
    if (!TakeTail(body, layout).Any() && !NeedsSubstitutes(item, layout)) {
        std::string text = Placed(list, item, layout, false);
        if (std::string_view rest = text; !TakeTail(rest, layout).Any()) return text;
    }
    std::vector<std::string> items = ItemsOf(list, {});
    items.emplace_back(item);
    return JoinAll(std::move(items), {});
}

CDSAdded CDSAdd(std::string_view list, std::string_view item, const CDSForm& form, int mode, bool atHead) {
    const bool unique = mode == 1 || mode == 2;
    if (unique && Holds(list, item, form, mode == 1 ? Case::Exact : Case::Ignore))
        return {std::string(list), false, std::string(kAlreadyThere)};
    return {WithItem(list, item, form, atHead), true, unique || mode == 0 ? "" : std::string(kUnknownMode)};
}

CDSFoundOrAdded CDSFindOrAdd(std::string_view list, std::string_view value, const CDSForm& form, int mode,
                             bool atHead) {
    const Case how = mode == 2 ? Case::Ignore : Case::Exact;
    const long found = CDSFind(list, value, form, how);
    if (found > 0) return {std::string(list), found, false};
    CDSAdded added = CDSAdd(list, value, form, mode, atHead);
    const long position = CDSFind(added.list, value, form, how);
    return {std::move(added.list), position, added.added};
}

CDSRemoved CDSRemove(std::string_view list, std::string_view value, const CDSForm& form, Case mode) {
    return RemoveWhere(list, form, [&](long, const std::string& item) { return fEquals(item, value, mode); });
}

CDSRemoved CDSRemoveAt(std::string_view list, std::string_view positions, const CDSForm& form) {
    std::vector<long> out = CDSSplitLong(positions);
    std::ranges::sort(out);
    return RemoveWhere(list, form,
                       [&](long position, const std::string&) { return std::ranges::binary_search(out, position); });
}

std::string CDSReorder(std::string_view order, std::string_view row, const CDSForm& form, std::string_view formats,
                       std::string_view separator) {
    const StrArray wanted = CDSSplitPlain(order, 1), items = CDSSplit(row, form, 1);
    const StrArray shapes = CDSSplitPlain(formats, 1);
    const std::string none;
    std::string out;
    for (long i = 1, count = CDSCount(order); i <= count; ++i) {
        const long n = ToLong(fNum(wanted.Item(i, none)));
        if (i > 1) out += separator;
        out += Formatted(n < 1 ? none : items.Item(n, none), shapes.Item(i, none));
    }
    return out;
}

std::string CDSOf(const std::vector<std::string>& items) {
    std::vector<std::string> kept;
    std::ranges::copy_if(items, std::back_inserter(kept), [](const std::string& item) { return item != "|"; });
    return kept.empty() ? std::string() : JoinAll(std::move(kept), {});
}

}  // namespace core
