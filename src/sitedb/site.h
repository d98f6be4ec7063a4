#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"
#include "names/pagename.h"
#include "sitedb/build.h"
#include "sitedb/pagelist.h"
#include "sitedb/sqlite.h"

namespace core {
struct Env;
class IniStore;
class Paths;
}  // namespace core

// One analysed site: a folder with its database and parameter files.
namespace sitedb {

// Native paths of a site's files.
struct SitePaths {
    std::string folder{};
    std::string database{};         // data/site1.mdb
    std::string lock{};             // data/site1.ldb
    std::string temp{};             // temp
    std::string dbdef{};            // param/dbdef.ini
    std::string lastVals{};         // param/LastVals.ini
    std::string mainFilter{};       // param/LdLnFltr.ini
    std::string componentFilter{};  // param/FltrFiles.ini
    std::string targets{};          // param/targets.ini
    std::string siteAreas{};        // param/Siteareas.ini
    std::string errorLog{};         // param/errors.log
};
SitePaths Site_Paths(const std::string& folder);
// Tells the parameter store which files stand behind "::*" while this site is current.
void SetSectionFiles(core::IniStore& ini, const core::Paths& paths, const SitePaths& site);

// The options that a site is made with, and what else stands beside them in dbdef.ini.
struct SiteOptions {
    std::string name{};       // Parm
    bool LastKeepVal = true;  // store extra data; cannot change later
    bool Skip404 = true;
    bool EraseNonSE = false;
    bool RemQuery = false;
    bool RemFrag = false;
    std::int32_t LmtVisitLines = 1000;  // below 1: no limit
    std::string domain{};
    names::StripParts Strip() const { return {RemFrag, RemQuery}; }
};
SiteOptions ReadSiteOptions(core::IniStore& ini, const SitePaths& site);

// Why a site could not be opened; the text says what to do.
struct OpenFailure {
    std::string error{};
    bool taken = false;    // another program has it
    bool missing = false;  // the database file is not there
};

// An opened site: lock, database and page list. One at a time in a program.
class Site {
public:
    // Takes back a compacted copy that lost its name, builds missing tables, loads the page list.
    static std::unique_ptr<Site> Site_Open(core::Env& env, const std::string& folder, OpenFailure& failure);

    const SitePaths& Paths() const { return paths_; }
    const SiteOptions& Options() const { return options_; }
    Database& Db() { return db_; }
    PageList& Pages() { return pages_; }
    const std::vector<TablePlan>& Plans() const { return plans_; }
    bool ReadOnly() const { return readOnly_; }

    // Lines that wait for their visits; more than 0 after an add that did not finish.
    std::int64_t WaitingLines();
    // The unfinished add's date and time as stored, "" when there is none. Waiting lines without a mark count too.
    std::string UnfinishedAdd(core::Env& env);

private:
    Site() = default;

    core::FileLock lock_{};
    SitePaths paths_{};
    SiteOptions options_{};
    std::vector<TablePlan> plans_{};
    Database db_{};
    PageList pages_{};
    bool readOnly_ = false;
};

// What a person wants to know of a site's data.
struct SiteFacts {
    std::int64_t lines = 0, visits = 0, pages = 0;
    std::int64_t firstStamp = 0, lastStamp = 0;  // yyyymmddhhnnss of the first and last visit's times, 0 without data
};
SiteFacts ReadSiteFacts(Site& site);

}  // namespace sitedb
