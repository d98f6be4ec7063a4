#pragma once

#include <QFont>
#include <QLabel>
#include <QPlainTextEdit>
#include <memory>

#include "desktop/controlviews.h"

namespace desktop {

std::unique_ptr<ControlView> MakeTextBoxView(const dialogs::Control& control, QWidget* parent);
std::unique_ptr<ControlView> MakeLabelView(const dialogs::Control& control, QWidget* parent);

// A text to read: a label that wraps at `width` pixels and is never cut. A text with a word that is wider, or higher
// than `maxHeight`, stands in a box that wraps anywhere and scrolls.
class ReadingText final : public QWidget {
public:
    ReadingText(QWidget* parent, int width, int maxHeight);
    void SetWidth(int width) { width_ = width; }  // before SetText
    void SetText(const QString& text, const QFont& font);
    QLabel& Label() { return *label_; }

private:
    bool FitsLabel(const QString& text, const QFont& font) const;

    int width_, maxHeight_;
    QLabel* label_;
    QPlainTextEdit* box_;
};

}  // namespace desktop
