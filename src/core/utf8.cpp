#include "core/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <span>

#include "core/unicodetables.h"

namespace core {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr Letter kNoLetter{kReplacement, 1};
constexpr std::uint64_t kHighBits = 0x8080808080808080U;
constexpr std::uint64_t kOnes = 0x0101010101010101U;

// Windows-1252 codes 80 to 9F. The five that it leaves open stay control codes.
constexpr std::array<char32_t, 32> kWindows1252{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned char Byte(char c) { return static_cast<unsigned char>(c); }
constexpr bool IsContinuation(char c) { return (Byte(c) & 0xC0U) == 0x80U; }

std::uint64_t LoadWord(const char* from) {
    std::uint64_t word = 0;
    std::memcpy(&word, from, sizeof word);
    return word;
}

// How many bytes from `at` on are ASCII.
std::size_t AsciiRun(std::string_view text, std::size_t at) {
    std::size_t end = at;
    while (text.size() - end >= sizeof(std::uint64_t) && (LoadWord(text.data() + end) & kHighBits) == 0)
        end += sizeof(std::uint64_t);
    while (end < text.size() && Byte(text[end]) < 0x80) ++end;
    return end - at;
}

// Flips the case of the ASCII letters `first` to `last`, eight bytes at a time: adding
// to the seven low bits sets the high bit of each byte that is past a limit.
std::string FlipAscii(std::string_view text, char first, char last) {
    constexpr std::uint64_t kCaseBit = 0x20;
    std::string out(text);
    std::size_t at = 0;
    for (; out.size() - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t)) {
        const std::uint64_t word = LoadWord(out.data() + at);
        const std::uint64_t low = word & ~kHighBits;
        const std::uint64_t fromFirst = low + kOnes * (0x80U - Byte(first));
        const std::uint64_t pastLast = low + kOnes * (0x7FU - Byte(last));
        const std::uint64_t hits = (fromFirst ^ pastLast) & ~word & kHighBits;
        const std::uint64_t flipped = word ^ ((hits >> 7U) * kCaseBit);
        std::memcpy(out.data() + at, &flipped, sizeof flipped);
    }
    for (; at < out.size(); ++at)
        if (out[at] >= first && out[at] <= last) out[at] = static_cast<char>(Byte(out[at]) ^ kCaseBit);
    return out;
}

std::size_t LengthByLead(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

bool IsWellFormed(char32_t code, std::size_t length) {
    if (length == 3) return code >= 0x800 && (code < 0xD800 || code > 0xDFFF);
    if (length == 4) return code >= 0x10000 && code <= 0x10FFFF;
    return true;
}

std::size_t EncodedLength(char32_t code) { return code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4; }

char32_t Mapped(std::span<const CaseRow> rows, char32_t code) {
    const auto next = std::ranges::upper_bound(rows, code, {}, &CaseRow::first);
    if (next == rows.begin()) return code;
    const CaseRow& row = *std::prev(next);
    if (code > row.last || (code - row.first) % row.step != 0) return code;
    return static_cast<char32_t>(static_cast<std::int32_t>(code) + row.delta);
}

// `folded` is `text` with its ASCII letters mapped already.
std::string MapLetters(std::string_view text, std::string folded, std::span<const CaseRow> rows) {
    std::size_t at = AsciiRun(text, 0);
    if (at == text.size()) return folded;
    std::string out;
    out.reserve(text.size());
    out.append(folded, 0, at);
    while (at < text.size()) {
        const Letter letter = LetterAt(text, at);
        const char32_t code = letter.length == 1 ? letter.code : Mapped(rows, letter.code);
        if (letter.length == 1 || code == letter.code)
            out.append(text, at, letter.length);
        else
            AppendLetter(out, code);
        at += letter.length;
        const std::size_t run = AsciiRun(text, at);
        out.append(folded, at, run);
        at += run;
    }
    return out;
}

std::string FromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const unsigned char byte = Byte(c);
        AppendLetter(out, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80U] : char32_t{byte});
    }
    return out;
}

}  // namespace

bool IsAscii(std::string_view text) { return AsciiRun(text, 0) == text.size(); }

bool IsUtf8(std::string_view text) {
    std::size_t at = AsciiRun(text, 0);
    while (at < text.size()) {
        const std::size_t length = LetterAt(text, at).length;
        if (length == 1) return false;
        at += length;
        at += AsciiRun(text, at);
    }
    return true;
}

std::string ToUtf8(std::string_view bytes) { return IsUtf8(bytes) ? std::string(bytes) : FromWindows1252(bytes); }

std::string_view ToUtf8(std::string_view bytes, std::string& room) {
    if (IsUtf8(bytes)) return bytes;
    room = FromWindows1252(bytes);
    return room;
}

std::string_view CutUtf8(std::string_view text, std::size_t bytes) {
    if (bytes >= text.size()) return text;
    for (std::size_t back = 0; back <= 3 && back <= bytes; ++back) {
        const std::size_t start = bytes - back;
        if (IsContinuation(text[start])) continue;
        // Only a letter that reaches over the cut moves it.
        return text.substr(0, LetterAt(text, start).length > back ? start : bytes);
    }
    return text.substr(0, bytes);
}

Letter LetterAt(std::string_view text, std::size_t at) {
    if (at >= text.size()) return kNoLetter;
    const unsigned char lead = Byte(text[at]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = LengthByLead(lead);
    if (length == 0 || text.size() - at < length) return kNoLetter;
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[at + i])) return kNoLetter;
        code = code << 6U | (Byte(text[at + i]) & 0x3FU);
    }
    return IsWellFormed(code, length) ? Letter{code, length} : kNoLetter;
}

Letter LetterBefore(std::string_view text, std::size_t end) {
    end = std::min(end, text.size());
    for (std::size_t length = 1; length <= std::min<std::size_t>(4, end); ++length) {
        if (IsContinuation(text[end - length])) continue;
        const Letter letter = LetterAt(text, end - length);
        return letter.length == length ? letter : kNoLetter;
    }
    return kNoLetter;
}

void AppendLetter(std::string& out, char32_t code) {
    const std::size_t length = EncodedLength(code);
    if (length == 1) {
        out += static_cast<char>(code);
        return;
    }
    const char32_t mark = (0xF00U >> length) & 0xFFU;
    out += static_cast<char>(mark | code >> (6 * (length - 1)));
    for (std::size_t rest = length - 1; rest-- > 0;) out += static_cast<char>(0x80U | ((code >> (6 * rest)) & 0x3FU));
}

std::string LowerUtf8(std::string_view text) { return MapLetters(text, LowerAscii(text), LowerRows()); }

std::string UpperUtf8(std::string_view text) { return MapLetters(text, UpperAscii(text), UpperRows()); }

std::string LowerAscii(std::string_view text) { return FlipAscii(text, 'A', 'Z'); }

std::string UpperAscii(std::string_view text) { return FlipAscii(text, 'a', 'z'); }

std::string LowerSameLength(std::string_view text) {
    if (IsAscii(text)) return LowerAscii(text);
    std::string lowered = IsUtf8(text) ? LowerUtf8(text) : std::string();
    return lowered.size() == text.size() ? lowered : LowerAscii(text);
}

bool IsLetterOrDigit(char32_t code) {
    const std::span<const CodeRange> ranges = LetterAndNumberRanges();
    const auto next = std::ranges::upper_bound(ranges, code, {}, &CodeRange::first);
    return next != ranges.begin() && code <= std::prev(next)->last;
}

}  // namespace core
