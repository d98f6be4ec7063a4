#pragma once

#include <QString>
#include <string>
#include <string_view>

// The only doors between the program's text and the screen's. All text may come from a visitor of the owner's site, so
// what could be obeyed instead of shown is made visible here: control characters become their pictures, characters that
// turn the direction of writing the replacement mark.
namespace desktop {

// UTF-8; a byte that belongs to no letter becomes U+FFFD. CR LF, a lone CR and a lone LF are each one line feed.
QString ToQt(std::string_view text);
// The same on one line: line ends become the picture of a new line.
QString ToQtLine(std::string_view text);
std::string FromQt(const QString& text);

// For places that take "&" as the mark of the hot key.
QString WithoutMarks(const QString& text);   // "&" doubled
QString PlainMarks(const QString& caption);  // "&Add && go" -> "Add & go"
// For a tool tip, which would guess whether its text is markup.
QString Tip(const QString& text);
// For a window's title, which would put its own mark in place of "[*]".
QString TitleText(std::string_view text);

}  // namespace desktop
