#include "core/utf8.h"

#include <gtest/gtest.h>

#include <clocale>

namespace core {
namespace {

TEST(IsUtf8, IsStrict) {
    for (const char* good : {"", "plain", "é", "\uFFFD", "\U0010FFFF", "\xED\x9F\xBF", "12345678é"})
        EXPECT_TRUE(IsUtf8(good)) << good;
    const char* bad[] = {"\x80",         "\xC0\xAF",         "\xC1\xBF",         "\xE0\x9F\xBF",
                         "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                         "é\xC3",        "\xE2\x82"};
    for (const char* text : bad) EXPECT_FALSE(IsUtf8(text)) << text;
}

TEST(ToUtf8, TakesForeignBytesAsAWhole) {
    EXPECT_EQ(ToUtf8("caf\xC3\xA9"), "café");
    EXPECT_EQ(ToUtf8("caf\xE9 \x80"), "café €");
    EXPECT_EQ(ToUtf8("\xC3\xA9\xE9"), "Ã©é");  // one bad byte: all of it is Windows-1252
    EXPECT_EQ(ToUtf8("\x81\x8D\x8F\x90\x9D"), "\u0081\u008D\u008F\u0090\u009D");
    std::string room;
    const std::string_view plain = "nothing to do";
    EXPECT_EQ(ToUtf8(plain, room).data(), plain.data());
    EXPECT_TRUE(IsUtf8(ToUtf8("\xFF\xFE", room)));
}

TEST(CutUtf8, MovesBackToTheLettersStart) {
    const std::string text = "a\U0001F600b";  // 1 + 4 + 1 bytes
    const std::size_t kept[] = {0, 1, 1, 1, 1, 5, 6, 6};
    for (std::size_t n = 0; n < std::size(kept); ++n) EXPECT_EQ(CutUtf8(text, n).size(), kept[n]) << n;
    EXPECT_EQ(CutUtf8("\x80\x80\x80\x80\x80\x80", 5).size(), 5U);  // no letters, nothing to keep whole
    EXPECT_EQ(CutUtf8("é\x80z", 3).size(), 3U);
}

TEST(LetterAt, ReadsForwardsAndBackwardsTheSame) {
    const std::string text = "aé€\U0001F600\x80";
    const Letter expected[] = {{'a', 1}, {0xE9, 2}, {0x20AC, 3}, {0x1F600, 4}, {0xFFFD, 1}};
    std::size_t at = 0;
    for (const Letter& letter : expected) {
        EXPECT_EQ(LetterAt(text, at).code, letter.code);
        at += letter.length;
        EXPECT_EQ(LetterBefore(text, at).code, letter.code);
        EXPECT_EQ(LetterBefore(text, at).length, letter.length);
    }
    EXPECT_EQ(LetterBefore("é\x80", 3).length, 1U);
}

TEST(AppendLetter, WritesWhatLetterAtReads) {
    for (char32_t code = 0; code <= 0x10FFFF; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF) continue;
        std::string text;
        AppendLetter(text, code);
        const Letter letter = LetterAt(text, 0);
        ASSERT_TRUE(letter.code == code && letter.length == text.size()) << static_cast<unsigned>(code);
    }
}

TEST(LowerUtf8, MapsOneLetterAtATimeInAnyLocale) {
    std::setlocale(LC_ALL, "tr_TR.UTF-8");
    const struct {
        const char* text;
        const char* lower;
    } cases[] = {
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZ@[`{", "abcdefghijklmnopqrstuvwxyz@[`{"},
        {"ÄÖÜ ÀÉ", "äöü àé"},
        {"МОСКВА ЁЖ", "москва ёж"},
        {"ΟΔΟΣ", "οδοσ"},  // no final sigma
        {"\u0130", "i"},
        {"\u1E9E\u212A", "ßk"},
        {"A\x80Z\xC3", "a\x80z\xC3"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(LowerUtf8(c.text), c.lower);
    }
    EXPECT_EQ(UpperUtf8("straße ё ÿ ǆ \u1F80"), "STRAßE Ё Ÿ Ǆ \u1F88");
    std::setlocale(LC_ALL, "C");
}

TEST(LowerUtf8, AsciiIsExactAtEveryOffset) {
    std::string all, lower, upper;
    for (int code = 0; code < 256; ++code) {
        const bool isUpper = code >= 'A' && code <= 'Z', isLower = code >= 'a' && code <= 'z';
        all += static_cast<char>(code);
        lower += static_cast<char>(isUpper ? code + 32 : code);
        upper += static_cast<char>(isLower ? code - 32 : code);
    }
    for (std::size_t from = 0; from < 16; ++from) {
        EXPECT_EQ(LowerAscii(all.substr(from)), lower.substr(from));
        EXPECT_EQ(UpperAscii(all.substr(from)), upper.substr(from));
    }
}

TEST(LowerSameLength, KeepsEveryPosition) {
    EXPECT_EQ(LowerSameLength("ÄBЖ"), "äbж");
    EXPECT_EQ(LowerSameLength("ÄB\u0130C"), "Äb\u0130c");
    EXPECT_EQ(LowerSameLength("A\xFFÄ"), "a\xFFÄ");
}

TEST(IsLetterOrDigit, KnowsOtherScripts) {
    for (const char32_t code : {U'a', U'Z', U'0', U'é', U'я', U'中', U'²', U'Ⅷ', U'٣'})
        EXPECT_TRUE(IsLetterOrDigit(code));
    for (const char32_t code : {U' ', U'_', U'-', U'×', U'€', U'\u00A0', U'\u0301'})
        EXPECT_FALSE(IsLetterOrDigit(code));
}

}  // namespace
}  // namespace core
