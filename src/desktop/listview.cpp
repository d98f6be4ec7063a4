#include "desktop/listview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "core/numbers.h"
#include "desktop/text.h"
#include "desktop/wholetext.h"

namespace desktop {
namespace {

constexpr int kRowsWithoutFilter = 10;
constexpr int kMeasuredRows = 60;
constexpr int kCellMargin = 6;

// A view that says something where it has no rows.
template <class View>
class Hinted final : public View {
public:
    Hinted(QWidget* parent, const QSize& wish, std::function<QString()> text)
        : View(parent), wish_(wish), text_(std::move(text)) {}
    QSize sizeHint() const override { return wish_.isValid() ? wish_ : View::sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override {
        View::paintEvent(event);
        const QString text = text_();
        if (text.isEmpty()) return;
        QPainter painter(this->viewport());
        painter.setPen(this->palette().color(QPalette::PlaceholderText));
        const QRect room = this->viewport()->rect().adjusted(16, 16, -16, -16);
        painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, text);
    }

private:
    const QSize& wish_;
    std::function<QString()> text_;
};

// Lines of a list with some air between them.
class AiryLines final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {option.fontMetrics.averageCharWidth() * 10, option.fontMetrics.height() + kCellMargin};
    }
};

Qt::Alignment AlignmentOf(int number) {
    const auto across = number >= 6 && number <= 8   ? Qt::AlignRight
                        : number >= 3 && number <= 5 ? Qt::AlignHCenter
                                                     : Qt::AlignLeft;
    return across | Qt::AlignVCenter;
}

std::vector<RowsModel::Column> ColumnsOf(const ListView::Look& look) {
    std::vector<RowsModel::Column> columns(std::max(look.widths.size(), look.alignments.size()));
    for (std::size_t i = 0; i < look.widths.size(); ++i) columns[i].hidden = look.widths[i] == 0;
    for (std::size_t i = 0; i < look.alignments.size(); ++i) columns[i].alignment = AlignmentOf(look.alignments[i]);
    return columns;
}

}  // namespace

ListView::ListView(Look look, RowsModel::Source source, QWidget* parent) : QWidget(parent), look_(std::move(look)) {
    model_ = new RowsModel(std::move(source), look_.fixedRows, this);
    model_->SetColumns(ColumnsOf(look_));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    BuildFilter();
    layout->addWidget(bar_);
    if (look_.grid) {
        auto* table = new Hinted<QTableView>(this, wish_, [this] { return Emptiness(); });
        view_ = table;
        table->setModel(model_);
        BuildGrid(*table);
    } else {
        auto* list = new Hinted<QListView>(this, wish_, [this] { return Emptiness(); });
        view_ = list;
        list->setUniformItemSizes(true);
        list->setItemDelegate(new AiryLines(list));
        list->setModel(model_);
    }
    layout->addWidget(view_, 1);
    view_->setSelectionMode(look_.multi ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setTextElideMode(Qt::ElideRight);
    view_->installEventFilter(this);
    setFocusProxy(view_);
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { Kept(); });
    connect(view_, &QAbstractItemView::doubleClicked, this, [this] {
        if (onActivated) onActivated();
    });
}

void ListView::BuildFilter() {
    bar_ = new QWidget(this);
    auto* line = new QHBoxLayout(bar_);
    line->setContentsMargins({});
    filter_ = new QLineEdit(bar_);
    filter_->setPlaceholderText(QStringLiteral("Filter (Ctrl+F)"));
    filter_->setClearButtonEnabled(true);
    const QIcon lens = QIcon::fromTheme(QStringLiteral("edit-find"));
    if (!lens.isNull()) filter_->addAction(lens, QLineEdit::LeadingPosition);
    filter_->installEventFilter(this);
    count_ = new QLabel(bar_);
    count_->setTextFormat(Qt::PlainText);
    line->addWidget(filter_, 1);
    line->addWidget(count_);
    connect(filter_, &QLineEdit::textChanged, this, [this] { Refilter(); });
}

void ListView::BuildGrid(QTableView& table) {
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setTabKeyNavigation(false);
    table.setShowGrid(look_.gridLines);
    table.setCornerButtonEnabled(false);
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    const int line = fontMetrics().height() + kCellMargin;
    const int height = std::max(look_.rowHeight, line);
    table.setWordWrap(height >= 2 * line - kCellMargin);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setMinimumSectionSize(line);
    table.verticalHeader()->setDefaultSectionSize(height);
    QHeaderView& header = *table.horizontalHeader();
    header.setVisible(look_.fixedRows > 0);
    header.setHighlightSections(false);
    header.setSectionsClickable(true);
    header.setMinimumHeight(std::max(look_.headerHeight, line + kCellMargin));
    header.setFocusPolicy(Qt::NoFocus);
    connect(&header, &QHeaderView::sectionClicked, this, [this](int column) { SortBy(column); });
    SetWidths(table);
}

void ListView::SetWidths(QTableView& table) {
    const int columns = model_->columnCount();
    int last = -1;
    for (int column = 0; column < columns; ++column) {
        const auto at = static_cast<std::size_t>(column);
        int width = at < look_.widths.size() ? look_.widths[at] : -1;
        table.setColumnHidden(column, width == 0);
        if (width == 0) continue;
        last = column;
        if (width < 0) {
            for (int row = 0; row < std::min(kMeasuredRows, model_->rowCount()); ++row)
                width = std::max(width, fontMetrics().horizontalAdvance(model_->index(row, column).data().toString()));
            width = std::clamp(width + 4 * kCellMargin, 40, 600);
        }
        const int title = table.horizontalHeader()->sectionSizeHint(column);
        table.setColumnWidth(column, look_.fixedRows > 0 ? std::max(width, std::min(title, 400)) : width);
    }
    table.horizontalHeader()->setStretchLastSection(last == columns - 1);
}

void ListView::SetName(const QString& name) {
    view_->setAccessibleName(name);
    filter_->setAccessibleName(QStringLiteral("Filter of ") + name);
}

void ListView::Reload(const std::vector<int>& selected) {
    quiet_ = true;
    const int top = look_.grid ? view_->indexAt({1, 1}).row() : -1;
    model_->Reload();
    if (sortColumn_ >= 0) SortBy(-1);
    const auto hidden = [this](int row) { return model_->RowOf(row) < 0; };
    if (!selected.empty() && std::ranges::all_of(selected, hidden) && !filter_->text().isEmpty()) filter_->clear();
    if (auto* table = qobject_cast<QTableView*>(view_); table != nullptr) SetWidths(*table);
    bar_->setVisible(model_->SourceRows() > kRowsWithoutFilter || !filter_->text().isEmpty());
    if (top > 0)
        view_->scrollTo(model_->index(std::min(top, model_->rowCount() - 1), 0), QAbstractItemView::PositionAtTop);
    SelectRows(selected);
}

void ListView::SelectRows(const std::vector<int>& sourceRows) {
    quiet_ = true;
    selected_ = sourceRows;
    std::vector<int> rows;
    for (const int source : sourceRows)
        if (const int row = model_->RowOf(source); row >= 0) rows.push_back(row);
    std::ranges::sort(rows);
    QItemSelection selection;
    const int lastColumn = model_->columnCount() - 1;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
        selection.append(QItemSelectionRange(model_->index(rows[i], 0), model_->index(rows[end - 1], lastColumn)));
        i = end;
    }
    view_->selectionModel()->reset();
    if (!rows.empty()) {
        const QModelIndex first = model_->index(rows.front(), 0);
        view_->selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        view_->selectionModel()->select(selection, QItemSelectionModel::Select);
        view_->scrollTo(first);
    }
    view_->viewport()->update();
    quiet_ = false;
    Tell();
}

void ListView::Kept() {
    if (quiet_) return;
    const bool adds = (QGuiApplication::keyboardModifiers() & Qt::ControlModifier) != 0;
    std::vector<int> now;
    if (adds && look_.multi)
        for (const int row : selected_)
            if (model_->RowOf(row) < 0) now.push_back(row);
    for (const QItemSelectionRange& range : view_->selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row) now.push_back(model_->SourceRow(row));
    std::ranges::sort(now);
    now.erase(std::unique(now.begin(), now.end()), now.end());
    selected_ = std::move(now);
    Tell();
}

std::vector<int> ListView::Selected() const { return selected_; }

void ListView::Refilter() {
    const std::vector<int> kept = selected_;
    quiet_ = true;
    model_->SetFilter(FromQt(filter_->text()));
    SelectRows(kept);
}

void ListView::SortBy(int column) {
    const std::vector<int> kept = selected_;
    if (column == sortColumn_ && sortOrder_ == Qt::DescendingOrder) column = -1;  // third click: the rows' own order
    sortOrder_ = column == sortColumn_ ? Qt::DescendingOrder : Qt::AscendingOrder;
    sortColumn_ = column;
    if (auto* table = qobject_cast<QTableView*>(view_); table != nullptr) {
        table->horizontalHeader()->setSortIndicatorShown(column >= 0);
        table->horizontalHeader()->setSortIndicator(column, sortOrder_);
    }
    quiet_ = true;
    model_->Sort(column, sortOrder_);
    SelectRows(kept);
}

void ListView::Tell() {
    QString text;
    if (!filter_->text().isEmpty())
        text = ToQt(core::CountText(model_->rowCount()) + " of " + core::CountText(model_->SourceRows()));
    else
        text = ToQt(core::CountText(model_->SourceRows()) + (model_->SourceRows() == 1 ? " line" : " lines"));
    if (look_.multi && !selected_.empty())
        text += ToQt(", " + core::CountText(static_cast<double>(selected_.size())) + " selected");
    count_->setText(text);
    view_->setAccessibleDescription(Emptiness());
}

QString ListView::Emptiness() const {
    if (model_->rowCount() > 0) return {};
    if (model_->SourceRows() == 0) return ToQt(emptyText_.empty() ? "There is nothing here yet." : emptyText_);
    return QStringLiteral("No line contains \"") + filter_->text() + QStringLiteral("\".");
}

std::string ListView::SelectionText() const {
    std::vector<int> columns;
    for (int column = 0; column < model_->columnCount(); ++column) {
        const auto at = static_cast<std::size_t>(column);
        if (at >= look_.widths.size() || look_.widths[at] != 0) columns.push_back(column);
    }
    std::string text;
    const auto add = [&](auto&& cellOf) {
        for (std::size_t i = 0; i < columns.size(); ++i) text += (i > 0 ? "\t" : "") + OneCell(cellOf(columns[i]));
        text += '\n';
    };
    for (int line = 0; line < look_.fixedRows; ++line) add([&](int column) { return model_->Header(line, column); });
    for (const int row : selected_) add([&](int column) { return model_->Cell(row, column); });
    return text;
}

bool ListView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (watched == view_ && Key(key->key(), key->modifiers())) return true;
        if (watched == filter_ && FilterKey(key->key())) return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool ListView::Key(int key, Qt::KeyboardModifiers modifiers) {
    const bool control = modifiers == Qt::ControlModifier;
    if (control && key == Qt::Key_F) {
        ShowFilter();
    } else if (control && key == Qt::Key_C && !selected_.empty()) {
        QGuiApplication::clipboard()->setText(ToQt(SelectionText()));
    } else if (control && key == Qt::Key_Z) {
        ShowWhole();
    } else if (look_.grid && modifiers == Qt::NoModifier && key == Qt::Key_Home) {
        GoTo(0);
    } else if (look_.grid && modifiers == Qt::NoModifier && key == Qt::Key_End) {
        GoTo(model_->rowCount() - 1);
    } else {
        return false;
    }
    return true;
}

bool ListView::FilterKey(int key) {
    if (key == Qt::Key_Escape && !filter_->text().isEmpty()) {
        filter_->clear();
    } else if (key == Qt::Key_Down || key == Qt::Key_Up) {
        view_->setFocus(Qt::OtherFocusReason);
        if (!view_->currentIndex().isValid()) GoTo(0);
    } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !look_.multi && model_->rowCount() > 0) {
        const bool shown = !selected_.empty() && model_->RowOf(selected_.front()) >= 0;
        if (!shown) GoTo(0);
        if (onActivated) onActivated();
    } else {
        return false;
    }
    return true;
}

void ListView::GoTo(int row) {
    if (row < 0 || row >= model_->rowCount()) return;
    const QModelIndex index = model_->index(row, std::max(0, view_->currentIndex().column()));
    view_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    view_->scrollTo(index);
}

void ListView::ShowFilter() {
    bar_->show();
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
}

void ListView::ShowWhole() {
    const QModelIndex index = view_->currentIndex();
    if (index.isValid()) ShowWholeText(*this, model_->Cell(model_->SourceRow(index.row()), index.column()));
}

}  // namespace desktop
