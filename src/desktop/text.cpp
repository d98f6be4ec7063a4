#include "desktop/text.h"

#include <QTextDocument>
#include <algorithm>

#include "core/utf8.h"

namespace desktop {
namespace {

constexpr char16_t kPictures = 0x2400;  // U+2400 shows NUL, and so on
constexpr char16_t kDeletePicture = 0x2421;
constexpr char16_t kLinePicture = 0x21B5;
constexpr qsizetype kTipLetters = 2000;
constexpr std::size_t kTitleBytes = 300;

bool TurnsDirection(char16_t code) { return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069); }

char16_t Harmless(char16_t code) {
    if (code == u'\r' || code == 0x2028 || code == 0x2029 || code == 0x0085) return u'\n';
    if (code == u'\n' || code == u'\t') return code;
    if (code < 0x20) return static_cast<char16_t>(kPictures + code);
    if (code == 0x7F) return kDeletePicture;
    if ((code > 0x7F && code < 0xA0) || TurnsDirection(code)) return QChar::ReplacementCharacter;
    return code;
}

}  // namespace

QString ToQt(std::string_view text) {
    QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const auto plain = [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7F; };
    if (std::all_of(shown.cbegin(), shown.cend(), plain)) return shown;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar& c : shown) c = QChar(Harmless(c.unicode()));
    return shown;
}

QString ToQtLine(std::string_view text) { return ToQt(text).replace(u'\n', QChar(kLinePicture)); }

std::string FromQt(const QString& text) { return text.toStdString(); }

QString WithoutMarks(const QString& text) { return QString(text).replace(QStringLiteral("&"), QStringLiteral("&&")); }

QString PlainMarks(const QString& caption) {
    QString plain;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && i + 1 < caption.size()) ++i;
        plain += caption[i];
    }
    return plain;
}

QString Tip(const QString& text) {
    const bool cut = text.size() > kTipLetters;
    const QString shown = cut ? text.left(kTipLetters) + QChar(0x2026) : text;
    return shown.isEmpty() ? QString() : Qt::convertFromPlainText(shown, Qt::WhiteSpaceNormal);
}

QString TitleText(std::string_view text) {
    return ToQtLine(core::CutUtf8(text, kTitleBytes)).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

}  // namespace desktop
