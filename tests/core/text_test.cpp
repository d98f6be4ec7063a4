#include "core/text.h"

#include <gtest/gtest.h>

namespace core {
namespace {

TEST(fLeft, CutsForTheMarkEvenWhatWouldFit) {
    const struct {
        const char* text;
        int n;
        const char* mark;
        const char* left;
        bool wasCut;
    } cases[] = {
        {"abcd", 4, "", "abcd", false},  {"abcde", 4, "", "abcd", true},
        {"ab", 4, "..", "ab", false},    {"abc", 4, "..", "ab..", true},  // it would have fitted
        {"abcd", 4, "..", "ab..", true}, {"abcd", 2, "..", "a.", true},   // no room beside the mark
        {"abcd", 1, "..", "a", true},    {"abcd", 0, "..", "", true},
        {"", 2, "..", "", false},        {"aé", 2, "", "a", true},  // é takes bytes 2 and 3
        {"aéb", 4, ".", "aé.", true},    {"aéb", 3, ".", "a.", true},
        {"é", 1, "", "", true},          {"éa", 3, "...", "é.", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " " + std::to_string(c.n));
        const Cut cut = fLeft(c.text, c.n, c.mark);
        EXPECT_EQ(cut.text, c.left);
        EXPECT_EQ(cut.wasCut, c.wasCut);
    }
}

TEST(fRight, KeepsTheEndAndNeverHalfALetter) {
    EXPECT_EQ(fRight("abcdef", 4, ".."), "..ef");
    EXPECT_EQ(fRight("ab", 4, ".."), "ab");
    EXPECT_EQ(fRight("abcdef", 2, "..."), ".f");
    EXPECT_EQ(fRight("aéb", 2), "b");
    EXPECT_EQ(fRight("abé", 2, "."), "é");
    EXPECT_EQ(fRight("abc", 0, "."), "");
}

TEST(fMid, IsSafeOutsideTheText) {
    EXPECT_EQ(fMid("abcdef", 2, 3), "bcd");
    EXPECT_EQ(fMid("abc", 2, 2147483647), "bc");
    EXPECT_EQ(fMid("abc", 4, 1), "");
    EXPECT_EQ(fMid("abc", 1, 0), "");
    EXPECT_EQ(fMid("aéb", 1, 2), "a");
    EXPECT_EQ(fMid("aéb", 3, 2), "éb");  // a start inside a letter moves back
}

TEST(fCutLeft, RemovesAtMostAll) {
    std::string text = "abcd";
    fCutLeft(text, 1);
    fCutRight(text, 1);
    EXPECT_EQ(text, "bc");
    fCutLeft(text, -1);
    fCutRight(text, 0);
    EXPECT_EQ(text, "bc");
    fCutRight(text, 99);
    EXPECT_EQ(text, "");
    fCutLeft(text, 99);
    EXPECT_EQ(text, "");
}

TEST(fReplace, GuardsAndCase) {
    EXPECT_EQ(fReplace("a.b.c", ".", "::"), "a::b::c");
    EXPECT_EQ(fReplace("aaa", "aa", "b"), "ba");
    EXPECT_EQ(fReplace("abc", "", "x"), "abc");
    EXPECT_EQ(fReplace("xAbaB", "ab", "-", Case::Ignore), "x--");
    EXPECT_EQ(fReplace("xAb", "ab", "AB", Case::Ignore), "xAb");  // the same text but for its case
    EXPECT_EQ(fReplace("ÄäA", "ä", "-", Case::Ignore), "--A");
    EXPECT_EQ(fReplace("\u0130A\u212Aa", "a", "-", Case::Ignore), "\u0130-\u212A-");  // positions hold
}

TEST(fEquals, LowerCasesLetterByLetter) {
    EXPECT_TRUE(fEquals("ПРИВЕТ", "привет", Case::Ignore));
    EXPECT_TRUE(fEquals("\u0130", "i", Case::Ignore));
    EXPECT_FALSE(fEquals("a", "ab", Case::Ignore));
    EXPECT_FALSE(fEquals("A", "a", Case::Exact));
    EXPECT_TRUE(fStartsWith("Straße", "STRA", Case::Ignore));
    EXPECT_FALSE(fStartsWith("ab", "abc"));
    EXPECT_TRUE(fEndsWith("index.HTM", ".htm", Case::Ignore));
    EXPECT_FALSE(fEndsWith("m", ".htm", Case::Ignore));
}

TEST(fFind, SearchesFromAnOffset) {
    EXPECT_EQ(fFind("xAbAB", "ab", Case::Ignore, 2), 3U);
    EXPECT_EQ(fFind("abc", "c", Case::Exact, 9), std::string_view::npos);
    EXPECT_EQ(fCount("aaaa", "aa"), 2);
    EXPECT_EQ(fCount("aaaa", ""), 0);
}

TEST(fNextToken, WalksFromBothEnds) {
    std::string rest = "a::b::c";
    EXPECT_EQ(fNextToken(rest, "::").text, "a");
    EXPECT_EQ(fNextTokenR(rest, "::").text, "c");
    EXPECT_EQ(rest, "b");
    for (const char* delimiter : {"::", ""}) {  // not there, and never there
        EXPECT_FALSE(fNextToken(rest, delimiter).found);
        EXPECT_FALSE(fNextTokenR(rest, delimiter).found);
        EXPECT_EQ(rest, "b");
    }
    std::string mixed = "oneXtwo";
    EXPECT_EQ(fNextToken(mixed, "x", Case::Ignore).text, "one");
    std::string_view view = "|a";
    EXPECT_TRUE(fNextToken(view, "|").found);
    EXPECT_EQ(view, "a");
}

TEST(fBefore, AndAfterDifferWhenTheDelimiterIsMissing) {
    EXPECT_EQ(fBefore("a=b=c", "="), "a");
    EXPECT_EQ(fAfter("a=b=c", "="), "b=c");
    EXPECT_EQ(fAfterR("a=b=c", "="), "c");
    EXPECT_EQ(fBefore("abc", "="), "abc");
    EXPECT_EQ(fAfter("abc", "="), "");
    EXPECT_EQ(fAfterR("abc", "="), "abc");
}

TEST(fTrim, TakesBlanksAlone) {
    EXPECT_EQ(fTrim("  a b\t "), "a b\t");
    EXPECT_EQ(fTrim("   "), "");
    EXPECT_EQ(fProper("éLAN"), "Élan");
    EXPECT_EQ(fListAddSep("b", fListAddSep("a", "")), "a| b");
    EXPECT_EQ(fRepeat("ab", -1), "");
}

TEST(fBool, IsTrueForAllButThreeTexts) {
    for (const char* text : {"", " ", "0", " False "}) EXPECT_FALSE(fBool(text)) << text;
    for (const char* text : {"True", "1", "-1", "no", "false", "00"}) EXPECT_TRUE(fBool(text)) << text;
    EXPECT_TRUE(fIsOneSigned("-1"));
    EXPECT_FALSE(fIsOneSigned("1"));
}

TEST(fInStr, LooksInAWindowAndTellsThePlaceInTheWholeText) {
    EXPECT_EQ(fInStr("abcABC", "b").position, 2);
    EXPECT_EQ(fInStr("abcABC", "b", Case::Ignore, 3).position, 5);
    EXPECT_FALSE(fInStr("abcABC", "ABC", Case::Exact, 1, 5).found);  // reaches over the window
    EXPECT_TRUE(fInStr("abcABC", "ABC", Case::Exact, 4, 6).found);
    EXPECT_FALSE(fInStr("abc", "c", Case::Exact, 9).found);
}

TEST(fConcatSafe, AddsAtEitherEnd) {
    std::string text = "b";
    EXPECT_FALSE(fConcatSafe("c", text, true));
    EXPECT_FALSE(fConcatSafe("a", text, false));
    EXPECT_EQ(text, "abc");
}

}  // namespace
}  // namespace core
