#pragma once

#include "reports/grid.h"

namespace reports {

// The numbers are those that saved views name.
enum class SortKind : int { GenericDescending = 2, NumericDescending = 4, TextAscending = 7 };

// Sorts all lines, the gap and the total among them. Lines of equal keys keep their order.
void SortLines(ReportGrid& grid, int column, SortKind kind);

}  // namespace reports
