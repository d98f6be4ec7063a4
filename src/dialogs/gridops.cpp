#include "dialogs/gridops.h"

#include <algorithm>
#include <numeric>

#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"

namespace dialogs {
namespace {

constexpr char kCellEnd = '\xFF';  // stands in no UTF-8 text

std::size_t Index(int number) { return static_cast<std::size_t>(std::max(number, 0)); }

std::string_view CellOf(const std::vector<std::string>& row, std::size_t column) {
    return column < row.size() ? std::string_view(row[column]) : std::string_view();
}

// The new order of rows whose keys are given; the first `fixed` stay.
template <typename Key>
std::vector<int> OrderOf(const std::vector<Key>& keys, std::size_t fixed, Direction direction) {
    std::vector<int> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    const auto key = [&](int row) -> const Key& { return keys[static_cast<std::size_t>(row)]; };
    const auto begin = order.begin() + static_cast<std::ptrdiff_t>(std::min(fixed, order.size()));
    if (direction == Direction::Up)
        std::stable_sort(begin, order.end(), [&](int a, int b) { return key(a) < key(b); });
    else
        std::stable_sort(begin, order.end(), [&](int a, int b) { return key(b) < key(a); });
    return order;
}

template <typename KeyOf>
auto KeysOf(const Rows& rows, std::size_t column, KeyOf keyOf) {
    std::vector<decltype(keyOf(std::string_view()))> keys;
    keys.reserve(rows.size());
    for (const auto& row : rows) keys.push_back(keyOf(CellOf(row, column)));
    return keys;
}

void AppendLine(std::string& out, const std::vector<std::string>& row, std::size_t left, std::size_t right) {
    for (std::size_t column = left; column <= right; ++column) {
        if (column > left) out += '\t';
        for (const char c : CellOf(row, column)) out += c == '\t' || c == '\r' || c == '\n' ? ' ' : c;
    }
    out += '\n';
}

std::size_t WidestRow(const Rows& rows) {
    std::size_t widest = 1;
    for (const auto& row : rows) widest = std::max(widest, row.size());
    return widest;
}

}  // namespace

double CellNumber(std::string_view cell) {
    std::string digits(cell);
    std::erase(digits, ',');
    return core::fNum(digits);
}

std::vector<int> SortRows(Rows& rows, int column, RowOrder order, Direction direction, int fixedRows) {
    const std::size_t at = Index(column);
    const auto textKey = [](std::string_view cell) { return std::pair(core::LowerUtf8(cell), std::string(cell)); };
    std::vector<int> places = order == RowOrder::Number
                                  ? OrderOf(KeysOf(rows, at, CellNumber), Index(fixedRows), direction)
                                  : OrderOf(KeysOf(rows, at, textKey), Index(fixedRows), direction);
    Rows sorted;
    sorted.reserve(rows.size());
    for (const int place : places) sorted.push_back(std::move(rows[static_cast<std::size_t>(place)]));
    rows = std::move(sorted);
    return places;
}

std::string CopyText(const Rows& rows, CellRange range, int fixedRows) {
    std::string out;
    const std::size_t left = Index(range.left), right = Index(range.right);
    const std::size_t fixed = std::min(Index(fixedRows), rows.size());
    for (std::size_t row = 0; row < fixed; ++row) AppendLine(out, rows[row], left, right);
    for (std::size_t row = std::max(Index(range.top), fixed); row <= Index(range.bottom) && row < rows.size(); ++row)
        AppendLine(out, rows[row], left, right);
    return out;
}

std::string CopyRows(const Rows& rows, const std::vector<int>& selected, int fixedRows) {
    std::string out;
    const std::size_t right = WidestRow(rows) - 1;
    const std::size_t fixed = std::min(Index(fixedRows), rows.size());
    for (std::size_t row = 0; row < fixed; ++row) AppendLine(out, rows[row], 0, right);
    for (const int row : selected)
        if (row >= 0 && Index(row) + fixed < rows.size()) AppendLine(out, rows[Index(row) + fixed], 0, right);
    return out;
}

TableArray TableOf(const Rows& rows) {
    return TableOf(rows, {0, 0, static_cast<int>(rows.size()) - 1, static_cast<int>(WidestRow(rows)) - 1});
}

TableArray TableOf(const Rows& rows, CellRange range) {
    TableArray table(0, 0);
    for (std::size_t row = Index(range.top); range.bottom >= 0 && row <= Index(range.bottom) && row < rows.size();
         ++row)
        for (std::size_t column = Index(range.left); column <= Index(range.right); ++column)
            table.ArrPut2(static_cast<long>(row - Index(range.top)), static_cast<long>(column - Index(range.left)),
                          std::string(CellOf(rows[row], column)));
    return table;
}

RowFinder::RowFinder(const Rows& rows, int fixedRows) {
    const std::size_t first = std::min(Index(fixedRows), rows.size());
    starts_.reserve(rows.size() - first + 1);
    for (std::size_t row = first; row < rows.size(); ++row) {
        starts_.push_back(text_.size());
        for (const std::string& cell : rows[row]) {
            text_ += core::LowerUtf8(cell);
            text_ += kCellEnd;
        }
    }
    starts_.push_back(text_.size());
}

// The row that holds the text at or behind row `from`; the number of rows when there is none.
std::size_t RowFinder::Find(const std::string& folded, std::size_t from) const {
    const std::size_t none = starts_.size() - 1;
    if (from >= none) return none;
    const std::size_t at = text_.find(folded, starts_[from]);
    if (at == std::string::npos) return none;
    const auto behind = std::upper_bound(starts_.begin(), starts_.end(), at);
    return static_cast<std::size_t>(behind - starts_.begin()) - 1;
}

std::vector<int> RowFinder::Matching(std::string_view text) const {
    std::vector<int> found;
    const std::size_t rows = starts_.size() - 1;
    if (text.empty()) {
        found.resize(rows);
        std::iota(found.begin(), found.end(), 0);
        return found;
    }
    const std::string folded = core::LowerUtf8(text);
    if (folded.find(kCellEnd) != std::string::npos) return found;
    for (std::size_t row = Find(folded, 0); row < rows; row = Find(folded, row + 1))
        found.push_back(static_cast<int>(row));
    return found;
}

std::optional<int> RowFinder::Next(std::string_view text, int from) const {
    const std::size_t rows = starts_.size() - 1;
    const std::string folded = core::LowerUtf8(text);
    if (rows == 0 || folded.empty() || folded.find(kCellEnd) != std::string::npos) return std::nullopt;
    std::size_t row = Find(folded, Index(from));
    if (row == rows) row = Find(folded, 0);
    if (row == rows) return std::nullopt;
    return static_cast<int>(row);
}

std::string GridCellText(std::string_view text, std::size_t most) {
    if (text.size() <= most) return std::string(text);
    const std::size_t kept = most > kTruncated.size() ? most - kTruncated.size() : 0;
    return std::string(core::CutUtf8(text, kept)).append(kTruncated);
}

std::string LongTextHint(const std::vector<std::string>& texts) {
    constexpr std::size_t kOneRow = 200;
    const auto isLong = [](const std::string& text) { return text.size() > kOneRow; };
    return std::ranges::any_of(texts, isLong) ? "Select item and press Ctrl+Z to view the whole message." : "";
}

}  // namespace dialogs
