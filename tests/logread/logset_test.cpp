#include "logread/logset.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "logread/probe.h"
#include "tests/logread/readsite.h"
#include "tests/support/packed.h"

namespace logread {
namespace {

using testsupport::Combined;
using testsupport::Pack;

std::string Day(int day, const char* file = "/a") {
    return Combined("1.1.1.1", (day < 10 ? "0" : "") + std::to_string(day) + "/Mar/2009:08:00:00", file);
}

const logdefs::LogFormat& Format() {
    static const logdefs::LogFormat format({0, {"", std::string(testsupport::kCombinedSpec)}});
    return format;
}

// A ustar block in front of a file's bytes.
std::string Tar(const std::string& text) {
    std::string block(512, '\0');
    block.replace(0, 10, "access.log");
    block.replace(257, 5, "ustar");
    return block + text + std::string(1024, '\0');
}

std::string Names(const LogSet& set) {
    std::string names;
    for (const std::string& file : set.files) names += core::fNameOf(file) + " ";
    return names;
}

TEST(LogSetOf, ARotatedLogComesInTheOrderOfItsTime) {
    const testsupport::TempFolder folder;
    folder.Write("access.log", Day(9));
    folder.Write("access.log.1", Day(8));
    folder.Write("access.log.10.gz", Pack("gzip", Day(1)));
    folder.Write("access.log.2.xz", Pack("xz", "garbage\n" + Day(7)));
    folder.Write("access.log-20090303", Day(3));
    folder.Write("access.log.3", Day(3));  // the same time: by name
    folder.Write("access.log.0", "no line of a log\n");
    const std::string dated =
        "access.log.10.gz access.log-20090303 access.log.3 access.log.2.xz access.log.1 access.log ";
    EXPECT_EQ(Names(LogSetOf(folder.File("access.log*"), Format())), dated + "access.log.0 ");

    // A folder is all that may be a log.
    folder.Write(".hidden", Day(2));
    folder.Write("access.log~", Day(2));
    folder.Write("access.log.bak", Day(2));
    folder.Write("empty.log", "");
    folder.Write("picture.gz", Pack("gzip", std::string("GIF89a\0\1\2", 9)));
    folder.Write("site.mdb", std::string("SQLite format 3\0", 16));
    folder.Write("old.zip", "PK\x03\x04 junk");
    folder.Write("broken.gz", "\x1f\x8b\b junk");
    std::filesystem::create_directory(folder.File("older"));
    std::filesystem::create_symlink(folder.File("nowhere"), folder.File("dangling"));
    std::filesystem::create_symlink(folder.File("access.log.1"), folder.File("link"));
    const std::string whole =
        "access.log.10.gz access.log-20090303 access.log.3 access.log.2.xz access.log.1 link access.log access.log.0 "
        "broken.gz old.zip ";
    EXPECT_EQ(Names(LogSetOf(folder.Path(), Format())), whole);
    EXPECT_EQ(Names(LogSetOf(folder.Path() + "/", Format())), whole);
    EXPECT_TRUE(NamesMany(folder.Path()) && NamesMany(folder.File("*")) && !NamesMany(folder.File("access.log")));
    folder.Write("a*b", Day(1));
    EXPECT_FALSE(NamesMany(folder.File("a*b")));
    EXPECT_TRUE(NamesFiles(folder.Path()) && !NamesFiles(folder.File("older")) && !NamesFiles(folder.File("x*")));
}

TEST(RawLog_AddData_ReadLogFiles, ReadsAFolderInTheOrderOfItsTime) {
    ReadSite home;
    const std::string logs = home.folder.File("logs");
    std::filesystem::create_directory(logs);
    home.folder.Write("logs/access.log.1", Day(2) + Day(3));
    home.folder.Write("logs/access.log.1.gz", Pack("gzip", Day(2) + Day(3)));
    home.folder.Write("logs/access.log", Day(5, "/b"));
    home.folder.Write("logs/z.log", Day(1, "/c"));
    home.folder.Write("logs/z.tar.gz", Pack("gzip", Tar(Day(1) + Day(2))));
    home.user.WillPressOk();
    ReadRequest request;
    request.files = {{logs, ""}};
    const ReadOutcome read = home.Read({}, std::move(request));
    EXPECT_EQ(read.totals.AllLinesAdded, 4);
    EXPECT_EQ(read.totals.AllLinesExist, 2);  // the log that lies packed, too
    EXPECT_EQ(home.Rows("SELECT CAST(Timestamp / 1000000 AS INTEGER) % 100 FROM logline ORDER BY LogLnID", 1),
              (std::vector<std::string>{"1", "2", "3", "5"}));
    const std::string& question = home.user.asked.at(0);
    EXPECT_LT(question.find("/z.log"), question.find("/access.log.1\r"));
    EXPECT_LT(question.find("/access.log.1.gz\r"), question.find("/access.log\r"));
    EXPECT_NE(question.find("lie packed and unpacked"), std::string::npos);
    EXPECT_EQ(read.problems.Files()[0].name, logs + "/access.log.1.gz");
    ASSERT_EQ(read.errors.size(), 1u);
    EXPECT_NE(read.errors[0].find("z.tar.gz is an archive of files (tar)"), std::string::npos);

    home.user.WillCancel();
    request = {};
    request.files = {{logs + "/*", ""}};
    EXPECT_TRUE(home.Read({}, std::move(request)).files.empty());
    request = {};
    std::filesystem::create_directory(logs + "/none");
    request.files = {{logs + "/none", ""}};
    EXPECT_EQ(home.Read({}, std::move(request)).errors.size(), 1u);
}

TEST(LogFileDateRange, TakesNoArchiveForALog) {
    const testsupport::TempFolder folder;
    const struct {
        std::string bytes;
        const char* kind;
        bool packed;
    } cases[] = {{Tar(Day(1) + Day(2)), "tar", false},
                 {Pack("zstd", Tar(Day(1) + Day(2))), "tar", true},
                 {Pack("gzip", Pack("gzip", Day(1))), "gzip", true},
                 {std::string("\x5d\0\0\x80\0 junk", 10), "lzma", false},
                 {"Rar!\x1a\x07 junk", "rar", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        core::UnpackReader file;
        ASSERT_TRUE(file.Open(folder.Write("log", c.bytes)).ok);
        const LogFileDates dates = LogFileDateRange(file, Format());
        EXPECT_EQ(dates.outcome, LogFileDates::Outcome::NoValidLines);
        EXPECT_EQ(PackedKind(dates.start), c.kind);
        EXPECT_EQ(dates.packed, c.packed);
    }
}

// What a read tells, in one text; goes on with the file once it was told of it.
struct Told final : ReadEvents {
    void ListStarts() override { text += "list;"; }
    void FileStarts(const FileRecord& file, const ReadPlace& place, const ProblemList&) override {
        text += "start " + std::to_string(place.file) + "/" + std::to_string(place.files) + " " +
                std::to_string(file.firstStamp % 100000000 / 1000000) + ";";
        if (gone) std::filesystem::remove(file.FileName);
    }
    void FileEnds(const FileRecord& file, const ReadPlace&, const ProblemList&) override {
        text += "end " + std::to_string(file.counters.LinesRead) + ";";
    }
    std::string text{};
    bool gone = false;
};

TEST(RawLog_AddData_ReadLogFiles, TellsOfEachFileAsItIsRead) {
    ReadSite home;
    Told told;
    ReadRequest request;
    request.events = &told;
    home.Read({Day(1)}, request);
    EXPECT_EQ(told.text, "start 1/1 1;end 1;");
    told.text.clear();
    home.user.WillPressOk();  // of the empty file
    home.Read({Day(2), "", Day(3)}, request);
    EXPECT_EQ(told.text, "list;start 1/1 2;end 1;start 1/1 0;start 1/1 3;end 1;");
    request.check.Active = true;
    told.text.clear();
    home.Read({Day(4)}, request);
    EXPECT_EQ(told.text, "");
    // A log that is taken away while it is read is read to its end; one that is gone before is left out.
    request.check.Active = false;
    told.gone = true;
    home.Read({Day(5)}, request);
    EXPECT_EQ(told.text, "start 1/1 5;end 1;");
    request.files = {{home.folder.File("gone.log"), ""}};
    told.gone = false;
    const ReadOutcome read = home.Read({}, request);
    EXPECT_TRUE(read.ok && read.files[0].skipped);
    EXPECT_EQ(read.errors.size(), 1u);
}

TEST(RawLog_AddData_ReadLogFiles, KeepsToTheDefinitionsItBeganWith) {
    ReadSite home;
    // Somebody else writes the definitions anew as soon as the first file is begun.
    struct Editing final : ReadEvents {
        explicit Editing(const ReadSite& site) : home(site) {}
        void ListStarts() override {}
        void FileStarts(const FileRecord&, const ReadPlace& place, const ProblemList&) override {
            if (place.item == 1) home.folder.Write("param/logfmts.ini", "[combined]\nDefsCDS=|%S\n");
        }
        void FileEnds(const FileRecord&, const ReadPlace&, const ProblemList&) override {}
        const ReadSite& home;
    } editing(home);
    ReadRequest request;
    request.events = &editing;
    const ReadOutcome read = home.Read({Day(1) + Day(2), Day(3)}, std::move(request));
    EXPECT_EQ(read.totals.AllLinesAdded, 3);
    EXPECT_TRUE(read.problems.Files().empty());
    EXPECT_EQ(home.Rows("SELECT DISTINCT IP FROM logline", 1), std::vector<std::string>{"1.1.1.1"});
}

}  // namespace
}  // namespace logread
