#pragma once

#include <string>
#include <vector>

#include "shell/actions.h"
#include "shell/sitescreens.h"

namespace shell {

// What happens before the first command: there is a usable site at the end, or the program ends.
class Startup {
public:
    Startup(Session& session, const dialogs::Desk& desk, Front& front, Actions& actions, CurrentSite& current,
            SiteScreens& screens)
        : session_(session), desk_(desk), front_(front), actions_(actions), current_(current), screens_(screens) {}

    // False: the program ends now, and unless somebody was asked for the first site no main window was shown.
    bool MDIForm_Load(const std::vector<std::string>& arguments);
    // Tests the database; a person may select or make another one until it can be read. False: leave.
    bool CheckAndRecover();
    // The first site was made in this start.
    bool MadeFirstSite() const { return madeFirst_; }

private:
    enum class Way { Retry, Select, Create, Exit };

    bool PrepareHome();
    bool FirstRun();
    void EndFirstRun();
    Way AskRecovery(const std::string& why);
    Way AskTaken(const std::string& why);
    void CreateForRecovery();

    Session& session_;
    const dialogs::Desk& desk_;
    Front& front_;
    Actions& actions_;
    CurrentSite& current_;
    SiteScreens& screens_;
    bool madeFirst_ = false;
};

}  // namespace shell
