#pragma once

#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "reports/reportmodel.h"

class QLabel;
class QLineEdit;
class QMenu;

namespace desktop {

class FrozenTable;
class ReportRows;

// The grid of a report: the first column and the headers stay in view, a find box and a filter box work as one types,
// columns can be hidden, lines sorted by a header. Lines are told by their place in the report's grid.
class ReportGridView final : public QWidget {
public:
    ReportGridView(reports::ReportModel& report, QWidget* parent);

    void Reload();  // lines moved or have another height; the selection stays with its line (by its left cell)
    // Stays selected while the filter hides it.
    std::optional<std::size_t> SelectedLine() const { return line_; }
    int SelectedColumn() const { return column_; }  // 0 without one
    void SelectLine(std::size_t line);              // a filter that hides it is taken away
    void ShowFind();                                // Ctrl+F
    void ShowFilter();                              // Ctrl+Shift+F
    // Ctrl+C: selected lines with the headers of the columns that are shown, parted by tabs. Columns that only part
    // others are left out.
    void CopySelection();

    std::function<void(std::size_t line)> onLine{};      // another line was selected by the person
    std::function<void(const QPoint& global)> onMenu{};  // the right button on a line, which is selected first

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildBar();
    void BuildTable();
    void BuildColumnMenu();
    void SetLook();
    void SetWidths();
    int WidthOf(int column) const;
    int WantedFirst() const;
    void FitFirst();
    void ShowColumn(int column, bool on);
    void ShowSeparators();
    std::vector<int> ShownColumns() const;

    void Taken();  // what is selected in the table
    void ShowLine();
    void Reread();
    void KeepLine(std::size_t line);
    void SortBy(int column);
    void Refilter();
    void Find(int step);
    void Tell();
    void Menu(int row, int column, const QPoint& global);
    void ShowWhole();
    bool TableKey(int key, Qt::KeyboardModifiers modifiers);
    bool BoxKey(QLineEdit& box, int key, Qt::KeyboardModifiers modifiers);

    reports::ReportModel& report_;
    ReportRows* rows_ = nullptr;
    FrozenTable* table_ = nullptr;
    QLineEdit *find_ = nullptr, *filter_ = nullptr;
    QLabel *found_ = nullptr, *count_ = nullptr;
    QMenu* columns_ = nullptr;
    QTimer wait_{};  // until the filter is taken over
    std::optional<std::size_t> line_{};
    reports::LineKind kind_ = reports::LineKind::Value;  // of that line, and its left cell: lines move
    std::string leftCell_{};
    int column_ = 0;
    int sortColumn_ = -1, lineHeight_ = 0;
    int wanted_ = 0, fitted_ = 0;  // pixels of the first column: what its texts need, what it was given
    bool descending_ = false;
    bool quiet_ = false;
};

}  // namespace desktop
