#include "desktop/wholetext.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "core/text.h"
#include "desktop/text.h"

namespace desktop {

void ShowWholeText(QWidget& over, const std::string& text) {
    QDialog dialog(over.window());
    dialog.setWindowTitle(QStringLiteral("Whole text"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* box = new QPlainTextEdit(ToQt(text), &dialog);
    box->setReadOnly(true);
    box->setAccessibleName(dialog.windowTitle());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(box);
    layout->addWidget(buttons);
    dialog.resize(over.fontMetrics().averageCharWidth() * 80, over.fontMetrics().height() * 20);
    dialog.exec();
}

std::string OneCell(std::string cell) {
    cell = core::fReplace(cell, "\r\n", " ");
    for (char& c : cell)
        if (c == '\t' || c == '\r' || c == '\n') c = ' ';
    return cell;
}

}  // namespace desktop
