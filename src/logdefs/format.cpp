#include "logdefs/format.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/text.h"

namespace logdefs {
namespace {

constexpr std::array<std::string_view, 3> kSepTokens{"%w", "%W", "\\n"};

// Rows in their order: "\\t" becomes a backslash and a tab, since the tab row runs first.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kEscapes{{
    {"%%", "%"},
    {"\\t", "\t"},
    {"\\\\", "\\"},
}};

constexpr std::string_view kFormatMark = " [LogFormat: ";

struct Placeholder {
    std::size_t at = std::string_view::npos;
    std::size_t length = 0;
    int field = 0;
};

int LetterIndex(char letter) {
    const std::size_t at = kPlaceholderLetters.find(letter);
    return at == std::string_view::npos ? 0 : static_cast<int>(at) + 1;
}

Placeholder PlaceholderAt(std::string_view spec, std::size_t at) {
    const std::string_view rest = spec.substr(at);
    if (rest.size() < 2 || rest[0] != '%') return {};
    if (rest[1] >= '1' && rest[1] <= '5') return {at, 2, 2 * kPlainCount + (rest[1] - '0')};
    if (const int index = LetterIndex(rest[1])) return {at, 2, index};
    if (rest[1] != '*' || rest.size() < 3) return {};
    const int index = LetterIndex(rest[2]);
    return index == 0 ? Placeholder{} : Placeholder{at, 3, index + kPlainCount};
}

Placeholder NextPlaceholder(std::string_view spec, std::size_t from) {
    for (std::size_t at = from; (at = spec.find('%', at)) != std::string_view::npos; ++at) {
        const Placeholder found = PlaceholderAt(spec, at);
        if (found.field != 0) return found;
    }
    return {};
}

std::string_view TokenAt(std::string_view text, std::size_t at) {
    for (const std::string_view token : kSepTokens)
        if (text.substr(at).starts_with(token)) return token;
    return {};
}

std::vector<std::string> Tokenise(std::string_view text) {
    std::vector<std::string> tokens;
    std::string plain;
    const auto closePlain = [&] {
        if (!plain.empty()) tokens.push_back(std::exchange(plain, {}));
    };
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view token = TokenAt(text, at);
        if (token.empty()) {
            plain += text[at++];
            continue;
        }
        closePlain();
        tokens.emplace_back(token);
        at += token.size();
    }
    closePlain();
    return tokens;
}

Separator MakeSeparator(std::string_view raw) {
    Separator separator;
    separator.text = raw;
    for (const auto& [find, by] : kEscapes) separator.text = core::fReplace(separator.text, find, by);
    const bool hasToken = std::ranges::any_of(
        kSepTokens, [&](std::string_view token) { return separator.text.find(token) != std::string::npos; });
    if (hasToken) {
        separator.kind = Separator::Kind::Tokens;
        separator.tokens = Tokenise(separator.text);
        const bool anchored = std::ranges::any_of(separator.tokens, [](const auto& token) { return token != "%W"; });
        if (!anchored) separator.kind = Separator::Kind::Never;
    } else if (separator.text.starts_with("%%")) {
        // Four percent signs of a template read as a reference to a token list that is not there.
        separator.kind = Separator::Kind::Never;
    }
    return separator;
}

Match FindSeparator(const Separator& separator, std::string_view line, std::size_t from) {
    if (separator.kind == Separator::Kind::Tokens) return LogFmtMatchTokens(separator.tokens, line, from);
    if (separator.kind == Separator::Kind::Never) return {};
    const std::size_t start = line.find(separator.text, from);
    return {start, separator.text.size(), start != std::string_view::npos};
}

}  // namespace

LogFormat::LogFormat(const core::StrArray& specs) {
    for (long i = std::max(1L, specs.Lower()); specs.IsDim() && i <= specs.Upper(); ++i) LogFmtCompileSpec(specs[i]);
}

void LogFormat::LogFmtAddColumn(Spec& columns, std::string_view text, int field) {
    columns.push_back({MakeSeparator(text), field});
}

void LogFormat::LogFmtCompileSpec(std::string_view spec) {
    Spec columns;
    std::size_t at = 0;
    for (Placeholder next; (next = NextPlaceholder(spec, at)).field != 0; at = next.at + next.length) {
        const bool touches = next.at == at && at > 0;
        if (touches) {
            warnings_.push_back("Error in format specification >>" + std::string(spec) +
                                "<< - no seperation space or other characters after " +
                                std::string(spec.substr(next.at, next.length)) +
                                "\rProcessing will assume-look for a space at this point.");
        }
        LogFmtAddColumn(columns, touches ? " " : spec.substr(at, next.at - at), next.field);
    }
    LogFmtAddColumn(columns, spec.substr(at), -1);
    specs_.push_back(std::move(columns));
}

bool LogFormat::Matches(const Spec& spec, std::string_view line, LogLnFields& fields) {
    std::size_t fieldStart = 0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < spec.size(); ++i) {
        const Match match = FindSeparator(spec[i].separator, line, at);
        if (!match.found) return false;
        if (i == 0) {
            // Text in front of the first placeholder stands at the very start of a line, or this is another layout.
            if (match.start > 0) return false;
        } else if (spec[i - 1].field > 0) {
            // A separator that walked back may start before the field: the field is empty then.
            const std::size_t length = match.start > fieldStart ? match.start - fieldStart : 0;
            fields.Set(spec[i - 1].field, line.substr(fieldStart, length));
        }
        at = fieldStart = match.start + match.length;
    }
    return true;
}

bool LogFormat::LogLnInterpret(std::string_view line, LogLnFields& fields) const {
    if (IsBlankLine(line)) return false;
    for (const Spec& spec : specs_) {
        fields.Clear();
        if (Matches(spec, line, fields)) return true;
    }
    return false;
}

LogFormat::Reached LogFormat::Follow(const Spec& spec, std::string_view line) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < spec.size(); ++i) {
        const Match match = FindSeparator(spec[i].separator, line, at);
        if (!match.found || (i == 0 && match.start > 0)) return {i, at, false};
        at = match.start + match.length;
    }
    return {spec.size(), at, true};
}

Misfit LogFormat::LogLnExplain(std::string_view line) const {
    Misfit misfit;
    if (IsBlankLine(line)) return misfit;
    Reached best;
    for (std::size_t i = 0; i < specs_.size(); ++i) {
        const Reached reached = Follow(specs_[i], line);
        if (reached.fits) return {0, reached.at, {}};
        if (misfit.spec != 0 && std::pair(reached.at, reached.column) <= std::pair(best.at, best.column)) continue;
        best = reached;
        misfit = {static_cast<int>(i) + 1, reached.at, specs_[i][reached.column].separator.text};
    }
    return misfit;
}

bool LogFormat::Names(int field) const {
    const auto isField = [field](const Column& column) { return column.field == field; };
    return std::ranges::any_of(specs_, [&](const Spec& spec) { return std::ranges::any_of(spec, isField); });
}

bool LogFormat::Holds(int field) const {
    // The separator that ends a field stands in the column behind it; each specification has one more.
    const auto holds = [field](const Spec& spec) {
        for (std::size_t i = 0; i + 1 < spec.size(); ++i)
            if (spec[i].field == field && !spec[i + 1].separator.text.empty()) return true;
        return false;
    };
    return std::ranges::any_of(specs_, holds);
}

LogFileSpec LogFileSpecSplit(std::string_view item) {
    const std::size_t at = item.find(kFormatMark);
    if (at == std::string_view::npos) return {std::string(item), {}};
    std::string_view format = item.substr(at + kFormatMark.size());
    if (format.ends_with(']')) format.remove_suffix(1);
    return {std::string(item.substr(0, at)), std::string(format)};
}

std::string LogFileSpecJoin(const LogFileSpec& spec) {
    if (spec.format.empty()) return spec.file;
    return spec.file + std::string(kFormatMark) + spec.format + "]";
}

bool IsBlankLine(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

}  // namespace logdefs
