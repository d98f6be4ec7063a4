#pragma once

#include <memory>
#include <string>
#include <vector>

#include "adddata/adddata.h"
#include "adddata/checks.h"
#include "adddata/enginesummary.h"
#include "dialogs/showmb.h"
#include "logdefs/editing.h"

namespace core {
class Paths;
}

namespace adddata {

// The boxes of the read options; they hold until they are changed or the program ends.
struct ReadOptions {
    bool NoPromptInvalid = false;
    bool NoPromptOverlap = false;
    bool Keep404List = false;
};

// What a check found last, and in which file; shown again until the next read.
template <typename Check>
struct LastCheck {
    std::string file{};  // specification that was read
    std::unique_ptr<Check> found{};
};

// The last add of this run of the program, for its lists.
struct LastAdd {
    bool any = false;
    EngineCounts engines{};
    std::vector<logread::ProblemList::File> problems{};
};

// What screens remember for as long as the program runs.
struct ReadMemory {
    std::string site{};  // its folder
    ReadOptions options{};
    LastAdd lastAdd{};
    LastCheck<ReferrerCheck> referrers{};
    LastCheck<PageCheck> pages{};
    LastCheck<RobotCheck> robots{};

    // What was found in one site says nothing of another; the boxes stay.
    void BelongTo(const std::string& siteFolder);
};

// What the screens of this folder work with; references, and copies of what is short.
struct AddDesk {
    core::Env& env;
    const dialogs::Desk& desk;
    sitedb::Site& site;
    const core::Paths& paths;
    ReadMemory& memory;
    ProgramFiles program{};

    logdefs::Editing Editing() const;
};

}  // namespace adddata
