#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/host.h"

namespace testsupport {

// Presses buttons from a script and remembers what was shown. A dialog without a scripted answer fails the test and
// ends the action: no dialog may appear by surprise.
class ScriptedHost final : public dialogs::DialogHost {
public:
    using Fill = std::function<void(dialogs::DialogModel&)>;
    // Presses the button of this caption (without "&"), after `fill` has entered what a person would.
    // `look` sees what the dialog shows of it.
    void WillPress(std::string caption, Fill fill = {}, Fill look = {}) {
        script_.push_back({std::move(caption), 0, std::move(fill), std::move(look)});
    }
    void WillPressNumber(int button, Fill fill = {}) { script_.push_back({{}, button, std::move(fill), {}}); }
    bool Done() const { return script_.empty(); }

    struct Shown {
        std::string title{}, message{}, problem{};
        std::vector<std::string> buttons{};
    };
    std::vector<Shown> shown{};
    std::vector<std::string> copied{};
    int opened = 0, open = 0;
    int screenWidth = 28800;

    std::unique_ptr<dialogs::DialogWindow> Open(dialogs::DialogModel& model) override {
        ++opened;
        return std::make_unique<Window>(*this, model);
    }
    bool CopyText(std::string_view text) override {
        copied.emplace_back(text);
        return true;
    }
    int ScreenWidth() const override { return screenWidth; }

private:
    struct Step {
        std::string caption{};
        int button = 0;
        Fill fill{}, look{};
    };
    class Window final : public dialogs::DialogWindow {
    public:
        Window(ScriptedHost& host, dialogs::DialogModel& model) : host_(host), model_(model) { ++host_.open; }
        ~Window() override { --host_.open; }
        int Run() override { return host_.Play(model_); }
        void Update() override {}

    private:
        ScriptedHost& host_;
        dialogs::DialogModel& model_;
    };

    int Play(dialogs::DialogModel& model) {
        if (model.live) model.live(model.controls);
        Shown now{model.title, model.message, model.problem, {}};
        for (int i = 1; i <= model.ButtonCount(); ++i)
            now.buttons.push_back(dialogs::PlainCaption(model.ButtonCaption(i)));
        shown.push_back(now);
        if (script_.empty()) {
            ADD_FAILURE() << "unexpected dialog: " << model.title << ": " << model.message;
            throw std::runtime_error("unexpected dialog");
        }
        const Step step = script_.front();
        script_.pop_front();
        if (step.fill) step.fill(model);
        if (step.fill && model.live) model.live(model.controls);
        if (step.look) step.look(model);
        const int button = step.button != 0 ? step.button : model.ButtonCaptioned(step.caption);
        if (button == 0) {
            ADD_FAILURE() << "no button " << step.caption << " in: " << model.title << ": " << model.message;
            throw std::runtime_error("no such button");
        }
        return button;
    }

    std::deque<Step> script_{};
};

}  // namespace testsupport
