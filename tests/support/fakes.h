#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports.h"

namespace testsupport {

// Answers from a script and remembers what was asked. A question without a
// scripted answer fails the test: no dialog may appear by surprise.
class ScriptedUser final : public core::User {
public:
    // `cancelButton` -99 takes the question's own.
    void WillPress(int button, int cancelButton = -99, bool boxTicked = false) {
        script_.push_back({button, cancelButton, boxTicked});
    }
    // Presses Cancel, whichever button of the question that is.
    void WillCancel() { script_.push_back({kPressCancel, -99, false}); }
    void WillPressOk(int times = 1) {
        while (times-- > 0) WillPress(1);
    }
    bool Done() const { return script_.empty(); }

    core::Answer Ask(const core::Question& question) override {
        asked.push_back(question.message);
        ids.push_back(question.id);
        questions.push_back(question);
        if (script_.empty()) {
            ADD_FAILURE() << "unexpected question: " << question.message;
            return {};
        }
        core::Answer answer = script_.front();
        script_.pop_front();
        if (answer.cancelButton == -99) answer.cancelButton = question.cancelButton;
        if (answer.button == kPressCancel) answer.button = question.cancelButton;
        return answer;
    }

    std::vector<std::string> asked;
    std::vector<std::string> ids;
    std::vector<core::Question> questions;

private:
    static constexpr int kPressCancel = -1000;
    std::deque<core::Answer> script_;
};

// Counts open reports and can stop the job at the n-th step.
class FakeProgress final : public core::Progress {
public:
    int stopAtStep = -1;
    int open = 0;
    int started = 0;
    int steps = 0;
    double lastCount = 0;

    int PIStart(std::string_view, std::string_view, double) override {
        ++open;
        return ++started;
    }
    bool PIStep(int, double count, std::string_view) override {
        lastCount = count;
        return ++steps == stopAtStep;
    }
    void PIDone(int) override { --open; }
};

// Stands still until it is moved.
class FixedClock final : public core::Clock {
public:
    explicit FixedClock(double moment = 45000.5) : now(moment) {}
    double Now() const override { return now; }
    double Seconds() const override { return seconds; }

    double now;
    double seconds = 0;
};

}  // namespace testsupport
