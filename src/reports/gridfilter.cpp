#include "reports/gridfilter.h"

#include <algorithm>

#include "core/numbers.h"
#include "core/utf8.h"
#include "reports/cells.h"
#include "reports/topidxs.h"

namespace reports {
namespace {

bool AlwaysStays(LineKind kind) { return kind == LineKind::Gap || kind == LineKind::Total; }

std::vector<std::string> WordsOf(std::string_view text) {
    const std::string folded = core::LowerUtf8(text);
    std::vector<std::string> words;
    for (std::size_t at = 0; at < folded.size();) {
        const std::size_t end = std::min(folded.find(' ', at), folded.size());
        if (end > at) words.push_back(folded.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

}  // namespace

LineTexts::LineTexts(const ReportGrid& grid) : grid_(grid) {
    folded_.reserve(grid.rows.size());
    for (const GridRow& row : grid.rows) folded_.push_back(core::LowerUtf8(row.cells[kColValue]));
}

std::vector<std::size_t> LineTexts::Filter(std::string_view words) const {
    const std::vector<std::string> wanted = WordsOf(words);
    std::vector<std::size_t> lines;
    for (std::size_t line = 0; line < folded_.size(); ++line) {
        const auto has = [&](const std::string& word) { return Contains(line, word); };
        if (AlwaysStays(grid_.rows[line].kind) || std::ranges::all_of(wanted, has)) lines.push_back(line);
    }
    return lines;
}

std::vector<std::size_t> FilterLines(const ReportGrid& grid, std::string_view words) {
    return LineTexts(grid).Filter(words);
}

std::size_t CountFiltered(const ReportGrid& grid, const std::vector<std::size_t>& lines) {
    return static_cast<std::size_t>(
        std::ranges::count_if(lines, [&](std::size_t line) { return !AlwaysStays(grid.rows[line].kind); }));
}

std::vector<std::string> FilteredTotal(const ReportGrid& grid, const std::vector<std::size_t>& lines) {
    LineRecord total;
    std::size_t summed = 0;
    for (const std::size_t line : lines) {
        if (AlwaysStays(grid.rows[line].kind) || summed == kListLimit) continue;
        AddDisplayed(grid, line, total);
        ++summed;
    }
    const std::size_t count = CountFiltered(grid, lines);
    const auto number = [](std::size_t n) { return core::CountText(static_cast<double>(n)); };
    const std::string first = summed < count ? "the first " + number(summed) + " of " : "";
    ReportGrid line;
    line.columns.resize(grid.columns.size());
    line.targets = grid.targets;
    const std::size_t row = line.AddRow(LineKind::Total);
    const std::string label =
        std::string(kTotal) + " of " + first + number(count) + (count == 1 ? " filtered line" : " filtered lines");
    WriteCounts(line, row, label, total);
    WriteTargets(line, row, total);
    return std::move(line.rows[row].cells);
}

}  // namespace reports
