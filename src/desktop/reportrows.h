#pragma once

#include <QAbstractTableModel>
#include <QBrush>
#include <QFont>
#include <QPalette>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/gridfilter.h"

namespace desktop {

// Lines of a report's grid, filtered by index. A "row" of the model is one that is shown, a "line" one of the grid,
// which the owner may change between two calls of Reload. While a filter is set the total is that of what is shown.
class ReportRows final : public QAbstractTableModel {
public:
    ReportRows(const reports::ReportGrid& grid, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    void Reload();  // lines moved or have another height; the filter stays
    void SetFilter(std::string_view words);
    bool IsFiltered() const { return !words_.empty(); }
    // Colours and fonts of the cells.
    void SetLook(const QPalette& palette, const QFont& font);

    std::size_t Line(int row) const { return shown_[static_cast<std::size_t>(row)]; }
    int RowOf(std::size_t line) const;  // -1: filtered out
    const std::string& Cell(int row, int column) const;
    bool IsGap(int row) const { return KindOf(row) == reports::LineKind::Gap; }
    // The first row from `from` on, round the end, whose left cell contains the text; -1 without one.
    int Find(std::string_view text, int from, bool forward);
    // Lines besides the gap and the total.
    std::size_t CountShown() const { return reports::CountFiltered(grid_, shown_); }
    std::size_t CountAll() const;

private:
    struct Shade {
        QBrush back{}, text{};
    };
    Shade ShadeOf(int colour, const QPalette& palette) const;
    reports::LineKind KindOf(int row) const { return grid_.rows[Line(row)].kind; }
    bool ManyLines(int column) const;
    QString Shown(const std::string& cell, int column) const;
    Qt::Alignment AlignmentOf(int column) const;
    const reports::LineTexts& Texts();
    void Choose();

    const reports::ReportGrid& grid_;
    std::vector<std::size_t> shown_{};
    std::vector<int> rowOf_{};
    std::string words_{};
    std::vector<std::string> total_{};            // while a filter is set
    std::optional<reports::LineTexts> texts_{};   // made by the first question
    std::vector<std::optional<Shade>> shades_{};  // of columns with a colour
    QFont bold_{};
};

}  // namespace desktop
