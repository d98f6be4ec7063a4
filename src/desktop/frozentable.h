#pragma once

#include <QTableView>
#include <functional>

namespace desktop {

// A table of lines whose first column stays in view beside the headers: another table lies over it, with the same model
// and selection, and shows the first column alone. Keys always go to the one below.
class FrozenTable final : public QTableView {
public:
    explicit FrozenTable(QWidget* parent);

    void SetModel(QAbstractItemModel& model);  // once
    void SetLineHeight(int pixels, bool manyLines);
    void ShowSort(int column, Qt::SortOrder order);  // a column below 0: none
    QTableView& Left() { return *left_; }
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    std::function<bool(int key, Qt::KeyboardModifiers)> onKey{};
    std::function<void(int column)> onHeader{};
    std::function<void(const QPoint& global)> onHeaderMenu{};
    std::function<void(const QModelIndex& index, const QPoint& global)> onMenu{};

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    void updateGeometries() override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Prepare(QTableView& table);
    void KeepInStep();
    void Place();

    QTableView* left_ = nullptr;
};

}  // namespace desktop
