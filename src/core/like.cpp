#include "core/like.h"

#include <cstddef>

#include "core/utf8.h"

namespace core {
namespace {

// What one element of a pattern does with the text: whether it fits, how many
// bytes it takes, and where the next element starts.
struct Element {
    bool fits = false;
    std::size_t taken = 0;
    std::size_t next = 0;
};

bool ClassHolds(std::string_view set, char32_t code) {
    for (std::size_t at = 0; at < set.size();) {
        const Letter low = LetterAt(set, at);
        at += low.length;
        if (at + 1 < set.size() && set[at] == '-') {
            const Letter high = LetterAt(set, at + 1);
            at += 1 + high.length;
            if (low.code <= code && code <= high.code) return true;
        } else if (code == low.code) {
            return true;
        }
    }
    return false;
}

// "[]" stands for no text at all, and "[!]" for an exclamation mark.
Element MatchClass(std::string_view text, std::size_t at, std::string_view pattern, std::size_t open) {
    const std::size_t close = pattern.find(']', open + 1);
    if (close == std::string_view::npos) return {};
    std::string_view set = pattern.substr(open + 1, close - open - 1);
    if (set.empty()) return {true, 0, close + 1};
    if (at >= text.size()) return {};
    const bool negated = set.size() > 1 && set.front() == '!';
    if (negated) set.remove_prefix(1);
    const Letter letter = LetterAt(text, at);
    return {ClassHolds(set, letter.code) != negated, letter.length, close + 1};
}

Element MatchOne(std::string_view text, std::size_t at, std::string_view pattern, std::size_t p) {
    const char c = pattern[p];
    if (c == '[') return MatchClass(text, at, pattern, p);
    if (at >= text.size()) return {};
    if (c == '?') return {true, LetterAt(text, at).length, p + 1};
    if (c == '#') return {text[at] >= '0' && text[at] <= '9', 1, p + 1};
    return {text[at] == c, 1, p + 1};
}

// The first place from `at` on where the element at `p` may fit.
std::size_t Candidate(std::string_view text, std::size_t at, char element) {
    if (element == '?' || element == '#' || element == '[' || element == '*') return at;
    const std::size_t found = text.find(element, at);
    return found == std::string_view::npos ? text.size() : found;
}

}  // namespace

bool Like(std::string_view text, std::string_view pattern) {
    constexpr std::size_t kNoStar = std::string_view::npos;
    std::size_t at = 0, p = 0;
    std::size_t behindStar = kNoStar, retry = 0;  // where the last star's text may end
    while (at < text.size() || p < pattern.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            if (++p == pattern.size()) return true;
            behindStar = p;
            at = retry = Candidate(text, at, pattern[p]);
            continue;
        }
        const Element element = p < pattern.size() ? MatchOne(text, at, pattern, p) : Element{};
        if (element.fits) {
            at += element.taken;
            p = element.next;
            continue;
        }
        // A longer text for an earlier star cannot help: what lies before the last star fits already.
        if (behindStar == kNoStar || retry >= text.size()) return false;
        p = behindStar;
        at = retry = Candidate(text, retry + LetterAt(text, retry).length, pattern[p]);
    }
    return true;
}

}  // namespace core
