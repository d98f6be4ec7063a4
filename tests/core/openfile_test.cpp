#include "core/openfile.h"

#include <gtest/gtest.h>

#include "core/error.h"
#include "core/paths.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

struct OpenerTest : testing::Test {
    Result Open(std::string_view name, char mode, OpenRules rules = {}) {
        file.Close();
        return OpenFile(user, paths, name, mode, rules, file);
    }
    testsupport::TempFolder folder{};
    testsupport::ScriptedUser user{};
    Paths paths{folder.Path(), "/nowhere"};
    OpenedFile file{};
};

TEST_F(OpenerTest, AnswersAMissingFileByItsLetter) {
    EXPECT_FALSE(Open("C:\\no.txt", 'I').ok);  // silently
    user.WillPressOk();
    EXPECT_FALSE(Open("C:\\no.txt", 'I', {.missingAction = 'E'}).ok);
    EXPECT_NE(user.asked.back().find("File to be read does not exist."), std::string::npos);
    EXPECT_FALSE(Exists(folder.File("no.txt")));
}

TEST_F(OpenerTest, AnswersAnExistingFileByItsLetter) {
    folder.Write("a.txt", "old");
    user.WillCancel();
    EXPECT_FALSE(Open("C:\\a.txt", 'O', {.existsAction = 'W'}).ok);
    user.WillPressOk();
    EXPECT_FALSE(Open("C:\\a.txt", 'O').ok);
    EXPECT_EQ(folder.Read("a.txt"), "old");
    ASSERT_TRUE(Open("C:\\a.txt", 'O', {.existsAction = 'A', .textMode = true}).ok);
    ASSERT_TRUE(file.Write("new").ok && file.Close().ok);
    EXPECT_EQ(folder.Read("a.txt"), "old\r\nnew");
    ASSERT_TRUE(Open(folder.File("a.txt"), 'O', {.existsAction = 'D'}).ok);  // a native name
    ASSERT_TRUE(file.Write("x").ok && file.Close().ok);
    EXPECT_EQ(folder.Read("a.txt"), "x");
}

TEST_F(OpenerTest, RefusesNamesLettersAndWhatIsNoFile) {
    EXPECT_TRUE(Open("C:\\dir\\", 'I').error.starts_with("Must include file name after dir spec."));
    EXPECT_TRUE(Open("", 'I').error.starts_with("File name is required."));
    EXPECT_FALSE(Open("C:\\", 'O', {.existsAction = 'A', .checkName = false}).ok);
    EXPECT_FALSE(Open("Z:\\dev\\null", 'O', {.existsAction = 'A'}).ok);
    const struct {
        char mode;
        OpenRules rules;
        int number;
    } cases[] = {{'I', {.existsAction = 'X'}, 1031}, {'I', {.missingAction = 'X'}, 1032}, {'B', {}, 1001}};
    for (const auto& c : cases) {
        try {
            Open("C:\\a.txt", c.mode, c.rules);
            ADD_FAILURE() << "no error";
        } catch (const ErrorNumber& error) {
            EXPECT_EQ(error.number(), c.number);
        }
    }
}

TEST_F(OpenerTest, WritesAWholeTextByTheSameLetters) {
    const auto write = [&](std::string_view text, OpenRules rules = {}) {
        return WriteFile(user, paths, "C:\\w.txt", text, rules).ok;
    };
    EXPECT_TRUE(write("one"));
    user.WillPressOk();
    EXPECT_FALSE(write("two"));
    user.WillCancel();
    EXPECT_FALSE(write("two", {.existsAction = 'W'}));
    EXPECT_EQ(folder.Read("w.txt"), "one");
    user.WillPressOk();
    EXPECT_TRUE(write("two", {.existsAction = 'W'}));
    EXPECT_NE(user.asked.back().find(folder.File("w.txt")), std::string::npos);  // a native name
    EXPECT_TRUE(write("3", {.existsAction = 'A', .textMode = true}));
    EXPECT_EQ(folder.Read("w.txt"), "two\r\n3");
    ASSERT_TRUE(OpenText(user, paths, "C:\\w.txt", {.existsAction = 'A'}, file).ok);
    ASSERT_TRUE(file.Write("4\r\n").ok && file.Close().ok);
    EXPECT_TRUE(write("5", {.existsAction = 'A', .textMode = true}));
    EXPECT_EQ(folder.Read("w.txt"), "two\r\n3\r\n4\r\n5");
    EXPECT_FALSE(WriteFile(user, paths, "C:\\", "x").ok);
    EXPECT_FALSE(WriteFile(user, paths, "Z:\\dev\\null", "x", {.existsAction = 'D'}).ok);
}

TEST(ReadFileBig, CutsAtTheMostChunksAndSaysSo) {
    const testsupport::TempFolder folder;
    testsupport::ScriptedUser user;
    const std::string file = folder.Write("big", std::string(128000, 'a') + "end");
    int between = 0;
    const BigText whole = ReadFileBig(user, file, 2, kMostChunks, [&] { ++between; });
    ASSERT_TRUE(whole.result && !whole.truncated);
    ASSERT_EQ(whole.chunks.size(), 3U);
    EXPECT_EQ(whole.chunks[1].size(), 64000U);
    EXPECT_EQ(whole.chunks[2], "nd");
    EXPECT_EQ(between, 3);
    EXPECT_FALSE(ReadFileBig(user, file, 1, 3).truncated);
    user.WillPressOk();
    const BigText cut = ReadFileBig(user, file, 1, 2);
    EXPECT_TRUE(cut.result && cut.truncated);
    EXPECT_EQ(cut.chunks.size(), 2U);
    EXPECT_EQ(user.asked.back(),
              "File >> " + file + " <<Truncated.\r\rFirst >> 128000<< bytes of >> 128003 << will be processed.");
    EXPECT_TRUE(ReadFileBig(user, file, 128003).result);
    EXPECT_NE(ReadFileBig(user, file, 128004).result.error.find("after End of file"), std::string::npos);
    EXPECT_TRUE(ReadFileBig(user, folder.Write("empty", "")).chunks.empty());
    EXPECT_FALSE(ReadFileBig(user, folder.Path()).result);
}

}  // namespace
}  // namespace core
