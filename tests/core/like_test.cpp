#include "core/like.h"

#include <gtest/gtest.h>

#include <string>

namespace core {
namespace {

TEST(Like, MatchesTheWholeText) {
    const struct {
        const char* text;
        const char* pattern;
        bool matches;
    } cases[] = {
        {"", "", true},
        {"", "*", true},
        {"a", "", false},
        {"", "?", false},
        {"http://www.find.test/q?x=1", "http://*find.*/q[?]*", true},
        {"http://find.test/qax", "http://*find.*/q[?]*", false},
        {"abcabd", "*abd", true},  // the first abc is given up
        {"aXbXc", "a*X?", true},
        {"abc", "a*c*", true},
        {"abc", "ABC", false},
        {"a1", "a#", true},
        {"ax", "a#", false},
        {"é", "?", true},
        {"é", "??", false},
        {"xéy", "x[à-ö]y", true},
        {"x*y", "x[*]y", true},
        {"xay", "x[!a-c]y", false},
        {"xdy", "x[!a-c]y", true},
        {"x!y", "x[!]y", true},
        {"a-b", "a[x-]b", true},
        {"b", "[c-a]", false},
        {"ab", "a[]b", true},
        {"[", "[[]", true},
        {"a]", "a]", true},
        {"a[b", "a[b", false},  // a class that is never closed
        {"", "*[", false},
        {"aé", "*é", true},
        {"ééa", "*?a", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " Like " + c.pattern);
        EXPECT_EQ(Like(c.text, c.pattern), c.matches);
    }
}

TEST(Like, ManyStarsCostNoMoreThanOneWalkEach) {
    const std::string text(200000, 'a');
    std::string pattern;
    for (int i = 0; i < 50; ++i) pattern += "*a";
    EXPECT_FALSE(Like(text, pattern + "b"));
    EXPECT_TRUE(Like(text, pattern + "*"));
}

}  // namespace
}  // namespace core
