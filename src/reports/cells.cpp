#include "reports/cells.h"

#include "core/numbers.h"

namespace reports {

std::string PercentText(double part, double base, std::string_view format) {
    return base == 0 ? std::string(kNotApplicable) : core::fFormat(part * 100 / base, format) + " %";
}

void WriteCounts(ReportGrid& grid, std::size_t row, std::string_view label, const LineRecord& line) {
    const double stayed = line.LineAdd[kAddStayed];
    grid.Cell(row, kColValue) = label;
    grid.Cell(row, kColVisitors) = core::NumText(line.LineVisitors);
    grid.Cell(row, kColStayed) = core::NumText(stayed);
    grid.Cell(row, kColStayPercent) = PercentText(stayed, line.LineVisitors, "0");
    grid.Cell(row, kColAverage) =
        stayed == 0 ? std::string(kNotApplicable) : core::fFormat(line.LinePages / stayed, "0.0");
}

void WriteTarget(ReportGrid& grid, std::size_t row, std::size_t target, double count, const LineRecord& line) {
    const int first = kFirstTargetColumn + kTargetColumns * static_cast<int>(target);
    grid.Cell(row, first) = core::NumText(count);
    grid.Cell(row, first + 1) = PercentText(count, line.LineVisitors, "0");
    grid.Cell(row, first + 2) = PercentText(count, line.LineAdd[kAddStayed], "0");
}

void WriteTargets(ReportGrid& grid, std::size_t row, const LineRecord& line) {
    for (std::size_t t = 0; t < grid.targets; ++t) WriteTarget(grid, row, t, line.LineAdd[kAddTargets + t], line);
}

}  // namespace reports
