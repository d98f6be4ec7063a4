#include "core/inicodec.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/utf8.h"

namespace core {
namespace {

const std::string P(kIniPair);

std::string AllBytes() {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    return all;
}

TEST(IniEncodeValue, WritesTheWordsOfTheFileFormat) {
    const struct {
        std::string value, text;
    } cases[] = {
        {"plain = text; [x]", "plain = text; [x]"},
        {P, P + "CHR160x2."},
        {"a\r\nb", "a" + P + "CRLF.b"},
        {"\"a\"", P + "quote.a" + P + "quote."},
        {"\"", P + "quote."},
        {"a\"b", "a\"b"},
        {"a ", "a " + P + "<< less two."},
        {"\t",
         "!~!@#!"
         "!!!"
         "!!!009"},  // marker, token, text: the first three characters from code 33
        {"\n!!!",
         "!~!@#!"
         "!!\""
         "!!\"010!!!"},
        {"!~!@#!x",
         "!~!@#!"
         "!!!"
         "!~!@#!x"},
        {std::string("a\0b", 3),
         "!~!@#!"
         "!!!"
         "a!!!000b"},
        {"\xE9",
         "!~!@#!"
         "!!!"
         "!!!233"},  // a byte that is no UTF-8 would change the reading of the whole file
        {"\xC3\xA9", "\xC3\xA9"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(IniEncodeValue(c.value), c.text);
        EXPECT_EQ(IniDecodeValue(c.text), c.value);
    }
}

TEST(IniDecodeValue, TakesHandMadeTextsAsTheyStand) {
    const struct {
        std::string text, value;
    } cases[] = {
        {P + "(SQ.a" + P + "SQ)." + P + "eq.", "[a]="},  // words of names count in values too
        {P + "chr160X2.", P},                            // this one ignoring case
        {"!~!@#!", ""},
        {"!~!@#!ab", ""},
        {"!~!@#!abcx abc9 abc999", "x abc9 abc999"},  // no three digits of a byte
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(IniDecodeValue(c.text), c.value);
    }
}

TEST(IniEncode, NamesStandOnALineAndComeBack) {
    EXPECT_EQ(IniEncodeSection("a[b]c"), "a" + P + "(SQ.b" + P + "SQ).c");
    EXPECT_EQ(IniEncodeEntry("a=b"), "a" + P + "eq.b");
    EXPECT_EQ(IniEncodeEntry("a[b]"), "a[b]");
    EXPECT_EQ(IniEncodeEntry(";a"), P + "#059.a");
    for (const std::string& name : {std::string(" "), std::string("  a  "), std::string(";=[]\r\n"), std::string("[x"),
                                    P + "eq.", P + P, P + "#032.", AllBytes(), std::string("")}) {
        for (const std::string& text : {IniEncodeSection(name), IniEncodeEntry(name)}) {
            EXPECT_EQ(IniDecodeName(text), name);
            EXPECT_TRUE(IsUtf8(text));
            EXPECT_EQ(text.find_first_of(std::string_view("\r\n\0", 3)), std::string::npos);
        }
        EXPECT_EQ(IniEncodeSection(name).find_first_of("[]"), std::string::npos);
        EXPECT_EQ(IniEncodeEntry(name).find('='), std::string::npos);
    }
}

// Texts made of what the encoding itself is made of.
TEST(IniEncodeValue, RoundTripsHostileMixtures) {
    const std::string pieces[] = {P,           "\xC2\xA0",
                                  "CHR160x2.", "CRLF.",
                                  "quote.",    "\"",
                                  " ",         "<< less two.",
                                  "\r\n",      "\r",
                                  "\n",        "!~!@#!",
                                  "!",         "!!",
                                  "!!!",       "\t",
                                  "009",       "\"!",
                                  "\xC2",      "\xA0",
                                  "#032.",     std::string(1, '\0'),
                                  "eq.",       "\xFF",
                                  "a"};
    std::mt19937 random(7);
    for (int n = 0; n < 20000; ++n) {
        std::string value;
        for (auto i = random() % 9; i > 0; --i) value += pieces[random() % std::size(pieces)];
        const std::string text = IniEncodeValue(value);
        ASSERT_EQ(IniDecodeValue(text), value) << text;
        ASSERT_TRUE(IsUtf8(text));
        ASSERT_EQ(IniDecodeName(IniEncodeEntry(value)), value);
        ASSERT_EQ(IniDecodeName(IniEncodeSection(value)), value);
    }
}

}  // namespace
}  // namespace core
