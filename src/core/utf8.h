#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Letters of UTF-8 text. Nothing here looks at the C locale.
namespace core {

bool IsAscii(std::string_view text);
// Strict: no overlong forms, no surrogates, nothing above U+10FFFF.
bool IsUtf8(std::string_view text);

// Valid UTF-8 comes back as it is; anything else is taken as Windows-1252 as a
// whole (81 8D 8F 90 9D become U+0081 and so on). The door for all foreign text.
std::string ToUtf8(std::string_view bytes);
// The same without a copy when nothing has to change: the result is a view of
// `bytes` or of `room`.
std::string_view ToUtf8(std::string_view bytes, std::string& room);

// The longest prefix of at most `bytes` bytes that ends at a letter's end.
std::string_view CutUtf8(std::string_view text, std::size_t bytes);

struct Letter {
    char32_t code = 0;
    std::size_t length = 1;  // bytes
};
// The letter that starts at `at`. A byte that starts none is U+FFFD of length 1.
Letter LetterAt(std::string_view text, std::size_t at);
// The letter that ends before `end` (end > 0).
Letter LetterBefore(std::string_view text, std::size_t end);
void AppendLetter(std::string& out, char32_t code);

// One code point at a time (simple mapping; U+0130 gives "i"). Bytes that are
// no UTF-8 are kept.
std::string LowerUtf8(std::string_view text);
std::string UpperUtf8(std::string_view text);
std::string LowerAscii(std::string_view text);
std::string UpperAscii(std::string_view text);
// LowerUtf8, so that positions in the result are positions in `text`: where the length would change, or
// `text` is no valid UTF-8, A to Z alone are lower-cased.
std::string LowerSameLength(std::string_view text);

// General categories L and N.
bool IsLetterOrDigit(char32_t code);

}  // namespace core
