#include "desktop/wrapheader.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionHeaderV2>
#include <QTextLayout>
#include <algorithm>

namespace desktop {
namespace {

constexpr int kLines = 3;
constexpr int kMargin = 4;
constexpr int kWordLetters = 14;  // longer words are broken

void DrawTitle(QPainter& painter, const QRect& room, const QString& title, const QFontMetrics& metrics) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(title, painter.font());
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    while (lines.size() < kLines) {
        QTextLine line = layout.createLine();
        if (!line.isValid()) break;
        line.setLineWidth(room.width());
        const bool last = lines.size() == kLines - 1;
        const QString text = title.mid(line.textStart(), last ? -1 : line.textLength()).trimmed();
        lines.append(last ? metrics.elidedText(text, Qt::ElideRight, room.width()) : text);
    }
    layout.endLayout();
    int top = room.top() + (room.height() - static_cast<int>(lines.size()) * metrics.height()) / 2;
    for (const QString& line : lines) {
        painter.drawText(QRect(room.left(), top, room.width(), metrics.height()), Qt::AlignHCenter | Qt::TextSingleLine,
                         line);
        top += metrics.height();
    }
}

}  // namespace

WrapHeader::WrapHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setFocusPolicy(Qt::NoFocus);
    setMinimumSectionSize(3);
    setContextMenuPolicy(Qt::CustomContextMenu);
    SetHeight();
}

// Below the lines is room for the arrow.
void WrapHeader::SetHeight() { setFixedHeight(kLines * fontMetrics().height() + fontMetrics().height() / 2 + kMargin); }

bool WrapHeader::event(QEvent* event) {
    if (event->type() == QEvent::FontChange) SetHeight();
    return QHeaderView::event(event);
}

QString WrapHeader::TitleOf(int section) const {
    return model() == nullptr ? QString() : model()->headerData(section, orientation()).toString();
}

QSize WrapHeader::sectionSizeFromContents(int section) const {
    int width = 0;
    for (const QString& word : TitleOf(section).split(u' '))
        width = std::max(width, fontMetrics().horizontalAdvance(word.left(kWordLetters)));
    return {width + 3 * kMargin, height()};
}

void WrapHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
    if (!rect.isValid()) return;
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    initStyleOptionForIndex(&option, section);
    option.rect = rect;
    const auto arrow = option.sortIndicator;
    option.sortIndicator = QStyleOptionHeader::None;
    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    painter->setFont(font());
    painter->setPen(option.palette.color(QPalette::ButtonText));
    const int strip = fontMetrics().height() / 2;
    DrawTitle(*painter, rect.adjusted(kMargin, 0, -kMargin, -strip), TitleOf(section), fontMetrics());
    if (arrow != QStyleOptionHeader::None) {
        option.sortIndicator = arrow;
        option.rect = QRect(rect.center().x() - strip / 2, rect.bottom() - strip, strip, strip);
        style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &option, painter, this);
    }
    painter->restore();
}

}  // namespace desktop
