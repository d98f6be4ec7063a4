#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dialogs {

// Rows x columns of cells that may hold nothing, with a first row and column of their own. Columns are as many as the
// widest row ever had; a row keeps no more cells than it was given.
class TableArray {
public:
    using Cell = std::optional<std::string>;

    TableArray() = default;
    TableArray(long firstRow, long firstCol) : firstRow_(firstRow), firstCol_(firstCol) {}

    long FirstRow() const { return firstRow_; }
    long LastRow() const { return firstRow_ + RowCount() - 1; }
    long FirstCol() const { return firstCol_; }
    long LastCol() const { return firstCol_ + cols_ - 1; }
    long RowCount() const { return static_cast<long>(rows_.size()); }
    long ColCount() const { return cols_; }

    // Error 9 outside the bounds.
    const Cell& At(long row, long col) const;
    // The cell's text, "" for one that holds nothing. Error 9 outside the bounds.
    std::string_view Text(long row, long col) const;
    // Stores the value and grows the array up to it. Error 9 below the lower bounds.
    void ArrPut2(long row, long col, Cell value);

private:
    long firstRow_ = 0, firstCol_ = 0, cols_ = 0;
    std::vector<std::vector<Cell>> rows_{};
};

}  // namespace dialogs
