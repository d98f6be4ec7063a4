#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/ports.h"
#include "shell/failures.h"

namespace shell {

// The one trap around every command and event. While a long job runs a command does nothing at all: it does not even
// become the last command of Help.
class Actions {
public:
    Actions(Failures& failures, core::User& user) : failures_(failures), user_(user) {}

    // A command of the menu, known by its control ("fMnu_RT" has the help id "RT").
    NextStep Run(std::string_view control, const std::function<void()>& body);
    // Any other event; it is no command for Help.
    NextStep Trap(std::string_view event, const std::function<void()>& body, FailedForm form = FailedForm::Main);
    // A command of the Help menu: it leaves the last command as it is.
    NextStep RunHelp(std::string_view control, const std::function<void()>& body) { return Trap(control, body); }
    // A menu of the menu bar was opened.
    void Opened(std::string_view menu);

    bool dBusy() const { return dBusy_; }
    const std::string& dHelpID() const { return dHelpID_; }
    void SetHelpID(std::string_view id) { dHelpID_ = id; }

    static std::string HelpIdOf(std::string_view control);

private:
    Failures& failures_;
    core::User& user_;
    bool dBusy_ = false;
    std::string dHelpID_{};
};

}  // namespace shell
