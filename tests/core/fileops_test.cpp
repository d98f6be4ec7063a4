#include "core/fileops.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "core/inistore.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

using testsupport::ScriptedUser;
using testsupport::TempFolder;

// Fails with each code in turn, then succeeds.
std::function<Result()> Failing(std::vector<int> codes) {
    return [codes, at = std::size_t{0}]() mutable -> Result {
        return at < codes.size() ? Result{false, "why", codes[at++]} : Result{};
    };
}

TEST(AskUntilDone, RepeatsOnRetryAlone) {
    const struct {
        std::vector<int> codes;
        FileSequence sequence;
        std::vector<int> pressed;
        const char* buttons;
        bool ok, stopped;
    } cases[] = {
        {{}, FileSequence::No, {}, "", true, false},
        {{EBUSY, ETXTBSY, EACCES}, FileSequence::No, {2, 2, 2}, "&OK|&Retry", true, false},
        {{EBUSY, EBUSY}, FileSequence::Yes, {2, 1}, "&OK|&Retry|&Cancel", false, false},
        {{EBUSY}, FileSequence::Yes, {3}, "&OK|&Retry|&Cancel", false, true},
        {{ENOSPC}, FileSequence::Yes, {2}, "&OK|&Cancel", false, true},
        {{ENOSPC}, FileSequence::Yes, {1}, "&OK|&Cancel", false, false},
        {{ENOSPC}, FileSequence::No, {1}, "&OK", false, false},
        {{0}, FileSequence::No, {1}, "&OK", false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codes.empty() ? -1 : c.codes.back());
        ScriptedUser user;
        for (const int button : c.pressed) user.WillPress(button);
        const FileOpDone done =
            AskUntilDone(user, {.action = FileAction::Delete, .path = "/a", .sequence = c.sequence}, Failing(c.codes));
        EXPECT_EQ(done.result.ok, c.ok);
        EXPECT_EQ(done.stopped, c.stopped);
        EXPECT_TRUE(user.Done());
        EXPECT_EQ(user.questions.empty() ? "" : user.questions.back().buttons, c.buttons);
    }
}

TEST(FileOpFailed, SaysWhatWasNotDoneAndShowsNoControlCharacter) {
    ScriptedUser user;
    user.WillPressOk(2);
    const std::string evil = "/logs/a\x1B[31m\r\nb\xE2\x80\xAEgol.c";
    FileOpFailed(user, {{false, "File >>" + evil + "<<", EBUSY}, FileAction::Rename, evil, "/b", FileSequence::Yes});
    EXPECT_EQ(user.asked[0],
              "Error from Windows when attempted to Rename File.\r\r"
              "Rename File From:  /logs/a?[31m??b?gol.c\rTo:            /b\r\r"
              "Rename File not done.\r\r"
              "The file is locked by another Application. (Error 70, Permission denied.)\r"
              "Close the file in the other Application and press Retry to try again.\r"
              "File >>/logs/a?[31m??b?gol.c<<\r\r"
              "Press OK to skip Rename File of this file and continue with other files & directories. Press Cancel to "
              "stop.");
    FileOpFailed(user, {{false, "Disk.", ENOSPC}, FileAction::Copy, "/a", "/b"});
    EXPECT_NE(user.asked[1].find("Error:  >> 28 No space left on device <<\rDisk.\r\rPress OK to continue."),
              std::string::npos);
}

TEST(FileOperationsAsk, TellWhatFailedAndDoTheRestWithoutAWord) {
    const TempFolder folder;
    ScriptedUser user;
    const std::string a = folder.Write("a", "1"), none = folder.File("none");
    EXPECT_TRUE(FileCopyAsk(user, a, folder.File("b")).result);
    EXPECT_TRUE(FileRenameAsk(user, folder.File("b"), folder.File("c")).result);
    EXPECT_TRUE(MakeDirAsk(user, folder.File("d")).result);
    EXPECT_TRUE(FileOpenCheckAsk(user, a, true).result);
    EXPECT_TRUE(RemoveDirAsk(user, folder.File("d")).result);
    EXPECT_TRUE(FileDeleteAsk(user, folder.File("c")).result);
    EXPECT_TRUE(FileSetAttributesAsk(user, a, true).result);
    struct stat info {};
    ASSERT_EQ(::stat(a.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0222U, 0U);
    EXPECT_TRUE(FileSetAttributesAsk(user, a, false).result);
    EXPECT_TRUE(user.asked.empty());
    user.WillPressOk(4);
    EXPECT_EQ(FileCopyAsk(user, none, a).result.code, ENOENT);
    EXPECT_FALSE(FileDeleteAsk(user, none).result);
    EXPECT_FALSE(FileOpenCheckAsk(user, folder.Path()).result);
    EXPECT_FALSE(FileSetAttributesAsk(user, none, true).result);
    EXPECT_TRUE(user.Done());
    EXPECT_EQ(folder.Read("a"), "1");
}

TEST(MakeBackup, NamesTheCopyByTheDayAndKeepsEarlierOnes) {
    const TempFolder folder;
    ScriptedUser user;
    IniStore ini(user);
    const testsupport::FixedClock clock(39874.5);  // 2 March 2009
    const std::string settings = folder.Write("set.ini", "[Main]\n");
    const std::string file = folder.Write("a.ini", "one");
    ASSERT_TRUE(FileSetAttributes(file, true));
    const auto backup = [&] { return MakeBackup(user, ini, clock, file, {.file = settings}); };
    EXPECT_EQ(backup().path, "");
    EXPECT_TRUE(ini.IniPutBool("Main", kBackupEntry, true, settings));
    EXPECT_EQ(backup().path, folder.File("a.20090302.ini"));
    folder.Write("a.20090302.ini", "kept");
    EXPECT_EQ(backup().path, folder.File("a.20090302.1.ini"));
    EXPECT_EQ(backup().path, folder.File("a.20090302.2.ini"));
    EXPECT_EQ(folder.Read("a.20090302.ini"), "kept");
    EXPECT_EQ(folder.Read("a.20090302.2.ini"), "one");
    struct stat info {};
    ASSERT_EQ(::stat(folder.File("a.20090302.2.ini").c_str(), &info), 0);
    EXPECT_NE(info.st_mode & S_IWUSR, 0U);
    user.WillPressOk();
    ASSERT_TRUE(FileDelete(file));
    EXPECT_EQ(backup().path, "");
    EXPECT_NE(user.asked.back().find("Backup File:  " + file), std::string::npos);
}

}  // namespace
}  // namespace core
