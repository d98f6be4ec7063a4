#include "dialogs/progress.h"

#include <gtest/gtest.h>

#include <functional>

#include "core/clock.h"
#include "core/error.h"
#include "dialogs/report.h"
#include "tests/support/fakes.h"

namespace {

using dialogs::OpenReport;
using dialogs::ProgressReports;
using dialogs::Rows;

class FakeView final : public dialogs::ProgressView {
public:
    void Show(const ProgressReports& reports) override {
        ++shown;
        visible = true;
        lastText = reports.Open().empty() ? "" : reports.Open().back().stepText;
    }
    void Hide() override { visible = false; }
    void Pump() override {
        ++pumped;
        if (onPump) onPump();
    }
    int shown = 0, pumped = 0;
    bool visible = false;
    std::string lastText{};
    std::function<void()> onPump{};
};

class Progress : public testing::Test {
protected:
    // One step after the next window of time.
    bool Step(int report, double count, std::string_view text = {}) {
        clock.seconds += 1;
        return reports.PIStep(report, count, text);
    }
    FakeView view{};
    testsupport::ScriptedUser user{};
    testsupport::FixedClock clock{};
    ProgressReports reports{view, user, clock};
};

TEST_F(Progress, OneEntryOfTheTimeListForEachPercentReached) {
    const int report = reports.PIStart("Reading", "bytes", 1000);
    (void)Step(report, 9);     // 0 %
    (void)Step(report, 30);    // 3 %
    (void)Step(report, 39);    // still 3 %
    (void)Step(report, 70);    // a jump makes one entry
    (void)Step(report, 20);    // back: none
    (void)Step(report, 5000);  // never above 100
    const Rows expected{
        {"%", "Ttl Secs", "Last Part Secs", "Last Part %", "Secs per 1%", "Est Secs rest", "Est Secs total"},
        {"3", "2", "2", "3", "0.67", "64.67", "66.67"},
        {"7", "4", "2", "4", "0.5", "46.5", "50.5"},
        {"100", "6", "2", "93", "0.02", "0", "6"}};
    EXPECT_EQ(TimingTable(reports.Open()[0]), expected);
    EXPECT_EQ(reports.Open()[0].Percent(), 100);
    reports.PIDone(report);
    EXPECT_FALSE(view.visible);
}

TEST(SecondsLeft, FollowsTheLastStretch) {
    OpenReport report;
    report.startSeconds = 100;
    EXPECT_LT(SecondsLeft(report, 105), 0);  // nothing known yet
    report.timeList = {{50, 10}};
    EXPECT_DOUBLE_EQ(SecondsLeft(report, 110), 10);
    report.timeList.push_back({60, 30});  // 2 s for 1 %, whatever the average says
    EXPECT_DOUBLE_EQ(SecondsLeft(report, 130), 80);
    EXPECT_DOUBLE_EQ(SecondsLeft(report, 135), 75);
    EXPECT_DOUBLE_EQ(SecondsLeft(report, 900), 0);
}

TEST(ReportLine, CountsWithAndWithoutATotal) {
    OpenReport report;
    report.unit = "bytes";
    report.total = 5000;
    report.current = 2110;
    EXPECT_EQ(ReportLine(report, 1), "Progress report no: 1 42.% 2,110 of 5,000 bytes completed.");
    report.total = 0;
    EXPECT_EQ(ReportLine(report, 2), "Progress report no: 2 2,110 bytes completed.");
    report.current = 0;
    EXPECT_EQ(ReportLine(report, 2), "Progress report no: 2 none bytes completed.");
    EXPECT_EQ(dialogs::PercentText(0), "");
    EXPECT_EQ(dialogs::PercentText(1), "1 %");
}

TEST(OpenReport, ThePercentIsReachedWhenItIsWhole) {
    OpenReport report;
    for (const auto& [current, total, percent] : {std::tuple(9.99, 1000.0, 0),
                                                  {10.0, 1000.0, 1},
                                                  {999.9, 1000.0, 99},
                                                  {1e300, 1.0, 100},
                                                  {-5.0, 10.0, 0},
                                                  {5.0, 0.0, 0}}) {
        report.current = current;
        report.total = total;
        EXPECT_EQ(report.Percent(), percent) << current << " of " << total;
    }
}

TEST_F(Progress, AMillionStepsShowAndPumpOnlyWhenItIsTime) {
    const int report = reports.PIStart("Reading", "rows", 1e6);
    const int shown = view.shown, pumped = view.pumped;
    for (int i = 1; i < 1000000; ++i) {
        clock.seconds += 1e-6;
        (void)reports.PIStep(report, i, "step");
    }
    EXPECT_LE(view.shown - shown, 11);
    EXPECT_GE(view.shown - shown, 9);
    EXPECT_LE(view.pumped - pumped, 21);
    EXPECT_EQ(reports.Open()[0].timeList.size(), 99u);
    reports.PIDone(report);
}

TEST_F(Progress, AStopIsAskedForAndSaysStopUntilTheLastReportCloses) {
    const int outer = reports.PIStart("Outer", "step", 3);
    const int inner = reports.PIStart("Inner", "rows", 10);
    user.WillCancel();
    reports.Cancel();
    EXPECT_FALSE(Step(inner, 1));
    user.WillPress(1);
    reports.Cancel();
    EXPECT_EQ(user.ids, (std::vector<std::string>{"ConfirmAbort", "ConfirmAbort"}));
    EXPECT_EQ(user.asked.back(), "Abort requested. Press OK to confirm abort or Cancel to continue.");
    reports.Cancel();  // asked once is enough
    EXPECT_TRUE(Step(inner, 2));
    reports.PIDone(inner);
    EXPECT_TRUE(view.visible);
    EXPECT_TRUE(Step(outer, 1));
    reports.PIDone(outer);
    EXPECT_FALSE(view.visible);
    const int next = reports.PIStart("Next", "rows", 10);
    EXPECT_FALSE(Step(next, 1));
    reports.PIDone(next);
}

TEST_F(Progress, AStopInTheLastStepIsHandedBack) {
    const int report = reports.PIStart("Reading", "bytes", 10);
    (void)Step(report, 9);
    user.WillPress(1);
    view.onPump = [this] { reports.Cancel(); };
    EXPECT_TRUE(reports.PIStep(report, 10, {}));  // at once behind the step before, and still pumped
    EXPECT_TRUE(user.Done());
    reports.PIDone(report);
}

TEST_F(Progress, NothingIsAskedWhileAQuestionIsUp) {
    struct Nested final : core::User {
        ProgressReports* reports = nullptr;
        int asked = 0, report = 0;
        core::Answer Ask(const core::Question&) override {
            ++asked;
            reports->Cancel();
            EXPECT_FALSE(reports->PIStep(report, 5, {}));
            return {.button = 1, .cancelButton = 2};
        }
    } nested;
    ProgressReports own(view, nested, clock);
    nested.reports = &own;
    nested.report = own.PIStart("Reading", "bytes", 10);
    int depth = 0, deepest = 0;
    view.onPump = [&] {
        deepest = std::max(deepest, ++depth);
        own.Cancel();
        (void)own.PIStep(nested.report, 6, {});
        --depth;
    };
    clock.seconds += 1;
    EXPECT_TRUE(own.PIStep(nested.report, 4, {}));
    EXPECT_EQ(nested.asked, 1);
    EXPECT_EQ(deepest, 1);
    own.PIDone(nested.report);
}

TEST_F(Progress, WithoutTheQuestionAStopIsSetAtOnce) {
    reports.Cancel();  // nothing to stop
    const int report = reports.PIStart("Reading", "bytes", 10);
    EXPECT_FALSE(Step(report, 1));
    reports.SetConfirmStop(false);
    reports.Cancel();
    EXPECT_TRUE(Step(report, 2));
    reports.PIDone(report);
}

TEST_F(Progress, OnlyACaptionWithTheMarkWaitsForOkAtItsEnd) {
    user.WillPress(1);
    reports.PIDone(reports.PIStart("Indexing!!.", "rows", 10));
    ASSERT_EQ(user.asked.size(), 1u);
    EXPECT_EQ(user.asked[0], "Indexing!!. Completed. Press OK to continue.");
    EXPECT_EQ(user.ids[0], "ProgressDone");
    reports.PIDone(reports.PIStart("Indexing!!", "rows", 10));
    // What failed or was stopped has completed nothing.
    EXPECT_THROW(
        {
            const dialogs::Report report(reports, "Indexing!!.", "rows", 10);
            throw core::ErrorNumber(9, "test");
        },
        core::ErrorNumber);
    reports.SetConfirmStop(false);
    const int report = reports.PIStart("Indexing!!.", "rows", 10);
    reports.Cancel();
    reports.PIDone(report);
    EXPECT_EQ(user.asked.size(), 1u);
    EXPECT_FALSE(view.visible);
}

TEST_F(Progress, AFailedJobTakesTheWindowDownOnce) {
    const int outer = reports.PIStart("Outer", "step", 3);
    const int inner = reports.PIStart("Inner", "rows", 10);
    reports.CloseAll();
    EXPECT_FALSE(view.visible);
    EXPECT_FALSE(Step(inner, 3));
    reports.PIDone(inner);
    reports.PIDone(outer);
    EXPECT_TRUE(reports.Open().empty());
}

}  // namespace
