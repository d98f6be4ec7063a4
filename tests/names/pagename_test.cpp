#include "names/pagename.h"

#include <gtest/gtest.h>

#include "names/searchterm.h"
#include "names/url.h"
#include "names/urlcode.h"

namespace names {
namespace {

TEST(fPercentDecode, LooksAtWhatItMadeNoSecondTime) {
    const struct {
        const char* text;
        std::string plain;
    } cases[] = {
        {"a%20b", "a b"},       {"%2541", "%41"},   {"100%", "100%"}, {"%4", "%4"},
        {"%zz1", " 1"},         {"%u1234", " 234"}, {"%41%", "A%"},   {"%00x", std::string("\0x", 2)},
        {"%E4%BD", "\xE4\xBD"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(fPercentDecode(c.text), c.plain);
    }
    EXPECT_EQ(fPercentDecode("%2f%20%2F", "2F"), "%2f %2F");
}

TEST(Page_NameStd, OnePageHasOneNameInEverySpelling) {
    const struct {
        const char* spelling;
        const char* stored;
    } cases[] = {
        {"/index.htm", "index.htm"},
        {"index.htm", "index.htm"},
        {"http://www.shop.test/index.htm", "index.htm"},
        {"https://www.shop.test/index.htm", "index.htm"},
        {"http://shop.test/index.htm", "shop.test/index.htm"},  // no www.: the host stays
        {"HTTP://www.shop.test/a", "HTTP:/www.shop.test/a"},    // the protocol is known in small letters alone
        {"/", ""},
        {"", ""},
        {"%2F", ""},
        {"http://www.shop.test", ""},
        {"http://www.shop.test/", ""},
        {"a%2F/b", "a/b"},
        {"///a", "/a"},  // the first goes, the other two become one
        {"dir//", "dir"},
        {"a%E9", "aé"},
        {"a%C3%A9", "aé"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.spelling);
        EXPECT_EQ(Page_NameStd(c.spelling), c.stored);
    }
}

TEST(Page_NameStd, LongNamesWithOneBeginningBecomeOnePage) {
    const std::string start(251, 'x');
    EXPECT_EQ(Page_NameStd(start), start);
    EXPECT_EQ(Page_NameStd(start + "ab"), start + "..");
    EXPECT_EQ(Page_NameStd(start + "tail one"), start + "..");
    // A cut falls in front of a letter, never into it.
    EXPECT_EQ(Page_NameStd(start.substr(1) + "éxx"), start.substr(1) + "..");
}

TEST(Page_StripParts, ShowsBarePathsWithALeadingSlash) {
    const struct {
        const char* name;
        StripParts remove;
        const char* left;
    } cases[] = {
        {"a.htm?x=1#top", {true, true}, "/a.htm"},
        {"a.htm?x=1#top", {true, false}, "/a.htm?x=1"},
        {"a.htm?x=1#top", {false, true}, "/a.htm#top"},
        {"a.htm;s=1?x", {false, true}, "/a.htm;s=1"},
        {"/p?", {}, "/p"},
        {"www.shop.test/a?b", {false, true}, "http://www.shop.test/a"},
        {"http://shop.test/a?b", {false, true}, "http://shop.test/a"},
        {"a:b", {}, "/a:b"},
        {"//x/y", {}, "//x/y"},
        {"", {}, "/"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Page_StripParts(c.name, c.remove), c.left);
    }
}

TEST(URL_Parse, CutsInItsOrder) {
    const UrlParts parts = URL_Parse("http://host:80/a;p?q?r#f#g");
    EXPECT_EQ(parts.scheme, "http");
    EXPECT_EQ(parts.net, "host:80");
    EXPECT_EQ(parts.path, "/a");
    EXPECT_EQ(parts.params, "p");
    EXPECT_EQ(parts.query, "q?r");
    EXPECT_EQ(parts.fragment, "f#g");
    EXPECT_EQ(URL_Join(parts), "http://host:80/a;p?q?r#f#g");
    EXPECT_EQ(URL_Parse("a b:c").scheme, "");
    EXPECT_EQ(URL_Parse("//host?q").net, "host");
}

TEST(ST_Std, LeavesTheBlanksOfTheRawTerm) {
    std::string term = "Red+Shoes%21 ";
    EXPECT_EQ(ST_Std(term), "red shoes!");
    EXPECT_EQ(term, "red shoes! ");
    std::string accents = "CAF%C9";  // Windows-1252
    EXPECT_EQ(ST_Std(accents), "café");
    std::string blanks = "+++";
    EXPECT_EQ(ST_Std(blanks), "");
}

}  // namespace
}  // namespace names
