#pragma once

#include "reports/grid.h"

namespace reports {

// The numbers are those that saved views name.
enum class SortKind : int { GenericDescending = 2, NumericDescending = 4, TextAscending = 7 };

// Sorts all lines, the gap and the total among them. Lines of equal keys keep their order.
void SortLines(ReportGrid& grid, int column, SortKind kind);

// Whether a header sorts by the numbers at the start of the cells: a column of numbers, or of values that are all
// numbers.
bool HoldsNumbers(const ReportGrid& grid, int column);
// Sorts the lines of values and groups; below them stay the rest, the gap and the total. Cells without a number ("na",
// "none") and empty ones come last either way. Texts are compared in lower case. Lines of equal keys keep their order.
void SortByHeader(ReportGrid& grid, int column, bool descending);

}  // namespace reports
