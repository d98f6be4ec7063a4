#include "core/freename.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/tempfolder.h"

namespace core {
namespace {

TEST(NextFreeText, StepsAndCarries) {
    EXPECT_EQ(NextFreeText("name09"), "name0a");
    EXPECT_EQ(NextFreeText("name0Y"), "name0Z");
    EXPECT_EQ(NextFreeText("namez"), "namf0");
    EXPECT_EQ(NextFreeText("a-z"), "b-0");
    EXPECT_EQ(NextFreeText("zzz"), std::nullopt);
}

TEST(MakeFreeName, FindsWhatDoesNotExist) {
    const testsupport::TempFolder folder;
    const auto name = [&](std::string_view given, FreeNameRules rules = {}) {
        return MakeFreeName(folder.File(given), rules).result;
    };
    EXPECT_EQ(name("a.ini"), folder.File("a.0.ini"));
    folder.Write("a.0.ini", "");
    ASSERT_EQ(::symlink("nowhere", folder.File("a.1.ini").c_str()), 0);
    EXPECT_EQ(name("a.ini"), folder.File("a.2.ini"));
    EXPECT_EQ(name("a.9.ini"), folder.File("a.9.ini"));
    folder.Write("a.9.ini", "");
    EXPECT_EQ(name("a.9.ini"), folder.File("a.10.ini"));
    EXPECT_EQ(name("plain"), folder.File("plain.0"));
    EXPECT_EQ(name("ab.x", {.longName = false}), folder.File("ab000000.x"));
    folder.Write("ab000000.x", "");
    EXPECT_EQ(name("ab.x", {.longName = false}), folder.File("ab000001.x"));
    for (const std::string& bad :
         {std::string("relative"), folder.File(""), folder.File("no/x"), folder.File(std::string(232, 'n'))}) {
        const FreeName made = MakeFreeName(bad);
        EXPECT_FALSE(made.ok);
        EXPECT_TRUE(made.result.starts_with("**Error.")) << made.result;
    }
}

}  // namespace
}  // namespace core
