#include "desktop/dialogparts.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "desktop/listview.h"
#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

constexpr int kDetailLines = 10, kDetailLetters = 60;

// Keys whose code is not that of their letter.
struct KeyRow {
    int qt, code;
};
constexpr std::array kKeys{
    KeyRow{Qt::Key_Backspace, 8}, KeyRow{Qt::Key_Tab, 9},    KeyRow{Qt::Key_Return, 13}, KeyRow{Qt::Key_Enter, 13},
    KeyRow{Qt::Key_Escape, 27},   KeyRow{Qt::Key_Space, 32}, KeyRow{Qt::Key_PageUp, 33}, KeyRow{Qt::Key_PageDown, 34},
    KeyRow{Qt::Key_End, 35},      KeyRow{Qt::Key_Home, 36},  KeyRow{Qt::Key_Left, 37},   KeyRow{Qt::Key_Up, 38},
    KeyRow{Qt::Key_Right, 39},    KeyRow{Qt::Key_Down, 40},  KeyRow{Qt::Key_Insert, 45}, KeyRow{Qt::Key_Delete, 46},
};
constexpr int kF1Code = 112;

}  // namespace

FitScroll::FitScroll(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
}

QSize FitScroll::sizeHint() const {
    return widget() == nullptr ? QSize() : widget()->sizeHint().expandedTo(widget()->minimumSizeHint());
}

QSize FitScroll::minimumSizeHint() const {
    if (widget() == nullptr) return {};
    const QSize room = ScreenRoom(*this);
    const QSize least = widget()->minimumSizeHint();
    const QSize most(room.width() * 9 / 10, room.height() * 4 / 10);
    const int bar = least.height() > most.height() ? verticalScrollBar()->sizeHint().width() : 0;
    return QSize(least.width() + bar, least.height()).boundedTo(most);
}

ProblemBanner::ProblemBanner(QWidget* parent, int width) : QFrame(parent) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    auto* line = new QHBoxLayout(this);
    auto* icon = new QLabel(this);
    icon->setTextFormat(Qt::PlainText);
    const int size = fontMetrics().height() * 3 / 2;
    icon->setPixmap(IconOf(dialogs::Icon::Exclamation, *this).pixmap(size, size));
    text_ = new ReadingText(this, width, ScreenRoom(*this).height() / 6);
    line->addWidget(icon, 0, Qt::AlignTop);
    line->addWidget(text_, 1);
}

void ProblemBanner::Put(const std::string& problem) {
    text_->SetText(ToQt(problem), font());
    setAccessibleName(ToQt(problem));
    setVisible(!problem.empty());
}

DetailsPanel::DetailsPanel(QWidget* parent) : QWidget(parent), text_(new QPlainTextEdit(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    text_->setReadOnly(true);
    text_->setTabChangesFocus(true);
    text_->setAccessibleName(QStringLiteral("Details"));
    text_->setMinimumSize(fontMetrics().averageCharWidth() * kDetailLetters,
                          fontMetrics().lineSpacing() * kDetailLines);
    auto* copy = new QPushButton(QStringLiteral("Copy details"), this);
    copy->setAutoDefault(false);
    layout->addWidget(text_, 1);
    layout->addWidget(copy, 0, Qt::AlignLeft);
    connect(copy, &QPushButton::clicked, this, [this] { QGuiApplication::clipboard()->setText(text_->toPlainText()); });
    hide();
}

void DetailsPanel::Put(const std::string& details) {
    text_->setPlainText(ToQt(details));
    if (button_ != nullptr) button_->setVisible(!details.empty());
    if (details.empty()) hide();
}

QPushButton* DetailsPanel::MakeButton(QWidget* parent) {
    button_ = new QPushButton(QStringLiteral("Details"), parent);
    button_->setIconSize(QSize(fontMetrics().height(), fontMetrics().height()));
    button_->setCheckable(true);
    button_->setAutoDefault(false);
    button_->setIcon(style()->standardIcon(QStyle::SP_ArrowDown, nullptr, button_));
    connect(button_, &QPushButton::toggled, this, [this](bool open) {
        setVisible(open);
        const QStyle::StandardPixmap arrow = open ? QStyle::SP_ArrowUp : QStyle::SP_ArrowDown;
        button_->setIcon(style()->standardIcon(arrow, nullptr, button_));
        const QSize room = ScreenRoom(*this);
        const int more = minimumSizeHint().height() + fontMetrics().height();
        const QSize now = window()->size();
        window()->resize(QSize(now.width(), now.height() + (open ? more : -more)).boundedTo(room));
    });
    return button_;
}

QLayout* LayOutButtons(const std::vector<QPushButton*>& buttons, int perLine, int width) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    const auto widest = std::ranges::max_element(buttons, {}, [](QPushButton* b) { return b->sizeHint().width(); });
    const int each = widest == buttons.end() ? 1 : (*widest)->sizeHint().width();
    const int fit = std::max(1, (width + 8) / (each + 8));
    const int count = static_cast<int>(buttons.size());
    const int columns = std::max(1, std::min(count, perLine > 0 ? std::min(perLine, fit) : fit));
    const bool equal = count > columns || each * count + 8 * count <= width;
    for (int i = 0; i < count; ++i) {
        QPushButton* button = buttons[static_cast<std::size_t>(i)];
        if (equal) button->setMinimumWidth(each);
        grid->addWidget(button, i / columns, i % columns);
    }
    return grid;
}

void PutButton(QPushButton& button, const dialogs::DialogButton& data) {
    button.setText(ToQtLine(data.caption).trimmed());
    button.setEnabled(data.enabled);
    button.setToolTip(Tip(ToQt(data.hint)));
    button.setAccessibleName(PlainMarks(button.text()));
    QFont font = button.font();
    if (data.bold) font.setBold(true);
    if (data.italic) font.setItalic(true);
    if (data.underlined) font.setUnderline(true);
    button.setFont(font);
}

bool HasSelection(const QWidget* widget) {
    if (const auto* line = qobject_cast<const QLineEdit*>(widget)) return line->hasSelectedText();
    if (const auto* box = qobject_cast<const QPlainTextEdit*>(widget)) return box->textCursor().hasSelection();
    if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->hasSelectedText();
    const auto* list = widget == nullptr ? nullptr : dynamic_cast<const ListView*>(widget->parentWidget());
    return list != nullptr && !list->Selected().empty();
}

int KeyCode(int qtKey) {
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)) return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return qtKey - Qt::Key_F1 + kF1Code;
    const auto row = std::ranges::find(kKeys, qtKey, &KeyRow::qt);
    return row == kKeys.end() ? 0 : row->code;
}

}  // namespace desktop
