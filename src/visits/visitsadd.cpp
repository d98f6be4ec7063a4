#include "visits/visitsadd.h"

#include <algorithm>
#include <optional>

#include "core/env.h"
#include "core/error.h"
#include "core/files.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "core/text.h"
#include "dialogs/report.h"
#include "logdefs/memo.h"
#include "sitedb/build.h"
#include "sitedb/visitrows.h"
#include "visits/builder.h"

namespace visits {
namespace {

constexpr std::int64_t kLinesPerLook = 512;
constexpr double kProgressEvery = 0.1;
constexpr std::int64_t kManyLines = 50000;  // from here on the index of visits is made anew rather than kept
constexpr char kEngineEnd = '\n';           // between engine and term

// The term behind a stored referrer, as "engine\nterm"; "engine\n" of an assistant, nothing of what else has no term.
// Referrers repeat, so what was worked out is remembered.
class TermReader {
public:
    TermReader(sitedb::Site& site, const logdefs::SearchEngines& engines) : site_(site), engines_(engines) {}

    std::optional<std::string> Read(std::string_view stored) {
        if (const auto* known = seen_.Find(stored)) return *known;
        const logdefs::FoundTerm found = engines_.STFromReferrer(Referrer(stored));
        std::optional<std::string> result;
        if (!found.term.empty() || found.assistant) result = found.engine + kEngineEnd + found.term;
        return seen_.Put(stored, std::move(result));
    }

private:
    // Without extra data an internal referrer is stored short: "::::", or "::" and the number of a page.
    std::string Referrer(std::string_view stored) const {
        if (site_.Options().LastKeepVal || !stored.starts_with("::")) return std::string(stored);
        if (stored == "::::") return {};
        const double page = core::fNum(stored.substr(2));
        return site_.Options().domain + "/" + std::string(site_.Pages().Page_Name(core::ToLong(page)));
    }

    sitedb::Site& site_;
    const logdefs::SearchEngines& engines_;
    logdefs::BoundedMemo<std::optional<std::string>> seen_{};
};

std::string WaitingSql(bool keep) {
    const std::string referrer = keep ? "ifnull(w.Referrer, l.Referrer)" : "w.Referrer";
    return "SELECT l.LogLnID, l.IP, l.Timestamp, l.PageID, l.Bytes, l.CntDupes, refterm(" + referrer +
           ") FROM logline l LEFT JOIN referrerwait w ON w.LogLnID=l.LogLnID WHERE l.VisitID IS NULL "
           "ORDER BY l.IP || l.LogLnID, l.LogLnID";
}

class Step2 {
public:
    Step2(core::Env& env, sitedb::Site& site, const logdefs::SearchEngines& engines, VisitsOutcome& outcome)
        : env_(env), site_(site), db_(site.Db()), outcome_(outcome), terms_(site, engines) {}

    // Everything within the caller's transaction.
    void Run();
    std::int32_t LastVisitID() const { return lastVisitId_; }

private:
    VisitBuilder::Settings Settings(sitedb::VisitStore& store);
    void Build(VisitBuilder& builder, std::int64_t waiting);
    void WriteAssignments(Assignments& assignments, std::int64_t waiting);

    core::Env& env_;
    sitedb::Site& site_;
    sitedb::Database& db_;
    VisitsOutcome& outcome_;
    TermReader terms_;
    std::int32_t lastVisitId_ = -1;
};

VisitBuilder::Settings Step2::Settings(sitedb::VisitStore& store) {
    VisitBuilder::Settings settings;
    settings.LmtVisitLines = site_.Options().LmtVisitLines;
    const double stored = env_.ini.IniGetNum("Main", "LastVisitID", site_.Paths().lastVals, core::Missing::Default, -1);
    const std::int32_t highest = store.HighestID();
    settings.LastVisitID = std::max(core::ToLong(stored), highest);
    settings.hasVisits = highest >= 0;
    if (settings.hasVisits) {
        settings.earliest = db_.Scalar("SELECT min(Timestamp) FROM logline WHERE VisitID IS NULL");
        settings.latest = db_.Scalar("SELECT max(Timestamp) FROM logline WHERE VisitID IS NULL");
    }
    return settings;
}

void Step2::Build(VisitBuilder& builder, std::int64_t waiting) {
    dialogs::Report report(
        env_.progress,
        "Add. Step 2/3: Analysing log records. Creating stats for each visit. Add Log Data to Site DB: " +
            site_.Options().name,
        "log line", static_cast<double>(waiting));
    double nextStep = env_.clock.Seconds();
    sitedb::Statement rows = db_.Prepare(WaitingSql(site_.Options().LastKeepVal));
    for (bool more = sitedb::FirstSorted(db_, rows); more; more = rows.Step(), ++outcome_.lines) {
        const double now = outcome_.lines % kLinesPerLook == 0 ? env_.clock.Seconds() : 0;
        if (now >= nextStep) {
            report.Step(static_cast<double>(outcome_.lines));
            nextStep = now + kProgressEvery;
        }
        VisitLine line;
        line.LogLnID = static_cast<std::int32_t>(rows.Int(0));
        line.IP = rows.Text(1);
        line.Timestamp = rows.Int(2);
        line.PageID = static_cast<std::int32_t>(rows.Int(3));
        line.Bytes = static_cast<std::int32_t>(rows.Int(4));
        line.CntDupes = static_cast<std::int32_t>(rows.Int(5));
        const std::string_view found = rows.Text(6);
        if (!found.empty()) {
            line.engine = core::fBefore(found, std::string_view(&kEngineEnd, 1));
            line.term = found.substr(line.engine.size() + 1);
        }
        builder.Take(line);
    }
    builder.Finish();
}

void Step2::WriteAssignments(Assignments& assignments, std::int64_t waiting) {
    const bool many = waiting >= kManyLines && waiting >= db_.Scalar("SELECT count(*) FROM logline") / 4;
    if (many) db_.Exec("DROP INDEX IF EXISTS logline_VisitTime");
    sitedb::Statement assign = db_.Prepare("UPDATE logline SET VisitID=?2 WHERE LogLnID=?1");
    sitedb::Statement remove = db_.Prepare("DELETE FROM logline WHERE LogLnID=?");
    Assignment assignment;
    while (assignments.Next(assignment)) {
        if (assignment.visit < 0) {
            remove.Bind(1, std::int64_t{assignment.line}).Run();
            ++outcome_.linesIgnored;
        } else {
            assign.Bind(1, std::int64_t{assignment.line}).Bind(2, std::int64_t{assignment.visit}).Run();
        }
    }
    sitedb::MakeIndexes(db_, site_.Plans(), "logline");
}

void Step2::Run() {
    const std::int64_t waiting = site_.WaitingLines();
    if (waiting == 0) return;
    db_.AddTextFunction("refterm", [this](std::string_view stored) { return terms_.Read(stored); });
    sitedb::VisitStore store(db_);
    Assignments assignments(site_.Paths().temp);
    VisitBuilder builder(store, assignments, Settings(store));
    Build(builder, waiting);
    WriteAssignments(assignments, waiting);
    lastVisitId_ = builder.LastVisitID();
    outcome_.visitsMade = builder.VisitsMade();
    outcome_.visitsContinued = builder.VisitsContinued();
    outcome_.messages = builder.Messages();
    outcome_.foundTerms = builder.FoundTerms();
}

// Visits without a term go with their lines. A term that is empty text is a term; it stays.
std::int64_t Visits_EraseNonSE(sitedb::Database& db) {
    db.Exec("DELETE FROM logline WHERE VisitID IN (SELECT VisitID FROM visit WHERE StzdSearchTerm IS NULL)");
    db.Exec("DELETE FROM visitpages WHERE visitID IN (SELECT VisitID FROM visit WHERE StzdSearchTerm IS NULL)");
    db.Exec("DELETE FROM visit WHERE StzdSearchTerm IS NULL");
    return db.Changes();
}

void DeleteOverLimit(sitedb::Database& db, VisitsOutcome& outcome) {
    db.Exec("DELETE FROM logline WHERE VisitID=-1");  // numbers over the limit that an unfinished add left
    outcome.linesIgnored += db.Changes();
    if (outcome.linesIgnored > 0)
        outcome.messages.push_back("Probable Bot. Total log lines ignored: " +
                                   core::CountText(static_cast<double>(outcome.linesIgnored)));
}

void BuildVisits(core::Env& env, sitedb::Site& site, const logdefs::SearchEngines& engines, VisitsOutcome& outcome) {
    sitedb::Database& db = site.Db();
    if (!core::IsDir(site.Paths().temp)) core::MakeDir(site.Paths().temp);
    sitedb::WorkMode work(db);
    std::int32_t lastVisitId = -1;
    {
        std::optional<sitedb::Heartbeat> heart;
        heart.emplace(db, env.progress, sitedb::MayStop::Yes);
        sitedb::Transaction all(db);
        Step2 step(env, site, engines, outcome);
        step.Run();
        lastVisitId = step.LastVisitID();
        if (site.Options().EraseNonSE) outcome.visitsErased = Visits_EraseNonSE(db);
        DeleteOverLimit(db, outcome);
        db.Exec("DELETE FROM referrerwait");
        heart.reset();  // its beats belong to this thread
        all.Commit(env.progress);
    }
    if (lastVisitId >= 0)
        env.ini.IniPut("Main", "LastVisitID", std::to_string(lastVisitId), site.Paths().lastVals, core::OnFail::Ignore);
    sitedb::RunAlive(env.progress, [&work] { work.End(); });
}

void CleanUp(core::Env& env, sitedb::Site& site, VisitsOutcome& outcome) {
    dialogs::Report report(
        env.progress, "Add. Step 3/3. Clean up and Compact database. Add Log Data to Site DB: " + site.Options().name,
        "step", 2);
    site.Pages().Release();
    const bool changed = outcome.lines > 0 || outcome.visitsErased > 0 || outcome.linesIgnored > 0;
    if (changed || site.Db().Scalar("PRAGMA freelist_count") > 0)
        outcome.compacted = sitedb::BLDTBL_CompactDB(site.Db(), &env.progress);
    report.Step(1);
    if (core::Exists(site.Paths().temp)) core::RemoveDir(site.Paths().temp);
}

}  // namespace

VisitsOutcome VisitsAdd(core::Env& env, sitedb::Site& site, const logdefs::SearchEngines& engines) {
    VisitsOutcome outcome;
    const double start = env.clock.Seconds();
    try {
        BuildVisits(env, site, engines, outcome);
        const double built = env.clock.Seconds();
        outcome.buildSeconds = built - start;
        CleanUp(env, site, outcome);
        outcome.compactSeconds = env.clock.Seconds() - built;
        if (!env.ini.IniPut("Main", "AddedLogLns_MustDoVisitsAdd", "", site.Paths().lastVals, core::OnFail::Ignore)) {
            outcome.error = "The visits are built, but this file cannot be written: " + site.Paths().lastVals;
            return outcome;
        }
        outcome.done = true;
    } catch (const core::Stopped&) {
        outcome.cancelled = true;
    } catch (const core::ErrorNumber& error) {
        outcome.error = error.what();
    }
    return outcome;
}

}  // namespace visits
