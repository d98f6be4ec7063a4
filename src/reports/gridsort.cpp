#include "reports/gridsort.h"

#include <algorithm>
#include <numeric>

#include "core/numbers.h"

namespace reports {
namespace {

// A cell that begins with a number, or holds none of its column's values.
bool ReadsAsNumber(std::string_view cell) {
    const bool percent = cell.ends_with(" %");
    return cell.empty() || cell == "na" || core::IsNumeric(percent ? cell.substr(0, cell.size() - 2) : cell);
}

template <typename Key>
void SortByKeys(ReportGrid& grid, const std::vector<Key>& keys, bool descending) {
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(
        order, [&](std::size_t a, std::size_t b) { return descending ? keys[b] < keys[a] : keys[a] < keys[b]; });
    std::vector<GridRow> sorted;
    sorted.reserve(order.size());
    for (const std::size_t row : order) sorted.push_back(std::move(grid.rows[row]));
    grid.rows = std::move(sorted);
}

void SortByNumber(ReportGrid& grid, int column) {
    std::vector<double> keys;
    keys.reserve(grid.rows.size());
    for (std::size_t row = 0; row < grid.rows.size(); ++row) keys.push_back(core::fNum(grid.Cell(row, column)));
    SortByKeys(grid, keys, true);
}

void SortByText(ReportGrid& grid, int column, bool descending) {
    std::vector<std::string> keys;
    keys.reserve(grid.rows.size());
    for (std::size_t row = 0; row < grid.rows.size(); ++row) keys.push_back(grid.Cell(row, column));
    SortByKeys(grid, keys, descending);
}

}  // namespace

void SortLines(ReportGrid& grid, int column, SortKind kind) {
    if (column < 0 || column >= static_cast<int>(grid.columns.size())) return;
    if (kind == SortKind::GenericDescending) {
        const bool numbers = std::ranges::all_of(grid.rows, [column](const GridRow& row) {
            return ReadsAsNumber(row.cells[static_cast<std::size_t>(column)]);
        });
        if (!numbers) return SortByText(grid, column, true);
    }
    if (kind == SortKind::TextAscending) return SortByText(grid, column, false);
    SortByNumber(grid, column);
}

}  // namespace reports
