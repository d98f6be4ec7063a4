#include "dialogs/progress.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "core/cds.h"
#include "core/numbers.h"

namespace dialogs {
namespace {

constexpr double kShowEvery = 0.1, kPumpEvery = 0.05;  // seconds
constexpr std::string_view kConfirmEnd = "!!.";
constexpr int kWhole = 100;

// True as long as it lives.
class Raised {
public:
    explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
    ~Raised() { flag_ = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& flag_;
};

// How one entry of a time list compares with the entry before it.
struct Stretch {
    double seconds = 0, percent = 0;
    double PerPercent() const { return percent > 0 ? seconds / percent : 0; }
};

Stretch StretchTo(const std::vector<Timing>& times, std::size_t at) {
    const Timing before = at > 0 ? times[at - 1] : Timing{};
    return {times[at].seconds - before.seconds, static_cast<double>(times[at].percent - before.percent)};
}

std::string SecondsText(double seconds) {
    constexpr double kHundredths = 100;
    return core::NumText(std::round(seconds * kHundredths) / kHundredths);
}

}  // namespace

int OpenReport::Percent() const {
    if (!(total > 0) || !(current > 0)) return 0;
    return current >= total ? kWhole : static_cast<int>(kWhole * (current / total));
}

std::string ReportLine(const OpenReport& report, int position) {
    std::string line = "Progress report no: " + std::to_string(position) + " ";
    if (report.total > 0) {
        line += core::fFormat(report.Percent(), "#0") + ".% ";
        line += core::fFormat(report.current, "###,###,###,##0") + " of ";
        line += core::fFormat(report.total, "###,###,###,##0");
    } else {
        line += report.current > 0 ? core::CountText(report.current) : "none";
    }
    if (!report.unit.empty()) line += " " + report.unit;
    return line + " completed.";
}

std::string PercentText(int percent) { return percent < 1 ? std::string() : core::fFormat(percent, "#0") + " %"; }

Rows TimingTable(const OpenReport& report) {
    const core::StrArray columns = core::CDSSplitPlain(kTimingColumns);
    Rows rows{{columns.Items().begin(), columns.Items().end()}};
    for (std::size_t i = 0; i < report.timeList.size(); ++i) {
        const Timing& time = report.timeList[i];
        const Stretch last = StretchTo(report.timeList, i);
        const double rest = (kWhole - time.percent) * last.PerPercent();
        rows.push_back({std::to_string(time.percent), SecondsText(time.seconds), SecondsText(last.seconds),
                        SecondsText(last.percent), SecondsText(last.PerPercent()), SecondsText(rest),
                        SecondsText(time.seconds + rest)});
    }
    return rows;
}

double SecondsLeft(const OpenReport& report, double now) {
    if (report.timeList.empty()) return -1;
    const Timing& last = report.timeList.back();
    const double perPercent = StretchTo(report.timeList, report.timeList.size() - 1).PerPercent();
    const double since = now - report.startSeconds - last.seconds;
    return std::max(0.0, (kWhole - last.percent) * perPercent - since);
}

int ProgressReports::PIStart(std::string_view caption, std::string_view unit, double total) {
    OpenReport report;
    report.number = ++last_;
    report.caption = caption;
    report.unit = unit;
    report.total = total;
    report.startSeconds = clock_.Seconds();
    report.confirmEnd = caption.ends_with(kConfirmEnd);
    const bool first = open_.empty();
    open_.push_back(std::move(report));
    changed_ = true;
    if (first) nextShow_ = 0;
    ShowIfDue(clock_.Seconds());
    PumpIfDue(first, clock_.Seconds());
    return last_;
}

bool ProgressReports::PIStep(int report, double count, std::string_view text) {
    OpenReport* const open = Find(report);
    if (open == nullptr) return stop_;
    const double seconds = clock_.Seconds();
    if (open->current != count || open->stepText != text) {
        changed_ = true;
        open->current = count;
        if (open->stepText != text) open->stepText = text;
    }
    const int percent = open->Percent();
    const bool risen = percent > (open->timeList.empty() ? 0 : open->timeList.back().percent);
    if (risen) open->timeList.push_back({percent, seconds - open->startSeconds});
    ShowIfDue(seconds);
    // A click on Cancel that waits at the last step is not lost.
    PumpIfDue(risen && percent == kWhole, seconds);
    return stop_;
}

void ProgressReports::PIDone(int report) {
    const OpenReport* const open = Find(report);
    if (open == nullptr) return;
    // A report that goes because its job failed has completed nothing.
    if (open->confirmEnd && !stop_ && std::uncaught_exceptions() == 0) {
        view_.Show(*this);
        const Raised asking(asking_);
        user_.Tell("ProgressDone", open->caption + " Completed. Press OK to continue.");
    }
    std::erase_if(open_, [report](const OpenReport& each) { return each.number == report; });
    if (open_.empty()) {
        CloseAll();
    } else {
        changed_ = true;
        ShowIfDue(clock_.Seconds());
    }
}

bool ProgressReports::Beat() {
    const double seconds = clock_.Seconds();
    if (!open_.empty() && seconds >= nextPump_) view_.Show(*this);  // the times go on
    PumpIfDue(false, seconds);
    return stop_;
}

void ProgressReports::Cancel() {
    if (open_.empty() || asking_ || stop_) return;
    if (!confirmStop_) {
        stop_ = true;
        return;
    }
    const Raised asking(asking_);
    const core::Answer answer = user_.Ask({
        .id = "ConfirmAbort",
        .message = "Abort requested. Press OK to confirm abort or Cancel to continue.",
        .buttons = "&OK|&Cancel",
        .cancelButton = 2,
    });
    if (answer.button == 1 && !open_.empty()) stop_ = true;
}

void ProgressReports::CloseAll() {
    open_.clear();
    stop_ = false;
    changed_ = false;
    view_.Hide();
}

double ProgressReports::Now() const { return clock_.Seconds(); }

OpenReport* ProgressReports::Find(int report) {
    // The innermost report is the one that steps.
    const auto open = std::ranges::find(open_.rbegin(), open_.rend(), report, &OpenReport::number);
    return open == open_.rend() ? nullptr : &*open;
}

void ProgressReports::ShowIfDue(double seconds) {
    if (!changed_ || seconds < nextShow_) return;
    changed_ = false;
    nextShow_ = seconds + kShowEvery;
    view_.Show(*this);
}

void ProgressReports::PumpIfDue(bool now, double seconds) {
    if (pumping_ || asking_ || (!now && seconds < nextPump_)) return;
    const Raised pumping(pumping_);
    view_.Pump();
    nextPump_ = clock_.Seconds() + kPumpEvery;
}

}  // namespace dialogs
