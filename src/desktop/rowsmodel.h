#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <vector>

#include "dialogs/controls.h"

namespace desktop {

// Rows of a list, combo box or grid, filtered and sorted by index; the rows themselves stay where they are. A "row" of
// the model is one that is shown, a "source row" one of the rows without the headers.
class RowsModel final : public QAbstractTableModel {
public:
    // Gives the rows as they stand at the moment: the owner may replace them between two calls of Reload.
    using Source = std::function<const dialogs::Rows&()>;
    RowsModel(Source source, int fixedRows, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    void Reload();  // the rows changed
    void SetFilter(std::string_view words);
    void SetFixedRows(int rows) { fixedRows_ = rows; }
    struct Column {
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
        bool hidden = false;  // neither shown nor found by the filter
    };
    void SetColumns(std::vector<Column> looks) { looks_ = std::move(looks); }
    // A column below 0 is the rows' own order.
    void Sort(int column, Qt::SortOrder order);

    int SourceRows() const { return sourceRows_; }
    int SourceRow(int row) const { return shown_[static_cast<std::size_t>(row)]; }
    int RowOf(int sourceRow) const;  // -1: filtered out
    const std::string& Cell(int sourceRow, int column) const;
    const std::string& Header(int line, int column) const;
    int HeaderLines() const { return fixedRows_; }

private:
    Column LookOf(int column) const;
    void Fold();
    void Choose();
    bool Passes(int sourceRow);

    Source source_;
    int fixedRows_ = 0, sourceRows_ = 0, columns_ = 0;
    std::vector<int> shown_{}, rowOf_{};
    std::vector<std::string> folded_{};  // each row's text in lower case, made by the first filter
    std::string words_{};
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    std::vector<Column> looks_{};
};

}  // namespace desktop
