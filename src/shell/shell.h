#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/clock.h"
#include "dialogs/dialoguser.h"
#include "dialogs/progress.h"
#include "shell/commands.h"

namespace shell {

// The program without its window: main makes one, hands it whoever shows dialogs, progress and the window, and calls
// it for each event. All that it was given must outlive it.
class Shell {
public:
    struct Outside {
        Front& front;
        dialogs::DialogHost& dialogs;
        dialogs::ProgressView& progress;
        PlainBox& box;
    };
    Shell(const Places& places, const Outside& outside, std::string version);
    ~Shell() { MDIForm_Unload(); }
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    // Everything up to the shown window. False: the program ends now.
    bool MDIForm_Load(const std::vector<std::string>& arguments);
    // The window became active; the first time unfinished work is looked for.
    void MDIForm_Activate();
    // Closes the site, whatever happens.
    void MDIForm_Unload() noexcept;

    void Run(std::string_view control) { commands_.Run(control); }
    void MenuOpened(std::string_view control);
    void AddFiles(const std::vector<std::string>& paths) { commands_.AddFiles(paths); }
    void ShowHelpOn(std::string_view id) { commands_.ShowHelpOn(id); }  // F1 in a dialog
    // Any other event of the window, under the one trap. False: the program ends.
    bool Trap(std::string_view event, const std::function<void()>& body, FailedForm form = FailedForm::Main);

    bool dBusy() const { return actions_.dBusy(); }
    const std::string& dHelpID() const { return actions_.dHelpID(); }
    sitedb::Site* OpenSite() { return current_.Get(); }
    Session& TheSession() { return session_; }
    const dialogs::Desk& Desk() const { return desk_; }
    dialogs::ProgressReports& Progress() { return progress_; }
    Failures& TheFailures() { return failures_; }

private:
    core::SystemClock clock_{};
    dialogs::DialogUser user_;  // uses the desk, which stands below
    dialogs::ProgressReports progress_;
    Session session_;
    dialogs::Desk desk_;
    Failures failures_;
    Actions actions_;
    CurrentSite current_;
    SiteScreens screens_;
    Startup startup_;
    adddata::ReadMemory memory_{};
    Workplace work_;
    Commands commands_;
    Front& front_;
    bool lookForUnfinished_ = false;
};

}  // namespace shell
