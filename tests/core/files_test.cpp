#include "core/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "tests/support/tempfolder.h"

namespace core {
namespace {

using testsupport::TempFolder;

// Nothing but root can write to this folder of the kernel, and not even root makes files there.
constexpr const char* kNoWriting = "/proc/self/none.ini";

TEST(WriteWhole, ReplacesTheTargetAndKeepsRightsAndLinks) {
    const TempFolder folder;
    const std::string file = folder.Write("a.ini", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    const std::string link = folder.File("link");
    ASSERT_EQ(::symlink("a.ini", link.c_str()), 0);
    EXPECT_TRUE(WriteWhole(link, std::string_view("new\0text", 8)));
    struct stat info {};
    ASSERT_EQ(::lstat(link.c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640U);
    EXPECT_EQ(folder.Read("a.ini"), std::string("new\0text", 8));
    EXPECT_EQ(folder.Count(), 2U);  // no temporary file is left
}

TEST(RemoveStaleTemps, TakesOnlyWhatADeadProcessLeft) {
    const TempFolder folder;
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    folder.Write(".corvane-" + std::to_string(child) + "-0.tmp", "half");
    folder.Write(".corvane-" + std::to_string(::getpid()) + "-0.tmp", "at work");
    folder.Write(".corvane-x.tmp", "not ours");
    RemoveStaleTemps(folder.Path());
    EXPECT_EQ(folder.Count(), 2U);
}

TEST(WriteWhole, RefusesWhatItCannotReplaceAndLeavesNothingBehind) {
    const TempFolder folder;
    EXPECT_FALSE(WriteWhole(folder.Path(), "x"));
    EXPECT_FALSE(WriteWhole(folder.File("no/such/file"), "x"));
    EXPECT_FALSE(WriteWhole("", "x"));
    EXPECT_FALSE(WriteWhole(folder.File(std::string_view("a\0b", 3)), "x"));
    EXPECT_NE(WriteWhole(kNoWriting, "x").error.find(kNoWriting), std::string::npos);
    ASSERT_EQ(::symlink("loop", folder.File("loop").c_str()), 0);
    EXPECT_FALSE(WriteWhole(folder.File("loop"), "x"));
    EXPECT_EQ(folder.Count(), 1U);
}

TEST(WriteWhole, AProtectedFileStaysAsItIs) {
    if (::geteuid() == 0) GTEST_SKIP() << "no file is protected against root";
    const TempFolder folder;
    const std::string file = folder.Write("a.ini", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
    EXPECT_FALSE(WriteWhole(file, "new"));
    EXPECT_EQ(folder.Read("a.ini"), "old");
}

TEST(AppendWhole, AddsAtTheEndOrNotAtAll) {
    const TempFolder folder;
    const std::string file = folder.File("a.log");
    EXPECT_TRUE(AppendWhole(file, "one\n"));
    EXPECT_TRUE(AppendWhole(file, "two\n"));
    EXPECT_EQ(folder.Read("a.log"), "one\ntwo\n");
    EXPECT_FALSE(AppendWhole(folder.Path(), "x"));
    ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(AppendWhole(folder.File("pipe"), "x"));
}

// No file of this program grows beyond `bytes` while this lives: a write stops half-way, as on a full disk.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit low{bytes, old_.rlim_max};
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &low);
    }
    ~SizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, handler_);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    rlimit old_{};
    void (*handler_)(int) = SIG_DFL;
};

TEST(FullDisk, LeavesTheOldStateWhole) {
    const TempFolder folder;
    const std::string file = folder.Write("a", "old\n"), large(5000, 'x');
    Result whole, appended, copied, created;
    {
        const std::string source = folder.Write("source", large);
        const SizeLimit limit(1000);
        whole = WriteWhole(file, large);
        appended = AppendWhole(file, large);
        created = AppendWhole(folder.File("new"), large);
        copied = FileCopy(source, file);
    }
    for (const Result& result : {whole, appended, copied, created}) {
        EXPECT_FALSE(result);
        EXPECT_NE(result.error.find("too large"), std::string::npos) << result.error;
    }
    EXPECT_EQ(folder.Read("a"), "old\n");
    EXPECT_EQ(folder.Count(), 2U);  // neither a temporary file nor the new one
}

TEST(ReadFile, ReadsAWindow) {
    const TempFolder folder;
    const std::string file = folder.Write("a", "12345");
    EXPECT_EQ(ReadFile(file).text, "12345");
    EXPECT_EQ(ReadFile(file, 5).text, "5");
    EXPECT_EQ(ReadFile(file, 6).result.error,
              "Start at byte specified is after End of file. File length: 5. Start at Byte: 6");
    const ReadText cut = ReadFile(file, 2, 3);
    EXPECT_TRUE(cut.result && cut.truncated);
    EXPECT_EQ(cut.text, "234");
    EXPECT_FALSE(ReadFile(file, 2, 4).truncated);
    EXPECT_TRUE(ReadFile(folder.Write("empty", "")).result);
    const ReadText missing = ReadFile(folder.File("none"));
    EXPECT_FALSE(missing.existed);
    EXPECT_TRUE(missing.result.error.starts_with("Error opening file >>" + folder.File("none") + "<<."));
    EXPECT_TRUE(ReadFile(folder.Path()).existed);
    EXPECT_FALSE(ReadFile(folder.Path()).result);
    EXPECT_EQ(FileSize(file), 5);
    EXPECT_EQ(FileSize(folder.File("none")), -1);
}

TEST(ChunkReader, EndsWhereTheFileEndedWhenOpened) {
    const TempFolder folder;
    const std::string file = folder.Write("a", "12345");
    ChunkReader reader;
    ASSERT_TRUE(reader.Open(file));
    ASSERT_TRUE(AppendWhole(file, "678"));
    char room[8];
    EXPECT_EQ(reader.Read(room, 3), 3U);
    EXPECT_EQ(reader.Read(room, 8), 2U);
    EXPECT_EQ(reader.Read(room, 8), 0U);
    EXPECT_EQ(reader.ReadAt(1, room, 2), 2U);
    EXPECT_EQ(std::string_view(room, 2), "23");
    EXPECT_TRUE(reader.Failed());
}

TEST(ChunkReader, RefusesWhatIsNoFileWithoutWaiting) {
    const TempFolder folder;
    const std::string pipe = folder.File("p\nipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    ASSERT_EQ(::symlink("self", folder.File("self").c_str()), 0);
    ChunkReader reader;
    for (const std::string& path :
         {pipe, folder.Path(), std::string("/dev/null"), folder.File("self"), std::string()}) {
        SCOPED_TRACE(path);
        const Result opened = reader.Open(path);
        EXPECT_FALSE(opened);
        EXPECT_EQ(opened.error.find('\n'), std::string::npos);
    }
}

TEST(FileOperations, CopyRenameDelete) {
    const TempFolder folder;
    const std::string a = folder.Write("a", std::string(600000, 'x')), b = folder.Write("b", "old");
    EXPECT_TRUE(FileCopy(a, b));
    EXPECT_EQ(folder.Read("b").size(), 600000U);
    EXPECT_TRUE(FileCopy(a, a));
    EXPECT_EQ(FileSize(a), 600000);
    EXPECT_FALSE(FileCopy(folder.File("none"), b));
    EXPECT_EQ(folder.Read("b").size(), 600000U);
    EXPECT_TRUE(FileRename(b, folder.File("c")));
    EXPECT_TRUE(FileDelete(folder.File("c")));
    EXPECT_FALSE(FileDelete(folder.File("c")));
    EXPECT_FALSE(FileDelete(folder.Path()));
    EXPECT_EQ(folder.Count(), 1U);
}

TEST(Folders, RemovalNeverLeavesTheFolder) {
    const TempFolder folder;
    ASSERT_TRUE(MakeDir(folder.File("keep")));
    folder.Write("keep/precious", "1");
    ASSERT_TRUE(MakeDir(folder.File("site/data/deep/")));
    ASSERT_TRUE(MakeDir(folder.File("site/data/deep")));
    folder.Write("site/data/deep/x", "1");
    folder.Write("site/.hidden", "1");
    ASSERT_EQ(::symlink("../keep", folder.File("site/link").c_str()), 0);
    ASSERT_EQ(::symlink("keep", folder.File("temp").c_str()), 0);
    EXPECT_FALSE(RemoveDir(folder.File("temp")));
    EXPECT_FALSE(RemoveDir(folder.File("temp/")));
    EXPECT_FALSE(RemoveDir(folder.File("site/..")));
    for (const char* path : {"", "/", "//", "/.", ".", "/tmp/.."}) EXPECT_FALSE(RemoveDir(path)) << path;
    EXPECT_TRUE(RemoveDir(folder.File("site/")));
    EXPECT_EQ(folder.Read("keep/precious"), "1");
    EXPECT_FALSE(IsDir(folder.File("site")));
    EXPECT_FALSE(MakeDir(folder.File("keep/precious/x")));
}

TEST(ListFiles, MatchesOnlyStarAndQuestionMark) {
    const TempFolder folder;
    for (const char* name : {"b.log", "a.log", "a#.log", "a1.log", "a\xC3\xA9.log", "A.LOG", "x[1].log", "n\nl.log"})
        folder.Write(name, "");
    ASSERT_TRUE(MakeDir(folder.File("dir.log")));
    using Names = std::vector<std::string>;
    EXPECT_EQ(ListFiles(folder.Path(), "a?.log"), (Names{"a#.log", "a1.log", "a\xC3\xA9.log"}));
    EXPECT_EQ(ListFiles(folder.Path(), "a#*"), Names{"a#.log"});
    EXPECT_EQ(ListFiles(folder.Path(), "*[1]*"), Names{"x[1].log"});
    EXPECT_EQ(ListFiles(folder.Path(), "*.log").size(), 7U);
    EXPECT_TRUE(ListFiles(folder.File("none"), "*").empty());
    // Many stars take no longer than a few.
    folder.Write(std::string(200, 'a'), "");
    EXPECT_TRUE(ListFiles(folder.Path(), "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b").empty());
}

TEST(PathPieces, AreCutAtTheLastSeparatorAndPoint) {
    EXPECT_EQ(fPathOf("/a.b/c.d.e"), "/a.b/");
    EXPECT_EQ(fNameOf("/a.b/c.d.e"), "c.d.e");
    EXPECT_EQ(fBaseOf("/a.b/c.d.e"), "c.d");
    EXPECT_EQ(fTypeOf("/a.b/c.d.e"), "e");
    EXPECT_EQ(fTypeOf("/a.b/c"), "");
    EXPECT_EQ(fPathOf("C:\\x\\y", '\\'), "C:\\x\\");
    EXPECT_EQ(fPathOf("name"), "");
}

TEST(FileLock, IsHeldByOneProgramAndDiesWithIt) {
    const TempFolder folder;
    const std::string file = folder.File("lock");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        FileLock lock;
        const char mark = lock.Lock(file).ok ? '1' : '0';
        if (::write(ready[1], &mark, 1) == 1) ::pause();
        ::_exit(1);
    }
    char mark = '0';
    ASSERT_EQ(::read(ready[0], &mark, 1), 1);
    EXPECT_EQ(mark, '1');
    FileLock lock;
    EXPECT_TRUE(lock.Lock(file).taken);
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(lock.Lock(file).ok);
    FileLock second;
    EXPECT_TRUE(second.Lock(file).taken);
    lock.Unlock();
    EXPECT_TRUE(second.Lock(file).ok);
    EXPECT_FALSE(lock.Lock(folder.File("no/lock")).error.empty());
    ::close(ready[0]);
    ::close(ready[1]);
}

}  // namespace
}  // namespace core
