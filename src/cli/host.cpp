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
#include "core/error.h"
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
    OptionRow{"SiteRemoveFolder", "--yes"},
    OptionRow{"SitesDeleteAll", "--yes"},
};

struct Choice {
    std::string caption{};
    char letter = 0;
};

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool DumbTerminal() {
    const char* terminal = std::getenv("TERM");
    return terminal == nullptr || std::string_view(terminal) == "dumb";
}

// What a person types for each button: the letter behind the "&" of its caption, else its first one that is free.
std::vector<Choice> ChoicesOf(std::string_view buttons) {
    std::vector<Choice> choices;
    std::string taken;
    while (!buttons.empty()) {
        const std::string_view caption = buttons.substr(0, buttons.find('|'));
        buttons.remove_prefix(std::min(caption.size() + 1, buttons.size()));
        Choice choice{core::fStripAmp(caption), 0};
        const std::size_t mark = caption.find('&');
        std::string candidates(mark + 1 < caption.size() ? caption.substr(mark + 1, 1) : std::string_view());
        for (const char c : candidates + choice.caption + "123456789") {
            const char letter = Lower(c);
            const bool good = (letter >= 'a' && letter <= 'z') || (letter >= '1' && letter <= '9');
            if (!good || taken.find(letter) != std::string::npos) continue;
            choice.letter = letter;
            break;
        }
        taken += choice.letter;
        choices.push_back(std::move(choice));
    }
    return choices;
}

int ChosenButton(const std::vector<Choice>& choices, std::string_view typed) {
    for (std::size_t i = 0; i < choices.size(); ++i)
        if (typed.size() == 1 && Lower(typed.front()) == choices[i].letter) return static_cast<int>(i + 1);
    return 0;
}

std::string PromptOf(const std::vector<Choice>& choices) {
    std::string prompt;
    for (const Choice& choice : choices)
        prompt +=
            (prompt.empty() ? "" : ", ") + std::string(1, choice.letter) + " = " + Safe(core::fTrim(choice.caption));
    return prompt + ": ";
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
    if (question.id == "SiteRemoveFolder" && answers_.recycle) return {.button = *answers_.recycle ? 1 : cancel};
    return AskOnTerminal(question);
}

bool CommandUser::CanAsk() { return ErrorIsTerminal() && ::isatty(STDIN_FILENO) == 1; }

core::Answer CommandUser::AskOnTerminal(const core::Question& question) {
    progress_.Clear();
    if (SignalSeen() != 0) return {.button = question.cancelButton};
    if (!CanAsk()) {
        const auto row = std::ranges::find(kOptionOf, question.id, &OptionRow::question);
        throw Unanswered(question.message + "\r\rThis needs an answer and nobody can be asked. " +
                         (row == kOptionOf.end() ? "Run the command on a terminal."
                                                 : "Give it with " + std::string(row->options) + "."));
    }
    PrintError(question.message);
    std::vector<Choice> choices = ChoicesOf(question.buttons);
    const bool yesNo = choices.size() == 2 && question.cancelButton == 2;
    if (yesNo) choices = {{"Yes", 'y'}, {"No", 'n'}};
    const std::string prompt = yesNo ? "Go on? [y/n] " : PromptOf(choices);
    for (;;) {
        std::fputs(prompt.c_str(), stderr);
        std::fflush(stderr);
        const std::optional<std::string> text = ReadAnswer();
        if (!text && question.cancelButton < 1) throw core::Stopped("AskOnTerminal");
        const int button = text ? ChosenButton(choices, core::fTrim(*text)) : question.cancelButton;
        if (button == 0) continue;
        if (question.id == "LogLnInvalid" && button == question.cancelButton) cancelled_ = true;
        return {.button = button};
    }
}

}  // namespace cli
