#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "adddata/adddata.h"
#include "core/clock.h"
#include "core/env.h"
#include "core/errlog.h"
#include "core/files.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "core/ports.h"
#include "sitedb/site.h"
#include "sitedb/sites.h"

// The program without a screen: what main makes first and drops last.
namespace shell {

struct Places {
    std::string home{};    // data home
    std::string shared{};  // delivered files
};
// --home, else $CORVANE_HOME, else $XDG_DATA_HOME/corvane, else ~/.local/share/corvane. "" when there is none.
std::string DataHome(std::string_view option);
// The first that exists: beside the program (../share/corvane), where it was installed, where it was built.
std::string SharedFolder(std::string_view installed, std::string_view source);

class Session {
public:
    Session(const Places& places, core::User& user, core::Progress& progress);

    // Makes the data home and copies what is delivered for all sites, never over an existing file.
    core::Result Prepare();

    core::Env& Env() { return env_; }
    const core::Paths& Paths() const { return paths_; }
    sitedb::Sites& Sites() { return sites_; }
    const sitedb::Sites& Sites() const { return sites_; }
    adddata::ProgramFiles ProgramFiles() const;
    std::string ScreensFile() const;  // named dialogs, places of windows

    // Opens the named site, or the current one for "". Nothing but an explanation when it cannot.
    struct Opened {
        std::unique_ptr<sitedb::Site> site{};
        sitedb::OpenFailure failure{};
    };
    Opened Open(std::string_view name);

private:
    core::Paths paths_;
    core::SystemClock clock_{};
    core::IniStore ini_;
    core::EventLog events_;
    core::Env env_;
    sitedb::Sites sites_;
};

}  // namespace shell
