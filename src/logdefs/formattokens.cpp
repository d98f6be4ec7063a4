#include <algorithm>
#include <utility>

#include "logdefs/format.h"

namespace logdefs {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kLineEnds = "\r\n";
// A separator text "True" stands for line ends. Layouts in use depend on it; kept.
constexpr std::string_view kLineEndToken = "True";

std::size_t SkipOver(std::string_view line, std::size_t at, std::string_view set) {
    return std::min(line.find_first_not_of(set, std::min(at, line.size())), line.size());
}

// The first token: where it starts and where the text behind it begins.
Match FindFirst(std::string_view token, std::string_view line, std::size_t from) {
    if (from > line.size()) return {};
    const bool isSet = token == "%w" || token == kLineEndToken;
    const std::string_view set = token == "%w" ? kBlanks : kLineEnds;
    const std::size_t start = isSet ? line.find_first_of(set, from) : line.find(token, from);
    if (start == std::string_view::npos) return {};
    const std::size_t end = isSet ? SkipOver(line, start + 1, set) : start + token.size();
    return {start, end - start, true};
}

// Moves `at` over one token; false when it does not stand there.
bool StandsAt(std::string_view token, std::string_view line, std::size_t& at) {
    if (token == "%W") {
        at = SkipOver(line, at, kBlanks);
        return true;
    }
    if (token == "%w" || token == kLineEndToken) {
        const std::size_t end = SkipOver(line, at, token == "%w" ? kBlanks : kLineEnds);
        return std::exchange(at, end) != end;
    }
    if (!line.substr(std::min(at, line.size())).starts_with(token)) return false;
    at += token.size();
    return true;
}

// A list that begins with "%W" is not consumed: it ends on the first of the blanks it starts with. Blanks that
// reach back to the start of the line are no match.
Match WalkBack(std::string_view line, std::size_t start) {
    if (start >= line.size() || kBlanks.find(line[start]) == std::string_view::npos) return {start, 0, true};
    const std::size_t before = line.find_last_not_of(kBlanks, start);
    if (before == std::string_view::npos) return {};
    return {before + 1, 0, true};
}

}  // namespace

Match LogFmtMatchTokens(const std::vector<std::string>& tokens, std::string_view line, std::size_t from) {
    const auto first = std::ranges::find_if(tokens, [](const std::string& token) { return token != "%W"; });
    if (first == tokens.end()) return {};
    for (Match match; (match = FindFirst(*first, line, from)).found;) {
        std::size_t at = match.start + match.length;
        const bool fits =
            std::all_of(first + 1, tokens.end(), [&](const std::string& token) { return StandsAt(token, line, at); });
        if (fits)
            return tokens.front() == "%W" ? WalkBack(line, match.start) : Match{match.start, at - match.start, true};
        from = at + 1;  // from where the attempt failed, not from where it started
    }
    return {};
}

}  // namespace logdefs
