#include "core/paths.h"

#include <gtest/gtest.h>

#include <string>

#include "core/files.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

TEST(Paths, StoredAndNativeFormsMeetAgain) {
    const Paths paths("/home/ann/data", "/usr/share/corvane");
    const struct {
        const char* stored;
        const char* native;
    } pairs[] = {
        {"Z:\\home\\ann\\a.log", "/home/ann/a.log"},
        {"Z:\\home\\ann\\database\\x", "/home/ann/database/x"},  // not below the data home
        {"C:\\param\\screens.ini", "/home/ann/data/param/screens.ini"},
        {"C:\\dir\\", "/home/ann/data/dir/"},
        {"Z:\\", "/"},
        {"Z:\\a b;c\xC3\xA9", "/a b;c\xC3\xA9"},
    };
    for (const auto& c : pairs) {
        SCOPED_TRACE(c.stored);
        EXPECT_EQ(paths.ToNative(c.stored), c.native);
        EXPECT_EQ(paths.ToStored(c.native).text, c.stored);
    }
    EXPECT_EQ(paths.ToNative("z:\\x"), "/x");
    EXPECT_EQ(paths.ToNative("C:\\"), "/home/ann/data");
    EXPECT_EQ(paths.ToNative("/x/y"), "/x/y");
    for (const char* bad : {"", "D:\\x", "x", "Z:x", "Z", "../x"}) EXPECT_EQ(paths.ToNative(bad), "") << bad;
    EXPECT_EQ(paths.ToNative(std::string_view("/a\0b", 4)), "");
    EXPECT_EQ(paths.ToStored("//home/./ann//x").text, "Z:\\home\\ann\\x");
    for (const char* bad : {"x", "", "/a\\b", "/a|b", "/a:b", "/a\"b", "/a*", "/a?"}) {
        const Paths::Stored stored = paths.ToStored(bad);
        EXPECT_FALSE(stored.result) << bad;
        EXPECT_FALSE(stored.result.error.empty());
    }
}

class NameChecks : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(MakeDir(folder.File("dir")));
        folder.Write("file.txt", "");
    }
    testsupport::TempFolder folder;
    Paths paths{folder.Path(), "/usr"};
};

TEST_F(NameChecks, Folders) {
    const NameRules strict{.strictNames = true};
    const struct {
        const char* dir;
        const char* error;
        bool strict = false;
    } cases[] = {
        {"dir", "Dir name must be of format x:\\name where x is drive letter."},
        {"1:\\dir", "Dir name must be of format x:\\name where x is drive letter."},
        {"Q:\\dir", "Invalid drive letter."},
        {"C:\\dir\\\\x", " \"\\\\\" with directory name not allowed. Change to \"\\\"."},
        {"C:\\a*b?c*", "Includes character(s) *? which are not allowed"},
        {"C:\\a+b", "Includes character(s) + which are not allowed", true},
        {"C:\\a b", "Includes spaces", true},
        {"C:\\abcdefghi", "must by in 8.3 format", true},
        {"C:\\..\\x", "Directory name is not in a valid format."},
        {"C:\\1\\2\\3\\4\\5\\6\\7\\8\\9\\10", "at most nine subdirectory levels"},
        {"C:\\file.txt", "Name is used as a file name."},
        {"/a|b", "cannot be used"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dir);
        const NameCheck check = CheckDir(c.dir, paths, c.strict ? strict : NameRules{});
        EXPECT_FALSE(check.ok);
        EXPECT_TRUE(check.error.starts_with("Error In Directory name: "));
        EXPECT_TRUE(check.error.ends_with("Action aborted."));
        EXPECT_NE(check.error.find(c.error), std::string::npos) << check.error;
    }
    EXPECT_TRUE(CheckDir("C:\\dir", paths).exists);
    EXPECT_TRUE(CheckDir(folder.File("dir"), paths).exists);
    EXPECT_TRUE(CheckDir("C:\\1\\2\\3\\4\\5\\6\\7\\8\\9", paths).ok);  // eleven parts with the drive and the last
    EXPECT_TRUE(CheckDir("C:\\a+b c", paths).ok);
    EXPECT_FALSE(CheckDir("C:\\new", paths).exists);
    EXPECT_NE(CheckDirExists("C:\\new", paths).error.find("Dir does not exist."), std::string::npos);
    EXPECT_TRUE(CheckDir("???", paths, {.skipChecks = true}).ok);
}

TEST_F(NameChecks, Files) {
    const auto error = [&](std::string_view name, NameRules rules = {}) { return CheckPAFN(name, paths, rules).error; };
    EXPECT_EQ(error("C:\\dir\\"), "Error In File Name: Must include file name after dir spec. Action aborted.");
    EXPECT_EQ(error("C:\\dir"), "Error In File Name: That file name currently exists as a directory. Action aborted.");
    EXPECT_NE(error("name").find("Path and file name is not in a valid format."), std::string::npos);
    EXPECT_NE(error("C:\\no\\x.txt").find("Directory does not exist."), std::string::npos);
    EXPECT_NE(error("C:\\a?.txt").find("Invalid File name. Includes character(s) ?"), std::string::npos);
    EXPECT_NE(error("C:\\a.t|").find("Invalid File type.  Includes character(s) |"), std::string::npos);
    EXPECT_NE(error("C:\\abcdefghi\\x.txt", {.strictNames = true}).find("8.3 format"), std::string::npos);
    EXPECT_TRUE(CheckPAFN("C:\\file.txt", paths).exists);
    EXPECT_FALSE(CheckPAFNNew("C:\\file.txt", paths).ok);
    EXPECT_TRUE(CheckPAFNNew(folder.File("dir/new file.text"), paths).ok);
    EXPECT_FALSE(CheckPAFNNew("C:\\x.text", paths, {.strictNames = true}).ok);
    EXPECT_FALSE(CheckPAFNMustExist("C:\\new", paths).ok);
    EXPECT_TRUE(CheckPAFNMustExist("?", paths, {.skipChecks = true}).ok);
}

}  // namespace
}  // namespace core
