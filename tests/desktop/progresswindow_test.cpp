#include "desktop/progresswindow.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "tests/desktop/modal.h"
#include "tests/support/fakes.h"

namespace desktop {
namespace {

class ProgressWindowTest : public ::testing::Test {
protected:
    ProgressWindowTest() { window_.Attach(reports_); }
    // Lets time go on, so that the next step shows and pumps.
    bool Step(int report, double count, const char* text = "") {
        clock_.seconds += 1;
        return reports_.PIStep(report, count, text);
    }
    bool Says(const QString& text) const {
        for (const QLabel* label : window_.findChildren<QLabel*>())
            if (label->isVisible() && label->accessibleName().startsWith(text)) return true;
        return false;
    }
    QPushButton& CancelButton() { return *window_.findChildren<QPushButton*>().front(); }

    testsupport::FixedClock clock_;
    testsupport::ScriptedUser user_;
    int clicked_ = 0;
    ProgressWindow window_{"Corvane", {}, [this](int report) { clicked_ = report; }};
    dialogs::ProgressReports reports_{window_, user_, clock_};
};

TEST(TimeWords, ReadsAsSpoken) {
    const struct {
        double seconds;
        const char* words;
    } cases[] = {
        {0.2, "less than a second"},   {1, "1 second"},  {59.4, "59 seconds"},       {60, "1 minute"},
        {200, "3 minutes 20 seconds"}, {3600, "1 hour"}, {7260, "2 hours 1 minute"}, {-5, "less than a second"}};
    for (const auto& c : cases) EXPECT_EQ(TimeWords(c.seconds), c.words);
}

TEST_F(ProgressWindowTest, NestedReportsEachHaveTheirPart) {
    const int outer = reports_.PIStart("Outer work", "bytes", 1000);
    EXPECT_TRUE(window_.isVisible());
    EXPECT_FALSE(Step(outer, 5));
    const QLabel* percent = nullptr;
    for (const QLabel* label : window_.findChildren<QLabel*>())
        if (label->accessibleName() == u"Percent") percent = label;
    ASSERT_NE(percent, nullptr);
    EXPECT_TRUE(percent->text().isEmpty());
    EXPECT_FALSE(Step(outer, 500));
    EXPECT_EQ(percent->text(), QStringLiteral("50 %"));
    const int inner = reports_.PIStart("Inner work", "rows", 0);
    EXPECT_FALSE(Step(inner, 7, "a step"));
    EXPECT_TRUE(Says(QStringLiteral("Outer work")) && Says(QStringLiteral("Inner work")) &&
                Says(QStringLiteral("a step")));
    EXPECT_TRUE(Says(QStringLiteral("Time so far: ")));
    EXPECT_EQ(window_.findChildren<QProgressBar*>().size(), 2);
    window_.findChildren<QToolButton*>().back()->click();
    EXPECT_EQ(clicked_, inner);
    reports_.PIDone(inner);
    EXPECT_FALSE(Step(outer, 600));
    EXPECT_EQ(window_.findChildren<QProgressBar*>().size(), 1);
    reports_.PIDone(outer);
    EXPECT_FALSE(window_.isVisible());
}

TEST_F(ProgressWindowTest, CancelIsAnsweredWhilePumping) {
    user_.WillPress(1, 2);
    const int report = reports_.PIStart("Work", "bytes", 1000);
    QTimer::singleShot(0, &window_, [this] { CancelButton().click(); });
    int steps = 0;
    while (!Step(report, ++steps) && steps < 100) {}
    EXPECT_LE(steps, 2);
    EXPECT_FALSE(CancelButton().isEnabled());
    EXPECT_TRUE(user_.Done());
    reports_.PIDone(report);
    const int next = reports_.PIStart("Next", "bytes", 1000);
    EXPECT_TRUE(CancelButton().isEnabled());
    reports_.PIDone(next);
}

TEST_F(ProgressWindowTest, ClosingIsCancelAndTheWindowStays) {
    user_.WillPress(2, 2);
    const int report = reports_.PIStart("Work", "bytes", 1000);
    window_.close();
    EXPECT_TRUE(window_.isVisible());
    EXPECT_TRUE(user_.Done());
    EXPECT_FALSE(Step(report, 10));
    reports_.PIDone(report);
}

TEST_F(ProgressWindowTest, CancelIsInReachOverADialogThatStays) {
    dialogs::DialogModel model = ModelWith({"&Move"}, "Two lists");
    model.options.stays = true;
    QtDialogHost host;
    const auto dialog = host.Open(model);
    RunWith(*dialog, [](QWidget& open) { The<QPushButton>(open, "Move").click(); });
    const int report = reports_.PIStart("Adding items.", "step", 1000);
    EXPECT_EQ(QApplication::activeModalWidget(), &window_);
    reports_.PIDone(report);
    EXPECT_NE(QApplication::activeModalWidget(), &window_);
}

TEST_F(ProgressWindowTest, PumpDoesNotRunInsideItself) {
    const int report = reports_.PIStart("Work", "bytes", 1000);
    int depth = 0, deepest = 0;
    QTimer::singleShot(0, &window_, [&] {
        ++depth;
        QTimer::singleShot(0, &window_, [&] { deepest = std::max(deepest, depth + 1); });
        window_.Pump();
        --depth;
    });
    EXPECT_FALSE(Step(report, 10));
    EXPECT_LE(deepest, 1);
    reports_.PIDone(report);
}

}  // namespace
}  // namespace desktop
