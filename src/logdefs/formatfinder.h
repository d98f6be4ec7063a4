#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "logdefs/format.h"
#include "logdefs/sample.h"

namespace core {
class IniStore;
}

// Which format a log is in. A wrong one often fits too and cuts the wrong texts, so what counts is whether the fields
// make sense.
namespace logdefs {

// How well a format fits the first lines of a file.
struct FormatTrial {
    std::string format{};
    std::int64_t lines = 0;      // that are not blank
    std::int64_t fit = 0;        // of them
    std::int64_t plausible = 0;  // of those that fit: the address, the date, the status ... are what they are called
    // Fields that say something, in all lines that fit. The query does not count, and a visitor's address that a proxy
    // told and that is left out counts against the layout.
    std::int64_t filled = 0;
    std::int64_t unread = 0;  // bytes behind the last separator, in all lines that fit
    std::string doubtful{};   // the word of the field that made the first line implausible, "" when all are plausible

    std::int64_t firstMisfitNumber = 0;  // 1-based, 0: none
    std::string firstMisfit{};           // cut after 300 bytes
    std::size_t firstMisfitColumn = 0;   // 0-based byte at which the specification that came furthest got stuck
    std::string expected{};              // the separator that was looked for there
    std::string firstMisfitRest{};       // the line from there on, cut after 80 bytes

    std::vector<std::string> missing{};  // of referrer, agent, status, bytes, address: what no specification holds

    struct Field {
        std::string name{};
        std::string text{};
    };
    // Fields of the first lines that fit, the empty ones left out; and the numbers of these lines.
    std::vector<std::vector<Field>> samples{};
    std::vector<std::int64_t> sampleNumbers{};
};

// `now` is a moment (core/dates.h): a line is not written later. 0: it is not known.
FormatTrial TryFormat(const LogSample& sample, const std::string& name, const LogFormat& format, std::size_t samples,
                      double now = 0);
// All formats of the store that fit at least one line, the best first: more plausible lines, more lines that fit, more
// that the fields say, less of the lines left unread, then the order of the store. Whether the query stands apart from
// the file is the owner's choice, not the log's: of two that differ in this alone the first of the store is the best.
std::vector<FormatTrial> FindFormats(core::IniStore& ini, const std::string& formatFile, const LogSample& sample,
                                     double now = 0);

// The share of lines that fit and what is not in the layout, in one or two sentences for a person.
std::string FinderText(const FormatTrial& trial);
// The first line that does not fit and where it fails, "" when all fit.
std::string MisfitText(const FormatTrial& trial);

}  // namespace logdefs
