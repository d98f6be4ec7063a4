#pragma once

#include <QCheckBox>
#include <QFrame>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <functional>
#include <vector>

#include "desktop/textviews.h"
#include "dialogs/host.h"

namespace desktop {

// Asks for the room that its widget wants and scrolls where the screen has less.
class FitScroll final : public QScrollArea {
public:
    explicit FitScroll(QWidget* parent);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

// What was wrong with the last entries, set apart from the message.
class ProblemBanner final : public QFrame {
public:
    ProblemBanner(QWidget* parent, int width);
    void Put(const std::string& problem);  // "" hides it

private:
    ReadingText* text_;
};

// A text for the curious that unfolds under the buttons.
class DetailsPanel final : public QWidget {
public:
    explicit DetailsPanel(QWidget* parent);
    void Put(const std::string& details);
    QPushButton* MakeButton(QWidget* parent);  // folds and unfolds

private:
    QPlainTextEdit* text_;
    QPushButton* button_ = nullptr;
};

// The buttons behind the message and controls: equal widths, `perLine` of them at most on a line (0: as many as fit
// into `width`). They stay the parent's.
QLayout* LayOutButtons(const std::vector<QPushButton*>& buttons, int perLine, int width);
void PutButton(QPushButton& button, const dialogs::DialogButton& data);

// True when a person has marked something in it, which is then what Ctrl+C copies.
bool HasSelection(const QWidget* widget);

// Code of a key as KeyHides lists name it, 0: none.
int KeyCode(int qtKey);

}  // namespace desktop
