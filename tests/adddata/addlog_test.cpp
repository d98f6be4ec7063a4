#include "adddata/addlog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "adddata/adddata.h"
#include "adddata/addrecorder.h"
#include "adddata/enginesummary.h"
#include "adddata/problemstore.h"
#include "adddata/robotcopy.h"
#include "core/text.h"
#include "tests/support/fulldisk.h"
#include "tests/support/tempsite.h"

namespace adddata {
namespace {

using testsupport::Combined;
using testsupport::TempSite;

struct RecordSite : TempSite {
    ProgramFiles program{PARAMS_DIR "/program/logfmts.ini", PARAMS_DIR "/program/lastinstvals.ini",
                         folder.Write("fltrbots.ini",
                                      "[Filters]\r\nSkipRobotUserAgents=bot\r\n[bot]\r\nTyp=2\r\nVal=bot"
                                      "\r\nColType=2\r\n")};
    std::string param = core::fPathOf(site->Paths().lastVals);

    AddRequest Request(const std::vector<std::string>& names) const {
        AddRequest request;
        for (const std::string& name : names) request.files.push_back({folder.File(name), ""});
        return request;
    }
    AddOutcome Add(const AddRequest& request) { return AddLogData(env, *site, program, request); }
    std::string Text(const std::string& name) const { return core::ReadFile(param + name).text; }
    std::vector<AddLogRecord> Log(std::size_t most = 1000) const {
        return ReadAddLog(AddLogFile(site->Paths()), most).records;
    }
};

const std::string& Field(const AddLogRecord& record, std::size_t column) { return record.fields[column]; }

std::vector<std::string> Column(const std::vector<AddLogRecord>& records, std::size_t column) {
    std::vector<std::string> texts;
    for (const AddLogRecord& record : records) texts.push_back(record.fields[column]);
    return texts;
}

const std::string kRed = "https://www.google.de/search?q=red+shoes";
const std::string kLog = Combined("1.1.1.1", "02/Mar/2009:08:00:00", "/a.html", kRed, 200, 1234) +
                         Combined("1.1.1.1", "02/Mar/2009:08:00:01", "/style.css") +
                         Combined("1.1.1.3", "02/Mar/2009:08:00:02", "/b.html", "-", 200, 5, "bot/2.1") +
                         Combined("1.1.1.4", "03/Mar/2009:18:10:02", "/c.html", kRed, 200, 66);

TEST(AddLog, OneFileToTheByte) {
    RecordSite home;
    const std::string path = home.folder.Write("access.log", kLog);
    AddRequest request = home.Request({"access.log"});
    request.preprocessSeconds = 7380;
    EXPECT_EQ(home.Add(request).Status(), 0);
    const std::string when = "15 Mar 2023 12:00.00?", sort = "2023-03-15 12:00.00?";
    const std::string dates = "02 Mar 2009 08:00.00?03 Mar 2009 18:10.02?";
    const std::string sorted = "2009-03-02 08:00.00?2009-03-03 18:10.02?";
    // Lines added, dates, lines and bytes, then each reason to skip with its lines, bytes skipped and the options.
    const std::string counts = "2?" + dates + "4?2?1,300?No?0?No?0?Yes?1?Yes?1?105?No?No?Yes?No?";
    EXPECT_EQ(home.Text("adddata.log"),
              when + "Start Read File: " + path + "?START Read File.???" + dates + core::fRepeat("??", 16) + path +
                  "?????" + sort + sorted + core::fRepeat("??", 7) + "?\r\n" +  //
                  when + path + "?Done. Read File. less than one minute?" + counts + path + "?less than one minute???" +
                  sort + sorted + core::fRepeat("??", 7) + "?\r\n" +  //
                  "** Done **?** End ADD ** Totals. All Files.?END ADD?" + counts + path +
                  "?less than one minute?2 hours?" + sort + sorted + "filter not selected?filter not selected?Yes?" +
                  Field(home.Log().back(), AddLogAt("componentFilterUsed")) +
                  "?Yes?AddCpy_fltrbots.0.ini???Add_SEsummary.0.ini\r\n");
    EXPECT_NE(home.Log().back().fields[AddLogAt("componentFilterUsed")].find("css"), std::string::npos);
    EXPECT_EQ(home.Text("Add_SEsummary.0.ini"), "[Main]\nParm=GOOGLE|20090302:::GOOGLE|20090303\nMaxNo=1:::1\n");
    EXPECT_EQ(home.Text("AddCpy_fltrbots.0.ini"), home.folder.Read("fltrbots.ini"));
    EXPECT_FALSE(core::Exists(home.param + "AddLog_Errs.ini"));
    EXPECT_EQ(ReadEngineSummary(home.ini, home.site->Paths(), "Add_SEsummary.0.ini"),
              (EngineCounts{{"GOOGLE|20090302", 1}, {"GOOGLE|20090303", 1}}));
}

TEST(AddLog, AListIsToldFileByFile) {
    RecordSite home;
    home.folder.Write("w.1.log", kLog);
    home.folder.Write("w.2.log", Combined("1.1.1.9", "04/Mar/2009:08:00:00", "/x.html") + "garbage\n");
    home.folder.Write("empty.log", "");
    home.user.WillPressOk(2);  // the list of the wildcard; the empty file
    home.user.WillCancel();    // the line that does not fit
    home.user.WillPressOk();   // visits for what was read
    const AddOutcome outcome = home.Add(home.Request({"empty.log", "w.*.log"}));
    EXPECT_EQ(outcome.Status(), 1);
    const std::vector<AddLogRecord> log = home.Log();
    EXPECT_EQ(Column(log, AddLogAt("action")),
              (std::vector<std::string>{"START ADD", "START Read File.", "START Read File.",
                                        "Done. Read File. less than one minute [List 2/2 1/2]", "START Read File.",
                                        "File Read Stopped. [List 2/2 2/2]", "END ADD"}));
    EXPECT_EQ(Column(log, AddLogAt("date")),
              (std::vector<std::string>{"15 Mar 2023 12:00.00", "..", "..", "..", "..", "..", "** Part Done **"}));
    EXPECT_EQ(Column(log, AddLogAt("linesAdded")), (std::vector<std::string>{"?", "?", "?", "2", "?", "1", "3"}));
    EXPECT_EQ(Column(log, AddLogAt("problems")), (std::vector<std::string>{"?", "1", "?", "?", "?", "1", "1"}));
    EXPECT_EQ(Field(log.back(), AddLogAt("fullFileName")),
              home.folder.File("empty.log") + "|" + home.folder.File("w.*.log"));
    EXPECT_EQ(home.Text("AddLog_Errs.ini"),
              "[1]\nPAFNs=" + home.folder.File("empty.log") + "|" + home.folder.File("w.2.log") +
                  "\ndescs=Log file is empty or does not exist. File Skipped.##Log Line Found cannot be matched for "
                  "specified format. Line[s] Skipped.\n[Main]\nMaxNo=1\n");
}

TEST(AddLog, WhatDidNotComeToItsEndHasNoDoneLine) {
    RecordSite home;
    home.folder.Write("access.log", kLog + "garbage\n" + kLog);
    home.user.WillCancel();  // the line that does not fit
    home.user.WillCancel();  // no visits now
    EXPECT_EQ(home.Add(home.Request({"access.log"})).Status(), 1);
    EXPECT_EQ(Column(home.Log(), AddLogAt("action")),
              (std::vector<std::string>{"START Read File.", "File Read Stopped."}));
    // The visits are stopped: the read is told, the end is not.
    home.folder.Write("more.log", Combined("1.1.1.9", "05/Mar/2009:08:00:00", "/x.html"));
    home.progress.stopAtStep = home.progress.steps + 2;
    const AddOutcome stopped = home.Add(home.Request({"more.log"}));
    EXPECT_FALSE(stopped.visits.done);
    EXPECT_EQ(home.Log().size(), 4u);
    // Every file skipped: the end is reached all the same, with nothing.
    home.progress.stopAtStep = -1;
    home.folder.Write("none.log", "nothing\n");
    home.user.WillPressOk();
    home.Add(home.Request({"none.log"}));
    EXPECT_EQ(Field(home.Log().back(), AddLogAt("date")), "** Done **");
    EXPECT_EQ(Field(home.Log().back(), AddLogAt("linesAdded")), "0");
    EXPECT_EQ(Field(home.Log().back(), AddLogAt("firstDate")), "?");
}

// Sees the log as it stands while a question is open, and says no.
class LookingUser final : public core::User {
public:
    explicit LookingUser(const RecordSite& home) : home_(home) {}
    core::Answer Ask(const core::Question& question) override {
        seen = home_.Log();
        core::Answer answer{.button = question.cancelButton};
        answer.cancelButton = question.cancelButton;
        return answer;
    }
    std::vector<AddLogRecord> seen{};

private:
    const RecordSite& home_;
};

TEST(AddLog, TellsWhichFileIsReadAndAResumeItsTotals) {
    RecordSite home;
    home.folder.Write("w.1.log", kLog);
    home.folder.Write("w.2.log", Combined("1.1.1.9", "04/Mar/2009:08:00:00", "/x.html", kRed) + "garbage\n" +
                                     Combined("1.1.1.9", "04/Mar/2009:09:30:59", "/y.html"));
    LookingUser user(home);
    core::Env env{home.ini, user, home.progress, home.events, home.clock};
    AddLogData(env, *home.site, home.program, home.Request({"w.1.log", "w.2.log"}));
    const std::vector<AddLogRecord> log = home.Log();
    // The last question was whether visits are wanted; the one before stood in the second file.
    EXPECT_EQ(Column(log, AddLogAt("action")),
              (std::vector<std::string>{"START ADD", "START Read File.",
                                        "Done. Read File. less than one minute [List 1/2 1/1]", "START Read File.",
                                        "File Read Stopped. [List 2/2 1/1]"}));
    EXPECT_EQ(user.seen.size(), log.size());
    EXPECT_EQ(Field(log[3], AddLogAt("lastLogLine")), "2009-03-04 09:30.59");  // of the file, not of what was read
    EXPECT_EQ(Field(log[4], AddLogAt("lastLogLine")), "2009-03-04 08:00.00");
    EXPECT_EQ(Field(log[4], AddLogAt("problems")), "1");

    EXPECT_TRUE(ResumeAdd(home.env, *home.site, home.program).done);
    const AddLogRecord totals = home.Log().back();
    EXPECT_EQ(Field(totals, AddLogAt("date")), "** Done **");
    EXPECT_EQ(Field(totals, AddLogAt("linesAdded")), "3");
    EXPECT_EQ(Field(totals, AddLogAt("fullFileName")), home.folder.File("w.1.log") + "|" + home.folder.File("w.2.log"));
    EXPECT_EQ(Field(totals, AddLogAt("problems")), "1");
    EXPECT_EQ(ReadEngineSummary(home.ini, home.site->Paths(), Field(totals, AddLogAt("engineSummary"))).size(), 3u);
}

TEST(AddLog, KeepsProblemsWhileTheyCome) {
    RecordSite home;
    AddRecorder recorder(home.env, *home.site, {});
    logread::ProblemList problems;
    const std::string file = ProblemStoreFile(home.site->Paths());
    std::size_t kept = 0, writes = 0;
    for (int i = 0; i < 100; ++i) {
        logread::FileRecord record{.FileName = "log" + std::to_string(i), .stopped = true};
        problems.LogFileProblemAdd(record.FileName, "bad");
        recorder.FileStarts(record, {}, problems);
        recorder.FileEnds(record, {}, problems);
        const std::size_t now = ReadProblems(home.ini, file, 1).size();
        EXPECT_GE(2 * now, problems.Files().size());
        writes += std::exchange(kept, now) != now ? 1 : 0;
    }
    EXPECT_LT(writes, 15u);
    logread::ReadOutcome read;
    read.problems = problems;
    recorder.ReadEnds(read);
    EXPECT_EQ(ReadProblems(home.ini, file, 1).size(), 100u);
    EXPECT_EQ(home.ini.IniGet("Main", "MaxNo", file), "1");
    for (const std::string& number : Column(home.Log(), AddLogAt("problems"))) EXPECT_EQ(number, "1");
}

TEST(AddLog, NothingInAFieldMakesAColumnOrARecord) {
    AddLogRecord record;
    const std::string nasty = std::string("a?b\r\nc\x1b[31m\x7f\xc2\x85|##\0d", 19);
    for (std::string& field : record.fields) field = nasty;
    record.fields[3].clear();
    record.fields[4] = "??";
    record.fields[5] = "\xff\n?";
    record.fields[6] = std::string(1999, 'x') + "\xC3\xA4 and more";
    const std::string line = AddLogLine(record);
    EXPECT_EQ(std::ranges::count(line, '\n'), 1);
    EXPECT_TRUE(std::ranges::none_of(line.substr(0, line.size() - 2),
                                     [](char c) { return static_cast<unsigned char>(c) < 32; }));
    const auto read = ReadAddLogLine(line.substr(0, line.size() - 1));
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->fields[0],
              "a\xEF\xBC\x9F"
              "b..c.[31m..|##.d");
    EXPECT_EQ(read->fields[3], "?");
    EXPECT_EQ(read->fields[4], "\xEF\xBC\x9F\xEF\xBC\x9F");
    EXPECT_EQ(AddLogLine(*read), line);
}

TEST(AddLog, ReadsWholeRecordsOfTheEnd) {
    RecordSite home;
    const std::string path = AddLogFile(home.site->Paths());
    EXPECT_TRUE(ReadAddLog(path, 5).records.empty());
    std::vector<AddLogRecord> records(3000);
    for (std::size_t i = 0; i < records.size(); ++i) records[i].fields[0] = std::to_string(i);
    ASSERT_TRUE(AppendAddLog(path, records).ok);
    for (const std::size_t most : {1u, 20u, 2900u, 5000u}) {
        const auto read = ReadAddLog(path, most).records;
        ASSERT_EQ(read.size(), std::min<std::size_t>(most, 3000));
        EXPECT_EQ(read.front().fields[0], std::to_string(3000 - read.size()));
        EXPECT_EQ(read.back().fields[0], "2999");
    }
    const std::string line = AddLogLine(records[0]);
    for (const std::string& bad : {std::string(), line.substr(0, 40), line.substr(0, 70), "x?" + line, "?" + line})
        EXPECT_FALSE(ReadAddLogLine(core::fReplace(bad, "\r\n", "")).has_value()) << bad;
    // A power loss cut the last record: the next one stands on a line of its own.
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(core::FileSize(path)) - 9);
    ASSERT_TRUE(AppendAddLog(path, {records.data() + 7, 1}).ok);
    EXPECT_EQ(Column(ReadAddLog(path, 2).records, 0), (std::vector<std::string>{"2998", "7"}));
}

TEST(AddLog, ARecordThatCannotBeWrittenIsToldOnce) {
    RecordSite home;
    for (const char* name : {"adddata.log", "AddLog_Errs.ini"}) ASSERT_TRUE(core::MakeDir(home.param + name).ok);
    home.folder.Write("access.log", kLog);
    home.folder.Write("empty.log", "");
    home.user.WillPressOk(2);
    const AddOutcome outcome = home.Add(home.Request({"access.log", "empty.log"}));
    EXPECT_TRUE(outcome.visits.done);
    EXPECT_EQ(outcome.read.totals.AllLinesAdded, 2);
    EXPECT_EQ(home.user.ids, (std::vector<std::string>{"LogFileEmpty", "AddRecordIncomplete"}));
    EXPECT_NE(outcome.recordError.find("adddata.log"), std::string::npos);
    EXPECT_TRUE(home.site->UnfinishedAdd(home.env).empty());
}

TEST(Records, AFullDiskLeavesNoneOfThemHalf) {
    RecordSite home;
    const sitedb::SitePaths& site = home.site->Paths();
    const std::vector<std::string> before = core::ListFiles(home.param, "*");
    logread::ProblemList problems;
    problems.LogFileProblemAdd("access.log", "Log file is empty or does not exist.");
    const auto all = [&](bool works) {
        EXPECT_EQ(AppendAddLog(AddLogFile(site), std::vector<AddLogRecord>(2)).ok, works);
        EXPECT_EQ(StoreProblems(home.ini, ProblemStoreFile(site), problems).number, works ? 1 : 0);
        EXPECT_EQ(SaveEngineSummary(home.ini, site, {{"X|20090302", 1}}).name, works ? "Add_SEsummary.0.ini" : "");
        EXPECT_EQ(CopyRobotFilter(home.ini, home.program.robots, site).name, works ? "AddCpy_fltrbots.0.ini" : "");
    };
    for (const int most : {0, 20, 28}) {
        SCOPED_TRACE(most);
        {
            const testsupport::FullDisk full(static_cast<rlim_t>(most));
            all(false);
        }
        std::vector<std::string> after = core::ListFiles(home.param, "*");
        std::erase(after, "adddata.log");  // may stand, without a byte
        EXPECT_LE(core::FileSize(AddLogFile(site)), 0);
        if (most == 28) std::erase(after, "AddLog_Errs.ini");  // its record was taken out again
        EXPECT_EQ(after, before);
        EXPECT_TRUE(ReadProblems(home.ini, ProblemStoreFile(site), 1).empty());
    }
    all(true);
}

TEST(RobotCopy, OneServesUntilTheRulesChange) {
    RecordSite home;
    const sitedb::SitePaths& site = home.site->Paths();
    const auto copy = [&] { return CopyRobotFilter(home.ini, home.program.robots, site).name; };
    EXPECT_EQ(copy(), "AddCpy_fltrbots.0.ini");
    EXPECT_EQ(copy(), "AddCpy_fltrbots.0.ini");
    home.folder.Write("fltrbots.ini", "[Filters]\r\n");
    EXPECT_EQ(copy(), "AddCpy_fltrbots.1.ini");
    EXPECT_EQ(home.Text("AddCpy_fltrbots.1.ini"), "[Filters]\r\n");
    EXPECT_EQ(home.paths.ToNative(home.ini.IniGet("Main", "LastBotPiniAdd", site.lastVals)),
              home.param + "AddCpy_fltrbots.1.ini");
    // Copies stay in the site's folder, whatever the entry says.
    home.ini.IniPut("Main", "LastBotPiniAdd", "Z:\\etc\\passwd", site.lastVals);
    EXPECT_EQ(copy(), "AddCpy_fltrbots.2.ini");
    std::filesystem::remove(home.param + "AddCpy_fltrbots.2.ini");  // gone: made again
    EXPECT_EQ(copy(), "AddCpy_fltrbots.2.ini");
    std::filesystem::remove(home.program.robots);
    EXPECT_TRUE(CopyRobotFilter(home.ini, home.program.robots, site).result.ok);
    EXPECT_EQ(copy(), "");
}

TEST(StoreProblems, GivesBackWhatItWasGivenUnderANumberOfItsOwn) {
    RecordSite home;
    const std::string file = ProblemStoreFile(home.site->Paths());
    const auto store = [&](const std::vector<std::string>& names) {
        logread::ProblemList problems;
        for (const std::string& name : names)
            for (const std::string& text : {"one of " + name, std::string("a|b##c{{||{{"), std::string("##")})
                problems.LogFileProblemAdd(name, text);
        const long number = StoreProblems(home.ini, file, problems).number;
        const auto read = ReadProblems(home.ini, file, number);
        EXPECT_EQ(read.size(), names.size());
        for (std::size_t i = 0; i < read.size(); ++i) {
            EXPECT_EQ(read[i].name, names[i]);
            EXPECT_EQ(read[i].texts, problems.Files()[i].texts);
        }
        return number;
    };
    EXPECT_EQ(StoreProblems(home.ini, file, {}).number, 0);
    EXPECT_FALSE(core::Exists(file));
    EXPECT_EQ(store({"plain.log"}), 1);
    EXPECT_EQ(store({"a|b.log", "c\r\n[1]\r\nPAFNs=x.log", "{{||{{", "##"}), 2);
    const struct {
        const char* maxNo;
        long next;
    } cases[] = {{"nonsense", 3}, {"-5", 4}, {"1", 5}, {"9", 10}, {"", 6}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.maxNo);
        home.ini.IniPut("Main", "MaxNo", c.maxNo, file);
        EXPECT_EQ(store({"x.log"}), c.next);
    }
    EXPECT_TRUE(ReadProblems(home.ini, file, 77).empty());
}

TEST(SaveEngineSummary, HasAFileForEachAddWithVisitors) {
    RecordSite home;
    const sitedb::SitePaths& site = home.site->Paths();
    const EngineCounts counts{{"A:::B|20090302", 2}, {"|20090303", 9000000000000}, {"{{:::{{|20090304", 1}};
    EXPECT_EQ(SaveEngineSummary(home.ini, site, {}).name, "");
    EXPECT_EQ(SaveEngineSummary(home.ini, site, counts).name, "Add_SEsummary.0.ini");
    EXPECT_EQ(SaveEngineSummary(home.ini, site, {{"X|20090302", 1}}).name, "Add_SEsummary.1.ini");
    EXPECT_EQ(ReadEngineSummary(home.ini, site, "Add_SEsummary.0.ini"), counts);
    for (const char* name : {"?", "Add_SEsummary.7.ini", "LastVals.ini", "Add_SEsummary/../LastVals.ini"})
        EXPECT_TRUE(ReadEngineSummary(home.ini, site, name).empty()) << name;
}

}  // namespace
}  // namespace adddata
