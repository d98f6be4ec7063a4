#include "desktop/reportrows.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/fields.h"
#include "core/utf8.h"
#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

constexpr std::size_t kShownBytes = 1000;  // of a cell; the rest is in its tool tip and in what is copied
constexpr std::size_t kTipBytes = 8000;
constexpr double kDark = 0.5;           // luminance below which a ground is dark
constexpr double kTint = 0.25;          // of a given colour on a dark ground
constexpr double kLeastContrast = 4.5;  // of texts on it

QColor Mixed(const QColor& ground, const QColor& colour, double part) {
    const auto mix = [part](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
    return {mix(ground.red(), colour.red()), mix(ground.green(), colour.green()), mix(ground.blue(), colour.blue())};
}

std::string_view WithoutLastBreaks(std::string_view text) {
    const std::size_t end = text.find_last_not_of("\r\n");
    return text.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

}  // namespace

ReportRows::ReportRows(const reports::ReportGrid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {
    Reload();
}

int ReportRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int ReportRows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(grid_.columns.size());
}

QVariant ReportRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const int column = index.column();
    const auto& shade = shades_.empty() ? std::nullopt : shades_[static_cast<std::size_t>(column)];
    switch (role) {
        case Qt::DisplayRole:
            return Shown(Cell(index.row(), column), column);
        case Qt::ToolTipRole:
            return Tip(ToQt(core::CutUtf8(WithoutLastBreaks(Cell(index.row(), column)), kTipBytes)));
        case Qt::TextAlignmentRole:
            return QVariant(AlignmentOf(column));
        case Qt::BackgroundRole:
            return shade ? QVariant(shade->back) : QVariant();
        case Qt::ForegroundRole:
            return shade ? QVariant(shade->text) : QVariant();
        case Qt::FontRole:
            return KindOf(index.row()) == reports::LineKind::Value ? QVariant() : QVariant(bold_);
        default:
            return {};
    }
}

QVariant ReportRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const std::string& header = grid_.columns[static_cast<std::size_t>(section)].header;
    if (role == Qt::DisplayRole) return ToQtLine(core::CutUtf8(header, kShownBytes));
    if (role == Qt::ToolTipRole) return Tip(ToQt(core::CutUtf8(header, kTipBytes)));
    return {};
}

Qt::ItemFlags ReportRows::flags(const QModelIndex& index) const {
    if (!index.isValid() || IsGap(index.row())) return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

void ReportRows::Reload() {
    beginResetModel();
    texts_.reset();
    Choose();
    endResetModel();
}

void ReportRows::SetFilter(std::string_view words) {
    const bool blank = words.find_first_not_of(' ') == std::string_view::npos;
    beginResetModel();
    words_ = blank ? "" : words;
    Choose();
    endResetModel();
}

void ReportRows::Choose() {
    if (IsFiltered()) {
        shown_ = Texts().Filter(words_);
        total_ = reports::FilteredTotal(grid_, shown_);
    } else {
        shown_.resize(grid_.rows.size());
        std::iota(shown_.begin(), shown_.end(), std::size_t{0});
    }
    rowOf_.assign(grid_.rows.size(), -1);
    for (std::size_t row = 0; row < shown_.size(); ++row) rowOf_[shown_[row]] = static_cast<int>(row);
}

void ReportRows::SetLook(const QPalette& palette, const QFont& font) {
    bold_ = font;
    bold_.setBold(true);
    shades_.clear();
    for (const reports::Column& column : grid_.columns)
        shades_.push_back(column.colour < 0 ? std::nullopt : std::optional(ShadeOf(column.colour, palette)));
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

ReportRows::Shade ReportRows::ShadeOf(int colour, const QPalette& palette) const {
    const QColor given(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    const QColor base = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
    if (Luminance(base) >= kDark) return {given, Contrast(text, given) < kLeastContrast ? QColor(Qt::black) : text};
    constexpr double kStep = 0.05;
    double tint = kTint;
    while (tint > 0 && Contrast(text, Mixed(base, given, tint)) < kLeastContrast) tint -= kStep;
    return {Mixed(base, given, std::max(0.0, tint)), text};
}

int ReportRows::RowOf(std::size_t line) const { return line < rowOf_.size() ? rowOf_[line] : -1; }

const std::string& ReportRows::Cell(int row, int column) const {
    const bool total = IsFiltered() && KindOf(row) == reports::LineKind::Total;
    return total ? total_[static_cast<std::size_t>(column)] : grid_.Cell(Line(row), column);
}

int ReportRows::Find(std::string_view text, int from, bool forward) {
    const std::string folded = core::LowerUtf8(text);
    const int rows = rowCount();
    for (int step = 0; step < rows; ++step) {
        const int row = ((forward ? from + step : from - step) % rows + rows) % rows;
        if (!IsGap(row) && Texts().Contains(Line(row), folded)) return row;
    }
    return -1;
}

std::size_t ReportRows::CountAll() const {
    return static_cast<std::size_t>(std::ranges::count_if(grid_.rows, [](const reports::GridRow& row) {
        return row.kind != reports::LineKind::Gap && row.kind != reports::LineKind::Total;
    }));
}

const reports::LineTexts& ReportRows::Texts() {
    if (!texts_) texts_.emplace(grid_);
    return *texts_;
}

bool ReportRows::ManyLines(int column) const {
    const reports::ColumnKind kind = grid_.columns[static_cast<std::size_t>(column)].kind;
    return grid_.lineHeight > reports::kThinLine &&
           (kind == reports::ColumnKind::Distribution || (column == 0 && grid_.field == analysis::kTrack));
}

QString ReportRows::Shown(const std::string& cell, int column) const {
    const std::string_view whole = WithoutLastBreaks(cell), text = core::CutUtf8(whole, kShownBytes);
    const QString shown = ManyLines(column) ? ToQt(text) : ToQtLine(text);
    return text.size() < whole.size() ? shown + QChar(0x2026) : shown;
}

Qt::Alignment ReportRows::AlignmentOf(int column) const {
    const reports::Column& facts = grid_.columns[static_cast<std::size_t>(column)];
    const bool text = facts.leftAligned || facts.kind == reports::ColumnKind::Distribution ||
                      facts.kind == reports::ColumnKind::FileType;
    return (text ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignTop;
}

}  // namespace desktop
