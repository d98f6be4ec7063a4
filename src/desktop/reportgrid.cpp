#include "desktop/reportgrid.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/numbers.h"
#include "core/utf8.h"
#include "desktop/frozentable.h"
#include "desktop/look.h"
#include "desktop/reportrows.h"
#include "desktop/text.h"
#include "desktop/wholetext.h"

namespace desktop {
namespace {

using reports::Column;
using reports::ColumnKind;

constexpr int kFilterMs = 60;
constexpr std::size_t kManyLines = 5000;  // from here on the filter waits for the person to stop typing
constexpr int kCellMargin = 6;
constexpr int kMeasuredLines = 200;
constexpr std::size_t kMenuBytes = 80;

QLineEdit* Box(const char* hint, const char* name, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setPlaceholderText(QLatin1String(hint));
    box->setAccessibleName(QLatin1String(name));
    box->setClearButtonEnabled(true);
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * 16);
    return box;
}

QLabel* Note(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

const Column& ColumnAt(const reports::ReportGrid& grid, int column) {
    return grid.columns[static_cast<std::size_t>(column)];
}

// Columns of one colour belong together, and the title of the first tells them from those of other targets or periods.
std::string MenuTitle(const reports::ReportGrid& grid, int column) {
    const Column& own = ColumnAt(grid, column);
    int first = column;
    while (own.colour >= 0 && first > 0 && ColumnAt(grid, first - 1).colour == own.colour) --first;
    return first == column ? own.header : own.header + ": " + ColumnAt(grid, first).header;
}

// Numbers stand on one line, however high it is.
class Cells final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (option->displayAlignment.testFlag(Qt::AlignRight)) option->features &= ~QStyleOptionViewItem::WrapText;
    }
};

}  // namespace

ReportGridView::ReportGridView(reports::ReportModel& report, QWidget* parent) : QWidget(parent), report_(report) {
    rows_ = new ReportRows(report_.Grid(), this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    BuildBar();
    BuildTable();
    layout->addWidget(table_, 1);
    setFocusProxy(table_);
    wait_.setSingleShot(true);
    wait_.setInterval(kFilterMs);
    connect(&wait_, &QTimer::timeout, this, [this] { Refilter(); });
    SetLook();
    SetWidths();
    BuildColumnMenu();
    Tell();
}

void ReportGridView::BuildBar() {
    auto* bar = new QWidget(this);
    auto* line = new QHBoxLayout(bar);
    line->setContentsMargins({});
    find_ = Box("Find (Ctrl+F)", "Find in the first column", bar);
    filter_ = Box("Filter (Ctrl+Shift+F)", "Filter by the first column", bar);
    found_ = Note(bar);
    count_ = Note(bar);
    columns_ = new QMenu(bar);
    auto* button = new QToolButton(bar);
    button->setText(QStringLiteral("Columns"));
    button->setAccessibleName(QStringLiteral("Columns to show"));
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMenu(columns_);
    line->addWidget(find_, 1);
    line->addWidget(found_);
    line->addWidget(filter_, 1);
    line->addWidget(count_);
    line->addWidget(button);
    find_->installEventFilter(this);
    filter_->installEventFilter(this);
    connect(find_, &QLineEdit::textChanged, this, [this] { Find(0); });
    connect(filter_, &QLineEdit::textChanged, this, [this] {
        if (report_.Grid().rows.size() > kManyLines) return wait_.start();
        Refilter();
    });
    layout()->addWidget(bar);
}

void ReportGridView::BuildTable() {
    table_ = new FrozenTable(this);
    table_->setAccessibleName(QStringLiteral("Lines of the report"));
    table_->Left().setAccessibleName(QStringLiteral("First column of the report"));
    table_->SetModel(*rows_);
    table_->setItemDelegate(new Cells(table_));
    table_->onKey = [this](int key, Qt::KeyboardModifiers modifiers) { return TableKey(key, modifiers); };
    table_->onHeader = [this](int column) { SortBy(column); };
    table_->onHeaderMenu = [this](const QPoint& global) { columns_->popup(global); };
    table_->onMenu = [this](const QModelIndex& at, const QPoint& global) { Menu(at.row(), at.column(), global); };
    const QItemSelectionModel* selection = table_->selectionModel();
    connect(selection, &QItemSelectionModel::currentChanged, this, [this] { Taken(); });
    connect(selection, &QItemSelectionModel::selectionChanged, this, [this] { Taken(); });
    for (const QTableView* view :
         {static_cast<const QTableView*>(table_), const_cast<const QTableView*>(&table_->Left())})
        connect(view, &QAbstractItemView::doubleClicked, this, [this] { ShowWhole(); });
}

void ReportGridView::BuildColumnMenu() {
    const reports::ReportGrid& grid = report_.Grid();
    for (int column = 1; column < rows_->columnCount(); ++column) {
        const Column& facts = ColumnAt(grid, column);
        const bool noData = facts.kind == ColumnKind::Deviation && facts.header.empty();
        if (facts.kind == ColumnKind::Separator || noData) continue;
        const std::string whole = MenuTitle(grid, column);
        const std::string_view title = whole.empty() ? "(no title)" : core::CutUtf8(whole, kMenuBytes);
        QAction* action = columns_->addAction(WithoutMarks(ToQtLine(title)));
        action->setCheckable(true);
        action->setChecked(!table_->isColumnHidden(column));
        connect(action, &QAction::toggled, this, [this, column](bool on) { ShowColumn(column, on); });
    }
    columns_->addSeparator();
    connect(columns_->addAction(QStringLiteral("Show all")), &QAction::triggered, this, [this] {
        for (QAction* action : columns_->actions())
            if (action->isCheckable()) action->setChecked(true);
    });
}

void ReportGridView::ShowColumn(int column, bool on) {
    table_->setColumnHidden(column, !on);
    ShowSeparators();
}

// What parts a target's columns from the next is of use beside one of them.
void ReportGridView::ShowSeparators() {
    for (int column = reports::kTargetColumns; column < rows_->columnCount(); ++column) {
        if (ColumnAt(report_.Grid(), column).kind != ColumnKind::Separator) continue;
        bool some = false;
        for (int behind = 1; behind < reports::kTargetColumns; ++behind)
            some = some || !table_->isColumnHidden(column - behind);
        table_->setColumnHidden(column, !some);
    }
}

void ReportGridView::SetLook() {
    rows_->SetLook(palette(), font());
    const int line = fontMetrics().height() + kCellMargin;
    lineHeight_ = report_.Grid().lineHeight;
    table_->SetLineHeight(std::max(Pixels(*this, lineHeight_), line), lineHeight_ > reports::kThinLine);
}

int ReportGridView::WidthOf(int column) const {
    const Column& facts = ColumnAt(report_.Grid(), column);
    const int width = Pixels(*this, facts.width);
    if (facts.kind == ColumnKind::Separator) return width;
    const int title = table_->horizontalHeader()->sectionSizeHint(column);
    QString widest;
    if (facts.kind == ColumnKind::Count && rows_->rowCount() > 0)  // the total is as wide as a number gets
        widest = ToQtLine(rows_->Cell(rows_->rowCount() - 1, column));
    else if (facts.kind == ColumnKind::Percent || facts.kind == ColumnKind::Deviation)
        widest = column == reports::kColShare ? QStringLiteral("100.0 %") : QStringLiteral("-100 %");
    QFont bold = font();
    bold.setBold(true);
    return std::max({width, title, QFontMetrics(bold).horizontalAdvance(widest) + 2 * kCellMargin});
}

void ReportGridView::SetWidths() {
    for (int column = 0; column < rows_->columnCount(); ++column) {
        table_->setColumnWidth(column, WidthOf(column));
        const Column& facts = ColumnAt(report_.Grid(), column);
        if (column > 0 && facts.kind != ColumnKind::Separator) table_->setColumnHidden(column, facts.width <= 1);
    }
    table_->Left().setColumnWidth(0, table_->columnWidth(0));
    fitted_ = table_->columnWidth(0);
    wanted_ = WantedFirst();
}

int ReportGridView::WantedFirst() const {
    int wanted = fitted_;
    for (int row = 0; row < std::min(kMeasuredLines, rows_->rowCount()); ++row) {
        const QString text = rows_->index(row, reports::kColValue).data().toString();
        wanted = std::max(wanted, fontMetrics().horizontalAdvance(text) + 3 * kCellMargin);
    }
    return wanted;
}

// Room that the other columns leave goes to the first one, as far as its texts need it and nobody drew its width.
void ReportGridView::FitFirst() {
    if (table_->columnWidth(0) != fitted_) return;
    int others = 0;
    for (int column = 1; column < rows_->columnCount(); ++column) others += table_->columnWidth(column);
    const int given = WidthOf(reports::kColValue);
    fitted_ = std::clamp(table_->viewport()->width() - others, given, std::max(given, wanted_));
    table_->setColumnWidth(0, fitted_);
    table_->Left().setColumnWidth(0, fitted_);
}

void ReportGridView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitFirst();
}

void ReportGridView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    const auto type = event->type();
    const bool looks = type == QEvent::PaletteChange || type == QEvent::FontChange || type == QEvent::StyleChange;
    if (looks && table_ != nullptr) SetLook();
}

void ReportGridView::Taken() {
    if (quiet_) return;
    const QModelIndex current = table_->currentIndex();
    if (!current.isValid()) return;
    column_ = current.column();
    // A table that only got the keyboard has a current cell too.
    if (rows_->IsGap(current.row()) || !table_->selectionModel()->isSelected(current)) return;
    const std::size_t line = rows_->Line(current.row());
    if (line_ == line) return;
    KeepLine(line);
    if (onLine) onLine(line);
}

void ReportGridView::KeepLine(std::size_t line) {
    line_ = line;
    kind_ = report_.Grid().rows[line].kind;
    leftCell_ = report_.Grid().Cell(line, reports::kColValue);
}

void ReportGridView::ShowLine() {
    const QScopedValueRollback<bool> quiet(quiet_, true);
    const int row = line_ ? rows_->RowOf(*line_) : -1;
    if (row < 0) return table_->selectionModel()->reset();
    const QModelIndex index = rows_->index(row, column_);
    table_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    table_->scrollTo(index);
}

void ReportGridView::SelectLine(std::size_t line) {
    if (line >= report_.Grid().rows.size() || report_.Grid().rows[line].kind == reports::LineKind::Gap) return;
    KeepLine(line);
    if (wait_.isActive()) Refilter();
    if (rows_->RowOf(line) < 0) {
        filter_->clear();
        Refilter();
    }
    ShowLine();
}

void ReportGridView::Reload() {
    if (lineHeight_ == report_.Grid().lineHeight) sortColumn_ = -1;  // lines that only grew stay where they are
    Reread();
}

void ReportGridView::Reread() {
    rows_->Reload();
    SetLook();
    table_->ShowSort(sortColumn_, descending_ ? Qt::DescendingOrder : Qt::AscendingOrder);
    if (line_) {
        const std::vector<reports::GridRow>& lines = report_.Grid().rows;
        const auto same = [this](const reports::GridRow& row) {
            return row.kind == kind_ && row.cells[reports::kColValue] == leftCell_;
        };
        const auto at = std::ranges::find_if(lines, same);
        line_ = at == lines.end() ? std::nullopt : std::optional(static_cast<std::size_t>(at - lines.begin()));
    }
    ShowLine();
    Tell();
}

void ReportGridView::SortBy(int column) {
    if (ColumnAt(report_.Grid(), column).kind == ColumnKind::Separator) return;
    const bool numbersFirst = column > 0 && reports::HoldsNumbers(report_.Grid(), column);
    descending_ = column == sortColumn_ ? !descending_ : numbersFirst;
    sortColumn_ = column;
    report_.SortByHeader(column, descending_);
    Reread();
}

void ReportGridView::Refilter() {
    wait_.stop();
    rows_->SetFilter(FromQt(filter_->text()));
    ShowLine();
    Tell();
}

// The next line from the current one on (step 0: itself too), or before it.
void ReportGridView::Find(int step) {
    const int rows = rows_->rowCount();
    if (find_->text().isEmpty() || rows == 0) return found_->clear();
    const int now = std::max(0, table_->currentIndex().row());
    const int from = (now + step + rows) % rows;
    const int row = rows_->Find(FromQt(find_->text()), from, step >= 0);
    const bool wrapped = step < 0 ? row > from : row < from;
    found_->setText(row < 0    ? QStringLiteral("Not found")
                    : !wrapped ? QString()
                    : step < 0 ? QStringLiteral("From the end")
                               : QStringLiteral("From the top"));
    if (row < 0) return;
    table_->selectionModel()->setCurrentIndex(rows_->index(row, 0),
                                              QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    table_->scrollTo(rows_->index(row, 0));
}

void ReportGridView::Tell() {
    const std::size_t all = rows_->CountAll();
    const auto number = [](std::size_t count) { return core::CountText(static_cast<double>(count)); };
    const std::string shown = rows_->IsFiltered() ? number(rows_->CountShown()) + " of " : "";
    count_->setText(ToQt(shown + number(all) + (all == 1 ? " line" : " lines")));
    table_->setAccessibleDescription(count_->text());
}

void ReportGridView::Menu(int row, int column, const QPoint& global) {
    if (row < 0 || rows_->IsGap(row)) return;
    const QModelIndex index = rows_->index(row, column);
    const bool selected = table_->selectionModel()->isSelected(index);
    table_->selectionModel()->setCurrentIndex(
        index, selected ? QItemSelectionModel::NoUpdate
                        : QItemSelectionModel::SelectionFlags(QItemSelectionModel::ClearAndSelect) |
                              QItemSelectionModel::Rows);
    if (onMenu) onMenu(global);
}

void ReportGridView::ShowWhole() {
    const QModelIndex index = table_->currentIndex();
    if (index.isValid() && !rows_->IsGap(index.row())) ShowWholeText(*this, rows_->Cell(index.row(), index.column()));
}

void ReportGridView::ShowFind() {
    find_->setFocus(Qt::ShortcutFocusReason);
    find_->selectAll();
}

void ReportGridView::ShowFilter() {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
}

bool ReportGridView::TableKey(int key, Qt::KeyboardModifiers modifiers) {
    if (key == Qt::Key_F && modifiers == Qt::ControlModifier) {
        ShowFind();
    } else if (key == Qt::Key_F && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
        ShowFilter();
    } else if (key == Qt::Key_C && modifiers == Qt::ControlModifier) {
        CopySelection();
    } else if (key == Qt::Key_Space && modifiers == Qt::ControlModifier) {
        ShowWhole();
    } else {
        return false;
    }
    return true;
}

bool ReportGridView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && (watched == find_ || watched == filter_)) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (BoxKey(watched == find_ ? *find_ : *filter_, key->key(), key->modifiers())) return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool ReportGridView::BoxKey(QLineEdit& box, int key, Qt::KeyboardModifiers modifiers) {
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key == Qt::Key_Escape && !box.text().isEmpty()) {
        box.clear();
    } else if (key == Qt::Key_Escape || key == Qt::Key_Down || (enter && &box == filter_)) {
        if (wait_.isActive()) Refilter();
        table_->setFocus(Qt::OtherFocusReason);
    } else if (enter) {
        Find(modifiers.testFlag(Qt::ShiftModifier) ? -1 : 1);
    } else {
        return key == Qt::Key_F && TableKey(key, modifiers);
    }
    return true;
}

std::vector<int> ReportGridView::ShownColumns() const {
    std::vector<int> columns;
    for (int column = 0; column < rows_->columnCount(); ++column)
        if (ColumnAt(report_.Grid(), column).kind != ColumnKind::Separator && !table_->isColumnHidden(column))
            columns.push_back(column);
    return columns;
}

void ReportGridView::CopySelection() {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : table_->selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            if (!rows_->IsGap(row)) rows.push_back(row);
    if (rows.empty()) return;
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    const std::vector<int> columns = ShownColumns();
    std::string text;
    const auto add = [&](auto&& cellOf) {
        for (std::size_t i = 0; i < columns.size(); ++i) text += (i > 0 ? "\t" : "") + OneCell(cellOf(columns[i]));
        text += '\n';
    };
    add([this](int column) { return ColumnAt(report_.Grid(), column).header; });
    for (const int row : rows) add([this, row](int column) { return rows_->Cell(row, column); });
    QGuiApplication::clipboard()->setText(ToQt(text));
}

}  // namespace desktop
