// A whole small log on its way into a site, twice.
#include <filesystem>
#include <string>

#include "adddata/adddata.h"
#include "core/clock.h"
#include "core/env.h"
#include "core/errlog.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "core/utf8.h"
#include "sitedb/columns.h"
#include "sitedb/sites.h"
#include "tests/fuzz/targets.h"

namespace fuzz {
namespace {

namespace fs = std::filesystem;

// Before and behind every input, so that the file has a first and a last line.
constexpr std::string_view kFirst =
    "192.0.2.1 - - [01/Mar/2026:08:00:00 +0000] \"GET / HTTP/1.1\" 200 100 \"-\" \"A\"\n";
constexpr std::string_view kLast =
    "\n192.0.2.1 - - [02/Mar/2026:08:00:00 +0000] \"GET /last HTTP/1.1\" 200 100 "
    "\"https://www.google.com/search?q=a+b\" \"A\"\n";

class Silent final : public core::User, public core::Progress {
public:
    core::Answer Ask(const core::Question& question) override {
        return {.button = 1, .cancelButton = question.cancelButton};
    }
    int PIStart(std::string_view, std::string_view, double) override { return 1; }
    bool PIStep(int, double, std::string_view) override { return false; }
    void PIDone(int) override {}
};

// A folder in memory where there is one, gone with the run.
class Folder {
public:
    Folder() {
        std::error_code none;
        const fs::path base = fs::is_directory("/dev/shm", none) ? fs::path("/dev/shm") : fs::temp_directory_path();
        path_ = (base / "corvane-fuzz-XXXXXX").string();
        Need(::mkdtemp(path_.data()) != nullptr, "no temporary folder");
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::string& Path() const { return path_; }

private:
    std::string path_{};
};

void CheckTexts(sitedb::Database& db, const std::string& table, const std::string& column, int width) {
    sitedb::Statement rows = db.Prepare("SELECT " + column + " FROM " + table + " WHERE " + column + " IS NOT NULL");
    while (rows.Step()) {
        const std::string_view text = rows.Text(0);
        Need(text.size() <= static_cast<std::size_t>(width), column + " is too long");
        Need(core::IsUtf8(text), column + " is no UTF-8");
    }
}

void CheckStored(sitedb::Site& site) {
    sitedb::Database& db = site.Db();
    Need(site.WaitingLines() == 0, "lines wait for visits");
    Need(db.Scalar("SELECT count(*) FROM logline l LEFT JOIN visit v ON v.VisitID=l.VisitID WHERE v.VisitID IS NULL") ==
             0,
         "a line has no visit");
    Need(db.Scalar(
             "SELECT count(*) FROM visit v WHERE Files<>(SELECT count(*) FROM logline l WHERE l.VisitID=v.VisitID)") ==
             0,
         "a visit counts other lines than it has");
    Need(db.Scalar("SELECT count(*) FROM referrerwait") == 0, "referrers wait");
    Need(db.Scalar("SELECT integrity_check='ok' FROM pragma_integrity_check") == 1, "integrity_check");
    CheckTexts(db, "logline", "IP", sitedb::kIpWidth);
    CheckTexts(db, "page", "Filename", names::kPageNameWidth);
    CheckTexts(db, "visit", "StzdSearchTerm", sitedb::kTermWidth);
    CheckTexts(db, "visit", "SearchEngine", sitedb::kEngineWidth);
    CheckTexts(db, "visit", "CDSClickFurtherPageIDs", sitedb::kClicksWidth);
    if (!site.Options().LastKeepVal) return;
    for (const sitedb::TextColumn& column : sitedb::kTextColumns)
        CheckTexts(db, "logline", std::string(column.name), column.width);
}

sitedb::SiteOptions OptionsOf(std::uint8_t bits) {
    sitedb::SiteOptions options;
    options.name = "fuzz";
    options.LastKeepVal = (bits & 1U) != 0;
    options.Skip404 = (bits & 2U) != 0;
    options.RemQuery = (bits & 4U) != 0;
    options.RemFrag = (bits & 8U) != 0;
    options.EraseNonSE = (bits & 16U) != 0;
    return options;
}

}  // namespace

int RunSite(const std::uint8_t* data, std::size_t size) {
    const Folder folder;
    Silent silent;
    const core::SystemClock clock;
    core::IniStore ini(silent);
    core::EventLog events(clock, folder.Path() + "/errors.log");
    core::Env env{ini, silent, silent, events, clock};
    const core::Paths paths(folder.Path(), PARAMS_DIR);
    sitedb::Sites sites(env, paths);
    for (const char* made : {"/param", "/sites"}) Need(core::MakeDir(folder.Path() + made).ok, "no folder");
    const auto created = sites.Site_Create(OptionsOf(size > 0 ? data[0] : 0));
    Need(created.result.ok, created.result.error);
    sitedb::OpenFailure failure;
    const auto site = sitedb::Site::Site_Open(env, created.folder, failure);
    Need(site != nullptr, failure.error);
    const std::string log = folder.Path() + "/fuzz.log";
    std::string text(kFirst);
    if (size > 1) text += TextOf(data + 1, size - 1);
    Need(core::WriteWhole(log, text.append(kLast)).ok, "the log cannot be written");

    const std::string program = std::string(PARAMS_DIR) + "/program/";
    const adddata::ProgramFiles files{program + "logfmts.ini", program + "lastinstvals.ini", program + "fltrbots.ini"};
    adddata::AddRequest request;
    request.files = {{log, ""}};
    request.format = "apache-combined";
    request.skipRobots = request.skipComponents = false;
    request.NoPromptInvalid = request.NoPromptOverlap = true;
    std::int64_t lines = 0;
    for (int round = 0; round < 2; ++round) {
        const adddata::AddOutcome outcome = adddata::AddLogData(env, *site, files, request);
        Need(outcome.Status() == 0, outcome.read.errors.empty() ? outcome.visits.error : outcome.read.errors.front());
        CheckStored(*site);
        const std::int64_t stored = site->Db().Scalar("SELECT count(*) FROM logline");
        Need(round == 0 || stored == lines, "the same log adds lines a second time");
        lines = stored;
    }
    return 0;
}

}  // namespace fuzz
