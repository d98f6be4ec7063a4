#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/ports.h"

// The ports to the outside as a command line has them.
namespace cli {

// From here on SIGINT and SIGTERM set a flag that the next step of a long job hears. A second one ends the program.
void CatchSignals();
int SignalSeen();  // its number, 0: none

// One line on the terminal behind standard error, nothing anywhere else.
class ProgressLine final : public core::Progress {
public:
    ProgressLine();
    int PIStart(std::string_view caption, std::string_view unit, double total) override;
    bool PIStep(int report, double count, std::string_view text) override;
    void PIDone(int report) override;
    void Clear();  // before something else is written to the terminal

private:
    struct Job {
        int number = 0;
        std::string caption{};
        double total = 0;
    };
    void Draw(const Job& job, double count, std::string_view text);

    bool shown_;
    bool onScreen_ = false;
    int last_ = 0;
    double nextDraw_ = 0;
    std::vector<Job> jobs_{};
};

// A question that no option of the command answers, and nobody is there to ask.
class Unanswered : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Answers questions by their id from the command's options; asks on a terminal what they leave open. Messages go to
// standard error.
class CommandUser final : public core::User {
public:
    explicit CommandUser(ProgressLine& progress) : progress_(progress) {}

    struct Answers {
        std::optional<bool> addOverlap{};
        std::optional<bool> skipInvalid{};
        std::optional<bool> recycle{};  // a removed site's folder
    };
    void SetAnswers(const Answers& answers) { answers_ = answers; }
    core::Answer Ask(const core::Question& question) override;

    static bool CanAsk();                          // somebody sits at a terminal
    bool Cancelled() const { return cancelled_; }  // somebody stopped the job at the terminal
    bool WriteFailed() const { return writeFailed_; }

private:
    core::Answer Decide(const core::Question& question);
    core::Answer AskOnTerminal(const core::Question& question);

    ProgressLine& progress_;
    Answers answers_{};
    bool cancelled_ = false;
    bool writeFailed_ = false;
};

}  // namespace cli
