#pragma once

#include <cstdint>
#include <span>

// Tables of Unicode above ASCII, made by tools/make_unicode.py. All are sorted
// by their first code and don't overlap, so a lookup is one binary search.
namespace core {

// The codes first, first + step ... last map to themselves plus delta.
struct CaseRow {
    char32_t first = 0;
    char32_t last = 0;
    std::uint32_t step = 1;
    std::int32_t delta = 0;
};
struct CodeRange {
    char32_t first = 0;
    char32_t last = 0;
};

std::span<const CaseRow> LowerRows();
std::span<const CaseRow> UpperRows();
std::span<const CodeRange> LetterAndNumberRanges();  // ASCII included

}  // namespace core
