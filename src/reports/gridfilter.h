#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reports/grid.h"

// Lines of a report that are looked for as a person types.
namespace reports {

// The left cells of a grid in lower case, made once for many questions. Lines that move need another one.
class LineTexts {
public:
    explicit LineTexts(const ReportGrid& grid);
    // Lines whose left cell contains all words, in the grid's order. The gap and the total always stay.
    std::vector<std::size_t> Filter(std::string_view words) const;
    // `text` in lower case.
    bool Contains(std::size_t line, std::string_view text) const {
        return folded_[line].find(text) != std::string::npos;
    }

private:
    const ReportGrid& grid_;
    std::vector<std::string> folded_{};
};

std::vector<std::size_t> FilterLines(const ReportGrid& grid, std::string_view words);

// The lines of values, groups and the rest among the given ones.
std::size_t CountFiltered(const ReportGrid& grid, const std::vector<std::size_t>& lines);
// Cells of a total of the given lines, summed as the total of a report is: from displayed cells, and from no more lines
// than that. The share stays empty.
std::vector<std::string> FilteredTotal(const ReportGrid& grid, const std::vector<std::size_t>& lines);

}  // namespace reports
