#include "adddata/adddesk.h"

#include "adddata/loglist.h"
#include "core/env.h"
#include "core/inistore.h"

namespace adddata {

void ReadMemory::BelongTo(const std::string& siteFolder) {
    if (site == siteFolder) return;
    *this = ReadMemory{.site = siteFolder, .options = options};
}

// Definitions are tried on the log that was chosen last.
logdefs::Editing AddDesk::Editing() const {
    const LogSpecs chosen = ReadLogChoice(*this);
    logdefs::TrialLog trial;
    if (!chosen.empty()) trial = {LogToLookAt(chosen.front().file), chosen.front().format};
    if (trial.format.empty()) trial.format = env.ini.IniGet("Main", "LFmtDflt", site.Paths().lastVals);
    return {.desk = desk,
            .progress = env.progress,
            .clock = env.clock,
            .formats = program.formats,
            .engines = program.Engines(),
            .filters = FilterFilesOf(program, site.Paths()),
            .siteName = site.Options().name,
            .trial = trial};
}

}  // namespace adddata
