#include "cli/program.h"

#include "cli/output.h"
#include "cli/suggest.h"
#include "core/errlog.h"
#include "sitedb/sitefolder.h"

namespace cli {
namespace {

constexpr std::string_view kNoSite = "There is no site yet. Make one with: corvane-cli site create NAME";
constexpr std::string_view kMarkKey = "AddedLogLns_MustDoVisitsAdd";

void TellUnfinished(const std::string& mark) {
    if (!mark.empty())
        PrintError("The last add to this site (" + mark + ") did not finish. Complete it with: corvane-cli resume");
}

}  // namespace

shell::Session& Program::Session() {
    if (session_) return *session_;
    const std::string folder = shell::DataHome(home);
    if (folder.empty()) throw Failure("There is no data home: set HOME, or name a folder with --home DIR.");
    session_ = std::make_unique<shell::Session>(
        shell::Places{folder, shell::SharedFolder(CORVANE_SHARE, CORVANE_SOURCE_SHARE)}, user_, progress_);
    if (const core::Result prepared = session_->Prepare(); !prepared) throw Failure(prepared.error);
    return *session_;
}

std::string Program::SiteFolder() {
    sitedb::Sites& sites = Session().Sites();
    const std::string folder = site.empty() ? sites.CurrentFolder() : sites.Folder(site);
    if (!folder.empty()) return folder;
    const std::vector<std::string> names = sites.Names();
    if (names.empty()) throw Failure(std::string(kNoSite));
    if (site.empty())
        throw Failure("No site is chosen. Choose one with: corvane-cli site select NAME. " + ValidAre("", names));
    throw UsageError("There is no site of that name: " + site + ". " + ValidAre(site, names));
}

std::unique_ptr<sitedb::Site> Program::OpenSite() {
    SiteFolder();
    shell::Session::Opened opened = Session().Open(site);
    if (!opened.site) throw Failure(opened.failure.error);
    TellUnfinished(opened.site->UnfinishedAdd(Env()));
    return std::move(opened.site);
}

sitedb::SitePaths Program::SiteFiles() {
    const std::string folder = SiteFolder();
    sitedb::SitePaths paths = sitedb::Site_Paths(folder);
    if (const core::Result usable = sitedb::CheckSiteFolder(folder, Session().Paths()); !usable)
        throw Failure(usable.error);
    sitedb::SetSectionFiles(Ini(), Session().Paths(), paths);
    core::FileLock lock;
    if (!lock.Lock(paths.lock).taken) TellUnfinished(Ini().IniGet("Main", kMarkKey, paths.lastVals));
    return paths;
}

sitedb::SitePaths Program::LockSite(core::FileLock& lock) {
    sitedb::SitePaths paths = SiteFiles();
    const core::FileLock::Outcome outcome = lock.Lock(paths.lock);
    if (outcome.ok) return paths;
    throw Failure(outcome.taken ? "Another copy of this program is using the site's database. Close it and try again."
                                : outcome.error);
}

std::string Program::LogFailure(int number, std::string_view what) {
    if (!session_) return std::string(what);
    return session_->Env().events.LogEvent(number, "corvane-cli", what).message;
}

}  // namespace cli
