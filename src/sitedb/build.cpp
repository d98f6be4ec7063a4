#include "sitedb/build.h"

#include <algorithm>
#include <set>

#include "core/cds.h"
#include "core/env.h"
#include "core/errnums.h"
#include "core/error.h"
#include "core/files.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/report.h"
#include "sitedb/storeerror.h"
#include "sitedb/tabledef.h"

namespace sitedb {
namespace {

using core::ErrorNumber;

constexpr std::string_view kSqlWord = "SQL";
constexpr std::size_t kMaxTableName = 40;

// "C:\..." never stands here: names in dbdef.ini are relative to the site's folder, with backslashes.
std::string InFolder(const std::string& folder, std::string_view relative) {
    return folder + "/" + core::fReplace(relative, "\\", "/");
}

std::string DbDef(const std::string& siteFolder) { return siteFolder + "/param/dbdef.ini"; }

struct DbItem {
    std::string section{};
    std::string file{};
};
DbItem FirstDbItem(core::IniStore& ini, std::string_view dataSet, const std::string& siteFolder) {
    const std::string item = core::CDSItem(1, ini.IniGet(dataSet, "DB definitions", DbDef(siteFolder)));
    return {std::string(core::fBefore(item, ";")), std::string(core::fAfter(item, ";"))};
}

bool NameAllowed(std::string_view name) {
    return std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
}

std::set<std::string, std::less<>> ListTables(Database& db, std::string_view type) {
    std::set<std::string, std::less<>> names;
    Statement query = db.Prepare("SELECT lower(name) FROM sqlite_schema WHERE type=? OR (type='view' AND ?1='table')");
    query.Bind(1, type);
    while (query.Step()) names.emplace(query.Text(0));
    return names;
}

void AddQuery(Database& db, const TablePlan& plan) {
    if (!NameAllowed(plan.name)) throw ErrorNumber(core::errnum::kTableName, "BLDTBL_CheckAllAndAddTbls: " + plan.name);
    db.Exec("CREATE VIEW \"" + plan.name + "\" AS " + plan.sql);
}

// A sort takes portions as large as the cache, and nothing beats within one.
class SmallPortions {
public:
    explicit SmallPortions(Database& db) : db_(db), before_(db.Scalar("PRAGMA cache_size")) {
        db_.Exec("PRAGMA cache_size=-8192");
    }
    ~SmallPortions() {
        try {
            db_.Exec("PRAGMA cache_size=" + std::to_string(before_));
        } catch (const StoreError&) {  // slower, nothing else
        }
    }
    SmallPortions(const SmallPortions&) = delete;
    SmallPortions& operator=(const SmallPortions&) = delete;

private:
    Database& db_;
    std::int64_t before_;
};

}  // namespace

std::string BLDTBL_DBPath(core::IniStore& ini, std::string_view dataSet, const std::string& siteFolder) {
    const DbItem item = FirstDbItem(ini, dataSet, siteFolder);
    return item.file.empty() ? std::string() : InFolder(siteFolder, item.file);
}

std::vector<TablePlan> ReadTablePlans(core::IniStore& ini, std::string_view dataSet, const std::string& siteFolder) {
    const std::string file = DbDef(siteFolder);
    std::vector<TablePlan> plans;
    const std::string section = FirstDbItem(ini, dataSet, siteFolder).section;
    const core::StrArray keys = core::CDSSplitPlain(ini.IniGet(section, "Tables", file));
    for (const std::string& key : keys.Items()) {
        if (key.empty()) continue;
        TablePlan plan{ini.IniGet(key, "Name", file), ini.IniGet(key, "Definitions", file), {}};
        if (plan.definition == kSqlWord) {
            plan.sql = ini.IniGet(key, kSqlWord, file);
        } else {
            plan.definition = InFolder(siteFolder, "param\\def\\" + plan.definition);
        }
        plans.push_back(std::move(plan));
    }
    return plans;
}

bool BLDTBL_CheckAllAndAddTbls(core::Env& env, Database& db, const std::vector<TablePlan>& plans) {
    const auto there = ListTables(db, "table");
    std::vector<const TablePlan*> missing;
    for (const TablePlan& plan : plans)
        if (!there.contains(core::LowerAscii(plan.name))) missing.push_back(&plan);
    if (!missing.empty()) {
        dialogs::Report report(env.progress, "Building tables.", "tables", static_cast<double>(plans.size()));
        double count = 0;
        for (const TablePlan* plan : missing) {
            report.Step(++count, "Table name: " + plan->name);
            if (plan->definition == kSqlWord) {
                AddQuery(db, *plan);
            } else {
                BLDTDEFS_AddTable(db, plan->name, plan->definition);
            }
        }
    }
    for (const TablePlan& plan : plans)
        if (plan.definition != kSqlWord) MakeIndexes(db, plans, plan.name);
    db.Exec("CREATE TABLE IF NOT EXISTS referrerwait (LogLnID INTEGER PRIMARY KEY, Referrer TEXT)");
    return !missing.empty();
}

void BLDTDEFS_AddTable(Database& db, const std::string& table, const std::string& defPath) {
    if (table.empty() || table.size() > kMaxTableName)
        throw ErrorNumber(core::errnum::kTableNameLength, "BLDTDEFS_AddTable: " + table);
    if (!NameAllowed(table)) throw ErrorNumber(core::errnum::kTableName, "BLDTDEFS_AddTable: " + table);
    const TableDef def = ReadTableDef(defPath);
    if (!def.fields.empty()) db.Exec(CreateTableSql(table, def));
}

void DropIndexes(Database& db, const std::vector<TablePlan>& plans, std::string_view table) {
    for (const TablePlan& plan : plans) {
        if (plan.name != table) continue;
        for (const IndexSql& index : CreateIndexSql(table, ReadTableDef(plan.definition)))
            db.Exec("DROP INDEX IF EXISTS \"" + index.name + "\"");
    }
}

void MakeIndexes(Database& db, const std::vector<TablePlan>& plans, std::string_view table) {
    const auto there = ListTables(db, "index");
    const SmallPortions small(db);
    for (const TablePlan& plan : plans) {
        if (plan.name != table) continue;
        for (const IndexSql& index : CreateIndexSql(table, ReadTableDef(plan.definition)))
            if (!there.contains(core::LowerAscii(index.name))) db.Exec(index.create);
    }
}

void CreateDatabaseFile(const std::string& path) {
    Database db(path, {.create = true});
    db.Exec("PRAGMA application_id=" + std::to_string(kApplicationId) +
            "; PRAGMA user_version=" + std::to_string(kSchemaVersion));
    db.Close();
}

Database BLDTBL_OpenDB(const std::string& path, bool readOnly) {
    Database db(path, {.readOnly = readOnly});
    const bool ours = db.Scalar("PRAGMA application_id") == kApplicationId;
    if (!ours) throw ErrorNumber(core::errnum::kStore, "Not a database of this program, left as it is: " + path);
    if (db.Scalar("PRAGMA user_version") != kSchemaVersion)
        throw ErrorNumber(core::errnum::kStore, "The database was made by a newer version of this program: " + path);
    return db;
}

bool FirstSorted(Database& db, Statement& query) {
    const SmallPortions small(db);
    return query.Step();
}

WorkMode::WorkMode(Database& db) : db_(db) {
    db_.Exec(
        "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; "
        "PRAGMA cache_size=-49152; PRAGMA wal_autocheckpoint=8192; PRAGMA journal_size_limit=0; PRAGMA "
        "temp_store=FILE");
}

void WorkMode::End() {
    if (!on_) return;
    on_ = false;
    db_.Exec(
        "PRAGMA journal_mode=DELETE; PRAGMA locking_mode=NORMAL; PRAGMA cache_size=-8192; SELECT count(*) FROM "
        "sqlite_schema");
}

WorkMode::~WorkMode() {
    try {
        End();
    } catch (const StoreError&) {
        // On the way out of another failure; the write-ahead log stays beside the file and is read at the next opening.
    }
}

}  // namespace sitedb
