#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/strarray.h"
#include "logdefs/fields.h"

namespace logdefs {

// A separator of a template. With tokens ("%w" whitespace required, "%W" whitespace allowed) it is matched token by
// token, else as plain text.
struct Separator {
    enum class Kind { Plain, Tokens, Never };
    Kind kind = Kind::Plain;
    std::string text{};
    std::vector<std::string> tokens{};
};

struct Match {
    std::size_t start = 0;
    std::size_t length = 0;
    bool found = false;
};
// The nearest match at or after `from`. Time is linear in the line for each token.
Match LogFmtMatchTokens(const std::vector<std::string>& tokens, std::string_view line, std::size_t from);

// Where a line got stuck, or how far it was read.
struct Misfit {
    int spec = 0;             // number of the specification that came furthest, from 1; 0: the line fits, or is no line
    std::size_t at = 0;       // byte from which its next separator was looked for; of a line that fits, where it ended
    std::string separator{};  // that separator, as the specification has it after its escapes
};

// One named layout of log lines, compiled. Loading another format is making another object.
class LogFormat {
public:
    LogFormat() = default;
    // `specs` as the store has them: index 0 is no specification.
    explicit LogFormat(const core::StrArray& specs);

    // True for the first specification that fits; `fields` then holds the texts between its separators, untrimmed,
    // as views into `line`. A line of blanks, tabs and carriage returns alone is never matched.
    bool LogLnInterpret(std::string_view line, LogLnFields& fields) const;

    // Why LogLnInterpret refuses the line, for a person: far slower.
    Misfit LogLnExplain(std::string_view line) const;

    bool Empty() const { return specs_.empty(); }
    // Whether a specification has the placeholder; and whether text stands behind it, without which the field stays
    // empty.
    bool Names(int field) const;
    bool Holds(int field) const;
    // What a person should know about the templates (placeholders without a separator), one text each.
    const std::vector<std::string>& Warnings() const { return warnings_; }

private:
    struct Column {
        Separator separator{};
        int field = -1;
    };
    using Spec = std::vector<Column>;

    void LogFmtCompileSpec(std::string_view spec);
    static void LogFmtAddColumn(Spec& columns, std::string_view text, int field);
    static bool Matches(const Spec& spec, std::string_view line, LogLnFields& fields);

    struct Reached {
        std::size_t column = 0;
        std::size_t at = 0;
        bool fits = false;
    };
    static Reached Follow(const Spec& spec, std::string_view line);

    std::vector<Spec> specs_{};
    std::vector<std::string> warnings_{};
};

// An item of the log file list: a file, or "file [LogFormat: name]".
struct LogFileSpec {
    std::string file{};
    std::string format{};
};
LogFileSpec LogFileSpecSplit(std::string_view item);
std::string LogFileSpecJoin(const LogFileSpec& spec);

// True for blanks, tabs and carriage returns alone: such a line is no line.
bool IsBlankLine(std::string_view line);

}  // namespace logdefs
