#include "sitedb/site.h"

#include <array>

#include "core/env.h"
#include "core/errlog.h"
#include "core/error.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "sitedb/storeerror.h"

namespace sitedb {
namespace {

struct SectionFileRow {
    std::string_view section;
    std::string_view file;
    bool ofSite;
};
// The files behind "::*".
constexpr std::array kSectionFiles{
    SectionFileRow{"Main/AcD", "logfmts.ini", false},
    SectionFileRow{"Main", "LastVals.ini", true},
    SectionFileRow{"Groups", "STgroups.ini", true},
    SectionFileRow{"NonSERefrgrps", "NonSERefrgrps.ini", true},
    SectionFileRow{"SummaryLines", "SummaryLines.ini", true},
    SectionFileRow{"VisitedPages", "VisitedPages.ini", true},
    SectionFileRow{"VisitedDirs", "VisitedDirs.ini", true},
    SectionFileRow{"SiteAreas", "Siteareas.ini", true},
    SectionFileRow{"EnterLogFile", "screens.ini", false},
    SectionFileRow{"TmpVals", "screens.ini", false},
    SectionFileRow{"AnalOpsScreens", "screens.ini", false},
    SectionFileRow{"Browser For Help", "sitedbs.ini", false},
};

constexpr std::int32_t kDefaultLineLimit = 1000;

constexpr std::string_view kOtherCopy =
    "Another copy of this program is using the site's database. Close it and try again.";

std::string MissingText(const std::string& path) {
    return "The site's database is missing: " + path +
           "\rPut the file back from a copy, or create a new site. Nothing was changed.";
}

// A folder that may not be written to is read as it is.
bool CanWrite(const SitePaths& paths) {
    return core::IsWritable(paths.database) && core::IsWritable(core::fPathOf(paths.database));
}

}  // namespace

SitePaths Site_Paths(const std::string& folder) {
    SitePaths paths;
    paths.folder = folder;
    paths.database = folder + "/data/site1.mdb";
    paths.lock = folder + "/data/site1.ldb";
    paths.temp = folder + "/temp";
    const std::string param = folder + "/param/";
    paths.dbdef = param + "dbdef.ini";
    paths.lastVals = param + "LastVals.ini";
    paths.mainFilter = param + "LdLnFltr.ini";
    paths.componentFilter = param + "FltrFiles.ini";
    paths.targets = param + "targets.ini";
    paths.siteAreas = param + "Siteareas.ini";
    paths.errorLog = param + "errors.log";
    return paths;
}

void SetSectionFiles(core::IniStore& ini, const core::Paths& paths, const SitePaths& site) {
    for (const SectionFileRow& row : kSectionFiles)
        ini.SetSectionFile(row.section, (row.ofSite ? site.folder : paths.Home()) + "/param/" + std::string(row.file));
}

SiteOptions ReadSiteOptions(core::IniStore& ini, const SitePaths& site) {
    SiteOptions options;
    options.name = ini.IniGet("Main", "Parm", site.dbdef);
    options.LastKeepVal = ini.IniGetBool("Main", "LastKeepVal", site.dbdef);
    options.Skip404 = ini.IniGetBool("Main", "Skip404", site.dbdef);
    options.EraseNonSE = ini.IniGetBool("Main", "EraseNonSE", site.dbdef);
    options.RemQuery = ini.IniGetBool("Main", "RemQuery", site.dbdef);
    options.RemFrag = ini.IniGetBool("Main", "RemFrag", site.dbdef);
    options.LmtVisitLines =
        core::ToLong(ini.IniGetNum("Main", "LmtVisitLines", site.dbdef, core::Missing::Default, kDefaultLineLimit));
    options.domain = ini.IniGet("Main", "domain", site.dbdef);
    return options;
}

std::unique_ptr<Site> Site::Site_Open(core::Env& env, const std::string& folder, OpenFailure& failure) {
    std::unique_ptr<Site> site(new Site);
    site->paths_ = Site_Paths(folder);
    const SitePaths& paths = site->paths_;
    if (!HasDatabase(paths.database)) {
        failure = {MissingText(paths.database), false, true};
        return nullptr;
    }
    const core::FileLock::Outcome lock = site->lock_.Lock(paths.lock);
    if (lock.taken) {
        failure = {std::string(kOtherCopy), true, false};
        return nullptr;
    }
    if (const std::string wrong = RecoverCompaction(paths.database); !wrong.empty()) {
        failure.error = wrong;
        return nullptr;
    }
    site->readOnly_ = !CanWrite(paths);
    if (!lock.ok && !site->readOnly_) {
        failure.error = lock.error;
        return nullptr;
    }
    if (!site->readOnly_) core::RemoveStaleTemps(core::fPathOf(paths.dbdef));
    try {
        site->options_ = ReadSiteOptions(env.ini, paths);
        site->plans_ = ReadTablePlans(env.ini, kSite1, folder);
        site->db_ = BLDTBL_OpenDB(paths.database, site->readOnly_);
        if (!site->readOnly_) BLDTBL_CheckAllAndAddTbls(env, site->db_, site->plans_);
        site->pages_.Load(site->db_);
    } catch (const core::Stopped&) {
        throw;  // the user's wish, not a failure of the site
    } catch (const StoreError& error) {
        failure = {error.what(), error.Busy(), false};
        return nullptr;
    } catch (const core::ErrorNumber& error) {
        failure.error = error.what();
        return nullptr;
    }
    env.events.SetPath(paths.errorLog);
    return site;
}

std::int64_t Site::WaitingLines() { return db_.Scalar("SELECT count(*) FROM logline WHERE VisitID IS NULL"); }

std::string Site::UnfinishedAdd(core::Env& env) {
    std::string mark = env.ini.IniGet("Main", "AddedLogLns_MustDoVisitsAdd", paths_.lastVals);
    if (mark.empty() && db_.Scalar("SELECT EXISTS (SELECT 1 FROM logline WHERE VisitID IS NULL)") != 0)
        mark = "unknown date";
    return mark;
}

SiteFacts ReadSiteFacts(Site& site) {
    Database& db = site.Db();
    SiteFacts facts;
    facts.lines = db.Scalar("SELECT count(*) FROM logline");
    facts.visits = db.Scalar("SELECT count(*) FROM visit");
    facts.pages = db.Scalar("SELECT count(*) FROM page");
    facts.firstStamp = db.Scalar("SELECT ifnull(min(StartTimeStamp), 0) FROM visit");
    facts.lastStamp = db.Scalar("SELECT ifnull(max(EndTimeStamp), 0) FROM visit");
    return facts;
}

}  // namespace sitedb
