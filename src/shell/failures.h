#pragma once

#include <string>
#include <string_view>

#include "core/errlog.h"

namespace dialogs {
class ProgressReports;
}

// What happens after a failure that nobody expected: one record, one box, one decision.
namespace shell {

// A box made of the platform's own means, since the dialogs may be what failed.
struct PlainMessage {
    std::string text{};     // lines parted by CR
    std::string details{};  // behind a button, can be copied; "" without
    std::string buttons = "&OK";
    int escButton = 1;
};
class PlainBox {
public:
    virtual ~PlainBox() = default;
    virtual int Ask(const PlainMessage& message) = 0;  // 1-based button
    // The active window's caption and the active control, as far as there are any.
    virtual core::EventPlace ActivePlace() = 0;
};

enum class NextStep { GoOn, CloseForm, EndProgram };

// Which form's event failed.
enum class FailedForm {
    Main,      // an action of the main window, which stays
    MainLoad,  // the main window's start
    Child,     // a window that can be closed
};

class Failures {
public:
    // A name that holds this says that its caller goes on with the next step.
    static constexpr std::string_view kSkipsStep = " - This module will skip the current step and continue.";

    Failures(core::EventLog& events, PlainBox& box, dialogs::ProgressReports& progress)
        : events_(events), box_(box), progress_(progress) {}

    // Writes one record, takes the progress window down, shows the box. Throws nothing.
    NextStep Handle(int number, std::string_view procName, std::string_view what, FailedForm form = FailedForm::Main);
    // A window that could not be closed was put away instead.
    void TellMinimised();

    // How the next failure is treated; used up by it.
    enum class Mode { Normal = 0, SilentOnce = -1, LogOnly = -2 };
    void SetMode(Mode mode) { mode_ = mode; }
    // For whoever works on the program: Cancel then asks once more. Declining puts it off for good (99).
    enum class Debug { Off = 0, On = -1, Declined = 99 };
    void SetDebug(Debug debug) { debug_ = debug; }

private:
    NextStep Decide(std::string_view procName, FailedForm form, const core::EventLog::Logged& logged,
                    std::string_view what);
    bool WantsEnd(const PlainMessage& message, bool& returns);
    NextStep HandlingFailed(int number, std::string_view soFar) noexcept;
    core::EventPlace Place();

    core::EventLog& events_;
    PlainBox& box_;
    dialogs::ProgressReports& progress_;
    Mode mode_ = Mode::Normal;
    Debug debug_ = Debug::Off;
};

}  // namespace shell
