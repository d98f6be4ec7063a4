#pragma once

#include <optional>
#include <string>
#include <vector>

#include "logdefs/engines.h"
#include "logdefs/filter.h"
#include "logread/readfiles.h"
#include "sitedb/site.h"
#include "visits/visitsadd.h"

namespace core {
struct Env;
}

// The whole add: read the files, build visits, compact.
namespace adddata {

// Parameter files that all sites share.
struct ProgramFiles {
    std::string formats{};    // logfmts.ini
    std::string delivered{};  // lastinstvals.ini
    std::string robots{};     // fltrbots.ini
    logdefs::EngineFiles Engines() const { return {formats, delivered}; }
};

logdefs::FilterFiles FilterFilesOf(const ProgramFiles& program, const sitedb::SitePaths& site);

// What holds for one call; what is not set comes from the site's stored options.
struct AddRequest {
    std::vector<logdefs::LogFileSpec> files{};
    std::string format{};  // "" : the site's default format
    std::optional<logdefs::MainFilter> mainFilter{};
    std::optional<bool> skipRobots{};
    std::optional<bool> skipComponents{};
    bool NoPromptInvalid = false;
    bool NoPromptOverlap = false;
    bool Keep404List = false;
    std::optional<double> preprocessSeconds{};  // what a search for robots before this add took
};

struct AddOutcome {
    std::vector<std::string> warnings{};  // told before the read
    std::string format{};                 // default format of the call
    logread::ReadOutcome read{};
    std::optional<double> preprocessSeconds{};  // as requested
    bool visitsWanted = true;                   // false: left for later, by the user or a failure; the mark stands
    visits::VisitsOutcome visits{};
    std::string recordError{};  // why the records of the add are not whole; told, and no failure of the add
    // 0 done, 1 something failed or was refused, 3 stopped by the user.
    int Status() const;
};
AddOutcome AddLogData(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request);

// Asks whether to complete an add that did not finish, and does it; nothing when there is none or the user says no.
std::optional<visits::VisitsOutcome> VisitsAdd_Resume(core::Env& env, sitedb::Site& site, const ProgramFiles& program);
// Builds what an add left unfinished. Asks nothing.
visits::VisitsOutcome ResumeAdd(core::Env& env, sitedb::Site& site, const ProgramFiles& program);

}  // namespace adddata
