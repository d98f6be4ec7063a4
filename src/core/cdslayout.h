#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/cds.h"

// How a delimited list lies in its text, for the sources of cds.h alone.
namespace core {

// A form with its defaults filled in. Without braces `open` and `close` are empty.
struct CDSLayout {
    explicit CDSLayout(const CDSForm& form);

    bool HasBraces() const { return !open.empty(); }

    std::string_view delim, marker;
    std::string_view open{}, close{};
};

// The texts that stand inside items for what may not stand there: the delimiter,
// or the two braces. Both empty: nothing is replaced.
struct CDSSubstitutes {
    std::string first{};   // for the delimiter, or the opening brace
    std::string second{};  // for the closing brace

    bool Any() const { return !first.empty(); }
};

// Cuts the tail that names the substitutes off `list` and gives them.
CDSSubstitutes TakeTail(std::string_view& list, const CDSLayout& layout);
std::string TailText(const CDSSubstitutes& substitutes, const CDSLayout& layout);

// An item needs substitutes when it holds the delimiter, or with braces one of these.
bool NeedsSubstitutes(std::string_view item, const CDSLayout& layout);
std::string Protected(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout);
std::string Restored(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout);
bool ComesBack(std::string_view item, const CDSSubstitutes& substitutes, const CDSLayout& layout);

// The first free substitutes for `joined` with which each of the items comes back whole.
CDSSubstitutes ChooseSubstitutes(std::string_view joined, const std::vector<std::string_view>& items,
                                 const CDSLayout& layout);

// Gives the items of a list one by one. The empty list gives one empty item.
class CDSReader {
public:
    CDSReader(std::string_view list, const CDSLayout& layout, bool readTail = true);

    std::optional<std::string> Next();
    void Skip();

private:
    std::optional<std::string_view> NextRaw();
    std::optional<std::string_view> NextPlain();
    std::optional<std::string_view> NextBraced();

    CDSLayout layout_;
    std::string_view rest_;
    CDSSubstitutes substitutes_;
    bool done_ = false;
};

}  // namespace core
