#include "shell/shell.h"

#include <utility>

namespace shell {

Shell::Shell(const Places& places, const Outside& outside, std::string version)
    : user_(Desk()),
      progress_(outside.progress, user_, clock_),
      session_(places, user_, progress_),
      desk_{.ini = session_.Env().ini, .host = outside.dialogs, .screens = session_.ScreensFile()},
      failures_(session_.Env().events, outside.box, progress_),
      actions_(failures_, user_),
      current_(session_, outside.front),
      screens_(session_, desk_, current_),
      startup_(session_, desk_, outside.front, actions_, current_, screens_),
      work_{session_, desk_,    outside.front, progress_, actions_,
            current_, screens_, startup_,      memory_,   std::move(version)},
      commands_(work_),
      front_(outside.front) {
    session_.Env().events.SetProgram(places.shared, "corvane", desk_.product + " " + work_.version);
}

bool Shell::MDIForm_Load(const std::vector<std::string>& arguments) {
    bool usable = false;
    actions_.Trap(
        "MDIForm_Load", [&] { usable = startup_.MDIForm_Load(arguments); }, FailedForm::MainLoad);
    if (!usable) return false;
    commands_.ApplyOptions();
    lookForUnfinished_ = true;
    return true;
}

void Shell::MDIForm_Activate() {
    if (!lookForUnfinished_ || actions_.dBusy()) return;
    lookForUnfinished_ = false;
    if (startup_.MadeFirstSite())
        commands_.OfferAdd(current_.Name());
    else
        commands_.CompleteUnfinished();
}

void Shell::MDIForm_Unload() noexcept {
    try {
        current_.Close();
    } catch (...) {  // nothing is left to be saved
    }
}

void Shell::MenuOpened(std::string_view control) {
    if (!control.ends_with('H')) actions_.Opened(control);
}

bool Shell::Trap(std::string_view event, const std::function<void()>& body, FailedForm form) {
    if (actions_.Trap(event, body, form) != NextStep::EndProgram) return true;
    front_.Quit();
    return false;
}

}  // namespace shell
