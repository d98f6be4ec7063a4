#include "core/freename.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/files.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

TEST(NextFreeText, StepsAndCarries) {
    EXPECT_EQ(NextFreeText("name09"), "name0a");
    EXPECT_EQ(NextFreeText("name0Y"), "name0Z");
    EXPECT_EQ(NextFreeText("namez"), "namf0");
    EXPECT_EQ(NextFreeText("a-z"), "b-0");
    EXPECT_EQ(NextFreeText("zzz"), std::nullopt);
    EXPECT_EQ(NextFreeText("a9z", {false, true, false}), "b90");
    EXPECT_EQ(NextFreeText("ab", {true, true}), std::nullopt);
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

TEST(MakeFreeName, BeginsWhereALongSearchEnded) {
    const testsupport::TempFolder folder;
    testsupport::ScriptedUser user;
    IniStore ini(user);
    const auto next = [&](std::string_view given, bool longName) {
        const FreeName made =
            MakeFreeName(folder.File(given), {.longName = longName, .saved = &ini, .triesBeforeSave = 1});
        return made.ok ? folder.Write(made.result.substr(folder.Path().size() + 1), "") : made.result;
    };
    for (const char* number : {"0", "1", "2"})
        EXPECT_EQ(next("a.x", true), folder.File(std::string("a.") + number + ".x"));
    ASSERT_TRUE(FileDelete(folder.File("a.0.x")));
    EXPECT_EQ(next("a.x", true), folder.File("a.3.x"));  // 0 is free, and behind where the search begins
    EXPECT_EQ(next("b.x", true), folder.File("b.0.x"));
    for (const char* name : {"c0000000", "c0000001", "c0000002"}) EXPECT_EQ(next("c", false), folder.File(name));
    ASSERT_TRUE(FileDelete(folder.File("c0000000")));
    EXPECT_EQ(next("c", false), folder.File("c0000003"));
    // What somebody wrote into the file leads nowhere else.
    for (const char* kept : {"../../x", "../../..", "a.99999999999.x", "other.5.x"}) {
        ASSERT_TRUE(ini.IniPut("Main", "a.x", kept, folder.File(kFreeNameFile)));
        ASSERT_TRUE(ini.IniPut("Main", "c", kept, folder.File(kFreeNameFile)));
        EXPECT_TRUE(next("a.x", true).starts_with(folder.File("a.")));
        EXPECT_TRUE(next("c", false).starts_with(folder.File("c0")));
    }
}

TEST(MakeFreeName, ChecksAStoredTemplate) {
    const testsupport::TempFolder folder;
    const Paths paths(folder.Path(), "/nowhere");
    EXPECT_EQ(MakeFreeName(paths, "C:\\a.x").result, folder.File("a.0.x"));
    EXPECT_EQ(MakeFreeName(paths, "C:\\").result,
              "**Error. Error In File Name: Must include file name after dir spec. Action aborted.");
    EXPECT_FALSE(MakeFreeName(paths, "C:\\no\\a.x").ok);
}

}  // namespace
}  // namespace core
