#pragma once

#include <string>
#include <string_view>

#include "reports/lines.h"

namespace reports {

// As core::fFormat. The usual formats, "0", "0.0" and "0.00", also with groups of thousands, are written without
// reading the format each time.
std::string NumberCell(double value, std::string_view format);
// Part of a base in percent, in a number format: "12 %". "na" for a zero base.
std::string PercentText(double part, double base, std::string_view format);
// Columns 0 to 4.
void WriteCounts(ReportGrid& grid, std::size_t row, std::string_view label, const LineRecord& line);
// The three cells of a target.
void WriteTarget(ReportGrid& grid, std::size_t row, std::size_t target, double count, const LineRecord& line);
void WriteTargets(ReportGrid& grid, std::size_t row, const LineRecord& line);

}  // namespace reports
