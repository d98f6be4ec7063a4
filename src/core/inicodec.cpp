#include "core/inicodec.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "core/cds.h"
#include "core/text.h"
#include "core/utf8.h"

namespace core {

namespace {

struct Word {
    std::string_view plain;
    std::string_view name;  // behind the pair
};
constexpr Word kPairWord{kIniPair, "CHR160x2."};
constexpr Word kLineWord{"\r\n", "CRLF."};
constexpr Word kOpenWord{"[", "(SQ."};
constexpr Word kCloseWord{"]", "SQ)."};
constexpr Word kEqualWord{"=", "eq."};
constexpr Word kQuoteWord{"\"", "quote."};
constexpr Word kBlankWord{"", "<< less two."};
constexpr char kCodeSign = '#';  // P + "#032." is one byte of a name

std::string Escaped(const Word& word) { return std::string(kIniPair).append(word.name); }

std::string Encode(std::string_view text, const Word& word) { return fReplace(text, word.plain, Escaped(word)); }
std::string Decode(std::string_view text, const Word& word) { return fReplace(text, Escaped(word), word.plain); }

std::string ThreeDigits(unsigned char code) {
    return {static_cast<char>('0' + code / 100), static_cast<char>('0' + code / 10 % 10),
            static_cast<char>('0' + code % 10)};
}

// The code of three digits at `at`, or -1.
int CodeAt(std::string_view text, std::size_t at) {
    if (at + 3 > text.size()) return -1;
    int code = 0;
    for (const char c : text.substr(at, 3)) {
        if (c < '0' || c > '9') return -1;
        code = code * 10 + (c - '0');
    }
    return code <= 255 ? code : -1;
}

// A byte that no line of a UTF-8 text file should hold. `length` is that of the letter at `at`.
bool NeedsCode(std::string_view text, std::size_t at, std::size_t& length) {
    const auto byte = static_cast<unsigned char>(text[at]);
    length = 1;
    if (byte < 32) return true;
    if (byte < 128) return false;
    length = LetterAt(text, at).length;
    return length == 1;
}

bool NeedsCodes(std::string_view text) {
    for (std::size_t at = 0, length = 1; at < text.size(); at += length)
        if (NeedsCode(text, at, length)) return true;
    return false;
}

std::string ReplaceByCodes(std::string_view text, std::string_view before, std::string_view after) {
    std::string coded;
    coded.reserve(text.size() + 64);
    for (std::size_t at = 0, length = 1; at < text.size(); at += length) {
        if (NeedsCode(text, at, length))
            coded.append(before).append(ThreeDigits(static_cast<unsigned char>(text[at]))).append(after);
        else
            coded.append(text.substr(at, length));
    }
    return coded;
}

std::string RestoreCodes(std::string_view text, std::string_view before, std::string_view after) {
    std::string plain;
    plain.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t hit = text.find(before, at);
        plain.append(text.substr(at, hit == std::string_view::npos ? hit : hit - at));
        if (hit == std::string_view::npos) break;
        const int code = CodeAt(text, hit + before.size());
        const std::size_t end = hit + before.size() + 3;
        const bool coded = code >= 0 && text.substr(std::min(end, text.size())).starts_with(after);
        plain += coded ? static_cast<char>(code) : text[hit];
        at = coded ? end + after.size() : hit + 1;
    }
    return plain;
}

std::string CodeWordStart() { return std::string(kIniPair) + kCodeSign; }

std::string CodeWord(char c) { return CodeWordStart() + ThreeDigits(static_cast<unsigned char>(c)) + "."; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// What a line would lose or misread: blanks at the ends, a comment's or a section's first character.
std::string EncodeEnds(std::string name) {
    if (!name.empty() && IsBlank(name.back())) name.replace(name.size() - 1, 1, CodeWord(name.back()));
    if (!name.empty() && (IsBlank(name.front()) || name.front() == ';' || name.front() == '['))
        name.replace(0, 1, CodeWord(name.front()));
    return name;
}

std::string EncodeWords(std::string_view value) {
    std::string text = Encode(Encode(value, kPairWord), kLineWord);
    if (!text.empty() && text.front() == '"') text.replace(0, 1, Escaped(kQuoteWord));
    if (!text.empty() && text.back() == '"') text.replace(text.size() - 1, 1, Escaped(kQuoteWord));
    if (!text.empty() && text.back() == ' ') text += Escaped(kBlankWord);
    return text;
}

std::string DecodeWords(std::string_view text) {
    std::string value(text);
    if (value.find(kIniPair) == std::string::npos) return value;
    for (const Word& word : {kLineWord, kOpenWord, kCloseWord, kEqualWord}) value = Decode(value, word);
    const std::string quote = Escaped(kQuoteWord), blank = Escaped(kBlankWord);
    if (value.starts_with(quote)) value.replace(0, quote.size(), "\"");
    if (value.ends_with(quote)) value.replace(value.size() - quote.size(), quote.size(), "\"");
    if (value.ends_with(blank)) value.resize(value.size() - blank.size());
    return fReplace(value, Escaped(kPairWord), kIniPair, Case::Ignore);
}

// A token that stands nowhere in the text and whose codes read back even where
// the text in front of one ends like the token begins.
std::string EncodeControls(std::string_view text) {
    std::string taken = std::string(text).append(1, '\0').append(kControlMarker);
    for (;;) {
        const std::string token = ChooseSubstitute(taken, 3, {});
        const std::string coded = ReplaceByCodes(text, token, {});
        if (RestoreCodes(coded, token, {}) == text) return std::string(kControlMarker) + token + coded;
        taken.append(1, '\0').append(token);
    }
}

std::size_t TokenLength(std::string_view text) {
    std::size_t length = 0;
    for (int letter = 0; letter < 3 && length < text.size(); ++letter) length += LetterAt(text, length).length;
    return length;
}

}  // namespace

std::string IniEncodeSection(std::string_view name) {
    const std::string text = Encode(Encode(Encode(Encode(name, kPairWord), kCloseWord), kOpenWord), kLineWord);
    return EncodeEnds(ReplaceByCodes(text, CodeWordStart(), "."));
}

std::string IniEncodeEntry(std::string_view name) {
    const std::string text = Encode(Encode(Encode(name, kPairWord), kEqualWord), kLineWord);
    return EncodeEnds(ReplaceByCodes(text, CodeWordStart(), "."));
}

std::string IniDecodeName(std::string_view text) {
    if (text.find(kIniPair) == std::string_view::npos) return std::string(text);
    std::string name(text);
    for (const Word& word : {kLineWord, kOpenWord, kCloseWord, kEqualWord}) name = Decode(name, word);
    name = RestoreCodes(name, CodeWordStart(), ".");
    return fReplace(name, Escaped(kPairWord), kIniPair, Case::Ignore);
}

std::string IniEncodeValue(std::string_view value) {
    std::string text = EncodeWords(value);
    if (!NeedsCodes(text) && !text.starts_with(kControlMarker)) return text;
    return EncodeControls(text);
}

std::string IniDecodeValue(std::string_view text) {
    if (!text.starts_with(kControlMarker)) return DecodeWords(text);
    text.remove_prefix(kControlMarker.size());
    const std::string_view token = text.substr(0, TokenLength(text));
    if (token.empty()) return {};
    return DecodeWords(RestoreCodes(text.substr(token.size()), token, {}));
}

}  // namespace core
