#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sitedb/sqlite.h"

namespace core {
struct Env;
class IniStore;
}  // namespace core

// Makes a database match the list of its tables, and keeps it compact.
namespace sitedb {

inline constexpr std::string_view kSite1 = "Site1";
inline constexpr int kApplicationId = 0x436f7276;  // "Corv" in the file's header
inline constexpr int kSchemaVersion = 1;

// One table of dbdef.ini.
struct TablePlan {
    std::string name{};
    std::string definition{};  // native path of the .def file, or "SQL"
    std::string sql{};         // the query's text when definition is "SQL"
};
// The native path of a data set's file: the part of `DB definitions` behind the ";", in the site's folder.
std::string BLDTBL_DBPath(core::IniStore& ini, std::string_view dataSet, const std::string& siteFolder);
std::vector<TablePlan> ReadTablePlans(core::IniStore& ini, std::string_view dataSet, const std::string& siteFolder);

// Builds what is missing, tables and indexes; true when a table was added. The database must be writable.
bool BLDTBL_CheckAllAndAddTbls(core::Env& env, Database& db, const std::vector<TablePlan>& plans);
void BLDTDEFS_AddTable(Database& db, const std::string& table, const std::string& defPath);

// Indexes of a table that the plans name, so that a big load can go without them.
void DropIndexes(Database& db, const std::vector<TablePlan>& plans, std::string_view table);
void MakeIndexes(Database& db, const std::vector<TablePlan>& plans, std::string_view table);

// A new, empty database file; the only place that creates one.
void CreateDatabaseFile(const std::string& path);

// The database file or a compacted copy that lost its name stands there.
bool HasDatabase(const std::string& path);
// Takes back a lone sound compacted copy, removes a stale one. A text for the user when something is wrong.
// Only for whoever holds the lock: another program may be writing that copy right now.
std::string RecoverCompaction(const std::string& path);

// Opens for work (see WorkMode) or read-only, tests that it is a site database.
Database BLDTBL_OpenDB(const std::string& path, bool readOnly);

// Replaces the file by a compacted copy; true when it was replaced. There is never a moment without a whole
// database under its name. On failure the old file stands, open.
bool BLDTBL_CompactDB(Database& db, core::Progress* progress = nullptr);

// The first step of a query that sorts many rows: in portions that take a tenth of a second, so that it beats between.
bool FirstSorted(Database& db, Statement& query);

// While a job writes: exclusive, write-ahead log, full flushes. Back to one ordinary file at the end.
class WorkMode {
public:
    explicit WorkMode(Database& db);
    ~WorkMode();
    WorkMode(const WorkMode&) = delete;
    WorkMode& operator=(const WorkMode&) = delete;
    void End();  // throws what the destructor would swallow

private:
    Database& db_;
    bool on_ = true;
};

}  // namespace sitedb
