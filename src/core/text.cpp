#include "core/text.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "core/numbers.h"
#include "core/utf8.h"

namespace core {
namespace {

std::size_t AsSize(long n) { return n <= 0 ? 0 : static_cast<std::size_t>(n); }

// The longest tail of at most `bytes` bytes that starts at a letter's start.
std::string_view TailUtf8(std::string_view text, std::size_t bytes) {
    if (bytes >= text.size()) return text;
    std::size_t start = text.size() - bytes;
    const std::size_t letter = CutUtf8(text, start).size();
    if (letter < start) start = letter + LetterAt(text, letter).length;
    return text.substr(start);
}

// A text and what to look for in it, both lower-cased where the case doesn't count.
class Search {
public:
    Search(std::string_view text, std::string_view find, Case mode) : text_(text), find_(find) {
        if (mode == Case::Exact) return;
        textRoom_ = LowerSameLength(text);
        findRoom_ = LowerSameLength(find);
        text_ = textRoom_;
        find_ = findRoom_;
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    std::size_t From(std::size_t at) const { return text_.find(find_, at); }

private:
    std::string textRoom_, findRoom_;
    std::string_view text_, find_;
};

// Removes the first `taken` bytes and gives back the first `length` of them.
Token TakeFront(std::string& rest, std::size_t length, std::size_t taken) {
    Token token{rest.substr(0, length), true};
    rest.erase(0, taken);
    return token;
}

}  // namespace

Cut fLeft(std::string_view text, int n, std::string_view mark) {
    const std::size_t width = AsSize(n);
    const std::size_t room = width - std::min(width, mark.size());
    if (text.size() <= room) return {std::string(text), false};
    if (room > 0) return {std::string(CutUtf8(text, room)).append(mark), true};
    // No room beside the mark: the first letter, then as much of the mark as fits.
    const std::size_t first = LetterAt(text, 0).length;
    if (first > width) return {"", true};
    return {std::string(text.substr(0, first)).append(CutUtf8(mark, width - first)), true};
}

std::string fRight(std::string_view text, int n, std::string_view mark) {
    const std::size_t width = AsSize(n);
    const std::size_t room = width - std::min(width, mark.size());
    if (text.size() <= room) return std::string(text);
    const std::size_t last = LetterBefore(text, text.size()).length;
    if (last > width) return {};
    const std::string_view tail = TailUtf8(text, std::max(room, last));
    return std::string(TailUtf8(mark, width - tail.size())).append(tail);
}

std::string_view fMid(std::string_view text, long start, long length) {
    const std::size_t from = AsSize(start - 1);
    if (length <= 0 || from >= text.size()) return {};
    const std::size_t begin = CutUtf8(text, from).size();
    const std::size_t end = CutUtf8(text, from + std::min(AsSize(length), text.size() - from)).size();
    return text.substr(begin, end - begin);
}

void fCutLeft(std::string& text, long n) { text.erase(0, CutUtf8(text, AsSize(n)).size()); }

void fCutRight(std::string& text, long n) {
    text.resize(CutUtf8(text, text.size() - std::min(AsSize(n), text.size())).size());
}

std::string fStrip(std::string_view text, std::string_view find) { return fReplace(text, find, {}); }

std::string fStripAmp(std::string_view text) { return fStrip(text, "&"); }

std::string fReplace(std::string_view text, std::string_view find, std::string_view by, Case mode) {
    if (find.empty() || fEquals(find, by, mode)) return std::string(text);
    const Search search(text, find, mode);
    std::string out;
    std::size_t from = 0;
    for (std::size_t at = 0; (at = search.From(from)) != std::string_view::npos; from = at + find.size())
        out.append(text, from, at - from).append(by);
    return out.append(text, from);
}

bool fStartsWith(std::string_view text, std::string_view prefix, Case mode) {
    return text.size() >= prefix.size() && fEquals(text.substr(0, prefix.size()), prefix, mode);
}

bool fEndsWith(std::string_view text, std::string_view suffix, Case mode) {
    return text.size() >= suffix.size() && fEquals(text.substr(text.size() - suffix.size()), suffix, mode);
}

bool fEquals(std::string_view a, std::string_view b, Case mode) {
    if (mode == Case::Exact) return a == b;
    if (!IsAscii(a) || !IsAscii(b)) return LowerUtf8(a) == LowerUtf8(b);
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::size_t fFind(std::string_view text, std::string_view find, Case mode, std::size_t from) {
    return Search(text, find, mode).From(from);
}

Found fInStr(std::string_view text, std::string_view find, Case mode, long start, long stop) {
    const long last = stop < 1 ? static_cast<long>(text.size()) : std::min(stop, static_cast<long>(text.size()));
    start = std::max(start, 1L);
    if (start > last) return {};
    const std::string_view window =
        text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(last - start + 1));
    const std::size_t at = fFind(window, find, mode);
    if (at == std::string_view::npos) return {};
    return {true, start + static_cast<long>(at)};
}

bool fConcatSafe(std::string_view text, std::string& variable, bool atEnd) {
    try {
        variable.insert(atEnd ? variable.size() : 0, text);
        return false;
    } catch (const std::bad_alloc&) {
        return true;
    } catch (const std::length_error&) {
        return true;
    }
}

long fCount(std::string_view text, std::string_view find, Case mode) {
    if (find.empty()) return 0;
    const Search search(text, find, mode);
    long count = 0;
    for (std::size_t at = 0; (at = search.From(at)) != std::string_view::npos; at += find.size()) ++count;
    return count;
}

Token fNextToken(std::string& rest, std::string_view delimiter, Case mode) {
    const std::size_t at = delimiter.empty() ? std::string::npos : fFind(rest, delimiter, mode);
    if (at == std::string::npos) return {};
    return TakeFront(rest, at, at + delimiter.size());
}

Token fNextToken(std::string_view& rest, std::string_view delimiter) {
    const std::size_t at = delimiter.empty() ? std::string_view::npos : rest.find(delimiter);
    if (at == std::string_view::npos) return {};
    Token token{std::string(rest.substr(0, at)), true};
    rest.remove_prefix(at + delimiter.size());
    return token;
}

Token fNextTokenR(std::string& rest, std::string_view delimiter) {
    const std::size_t at = delimiter.empty() ? std::string::npos : rest.rfind(delimiter);
    if (at == std::string::npos) return {};
    Token token{rest.substr(at + delimiter.size()), true};
    rest.resize(at);
    return token;
}

std::string_view fBefore(std::string_view text, std::string_view delimiter) {
    return delimiter.empty() ? text : text.substr(0, text.find(delimiter));
}

std::string_view fAfter(std::string_view text, std::string_view delimiter) {
    const std::size_t at = delimiter.empty() ? std::string_view::npos : text.find(delimiter);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + delimiter.size());
}

std::string_view fAfterR(std::string_view text, std::string_view delimiter) {
    const std::size_t at = delimiter.empty() ? std::string_view::npos : text.rfind(delimiter);
    return at == std::string_view::npos ? text : text.substr(at + delimiter.size());
}

std::string fRepeat(std::string_view text, int n) {
    std::string out;
    out.reserve(text.size() * AsSize(n));
    for (int i = 0; i < n; ++i) out += text;
    return out;
}

std::string fProper(std::string_view text) {
    const std::size_t first = text.empty() ? 0 : LetterAt(text, 0).length;
    return UpperUtf8(text.substr(0, first)) + LowerUtf8(text.substr(first));
}

std::string fAddQ(std::string_view text) { return std::string("\"").append(text).append("\""); }

std::string fListAddSep(std::string_view item, std::string_view list) {
    return list.empty() ? std::string(item) : std::string(list).append("| ").append(item);
}

std::string_view fTrim(std::string_view text) { return fTrimRight(fTrimLeft(text)); }

std::string_view fTrimLeft(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view fTrimRight(std::string_view text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

bool fBool(std::string_view text) {
    const std::string_view word = fTrim(text);
    return !word.empty() && word != "0" && word != "False";
}

std::string_view fBoolWord(bool flag) { return flag ? "True" : "False"; }

bool fIsOne(std::string_view text) { return fNum(text) == 1; }

bool fIsOneSigned(std::string_view text) { return fNum(text) == -1; }

std::string_view fBoolText(bool flag) { return flag ? "1" : "0"; }

std::string_view fBoolTextSigned(bool flag) { return flag ? "-1" : "0"; }

}  // namespace core
