#include "desktop/plainbox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <vector>

#include "core/cds.h"
#include "desktop/text.h"

namespace desktop {

int QtPlainBox::Ask(const shell::PlainMessage& message) {
    QWidget* over = QApplication::activeModalWidget();
    QMessageBox box(over != nullptr ? over : parent_());
    box.setWindowTitle(QStringLiteral("Corvane"));
    box.setIcon(QMessageBox::Critical);
    box.setTextFormat(Qt::PlainText);
    box.setText(ToQt(message.text));
    if (!message.details.empty()) box.setDetailedText(ToQt(message.details));
    std::vector<QAbstractButton*> buttons;
    const core::StrArray captions = core::CDSSplitPlain(message.buttons);
    for (const std::string& caption : captions.Items())
        buttons.push_back(box.addButton(ToQtLine(caption), QMessageBox::ActionRole));
    for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    const auto escape = static_cast<std::size_t>(std::max(message.escButton, 1)) - 1;
    if (escape < buttons.size()) box.setEscapeButton(buttons[escape]);
    box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
    QApplication::restoreOverrideCursor();
    box.exec();
    const auto pressed = std::ranges::find(buttons, box.clickedButton());
    return pressed == buttons.end() ? message.escButton : static_cast<int>(pressed - buttons.begin()) + 1;
}

core::EventPlace QtPlainBox::ActivePlace() {
    core::EventPlace place;
    if (const QWidget* window = QApplication::activeWindow()) place.form = FromQt(window->windowTitle());
    if (const QWidget* control = QApplication::focusWidget())
        place.control = FromQt(control->objectName().isEmpty() ? control->accessibleName() : control->objectName());
    return place;
}

}  // namespace desktop
