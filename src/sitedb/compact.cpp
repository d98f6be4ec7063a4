#include "core/files.h"
#include "sitedb/build.h"
#include "sitedb/storeerror.h"

namespace sitedb {
namespace {

constexpr const char* kTables[] = {"logline", "page", "visit", "visitpages"};

std::string TempOf(const std::string& path) { return path + ".temp"; }

void RemoveCopy(const std::string& temp) {
    for (const char* tail : {"", "-journal", "-wal"})
        if (core::Exists(temp + tail)) core::FileDelete(temp + tail);
}

bool HasTable(Database& db, const char* table) {
    Statement query = db.Prepare("SELECT 1 FROM sqlite_schema WHERE type='table' AND name=?");
    query.Bind(1, std::string_view(table));
    return query.Step();
}

// A copy is sound when it is a site database with the tables and as many rows as the one it was made of.
bool SameRows(Database& original, Database& copy) {
    for (const char* table : kTables) {
        if (HasTable(original, table) != HasTable(copy, table)) return false;
        if (!HasTable(original, table)) continue;
        const std::string count = std::string("SELECT count(*) FROM ") + table;
        if (original.Scalar(count) != copy.Scalar(count)) return false;
    }
    return true;
}

bool WriteCopy(Database& db, const std::string& temp) {
    try {
        Statement vacuum = db.Prepare("VACUUM INTO ?");
        vacuum.Bind(1, std::string_view(temp));
        vacuum.Run();
        Database copy = BLDTBL_OpenDB(temp, true);
        return SameRows(db, copy) && core::SyncFile(temp).ok;
    } catch (const core::ErrorNumber&) {
        return false;  // failed or stopped: the old database stands, only bigger than it need be
    }
}

}  // namespace

bool BLDTBL_CompactDB(Database& db, core::Progress* progress) {
    const std::string path = db.Path();
    const std::string temp = TempOf(path);
    RemoveCopy(temp);
    if (core::Exists(temp)) return false;
    const auto run = [progress](const std::function<void()>& work, const std::function<void()>& stop = {}) {
        if (progress != nullptr)
            RunAlive(*progress, work, stop);
        else
            work();
    };
    bool written = false, renamed = false;
    run([&] { written = WriteCopy(db, temp); }, [&db] { db.Interrupt(); });
    if (!written) {
        RemoveCopy(temp);
        return false;
    }
    db.Close();
    run([&] { renamed = core::FileRename(temp, path).ok && core::SyncFolder(core::fPathOf(path)).ok; });
    if (!renamed) RemoveCopy(temp);
    db = BLDTBL_OpenDB(path, false);
    return renamed;
}

bool HasDatabase(const std::string& path) { return core::Exists(path) || core::Exists(TempOf(path)); }

std::string RecoverCompaction(const std::string& path) {
    const std::string temp = TempOf(path);
    if (!core::Exists(temp)) return {};
    if (core::Exists(path)) {
        RemoveCopy(temp);
        return {};
    }
    try {
        Database copy = BLDTBL_OpenDB(temp, true);
        Statement check = copy.Prepare("PRAGMA quick_check(1)");
        if (!check.Step() || check.Text(0) != "ok") return "The compacted copy is damaged: " + temp;
    } catch (const core::ErrorNumber& error) {
        return error.what();
    }
    const core::Result renamed = core::FileRename(temp, path);
    return renamed.ok ? std::string() : renamed.error;
}

}  // namespace sitedb
