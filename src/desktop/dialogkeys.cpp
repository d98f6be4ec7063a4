#include <QAccessible>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <algorithm>

#include "core/cds.h"
#include "core/numbers.h"
#include "core/text.h"
#include "desktop/dialogform.h"
#include "desktop/listview.h"
#include "desktop/look.h"
#include "desktop/text.h"

// What a dialog does with keys, and where it stands on the screen.
namespace desktop {
namespace {

constexpr int kNoticeMs = 4000;
constexpr double kLeastPoints = 6, kMostPoints = 40;

bool IsModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr || key == Qt::Key_CapsLock;
}

std::string TextOf(const QFont& font) {
    const std::string family = core::fReplace(FromQt(font.family()), "|", " ");
    return family + "|" + core::NumText(font.pointSizeF()) + "|" + std::string(core::fBoolWord(font.bold())) + "|" +
           std::string(core::fBoolWord(font.italic()));
}

}  // namespace

bool DialogForm::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && HandlesKey(widget, *static_cast<QKeyEvent*>(event))) return true;
    }
    return QDialog::eventFilter(watched, event);
}

void DialogForm::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (HandlesKey(this, *event)) return;
    if (key == Qt::Key_Escape) {
        PressEscape();
    } else if (key == Qt::Key_F1) {
        if (help_ && !model_.helpId.empty()) help_(model_.helpId);
    } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        auto* button = qobject_cast<QPushButton*>(focusWidget());
        if (button != nullptr && button->isVisible())
            button->click();
        else
            PressDefault();
    } else {
        QWidget::keyPressEvent(event);
    }
}

bool DialogForm::HandlesKey(QWidget* on, const QKeyEvent& key) {
    if (key.matches(QKeySequence::Copy)) {
        if (HasSelection(on) || model_.message.empty()) return false;
        CopyMessage();
        return true;
    }
    if (ClosesByKey(on, key.key())) return true;
    if (key.modifiers() != Qt::ControlModifier) return false;
    if (key.key() == Qt::Key_F) {
        const auto lists = findChildren<QAbstractItemView*>();
        const auto list = std::ranges::find_if(lists, [](const QAbstractItemView* view) {
            return dynamic_cast<const ListView*>(view->parentWidget()) != nullptr;
        });
        if (list == lists.end() || dynamic_cast<ListView*>(on->parentWidget()) != nullptr) return false;
        static_cast<ListView*>((*list)->parentWidget())->ShowFilter();
        return true;
    }
    if (model_.options.noKeys) return false;
    if (key.key() == Qt::Key_Plus || key.key() == Qt::Key_Equal)
        Zoom(1);
    else if (key.key() == Qt::Key_Minus)
        Zoom(-1);
    else if (key.key() == Qt::Key_0)
        Zoom(0);
    else
        return false;
    return true;
}

// A key that is typed into an entry does not close the dialog.
bool DialogForm::ClosesByKey(const QWidget* on, int key) {
    const dialogs::DialogOptions& options = model_.options;
    if (options.anyKeyHides && !IsModifier(key)) {
        Press(model_.escButton > 0 ? model_.escButton : model_.defaultButton);
        return true;
    }
    const bool types = on->inherits("QLineEdit") || on->inherits("QPlainTextEdit") || on->inherits("QComboBox");
    const int code = KeyCode(key);
    const auto hides = std::ranges::find(options.keyHides, code, &std::pair<int, int>::first);
    if (code == 0 || hides == options.keyHides.end() || (types && key < Qt::Key_F1)) return false;
    Press(hides->second);
    return true;
}

void DialogForm::CopyMessage() {
    QGuiApplication::clipboard()->setText(ToQt(model_.message));
    notice_->setText(QStringLiteral("Message text copied to clipboard."));
    QAccessibleEvent said(notice_, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
    noticeTimer_.start(kNoticeMs);
}

// Steps of a point; 0 is the desktop's own font. The widgets are made anew when the key's event is over.
void DialogForm::Zoom(int points) {
    QFont chosen = font();
    chosen.setPointSizeF(std::clamp(chosen.pointSizeF() + points, kLeastPoints, kMostPoints));
    model_.font = points == 0 ? std::string() : TextOf(chosen);
    QTimer::singleShot(0, this, [this] {
        TakeAll();
        Rebuild();
        resize(sizeHint().boundedTo(ScreenRoom(*this)));
        FocusFirst();
    });
}

void DialogForm::closeEvent(QCloseEvent* event) {
    if (loop_ == nullptr || PressEscape())
        event->accept();
    else
        event->ignore();
}

void DialogForm::ShowPlaced() {
    if (!placed_) PlaceOnScreen();
    placed_ = true;
    FocusFirst();
    show();
    raise();
    activateWindow();
}

void DialogForm::PlaceOnScreen() {
    const dialogs::DialogOptions& options = model_.options;
    ensurePolished();
    layout()->activate();
    const QSize room = ScreenRoom(*this);
    const QSize least(Pixels(*this, std::max(options.fixedWidth, options.minWidth)),
                      Pixels(*this, std::max(options.fixedHeight, options.minHeight)));
    const QSize wish = sizeHint().expandedTo(least);
    const auto number = [this](long item) { return core::ToLong(core::CDSItemNum(item, model_.place)); };
    const QRect kept(number(1), number(2), number(3), number(4));
    const bool isKept = core::CDSCount(model_.place) == 4 && kept.width() > 0 && kept.height() > 0;
    resize((isKept ? kept.size().expandedTo(minimumSizeHint()) : wish).boundedTo(room));
    const QRect area = screen() != nullptr ? screen()->availableGeometry() : QRect(QPoint(), room);
    QPoint corner;
    if (isKept)
        corner = kept.topLeft();
    else if (options.topLeft)
        corner = {Pixels(*this, options.topLeft->second), Pixels(*this, options.topLeft->first)};
    else
        return;  // the middle of the parent
    const QSize free = (room - size()).expandedTo({0, 0});
    move(std::clamp(corner.x(), area.left(), area.left() + free.width()),
         std::clamp(corner.y(), area.top(), area.top() + free.height()));
}

void DialogForm::KeepPlace() {
    if (model_.name.empty()) return;
    std::string place;
    for (const int number : {x(), y(), width(), height()}) place += (place.empty() ? "" : "|") + std::to_string(number);
    model_.place = place;
}

// The button that was asked for, else the first entry or list, else the default button.
void DialogForm::FocusFirst() {
    const auto button = [this](int number) {
        return number > 0 && number <= static_cast<int>(buttons_.size())
                   ? buttons_[static_cast<std::size_t>(number - 1)]
                   : nullptr;
    };
    QWidget* first = button(model_.focusButton);
    for (int number = 1; number <= model_.controls.Count() && first == nullptr; ++number) {
        QWidget* target = views_[static_cast<std::size_t>(number - 1)]->Target();
        const bool isButton = model_.controls[number].Is(dialogs::ControlType::CommandButton);
        if (target != nullptr && !isButton && target->isEnabledTo(this)) first = target;
    }
    if (first == nullptr) first = button(model_.defaultButton);
    if (first == nullptr) return;
    first->setFocus(Qt::TabFocusReason);
    if (auto* line = qobject_cast<QLineEdit*>(first)) line->selectAll();
}

}  // namespace desktop
