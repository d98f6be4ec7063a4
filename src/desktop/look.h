#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QSize>
#include <QWidget>
#include <optional>

#include "dialogs/controls.h"
#include "dialogs/options.h"

// Sizes, fonts and colours of specs turned into those of this desktop.
namespace desktop {

// Twips are hints made for a small font: they grow with the widget's.
int Pixels(const QWidget& widget, int twips);
int Twips(const QWidget& widget, int pixels);
// The room that a window may take on the screen it is on.
QSize ScreenRoom(const QWidget& widget);

// Positions 3 to 6 of a spec: bold, italic, size, name; a name that is not installed is left out.
QFont SpecFont(const QFont& base, const dialogs::ControlSpec& spec);
// A colour of the toolkit-free code (0xBBGGRR); nothing for an empty text or a system colour.
std::optional<int> ColorOf(std::string_view number);
// Sets the colours that were given; what was not given is chosen or kept so that the text can be read.
void SetColors(QWidget& widget, std::optional<int> back, std::optional<int> fore);

// As the eye takes it, 0 black to 1 white, and how well one colour reads on another, 1 to 21 (after WCAG 2).
double Luminance(const QColor& color);
double Contrast(const QColor& a, const QColor& b);

// Some themes have no colour for hints in empty boxes that reads on their own ground; it then becomes a paler text.
QPalette WithReadableHints(QPalette palette);

QIcon IconOf(dialogs::Icon icon, const QWidget& widget);
int IconPixels(const QWidget& widget);

}  // namespace desktop
