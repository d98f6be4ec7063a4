#include "dialogs/tablearray.h"

#include <algorithm>
#include <utility>

#include "core/errnums.h"
#include "core/error.h"

namespace dialogs {

const TableArray::Cell& TableArray::At(long row, long col) const {
    static const Cell kNothing{};
    if (row < FirstRow() || row > LastRow() || col < FirstCol() || col > LastCol())
        throw core::ErrorNumber(core::errnum::kSubscript, "TableArray");
    const auto& cells = rows_[static_cast<std::size_t>(row - firstRow_)];
    const auto at = static_cast<std::size_t>(col - firstCol_);
    return at < cells.size() ? cells[at] : kNothing;
}

std::string_view TableArray::Text(long row, long col) const {
    const Cell& cell = At(row, col);
    return cell ? std::string_view(*cell) : std::string_view();
}

void TableArray::ArrPut2(long row, long col, Cell value) {
    if (row < firstRow_ || col < firstCol_) throw core::ErrorNumber(core::errnum::kSubscript, "ArrPut2");
    const auto rowAt = static_cast<std::size_t>(row - firstRow_);
    const auto colAt = static_cast<std::size_t>(col - firstCol_);
    if (rowAt >= rows_.size()) rows_.resize(rowAt + 1);
    auto& cells = rows_[rowAt];
    if (colAt >= cells.size()) cells.resize(colAt + 1);
    cells[colAt] = std::move(value);
    cols_ = std::max(cols_, col - firstCol_ + 1);
}

}  // namespace dialogs
