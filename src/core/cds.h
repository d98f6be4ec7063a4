#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/strarray.h"
#include "core/text.h"

// Lists kept in one text: "a|b|c". The layout is also the format of most ini
// values, so what these functions write must stay readable for ever.
namespace core {

inline constexpr std::string_view kTrailer = "{{||{{";
inline constexpr std::string_view kNoExclusion = "Do not exclude any part";

// How a list is laid out. `exclusion` is kNoExclusion or a pair such as "{}".
struct CDSForm {
    std::string_view delim = "|";
    std::string_view exclusion = kNoExclusion;
    std::string_view marker = kTrailer;
};
inline constexpr CDSForm kBraceForm{"|", "{}", kTrailer};

enum class DropEmpty { No, Yes };

// The empty text gives one empty item at index 0, whatever lower bound was
// asked for: callers test for exactly that.
StrArray CDSSplit(std::string_view list, const CDSForm& form, long lowerBound = 1);
StrArray CDSSplitPlain(std::string_view list, long lowerBound = 1);
std::vector<long> CDSSplitLong(std::string_view list, bool skipTrailer = false);  // "" gives {0}; caps at 2147483647
std::vector<short> CDSSplitInt(std::string_view list);
std::vector<float> CDSSplitSingle(std::string_view list);

// `upperLimit` -1: up to the end.
std::string CDSJoin(const StrArray& items, const CDSForm& form, long lowerBound, DropEmpty drop = DropEmpty::No,
                    long upperLimit = -1);
std::string CDSJoinPlain(const StrArray& items);
std::string CDSJoinPlain(const StrArray& items, long lowerBound);
std::string CDSJoinVar(const std::vector<double>& numbers);

// Item n, 1-based; "" outside. Splits no further than needed.
std::string CDSItem(long n, std::string_view list);
double CDSItemNum(long n, std::string_view list);
std::string CDSBraceItem(long n, std::string_view list);
double CDSBraceItemNum(long n, std::string_view list);
std::string CDSItemX(long n, std::string_view list, const CDSForm& form, std::string_view otherwise);  // n from 0

// The number of "|" plus 1, 0 for "". Knows no trailer.
long CDSCount(std::string_view list);

// 1-based position or -1.
long CDSFind(std::string_view list, std::string_view value, const CDSForm& form = {}, Case mode = Case::Exact);
long CDSFindQuick(std::string_view list, std::string_view value, Case mode = Case::Exact, long otherwise = -1);
long CDSFindDflt(std::string_view list, std::string_view value, bool exact, Case mode, long otherwise);

struct CDSHit {
    bool found = false;
    long position = 0;
};
CDSHit CDSHas(std::string_view value, std::string_view list, const CDSForm& form = {}, Case mode = Case::Exact);

// n below 1 changes nothing; past the end the list grows with empty items.
std::string CDSSetItem(long n, std::string_view value, std::string_view list);
std::string CDSSetItemX(long n, std::string_view list, const CDSForm& form, std::string_view value);
std::string CDSAppend(std::string_view list, std::string_view item);

struct CDSAdded {
    std::string list{};
    bool added = true;
    std::string message{};  // for the user, when the item stands already or the mode is unknown
};
// mode 0: no test, 1: unique exact, 2: unique ignoring case; any other gives the
// message "Internal parameter err Chunks/0088" and goes on as 0.
CDSAdded CDSAdd(std::string_view list, std::string_view item, const CDSForm& form = {}, int mode = 0,
                bool atHead = false);
struct CDSFoundOrAdded {
    std::string list{};
    long position = -1;
    bool added = false;
};
CDSFoundOrAdded CDSFindOrAdd(std::string_view list, std::string_view value, const CDSForm& form = {}, int mode = 0,
                             bool atHead = false);

struct CDSRemoved {
    std::string list{};
    std::string positions{};  // 1-based, ascending, itself a "|" list
    bool removed = false;
};
// Nothing matched: the list comes back byte for byte, trailer included.
CDSRemoved CDSRemove(std::string_view list, std::string_view value, const CDSForm& form = {}, Case mode = Case::Exact);
CDSRemoved CDSRemoveAt(std::string_view list, std::string_view positions, const CDSForm& form = {});

// Items of `row` in the order of `order`, each with its item of `formats`, joined by `separator`.
std::string CDSReorder(std::string_view order, std::string_view row, const CDSForm& form, std::string_view formats,
                       std::string_view separator);
// A "|" list of the texts, those that are "|" alone left out.
std::string CDSOf(const std::vector<std::string>& items);

// First free text of `length` characters of codes 33 to 254 (written as UTF-8),
// outermost slowest, that stands nowhere in `text`; error 9910 when there is none.
std::string ChooseSubstitute(std::string_view text, int length, std::string_view excluded);

}  // namespace core
