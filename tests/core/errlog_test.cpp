#include "core/errlog.h"

#include <gtest/gtest.h>

#include <string>

#include "core/dates.h"
#include "core/files.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

class EventLogTest : public testing::Test {
protected:
    testsupport::TempFolder folder;
    testsupport::FixedClock clock{*DateSerial(2024, 2, 29) + *TimeSerial(13, 5, 9)};
    std::string path = folder.File("errors.log"), fallback = folder.File("fallback.log");
    EventLog log{clock, fallback};
};

TEST_F(EventLogTest, ARecordIsOneCsvRow) {
    log.SetPath(path);
    log.SetProgram("/opt/x", "corvane", "Corvane");
    const auto logged = log.LogEvent(9, "Proc", "bad \"x\"", {"Main", "List", "2"});
    EXPECT_TRUE(logged.written);
    const std::string start = "<<<Logged event (auto processing; warning or error)>>>\r\rDescription:\r<<9 - bad ";
    const std::string end =
        ">>.\r\rINTERNAL. Proc: Proc\rForm: Main\rControl: List / 2\r\r"
        "Event Logged at >> 2024-02-29 13:05:09 << to file >>" +
        path + "<<";
    EXPECT_EQ(logged.message, start + "\"x\"" + end);
    EXPECT_EQ(
        folder.Read("errors.log"),
        "\"2024-02-29\",\"13:05:09\",9,\"Proc\",\"/opt/x\",\"corvane\",\"Corvane\",\"\",\"Main\",\"List\",\"2\",\"" +
            start + "\"\"x\"\"" + end + "\"\r\n");
}

TEST_F(EventLogTest, DataForgesNoRecordAndNoTerminalCode) {
    log.SetPath(path);
    log.LogEvent(1, "P\r\n\"x\"", "a\r\n\"2024\"\x1B[31m\xC2\x9B", {"f\n", "c\xFF", ""});
    const std::string text = folder.Read("errors.log");
    EXPECT_EQ(text.find('\n'), text.size() - 1);
    EXPECT_NE(text.find("\"f.\",\"c\xC3\xBF\",\"\""), std::string::npos);
    EXPECT_NE(text.find("a..\"\"2024\"\".[31m.>>."), std::string::npos);
}

TEST_F(EventLogTest, RecordsReadBackAndWhatIsNoneIsLeftOut) {
    log.SetPath(path);
    log.SetProgram("/opt/x", "corvane", "Corvane");
    log.LogEvent(9, "a,\"b\"", "1\r\n2", {"Main", "L", "3"});
    log.LogEvent(40000, "", "");
    const std::string text = folder.Read("errors.log");
    const auto records = ReadEventRecords("cut,\"off\"\r\n\"1\",2\r\n\"open\r\n" + text + "\"half");
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].number, 9);
    EXPECT_EQ(records[0].event, "a,\"b\"");
    EXPECT_EQ(records[0].place.controlIndex, "3");
    EXPECT_NE(records[0].message.find("<<9 - 1..2>>."), std::string::npos);
    EXPECT_EQ(records[1].number, 40000);
}

TEST_F(EventLogTest, WithoutAPathTheFallbackTakesTheRecord) {
    EXPECT_EQ(log.Tail(), "No errors have been recorded.");
    const auto logged = log.LogEvent(40000, "Proc", "");
    EXPECT_NE(logged.message.find("<<40000 - Windows Error>>."), std::string::npos);
    EXPECT_NE(folder.Read("fallback.log")
                  .find(",\"Proc Also: gPAFN_Errorlog not set, error log written to " + fallback + ".\","),
              std::string::npos);
}

TEST_F(EventLogTest, ALogThatCannotBeWrittenIsTold) {
    log.SetPath(folder.File("no/errors.log"));
    const auto moved = log.LogEvent(1, "Proc", "d");
    EXPECT_TRUE(moved.written);
    EXPECT_NE(moved.error.find(fallback), std::string::npos);
    EventLog lost(clock, folder.File("no/fallback.log"));
    lost.SetPath(folder.File("no/errors.log"));
    const auto failed = lost.LogEvent(1, "Proc", "d");
    EXPECT_FALSE(failed.written);
    EXPECT_FALSE(failed.error.empty());
}

TEST_F(EventLogTest, TheTailIsTheLastHundredThousandBytes) {
    folder.Write("errors.log", "first" + std::string(99999, 'x') + "\n");
    log.SetPath(path);
    EXPECT_EQ(log.Tail(), std::string(99999, 'x') + "\n");
    folder.Write("errors.log", "\xC3\xA9" + std::string(99999, 'x'));
    EXPECT_EQ(log.Tail(), std::string(99999, 'x'));
}

}  // namespace
}  // namespace core
