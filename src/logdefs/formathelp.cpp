#include "logdefs/formathelp.h"

#include <array>
#include <string_view>

#include "logdefs/fields.h"

namespace logdefs {
namespace {

struct Meaning {
    char letter;
    std::string_view text;
};
constexpr std::array kMeanings{
    Meaning{'S', "address of the visitor, as it stands in the log"},
    Meaning{'s', "address of the visitor as a number"},
    Meaning{'r', "requested file"},
    Meaning{'q', "query string, where it stands apart from the file"},
    Meaning{'B', "user agent (the browser)"},
    Meaning{'A', "second user agent"},
    Meaning{'f', "referrer: the page from which the visitor came, with engine and term"},
    Meaning{'u', "user"},
    Meaning{'v', "virtual host"},
    Meaning{'d', "day of the month"},
    Meaning{'m', "month as a number"},
    Meaning{'M', "month as a name: Feb, February"},
    Meaning{'y', "year, read when %Y is missing"},
    Meaning{'Y', "year: 2026; 61 to 99 are 1961 to 1999, 0 to 60 are 2000 to 2060"},
    Meaning{'Z', "year, read when %Y and %y are missing"},
    Meaning{'h', "hour"},
    Meaning{'n', "minute"},
    Meaning{'a', "a or p, for a clock of twelve hours"},
    Meaning{'U', "cut out, not used"},
    Meaning{'b', "bytes sent"},
    Meaning{'t', "cut out, not used"},
    Meaning{'T', "cut out, not used"},
    Meaning{'D', "time that the server needed, in microseconds"},
    Meaning{'c', "HTTP status: 200, 404"},
    Meaning{'C', "words of the HTTP status: OK, Not Found"},
    Meaning{'j', "cut out, not used"},
    Meaning{'e', "second"},
};
constexpr bool InTableOrder() {
    for (std::size_t i = 0; i < kMeanings.size(); ++i)
        if (kMeanings[i].letter != kPlaceholderLetters[i]) return false;
    return kMeanings.size() == kPlaceholderLetters.size();
}
static_assert(InTableOrder());

constexpr std::string_view kHow =
    "A specification is a line of the log in which each field is replaced by its placeholder. What stands between two "
    "placeholders is looked for in the line as it is, and the field is the text in front of it. So the last field of "
    "a line needs the text behind it (a quote, a blank) to be read. Capital and small letters differ.\r\r"
    "Example, the log of many servers:\r"
    "%S %*s %u [%d/%M/%Y:%h:%n:%e %*t] \"%*r %r HTTP/%*s\" %c %b \"%f\" \"%B\"\r\r";
constexpr std::string_view kMore =
    "\r%*S, %*r and so on: a field that is left out. %1 to %5 are left out too.\r\r"
    "Between two placeholders can stand:\r"
    "%w  at least one blank or tab\r"
    "%W  blanks and tabs, or none\r"
    "\\t  a tab\r"
    "\\\\  a backslash\r"
    "%%  a percent sign\r\r"
    "Where lines of two layouts stand in one log, give each its specification; the first that fits a line is used. "
    "So the longer one goes first. A specification cannot hold |.";

}  // namespace

std::string PlaceholderText() {
    std::string text(kHow);
    for (const Meaning& meaning : kMeanings)
        text.append("%").append(1, meaning.letter).append("  ").append(meaning.text).append("\r");
    return text.append(kMore);
}

}  // namespace logdefs
