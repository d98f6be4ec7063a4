#include "reports/gridsort.h"

#include <algorithm>
#include <numeric>

#include "core/numbers.h"
#include "core/utf8.h"

namespace reports {
namespace {

bool IsNumber(std::string_view cell) {
    return core::IsNumeric(cell.ends_with(" %") ? cell.substr(0, cell.size() - 2) : cell);
}

// A cell that begins with a number, or holds none of its column's values.
bool ReadsAsNumber(std::string_view cell) { return cell.empty() || cell == "na" || IsNumber(cell); }

template <typename Key, typename Less>
void SortWith(ReportGrid& grid, const std::vector<Key>& keys, const Less& less) {
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) { return less(keys[a], keys[b]); });
    std::vector<GridRow> sorted;
    sorted.reserve(order.size());
    for (const std::size_t row : order) sorted.push_back(std::move(grid.rows[row]));
    grid.rows = std::move(sorted);
}

template <typename Key>
void SortByKeys(ReportGrid& grid, const std::vector<Key>& keys, bool descending) {
    SortWith(grid, keys, [descending](const Key& a, const Key& b) { return descending ? b < a : a < b; });
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

// The lines that are sorted stand above those that sum them.
int PlaceOf(LineKind kind) {
    const bool sums = kind == LineKind::Rest || kind == LineKind::Gap || kind == LineKind::Total;
    return !sums ? 0 : kind == LineKind::Rest ? 1 : kind == LineKind::Gap ? 2 : 3;
}

bool IsNumberColumn(ColumnKind kind) {
    return kind == ColumnKind::Count || kind == ColumnKind::Percent || kind == ColumnKind::Average ||
           kind == ColumnKind::Deviation;
}

struct HeaderKey {
    int place = 0;
    bool last = false;
    double number = 0;
    std::string text{};
};

HeaderKey KeyOf(LineKind kind, std::string_view cell, bool numbers) {
    HeaderKey key{.place = PlaceOf(kind)};
    if (key.place > 0) return key;
    key.last = numbers ? !IsNumber(cell) : cell.empty();
    if (key.last) return key;
    if (!numbers) {
        key.text = core::LowerUtf8(cell);
        return key;
    }
    std::string digits(cell);
    std::erase(digits, ',');
    key.number = core::fNum(digits);
    return key;
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

bool HoldsNumbers(const ReportGrid& grid, int column) {
    if (IsNumberColumn(grid.columns[static_cast<std::size_t>(column)].kind)) return true;
    bool some = false;
    for (const GridRow& row : grid.rows) {
        const std::string& cell = row.cells[static_cast<std::size_t>(column)];
        if (PlaceOf(row.kind) > 0 || cell.empty()) continue;
        if (!IsNumber(cell)) return false;
        some = true;
    }
    return some;
}

void SortByHeader(ReportGrid& grid, int column, bool descending) {
    if (column < 0 || column >= static_cast<int>(grid.columns.size())) return;
    const bool numbers = HoldsNumbers(grid, column);
    std::vector<HeaderKey> keys;
    keys.reserve(grid.rows.size());
    for (const GridRow& row : grid.rows)
        keys.push_back(KeyOf(row.kind, row.cells[static_cast<std::size_t>(column)], numbers));
    SortWith(grid, keys, [descending](const HeaderKey& a, const HeaderKey& b) {
        if (a.place != b.place || a.last != b.last) return a.place != b.place ? a.place < b.place : b.last;
        const HeaderKey &first = descending ? b : a, &second = descending ? a : b;
        return first.number != second.number ? first.number < second.number : first.text < second.text;
    });
}

}  // namespace reports
