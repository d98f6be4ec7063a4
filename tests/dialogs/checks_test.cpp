#include "dialogs/checks.h"

#include <gtest/gtest.h>

#include "tests/support/tempfolder.h"

namespace {

using dialogs::CheckEntry;

TEST(CheckEntry, TheFirstRuleThatFailsIsTold) {
    const struct {
        const char* rules;
        const char* value;
        const char* problem;
    } cases[] = {
        {"", "anything", ""},
        {"N", "12.5", ""},
        {"N", "1,200", ""},
        {"N", "12x", "Must be Numeric"},
        {"N", "", "Must be Numeric"},
        {"+", "0", "Must be Positive"},
        {"+", "-1", "Must be Positive"},
        {"+", "5 apples", "Must be Positive"},
        {"+", "", "Must be Positive"},
        {"+", "0.1", ""},
        {"<100", "99.9", ""},
        {"<100", "100", "Must be Less Than 100"},
        {"<100", "1,200", "Must be Less Than 100"},
        {"<1,000", "999", ""},
        {"<100", "many", "Must be Less Than 100"},
        {"<100", "", ""},
        {"N|+|<100", "-3", "Must be Positive"},
        {"N|+|<100", "300", "Must be Less Than 100"},
        {"{S|;,}", "a;b", ">>;,<< characters not allowed."},
        {"{S|;,}", "ab|", ""},
        {"{S|;|,}", "ab|", ">>;|,<< characters not allowed."},
        {"S;,", "a,b", ">>;,<< characters not allowed."},
        {"{Sv|;}", "v", ""},
        {"{Sv|;}", ";", ">>;<< characters not allowed."},
        {"{s-instr|*}", "a*", ">>*<< characters not allowed."},
        {"Svx", "v", ">>vx<< characters not allowed."},
        {"{S|\xC3\xA9}", "\xC3\xA8", ""},  // the same first byte is another letter
        {"{S|\xC3\xA9}", "caf\xC3\xA9", ">>\xC3\xA9<< characters not allowed."},
        {"P", "", ""},
        {"Q|Nx|Zebra", "x", ""},  // no rule of ours
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.rules) + " / " + c.value);
        EXPECT_EQ(CheckEntry(c.rules, c.value), c.problem);
    }
    EXPECT_EQ(dialogs::KeptEntry("{S|;}|+", "$1,200.5"), "1200.5");
    EXPECT_EQ(dialogs::KeptEntry("{S|;}", "1,200"), "1,200");
    EXPECT_EQ(dialogs::KeptEntry("<5", "a, b"), "a, b");
}

TEST(CheckEntry, PathsAreNativeOnes) {
    const testsupport::TempFolder folder;
    const std::string file = folder.Write("a.log", "x");
    EXPECT_EQ(CheckEntry("P", file), "");
    EXPECT_EQ(CheckEntry("P", folder.File("new.csv")), "");
    EXPECT_NE(CheckEntry("P", folder.File("none/new.csv")), "");
    EXPECT_NE(CheckEntry("P", folder.Path()), "");
    EXPECT_NE(CheckEntry("P", "new.csv"), "");
    EXPECT_EQ(CheckEntry("PD", folder.File("none")), "");
    EXPECT_NE(CheckEntry("PD", file), "");
    EXPECT_EQ(CheckEntry("PDe", folder.Path()), "");
    EXPECT_NE(CheckEntry("PDe", folder.File("none")), "");
}

}  // namespace
