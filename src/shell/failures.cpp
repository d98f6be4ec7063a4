#include "shell/failures.h"

#include <exception>
#include <utility>

#include "core/error.h"
#include "core/text.h"
#include "dialogs/progress.h"

namespace shell {
namespace {

constexpr std::string_view kChoice =
    " Press OK to terminate this Action and continue. Press Cancel to End this system.";
constexpr std::string_view kDebugQuestion =
    "To 'debug now press break. Yes will End system, Cancel will continue (same as press OK on error screen).";
constexpr std::string_view kTerminated = "This system will now be terminated. All unsaved data will be lost.";
constexpr std::string_view kCannotContinue =
    "This system cannot continue. (This form cannot be unloaded automatically.)";
constexpr std::string_view kMinimised =
    "This form cannot be unloaded automatically. It will be minimized and can be ignored.";
constexpr int kOk = 1, kCancel = 2;

// What a failed paint or a combo box leaves behind is still of use.
bool LeavesForm(std::string_view procName) {
    return procName.find("Form_Paint") != std::string_view::npos ||
           core::fFind(procName, "combo", core::Case::Ignore) != std::string_view::npos;
}

// What happened, what was kept, and the choice; the record itself stands in the details.
PlainMessage Message(std::string_view what, const core::EventLog::Logged& logged) {
    std::string text = "Something went wrong that this program did not expect, and the action was ended:\r\r";
    text.append(what.empty() ? "(no description)" : what);
    text += "\r\rWhat was stored before stands as it was. ";
    text += logged.written ? "The failure is recorded in " + logged.path + "." : "The failure could not be recorded.";
    if (!logged.error.empty()) text += " " + logged.error;
    return {text + "\r\r" + std::string(kChoice), logged.message, "&OK|&Cancel", kOk};
}

}  // namespace

NextStep Failures::Handle(int number, std::string_view procName, std::string_view what, FailedForm form) {
    std::string soFar;
    try {
        const core::EventLog::Logged logged = events_.LogEvent(number, procName, what, Place());
        soFar = logged.message;
        return Decide(procName, form, logged, what);
    } catch (const core::ErrorNumber& error) {
        return HandlingFailed(error.number(), soFar);
    } catch (...) {
        return HandlingFailed(number, soFar);
    }
}

core::EventPlace Failures::Place() {
    try {
        return box_.ActivePlace();
    } catch (...) {  // a form without a control does no harm
        return {};
    }
}

NextStep Failures::Decide(std::string_view procName, FailedForm form, const core::EventLog::Logged& logged,
                          std::string_view what) {
    const Mode mode = std::exchange(mode_, Mode::Normal);
    if (mode == Mode::LogOnly) return NextStep::GoOn;
    bool returns = false;
    if (mode == Mode::Normal) {
        progress_.CloseAll();
        if (WantsEnd(Message(what, logged), returns)) {
            box_.Ask({std::string(kTerminated)});
            return NextStep::EndProgram;
        }
    }
    if (returns || procName.find(kSkipsStep) != std::string_view::npos || LeavesForm(procName)) return NextStep::GoOn;
    switch (form) {
        case FailedForm::Child:
            return NextStep::CloseForm;
        case FailedForm::MainLoad:
            box_.Ask({std::string(kCannotContinue)});
            return NextStep::EndProgram;
        case FailedForm::Main:
            break;
    }
    return NextStep::GoOn;
}

// Cancel ends the program, unless the question for those who debug is answered otherwise.
bool Failures::WantsEnd(const PlainMessage& message, bool& returns) {
    constexpr int kDebugYes = 1, kDebugNo = 2;
    if (box_.Ask(message) != kCancel) return false;
    if (debug_ != Debug::On) return true;
    const int answer = box_.Ask({std::string(kDebugQuestion), {}, "&Yes|&No|&Cancel", 3});
    if (answer == kDebugNo) {
        debug_ = Debug::Declined;
        returns = true;
    }
    return answer == kDebugYes;
}

void Failures::TellMinimised() { box_.Ask({std::string(kMinimised)}); }

NextStep Failures::HandlingFailed(int number, std::string_view soFar) noexcept {
    mode_ = Mode::Normal;
    try {
        const std::string text = std::to_string(number) + " Error in ErrorHandler " + std::string(soFar) +
                                 "\rError Handler did not process an error correctly. Possibly check " +
                                 " the Errorlog path is not set to an incorrect drive mapping in the INI file." +
                                 "Program will now be stopped.";
        static_cast<void>(events_.AppendFallback(text));  // there is no further place to tell it
        box_.Ask({text});
    } catch (...) {  // the program ends in any case
    }
    return NextStep::EndProgram;
}

}  // namespace shell
