#include "desktop/look.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPalette>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/numbers.h"
#include "desktop/text.h"

namespace desktop {
namespace {

constexpr double kTwipsPerPixel = 15;
constexpr double kFontHeight = 16;    // pixels of the font that specs are made for
constexpr double kFontPoints = 8.25;  // and its size as specs give it
constexpr double kLeastContrast = 3;
constexpr double kLeastHint = 2;
constexpr int kHintAlpha = 150;

double Scale(const QWidget& widget) { return widget.fontMetrics().height() / kFontHeight / kTwipsPerPixel; }

QColor FromNumber(int color) { return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF); }

}  // namespace

double Luminance(const QColor& color) {
    const auto part = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
    const double first = Luminance(a) + 0.05, second = Luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

int Pixels(const QWidget& widget, int twips) { return static_cast<int>(std::lround(twips * Scale(widget))); }

int Twips(const QWidget& widget, int pixels) { return static_cast<int>(std::lround(pixels / Scale(widget))); }

QSize ScreenRoom(const QWidget& widget) {
    const QScreen* screen = widget.screen();
    if (screen == nullptr) return {800, 600};
    constexpr int kFrame = 48;  // the window's own frame
    return screen->availableSize() - QSize(kFrame / 2, kFrame);
}

QFont SpecFont(const QFont& base, const dialogs::ControlSpec& spec) {
    QFont font = base;
    if (!spec.At(3).empty()) font.setBold(spec.True(3));
    if (!spec.At(4).empty()) font.setItalic(spec.True(4));
    const double size = core::fNum(spec.At(5));
    if (size >= 4 && size <= 72 && base.pointSizeF() > 0) font.setPointSizeF(base.pointSizeF() * size / kFontPoints);
    const QString family = ToQtLine(spec.At(6));
    if (!family.isEmpty() && QFontDatabase::hasFamily(family)) font.setFamily(family);
    return font;
}

std::optional<int> ColorOf(std::string_view number) {
    if (number.empty() || !core::IsNumeric(number)) return std::nullopt;
    const double value = core::fNum(number);
    if (value < 0 || value > 0xFFFFFF) return std::nullopt;
    return static_cast<int>(value);
}

void SetColors(QWidget& widget, std::optional<int> back, std::optional<int> fore) {
    QPalette palette = widget.palette();
    const QColor ground = back ? FromNumber(*back) : palette.color(QPalette::Window);
    if (back) {
        for (const auto role : {QPalette::Window, QPalette::Base}) palette.setColor(role, ground);
        widget.setAutoFillBackground(true);
    }
    QColor text = fore ? FromNumber(*fore) : palette.color(QPalette::WindowText);
    if (Contrast(text, ground) < kLeastContrast)
        text = back ? (Luminance(ground) > 0.4 ? QColor(Qt::black) : QColor(Qt::white))
                    : palette.color(QPalette::WindowText);
    for (const auto role : {QPalette::WindowText, QPalette::Text}) palette.setColor(role, text);
    if (back || fore) widget.setPalette(palette);
}

QPalette WithReadableHints(QPalette palette) {
    const QColor ground = palette.color(QPalette::Base), hint = palette.color(QPalette::PlaceholderText);
    const auto over = [&](int top, int below) { return below + (top - below) * hint.alpha() / 255; };
    const QColor seen(over(hint.red(), ground.red()), over(hint.green(), ground.green()),
                      over(hint.blue(), ground.blue()));
    if (Contrast(seen, ground) >= kLeastHint) return palette;
    QColor paler = palette.color(QPalette::Text);
    paler.setAlpha(kHintAlpha);
    palette.setColor(QPalette::PlaceholderText, paler);
    return palette;
}

QIcon IconOf(dialogs::Icon icon, const QWidget& widget) {
    using dialogs::Icon;
    static constexpr std::array kIcons{std::pair{Icon::Stop, QStyle::SP_MessageBoxCritical},
                                       std::pair{Icon::Question, QStyle::SP_MessageBoxQuestion},
                                       std::pair{Icon::Exclamation, QStyle::SP_MessageBoxWarning},
                                       std::pair{Icon::Information, QStyle::SP_MessageBoxInformation}};
    const auto found = std::ranges::find(kIcons, icon, &std::pair<Icon, QStyle::StandardPixmap>::first);
    return found == kIcons.end() ? QIcon() : widget.style()->standardIcon(found->second, nullptr, &widget);
}

int IconPixels(const QWidget& widget) { return std::max(32, widget.fontMetrics().height() * 2); }

}  // namespace desktop
