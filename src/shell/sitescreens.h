#pragma once

#include <string>

#include "dialogs/named.h"
#include "dialogs/showmb.h"
#include "shell/currentsite.h"

// The screens on sites: the first one, the list, a new one.
namespace shell {

class SiteScreens {
public:
    SiteScreens(Session& session, const dialogs::Desk& desk, CurrentSite& current)
        : session_(session), desk_(desk), current_(current) {}

    // Asks for the first site's name until there is one; false: the person leaves, and nothing was made.
    bool FirstSite();
    // The list of sites; true when another one was opened.
    bool SelectSite();
    // The dialog NewDB; the name of the site that was made and opened, "" when there is none.
    std::string NewSite();
    // Another site for a person whose own cannot be opened; made at the first need.
    core::Result RecoverSite();

private:
    enum class Step { Again, Changed, End };
    Step Pressed(int button, dialogs::DialogModel& model);
    Step Choose(const std::string& name);
    void Remove(const std::string& name, dialogs::DialogModel& model);
    void FillList(dialogs::DialogModel& model) const;
    sitedb::SiteOptions EnteredOptions(const std::string& name, dialogs::NamedDialog& dialog);

    Session& session_;
    const dialogs::Desk& desk_;
    CurrentSite& current_;
};

// All five options on: what the program itself makes.
sitedb::SiteOptions AllOptionsOn(std::string name);

}  // namespace shell
