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

}  // namespace
}  // namespace core
