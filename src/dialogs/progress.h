#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports.h"
#include "dialogs/controls.h"

// Reports of long jobs, nested, each with its timing. The window only shows what stands here.
namespace dialogs {

struct Timing {
    int percent = 0;
    double seconds = 0;  // since the report's start
};

struct OpenReport {
    int number = 0;
    std::string caption{};
    std::string unit{};
    double total = 0, current = 0;
    double startSeconds = 0;  // of the clock
    std::string stepText{};
    std::vector<Timing> timeList{};  // one entry for each percent reached
    bool confirmEnd = false;         // the caption ended in "!!."
    int Percent() const;             // 0 to 100; 0 without a total
};

// "Progress report no: 1 42.% 1,234 of 5,000 bytes completed."
std::string ReportLine(const OpenReport& report, int position);
// "42 %"; "" below 1 percent.
std::string PercentText(int percent);

inline constexpr std::string_view kTimingColumns =
    "%|Ttl Secs|Last Part Secs|Last Part %|Secs per 1%|Est Secs rest|Est Secs total";
// The header row and a row for each entry of the time list. Estimates follow the most recent stretch.
Rows TimingTable(const OpenReport& report);
// Seconds that remain by the most recent stretch; below 0 when nothing is known yet.
double SecondsLeft(const OpenReport& report, double now);

class ProgressReports;

// Who shows the reports. Pump lets the window live; it may call ProgressReports::Cancel.
class ProgressView {
public:
    virtual ~ProgressView() = default;
    virtual void Show(const ProgressReports& reports) = 0;  // also: something changed
    virtual void Hide() = 0;
    virtual void Pump() = 0;
};

class ProgressReports final : public core::Progress {
public:
    ProgressReports(ProgressView& view, core::User& user, const core::Clock& clock)
        : view_(view), user_(user), clock_(clock) {}

    int PIStart(std::string_view caption, std::string_view unit, double total) override;
    bool PIStep(int report, double count, std::string_view text) override;
    void PIDone(int report) override;
    bool Beat() override;

    // The Cancel button: asks, unless `confirmStop` is off, and from then on every step says stop until the last report
    // is closed.
    void Cancel();
    // The program ends: stops without a question.
    void StopNow() { stop_ = true; }
    void SetConfirmStop(bool on) { confirmStop_ = on; }
    // Takes the window down whatever is open: a job has failed.
    void CloseAll();

    const std::deque<OpenReport>& Open() const { return open_; }
    bool Stopping() const { return stop_; }
    double Now() const;  // seconds of the clock

private:
    OpenReport* Find(int report);
    void ShowIfDue(double seconds);
    void PumpIfDue(bool now, double seconds);

    ProgressView& view_;
    core::User& user_;
    const core::Clock& clock_;
    std::deque<OpenReport> open_{};
    int last_ = 0;
    bool stop_ = false, asking_ = false, confirmStop_ = true, pumping_ = false;
    bool changed_ = false;  // since the window was last told
    double nextShow_ = 0, nextPump_ = 0;
};

}  // namespace dialogs
