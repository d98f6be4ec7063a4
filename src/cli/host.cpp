#include "cli/host.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "cli/output.h"
#include "core/text.h"

namespace cli {
namespace {

constexpr double kDrawEvery = 0.1;  // seconds
constexpr int kCaptionWidth = 60;

// A signal handler reaches nothing but this.
std::atomic<int> signalSeen{0};  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
static_assert(std::atomic<int>::is_always_lock_free);

void Remember(int number) { signalSeen.store(number); }

double Seconds() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

// They stand in the list of errors too, with what to do.
constexpr std::array<std::string_view, 3> kToldLater{"LogFileEmpty", "LogFileNoValidLines", "LogFileEndsCorrupt"};

struct OptionRow {
    std::string_view question;
    std::string_view options;
};
constexpr std::array kOptionOf{
    OptionRow{"LogLnInvalid",
              "--invalid skip (leave such lines out) or --invalid stop (leave out the rest of that file)"},
    OptionRow{"ConfirmOverlap",
              "--overlap add (add the file, identical lines are left out) or --overlap skip (leave it out)"},
};

bool DumbTerminal() {
    const char* terminal = std::getenv("TERM");
    return terminal == nullptr || std::string_view(terminal) == "dumb";
}

// Reads one line from standard input; nothing at its end or on a signal.
std::optional<std::string> ReadAnswer() {
    std::string line;
    for (char c = 0; SignalSeen() == 0 && ::read(STDIN_FILENO, &c, 1) == 1;) {
        if (c == '\n') return line;
        line += c;
    }
    return std::nullopt;
}

}  // namespace

void CatchSignals() {
    struct sigaction action = {};
    action.sa_handler = Remember;
    action.sa_flags = static_cast<int>(SA_RESETHAND);  // the second one ends the program
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGINT, SIGTERM}) {
        struct sigaction old = {};
        if (::sigaction(number, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) ::sigaction(number, &action, nullptr);
    }
    ::signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write, not the end in the middle of a job
}

int SignalSeen() { return signalSeen.load(); }

ProgressLine::ProgressLine() : shown_(ErrorIsTerminal() && !DumbTerminal()) {}

int ProgressLine::PIStart(std::string_view caption, std::string_view, double total) {
    jobs_.push_back({++last_, Safe(caption), total});
    nextDraw_ = 0;
    return last_;
}

bool ProgressLine::PIStep(int report, double count, std::string_view text) {
    if (SignalSeen() != 0) return true;
    const auto job = std::ranges::find(jobs_, report, &Job::number);
    if (shown_ && job != jobs_.end() && Seconds() >= nextDraw_) {
        Draw(*job, count, text);
        nextDraw_ = Seconds() + kDrawEvery;
    }
    return false;
}

void ProgressLine::PIDone(int report) {
    std::erase_if(jobs_, [report](const Job& job) { return job.number == report; });
    if (jobs_.empty()) Clear();
}

void ProgressLine::Draw(const Job& job, double count, std::string_view text) {
    const int percent = job.total > 0 ? static_cast<int>(std::floor(std::clamp(count / job.total, 0.0, 1.0) * 100)) : 0;
    std::string line = std::to_string(percent) + " %  " + CutToWidth(job.caption, kCaptionWidth);
    if (!text.empty()) line += "  " + Safe(text);
    std::fprintf(stderr, "\r%s\x1b[K", CutToWidth(line, ErrorWidth() - 1).c_str());
    std::fflush(stderr);
    onScreen_ = true;
}

void ProgressLine::Clear() {
    if (!onScreen_) return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    onScreen_ = false;
}

core::Answer CommandUser::Ask(const core::Question& question) {
    if (question.buttons.find('|') == std::string::npos) {
        if (std::ranges::find(kToldLater, question.id) != kToldLater.end()) return {};
        progress_.Clear();
        PrintError(question.message);
        return {};
    }
    core::Answer answer = Decide(question);
    answer.cancelButton = question.cancelButton;
    return answer;
}

core::Answer CommandUser::Decide(const core::Question& question) {
    const int cancel = question.cancelButton;
    if (question.id == "ReadStoppedAddVisits") return {.button = SignalSeen() != 0 ? cancel : 1};
    if (question.id == "ConfirmFileList") return {};
    if (question.id == "ConfirmOverlap" && answers_.addOverlap) return {.button = *answers_.addOverlap ? 1 : cancel};
    if (question.id == "LogLnInvalid" && answers_.skipInvalid) {
        if (*answers_.skipInvalid) return {};
        progress_.Clear();
        PrintError("This line fits no specification of the format, so the rest of its file is left out: " +
                   std::string(core::fAfter(question.message, "\rLine:\r")));
        return {.button = cancel};
    }
    if (question.id == "CheckRC" || question.id == "INIMsg_Section_EN_Missing") {
        writeFailed_ = true;
        progress_.Clear();
        PrintError(core::fBefore(question.message, "\r\rPress OK"));
        return {};
    }
    return AskOnTerminal(question);
}

core::Answer CommandUser::AskOnTerminal(const core::Question& question) {
    progress_.Clear();
    if (SignalSeen() != 0) return {.button = question.cancelButton};
    if (!ErrorIsTerminal() || ::isatty(STDIN_FILENO) != 1) {
        const auto row = std::ranges::find(kOptionOf, question.id, &OptionRow::question);
        throw Unanswered(question.message + "\r\rThis needs an answer and nobody can be asked. " +
                         (row == kOptionOf.end() ? "Run the command on a terminal."
                                                 : "Give it with " + std::string(row->options) + "."));
    }
    PrintError(question.message);
    for (;;) {
        std::fputs("Go on? [y/n] ", stderr);
        std::fflush(stderr);
        const std::optional<std::string> text = ReadAnswer();
        if (text && (core::fTrim(*text) == "y" || core::fTrim(*text) == "Y")) return {};
        if (text && core::fTrim(*text) != "n" && core::fTrim(*text) != "N") continue;
        if (question.id == "LogLnInvalid") cancelled_ = true;
        return {.button = question.cancelButton};
    }
}

}  // namespace cli
