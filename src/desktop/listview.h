#pragma once

#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "desktop/rowsmodel.h"

class QTableView;

namespace desktop {

// A list or grid of any length with a filter above it. What is selected is told in source rows and survives filtering
// and sorting: rows that the filter hides stay selected until another row is chosen without Ctrl.
class ListView final : public QWidget {
public:
    struct Look {
        bool grid = false, multi = false;
        int fixedRows = 0;
        std::vector<int> widths{};      // pixels, 0 hides, -1 as wide as the texts
        std::vector<int> alignments{};  // 1 left, 4 centre, 7 right
        int rowHeight = 0, headerHeight = 0;
        bool gridLines = true;
    };
    ListView(Look look, RowsModel::Source source, QWidget* parent);

    // The rows changed. The filter stays unless it would hide all that is selected.
    void Reload(const std::vector<int>& selected);
    std::vector<int> Selected() const;
    void SetEmptyText(std::string_view text) { emptyText_ = text; }
    void SetName(const QString& name);
    void SetWish(QSize size) { wish_ = size; }  // of the view, when there is room

    void ShowFilter();  // and goes to it

    QAbstractItemView& View() { return *view_; }
    QLineEdit& FilterBox() { return *filter_; }
    RowsModel& Model() { return *model_; }
    // The selected rows with the headers of the columns that are shown, cells parted by tabs.
    std::string SelectionText() const;

    std::function<void()> onActivated{};  // double-click, Enter in the filter
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildFilter();
    void BuildGrid(QTableView& table);
    void SetWidths(QTableView& table);
    void SelectRows(const std::vector<int>& sourceRows);
    void Kept();  // takes over what the view has selected
    void Refilter();
    void SortBy(int column);
    void Tell();
    bool Key(int key, Qt::KeyboardModifiers modifiers);
    bool FilterKey(int key);
    void GoTo(int row);
    void ShowWhole();
    QString Emptiness() const;

    Look look_;
    QSize wish_{};
    RowsModel* model_ = nullptr;
    QAbstractItemView* view_ = nullptr;
    QWidget* bar_ = nullptr;
    QLineEdit* filter_ = nullptr;
    QLabel* count_ = nullptr;
    std::vector<int> selected_{};
    std::string emptyText_{};
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    bool quiet_ = false;
};

}  // namespace desktop
