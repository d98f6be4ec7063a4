#include "desktop/rowsmodel.h"

#include <algorithm>
#include <numeric>

#include "core/numbers.h"
#include "core/utf8.h"
#include "desktop/text.h"

namespace desktop {
namespace {

constexpr std::size_t kShownBytes = 1000;  // of a cell; the rest is in its tool tip and in what is copied
constexpr std::size_t kTipBytes = 8000;

const std::string& Nothing() {
    static const std::string nothing;
    return nothing;
}

const std::string& CellOf(const dialogs::Rows& rows, std::size_t row, int column) {
    if (row >= rows.size() || column < 0 || static_cast<std::size_t>(column) >= rows[row].size()) return Nothing();
    return rows[row][static_cast<std::size_t>(column)];
}

QString Shown(const std::string& cell) {
    if (cell.size() <= kShownBytes) return ToQtLine(cell);
    return ToQtLine(core::CutUtf8(cell, kShownBytes)) + QChar(0x2026);
}

// What a column is sorted by: numbers when all its texts are numbers.
struct SortKeys {
    std::vector<double> numbers{};
    std::vector<std::string> texts{};
    bool Less(std::size_t a, std::size_t b) const {
        return numbers.empty() ? texts[a] < texts[b] : numbers[a] < numbers[b];
    }
};

SortKeys KeysOf(const RowsModel& model, int column) {
    SortKeys keys;
    bool numeric = true;
    for (int row = 0; row < model.SourceRows() && numeric; ++row) {
        const std::string& cell = model.Cell(row, column);
        numeric = cell.empty() || core::IsNumeric(cell);
    }
    for (int row = 0; row < model.SourceRows(); ++row) {
        const std::string& cell = model.Cell(row, column);
        if (numeric) {
            std::string digits = cell;
            std::erase(digits, ',');
            keys.numbers.push_back(core::fNum(digits));
        } else {
            keys.texts.push_back(core::LowerUtf8(cell));
        }
    }
    return keys;
}

}  // namespace

RowsModel::RowsModel(Source source, int fixedRows, QObject* parent)
    : QAbstractTableModel(parent), source_(std::move(source)), fixedRows_(fixedRows) {
    Reload();
}

int RowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int RowsModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns_; }

QVariant RowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const std::string& cell = Cell(SourceRow(index.row()), index.column());
    if (role == Qt::DisplayRole || role == Qt::EditRole) return Shown(cell);
    if (role == Qt::ToolTipRole) return Tip(ToQt(core::CutUtf8(cell, kTipBytes)));
    if (role == Qt::TextAlignmentRole) return QVariant(LookOf(index.column()).alignment);
    return {};
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns_) return {};
    if (role == Qt::TextAlignmentRole) return QVariant(LookOf(section).alignment);
    if (role != Qt::DisplayRole) return {};
    QString title;
    for (int line = 0; line < fixedRows_; ++line)
        title += (line > 0 ? QStringLiteral("\n") : QString()) + Shown(Header(line, section));
    return title;
}

void RowsModel::Reload() {
    beginResetModel();
    const dialogs::Rows& rows = source_();
    sourceRows_ = std::max(0, static_cast<int>(rows.size()) - fixedRows_);
    columns_ = 1;
    for (const auto& row : rows) columns_ = std::max(columns_, static_cast<int>(row.size()));
    folded_.clear();
    sortColumn_ = -1;
    Choose();
    endResetModel();
}

void RowsModel::SetFilter(std::string_view words) {
    beginResetModel();
    words_ = core::LowerUtf8(words);
    Choose();
    endResetModel();
}

void RowsModel::Sort(int column, Qt::SortOrder order) {
    beginResetModel();
    sortColumn_ = column;
    sortOrder_ = order;
    Choose();
    endResetModel();
}

int RowsModel::RowOf(int sourceRow) const {
    return sourceRow < 0 || sourceRow >= sourceRows_ ? -1 : rowOf_[static_cast<std::size_t>(sourceRow)];
}

const std::string& RowsModel::Cell(int sourceRow, int column) const {
    return CellOf(source_(), static_cast<std::size_t>(sourceRow + fixedRows_), column);
}

const std::string& RowsModel::Header(int line, int column) const {
    return CellOf(source_(), static_cast<std::size_t>(line), column);
}

bool RowsModel::Passes(int sourceRow) {
    return words_.empty() || folded_[static_cast<std::size_t>(sourceRow)].find(words_) != std::string::npos;
}

RowsModel::Column RowsModel::LookOf(int column) const {
    const auto at = static_cast<std::size_t>(column);
    return at < looks_.size() ? looks_[at] : Column{};
}

void RowsModel::Fold() {
    for (int row = 0; row < sourceRows_; ++row) {
        std::string& text = folded_.emplace_back();
        for (int column = 0; column < columns_; ++column)
            if (!LookOf(column).hidden) text += core::LowerUtf8(Cell(row, column)) + '\t';
    }
}

void RowsModel::Choose() {
    if (!words_.empty() && folded_.empty()) Fold();
    shown_.resize(static_cast<std::size_t>(sourceRows_));
    std::iota(shown_.begin(), shown_.end(), 0);
    if (!words_.empty()) std::erase_if(shown_, [this](int row) { return !Passes(row); });
    if (sortColumn_ >= 0) {
        const SortKeys keys = KeysOf(*this, sortColumn_);
        const bool down = sortOrder_ == Qt::DescendingOrder;
        std::ranges::stable_sort(shown_, [&](int a, int b) {
            return down ? keys.Less(static_cast<std::size_t>(b), static_cast<std::size_t>(a))
                        : keys.Less(static_cast<std::size_t>(a), static_cast<std::size_t>(b));
        });
    }
    rowOf_.assign(static_cast<std::size_t>(sourceRows_), -1);
    for (std::size_t row = 0; row < shown_.size(); ++row)
        rowOf_[static_cast<std::size_t>(shown_[row])] = static_cast<int>(row);
}

}  // namespace desktop
