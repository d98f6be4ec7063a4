#pragma once

#include <string>
#include <vector>

#include "adddata/adddata.h"
#include "dialogs/showmb.h"
#include "shell/session.h"

namespace shell {

// The dialog that adds raw logs: files, format, what is left out. It proposes the format that fits best, tells of a
// file that does not fit before anything is read, and sums up at the end.
class AddScreen {
public:
    AddScreen(Session& session, const dialogs::Desk& desk) : session_(session), desk_(desk) {}

    // False: cancelled. The site's last choices are stored.
    bool Show(sitedb::Site& site, const std::vector<std::string>& files);

private:
    struct Places {
        int files = 0, format = 0, robots = 0, components = 0;
    };
    Places Fill(sitedb::Site& site, const std::vector<std::string>& files, dialogs::Controls& controls);
    std::string BestFormat(const std::vector<std::string>& files, std::string otherwise);
    std::string Problem(const dialogs::Controls& controls, const Places& at);
    std::string Misfit(const std::string& file, const std::string& format);
    adddata::AddRequest Entered(const sitedb::SitePaths& site, const dialogs::Controls& controls, const Places& at);
    void Add(sitedb::Site& site, const adddata::AddRequest& request);

    Session& session_;
    const dialogs::Desk& desk_;
};

// One path in each line; a picker's "|" list is taken apart unless a file of that very name exists.
std::vector<std::string> PathsOf(std::string_view text);
// What an add did, in a few lines.
std::string AddSummary(const adddata::AddOutcome& outcome);

}  // namespace shell
