#include "desktop/frozentable.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>

#include "desktop/wrapheader.h"

namespace desktop {

FrozenTable::FrozenTable(QWidget* parent) : QTableView(parent) {
    Prepare(*this);
    left_ = new QTableView(this);
    Prepare(*left_);
    left_->setFrameShape(QFrame::NoFrame);
    left_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    left_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    left_->setFocusPolicy(Qt::ClickFocus);
    left_->setFocusProxy(this);
    left_->setContextMenuPolicy(Qt::CustomContextMenu);
    left_->viewport()->installEventFilter(this);
    connect(left_, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        if (onMenu) onMenu(left_->indexAt(at), left_->viewport()->mapToGlobal(at));
    });
    viewport()->stackUnder(left_);
    KeepInStep();
}

void FrozenTable::Prepare(QTableView& table) {
    auto* header = new WrapHeader(&table);
    table.setHorizontalHeader(header);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setTextElideMode(Qt::ElideRight);
    table.setTabKeyNavigation(false);
    table.setCornerButtonEnabled(false);
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    connect(header, &QHeaderView::sectionClicked, this, [this](int column) {
        if (onHeader) onHeader(column);
    });
    connect(header, &QWidget::customContextMenuRequested, this, [this, header](const QPoint& at) {
        if (onHeaderMenu) onHeaderMenu(header->mapToGlobal(at));
    });
}

void FrozenTable::KeepInStep() {
    connect(left_->verticalScrollBar(), &QScrollBar::valueChanged, verticalScrollBar(), &QScrollBar::setValue);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, left_->verticalScrollBar(), &QScrollBar::setValue);
    connect(left_->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (column == 0 && width > 0) setColumnWidth(0, width);
    });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (column != 0) return;
        left_->setColumnWidth(0, width);
        Place();
    });
}

void FrozenTable::SetModel(QAbstractItemModel& model) {
    setModel(&model);
    left_->setModel(&model);
    QItemSelectionModel* own = left_->selectionModel();
    left_->setSelectionModel(selectionModel());
    delete own;
    for (int column = 1; column < model.columnCount(); ++column) left_->setColumnHidden(column, true);
}

void FrozenTable::SetLineHeight(int pixels, bool manyLines) {
    for (QTableView* table : {static_cast<QTableView*>(this), left_}) {
        table->verticalHeader()->setMinimumSectionSize(1);
        table->verticalHeader()->setDefaultSectionSize(pixels);
        table->setWordWrap(manyLines);
        table->verticalScrollBar()->setSingleStep(pixels);
    }
}

void FrozenTable::ShowSort(int column, Qt::SortOrder order) {
    for (QTableView* table : {static_cast<QTableView*>(this), left_}) {
        table->horizontalHeader()->setSortIndicatorShown(column >= 0);
        table->horizontalHeader()->setSortIndicator(column, order);
    }
}

void FrozenTable::Place() {
    const int frame = frameWidth();
    left_->setGeometry(frame, frame, std::min(columnWidth(0), viewport()->width()),
                       horizontalHeader()->height() + viewport()->height());
}

void FrozenTable::updateGeometries() {
    QTableView::updateGeometries();
    if (left_ == nullptr) return;
    Place();
    left_->verticalScrollBar()->setRange(verticalScrollBar()->minimum(), verticalScrollBar()->maximum());
    left_->verticalScrollBar()->setValue(verticalScrollBar()->value());
}

// The first column is always in view; another must not end up behind it.
void FrozenTable::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int across = horizontalScrollBar()->value();
    QTableView::scrollTo(index, hint);
    if (index.column() == 0) return horizontalScrollBar()->setValue(across);
    const int hidden = columnWidth(0) - visualRect(index).left();
    if (hidden > 0) horizontalScrollBar()->setValue(horizontalScrollBar()->value() - hidden);
}

QModelIndex FrozenTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    QModelIndex index = QTableView::moveCursor(action, modifiers);
    if (!index.isValid()) return index;
    const bool leftwards = action == MoveHome || action == MoveLeft || action == MovePrevious;
    if (index.column() == 0 && leftwards) horizontalScrollBar()->setValue(0);
    const int step = action == MovePageUp || action == MoveUp || action == MoveHome ? -1 : 1;
    while (index.isValid() && !model()->flags(index).testFlag(Qt::ItemIsEnabled))
        index = index.siblingAtRow(index.row() + step);
    return index.isValid() ? index : currentIndex();
}

// To the first or last line with Ctrl: there it is selected, which other keys with Ctrl do not.
QItemSelectionModel::SelectionFlags FrozenTable::selectionCommand(const QModelIndex& index, const QEvent* event) const {
    if (event != nullptr && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<const QKeyEvent*>(event);
        const bool far = key->key() == Qt::Key_Home || key->key() == Qt::Key_End;
        if (far && key->modifiers().testFlag(Qt::ControlModifier))
            return QItemSelectionModel::Rows |
                   (key->modifiers().testFlag(Qt::ShiftModifier) ? QItemSelectionModel::SelectCurrent
                                                                 : QItemSelectionModel::ClearAndSelect);
    }
    return QTableView::selectionCommand(index, event);
}

void FrozenTable::keyPressEvent(QKeyEvent* event) {
    if (onKey && onKey(event->key(), event->modifiers())) return event->accept();
    QTableView::keyPressEvent(event);
}

void FrozenTable::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (!onMenu) return;
    if (event->reason() != QContextMenuEvent::Keyboard) return onMenu(indexAt(event->pos()), event->globalPos());
    const QModelIndex index = currentIndex();
    const QTableView& shows = index.column() == 0 ? *left_ : *this;
    onMenu(index, shows.viewport()->mapToGlobal(shows.visualRect(index).bottomLeft()));
}

bool FrozenTable::eventFilter(QObject* watched, QEvent* event) {
    if (left_ != nullptr && watched == left_->viewport() && event->type() == QEvent::Wheel)
        return QCoreApplication::sendEvent(viewport(), event);
    return QTableView::eventFilter(watched, event);
}

}  // namespace desktop
