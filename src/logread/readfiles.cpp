#include "logread/readfiles.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

#include "core/cds.h"
#include "core/env.h"
#include "core/errnums.h"
#include "core/error.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "core/text.h"
#include "dialogs/report.h"
#include "logdefs/formatstore.h"
#include "logread/lineprocess.h"
#include "logread/linestore.h"
#include "logread/logset.h"
#include "logread/probe.h"

namespace logread {
namespace {

constexpr double kProgressEvery = 0.1;       // seconds; also how fast a stop is heard
constexpr std::int64_t kLinesPerLook = 256;  // between two looks at the clock

constexpr std::string_view kFileSkipped = " File Skipped.";
constexpr std::string_view kDamaged =
    "Packed log file is damaged or not complete. Only the lines before the damage were read.";
constexpr std::string_view kTwice =
    "The same log lies unpacked beside this one. Both are read; identical lines count once.";
constexpr std::size_t kShownFiles = 1000;  // of a list that is to be confirmed
constexpr std::string_view kVisitIndex = "logline_VisitTime";

struct ProbeText {
    LogFileDates::Outcome outcome;
    std::string_view id;
    std::string_view problem;
};
constexpr std::array<ProbeText, 3> kProbeTexts{{
    {LogFileDates::Outcome::EmptyOrMissing, "LogFileEmpty", "Log file is empty or does not exist."},
    {LogFileDates::Outcome::NoValidLines, "LogFileNoValidLines", "Log file does not contain any valid lines."},
    {LogFileDates::Outcome::EndsCorrupt, "LogFileEndsCorrupt",
     "Log file ends with > 3000 bytes of corrupt lines [log file corrupt]."},
}};

std::string NoValidLinesText(const std::string& file) {
    return "Error in File: \r" + file +
           "\rFile will be skipped\rLog file does not contain any valid lines.\rCheck the following and try again:"
           "\r- correct log format selected [press button \"select log file and specify format\"]"
           "\r- log file has been uncompressed [use 7-zip, winzip to save uncompressed file]"
           "\r- log file corrupt [use Halvern or other file display tool to visually check]"
           "\r- log file cannot be empty [use Halvern or any file manager to check file size].";
}

// What a person can do about a file that was not read.
std::string Advice(const std::string& name, const LogFileDates& dates) {
    const std::string file = name == kStandardInput ? "Standard input" : name;
    if (!dates.damage.empty()) return dates.damage;
    const std::string kind(PackedKind(dates.start));
    if (kind == "tar") return file + " is an archive of files (tar). Unpack it and name the logs in it.";
    if (!kind.empty() && dates.packed) return file + " is packed twice (" + kind + " within). Unpack it first.";
    if (!kind.empty())
        return file + " is packed (" + kind + "). Unpack it first, or pack it with gzip, bzip2, xz or zstd.";
    if (LooksBinary(dates.start)) return file + " is no text file. Name the log itself.";
    if (dates.outcome == LogFileDates::Outcome::EmptyOrMissing)
        return file + " is empty. Check that it is the right file.";
    if (dates.outcome == LogFileDates::Outcome::EndsCorrupt)
        return file + " ends with damaged lines. Cut them off, or get a whole copy.";
    return file + " has no line of this format within its first 3000 bytes. Try the formats with: format try FILE";
}

std::string ListText(const LogSet& set) {
    std::string list;
    for (std::size_t i = 0; i < std::min(set.files.size(), kShownFiles); ++i) list += "\r" + set.files[i];
    if (set.files.size() > kShownFiles) list += "\r... and " + std::to_string(set.files.size() - kShownFiles) + " more";
    if (!set.twice.empty())
        list += "\r\rThese logs lie packed and unpacked. Both are read; identical lines count once.";
    for (std::size_t i = 0; i < std::min(set.twice.size(), kShownFiles); ++i) list += "\r" + set.twice[i];
    return list;
}

class Reading {
public:
    Reading(core::Env& env, sitedb::Site& site, ReadRequest request)
        : env_(env), site_(site), request_(std::move(request)) {
        const sitedb::SiteOptions& options = site.Options();
        ctx_.KeepExtra = options.LastKeepVal;
        ctx_.Skip404 = options.Skip404;
        ctx_.RemQuery = options.RemQuery;
        ctx_.RemFrag = options.RemFrag;
        ctx_.NoPromptInvalid = request_.NoPromptInvalid;
        ctx_.NoPromptOverlap = request_.NoPromptOverlap;
        ctx_.Keep404List = request_.Keep404List;
        ctx_.Filters = std::move(request_.filters);
        ctx_.Check = std::move(request_.check);
        if (ctx_.Check.Active) request_.events = nullptr;
        ctx_.Check.StatusToList = request_.Keep404List ? 404 : ctx_.Check.StatusToList;
    }

    ReadOutcome Run();

private:
    using Place = ReadPlace;

    void PrepareFolder();
    std::optional<std::vector<std::string>> FilesOf(const logdefs::LogFileSpec& spec);
    LogSet SetOf(const logdefs::LogFileSpec& spec);
    const std::string& FormatOf(const logdefs::LogFileSpec& spec) const {
        return spec.format.empty() ? request_.defaultFormat : spec.format;
    }
    void ReadItems();
    void ReadOneFile(const std::string& path, const std::string& formatName, const Place& place);
    bool Probe(core::UnpackReader& file, const logdefs::LogFormat& format, const Place& place, FileRecord& record);
    LogFileDates DatesOf(core::UnpackReader& file, const logdefs::LogFormat& format, const Place& place);
    std::string Caption(const Place& place, std::string_view what) const;
    bool MayOverlap(const LogFileDates& dates, FileRecord& record);
    bool LogFileReadChunks(core::UnpackReader& file, const Place& place, FileRecord& record);
    void ReadLines(core::UnpackReader& file, LineReader& reader, dialogs::Report& report);
    bool TellFailure(const core::UnpackReader& file, const FileRecord& record);
    void Refuse(FileRecord& record, const LogFileDates& dates);
    void AddTotals(FileRecord& record);
    void Start(FileRecord& record, const Place& place);
    void End(FileRecord record, const Place& place);
    const logdefs::LogFormat& Format(const std::string& name);

    core::Env& env_;
    sitedb::Site& site_;
    ReadRequest request_;
    LogReadCtx ctx_{};
    ReadOutcome outcome_{};
    std::map<std::string, logdefs::LogFormat> formats_{};
    std::optional<sitedb::WorkMode> work_{};
    std::optional<LineStore> store_{};
    std::optional<LineProcessor> processor_{};
};

const logdefs::LogFormat& Reading::Format(const std::string& name) {
    const auto at = formats_.find(name);
    if (at != formats_.end()) return at->second;
    logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(env_.ini, name, request_.formatFile);
    for (const std::string& warning : loaded.format.Warnings()) env_.user.Tell("LogFmtWarning", warning);
    return formats_.emplace(name, std::move(loaded.format)).first->second;
}

void Reading::PrepareFolder() {
    core::Result made = core::Exists(site_.Paths().temp) ? core::RemoveDir(site_.Paths().temp) : core::Result{};
    if (made) made = core::MakeDir(site_.Paths().temp);
    if (!made) throw core::ErrorNumber(core::errnum::kStore, made.error);
}

LogSet Reading::SetOf(const logdefs::LogFileSpec& spec) {
    dialogs::Report report(env_.progress, request_.progressPrefix + "Look for dates in " + spec.file, "files", 0);
    double nextStep = env_.clock.Seconds() + kProgressEvery;
    return LogSetOf(spec.file, Format(FormatOf(spec)), [&](std::size_t done, std::size_t) {
        const double now = env_.clock.Seconds();
        if (now < nextStep) return;
        report.Step(static_cast<double>(done));
        nextStep = now + kProgressEvery;
    });
}

// Nothing when the user said no to the list of files.
std::optional<std::vector<std::string>> Reading::FilesOf(const logdefs::LogFileSpec& spec) {
    if (!NamesMany(spec.file)) return std::vector{spec.file};
    LogSet set;
    try {
        set = SetOf(spec);
    } catch (const core::Stopped&) {
        outcome_.ok = false;
        return std::nullopt;
    }
    if (set.files.empty()) {
        if (core::IsDir(spec.file)) outcome_.errors.push_back("There is no log in this folder: " + spec.file);
        return set.files;
    }
    const core::Answer answer = env_.user.Ask(
        {.id = "ConfirmFileList",
         .message = "The following files will be processed. Do you want to continue?\rFilename: " + spec.file + "]" +
                    ListText(set),
         .buttons = "&Yes|&Cancel",
         .title = "Confirm List of files. Add data to site DB: " + site_.Options().name,
         .cancelButton = 2});
    if (answer.Cancelled()) return std::nullopt;
    for (const std::string& file : set.twice) ctx_.Problems.LogFileProblemAdd(file, kTwice);
    return std::move(set.files);
}

void Reading::Refuse(FileRecord& record, const LogFileDates& dates) {
    record.skipped = true;
    const auto row = std::ranges::find(kProbeTexts, dates.outcome, &ProbeText::outcome);
    ctx_.Problems.LogFileProblemAdd(record.FileName, std::string(row->problem) + std::string(kFileSkipped));
    outcome_.errors.push_back(Advice(record.FileName, dates));
    if (dates.outcome != LogFileDates::Outcome::NoValidLines) {
        env_.user.Tell(std::string(row->id), std::string(row->problem) + "\rFilename: " + record.FileName);
        return;
    }
    if (ctx_.NoPromptInvalid) return;
    const core::Answer answer = env_.user.Ask(
        {.id = std::string(row->id),
         .message = NoValidLinesText(record.FileName),
         .checkBox = "Check the box to skip message for all invalid lines AND for files without any valid lines."});
    if (answer.boxTicked) ctx_.NoPromptInvalid = true;
}

// False: the user does not want the file, since stored lines fall into its time.
bool Reading::MayOverlap(const LogFileDates& dates, FileRecord& record) {
    constexpr std::string_view kOverlap = "Dates on this log file overlap with data that already have on database. ";
    ctx_.CheckDupes = store_ && store_->Overlaps(dates.first, dates.last);
    record.overlapped = ctx_.CheckDupes;
    if (!ctx_.CheckDupes || ctx_.Check.Active) return true;
    ctx_.Problems.LogFileProblemAdd(record.FileName, std::string(kOverlap) + " All identical lines skipped.");
    if (ctx_.NoPromptOverlap) return true;
    const core::Answer answer = env_.user.Ask(
        {.id = "ConfirmOverlap",
         .message =
             std::string(kOverlap) +
             "\r[Raw log data already exists on this data base for date(s) included in log file.]\rFilename: " +
             record.FileName +
             "\rDo you want to add records from this file anyway?\rNB If you add the file anyway, each log line will "
             "be checked individually to determine if a duplicate exists on the database.\rThis ensures no line "
             "will be counted twice however processing takes ca. THREE TIMES as long as usual.",
         .buttons = "&Yes|&No",
         .title = "Confirm add overlApping data. Add Log Data to Site DB: " + site_.Options().name,
         .checkBox =
             "No prompt when log file has d&ates which overlap existing data. - Process file, check for duplicates",
         .cancelButton = 2});
    if (answer.boxTicked) ctx_.NoPromptOverlap = true;
    return !answer.Cancelled();
}

std::string Reading::Caption(const Place& place, std::string_view what) const {
    const std::string where = place.items > 1 || place.files > 1
                                  ? "Definition: " + std::to_string(place.item) + "/" + std::to_string(place.items) +
                                        ". File: " + std::to_string(place.file) + "/" + std::to_string(place.files) +
                                        ". "
                                  : std::string();
    return request_.progressPrefix + where + std::string(what) + ctx_.FileName;
}

// To the end of a packed file it is a long way, on which the user may stop.
LogFileDates Reading::DatesOf(core::UnpackReader& file, const logdefs::LogFormat& format, const Place& place) {
    if (file.Kind().empty()) return LogFileDateRange(file, format);
    dialogs::Report report(env_.progress, Caption(place, "Look for dates in "), "bytes",
                           static_cast<double>(file.Size()));
    double nextStep = env_.clock.Seconds() + kProgressEvery;
    file.OnWork([&] {
        const double now = env_.clock.Seconds();
        if (now < nextStep) return;
        report.Step(static_cast<double>(file.Taken()));
        nextStep = now + kProgressEvery;
    });
    LogFileDates dates = LogFileDateRange(file, format);
    file.OnWork({});
    return dates;
}

bool Reading::Probe(core::UnpackReader& file, const logdefs::LogFormat& format, const Place& place,
                    FileRecord& record) {
    const core::Result opened = file.Open(OpenedPath(record.FileName));
    if (!opened) {
        record.skipped = true;
        ctx_.Problems.LogFileProblemAdd(record.FileName,
                                        std::string(kProbeTexts[0].problem) + std::string(kFileSkipped));
        outcome_.errors.push_back(opened.error);
        Start(record, place);
        return false;
    }
    const LogFileDates dates = DatesOf(file, format, place);
    if (dates.outcome != LogFileDates::Outcome::Ok) {
        Refuse(record, dates);
        Start(record, place);
        return false;
    }
    record.firstStamp = dates.first;
    record.lastStamp = dates.last;
    Start(record, place);
    record.skipped = !MayOverlap(dates, record);
    return !record.skipped;
}

void Reading::ReadLines(core::UnpackReader& file, LineReader& reader, dialogs::Report& report) {
    double nextStep = env_.clock.Seconds();
    const auto look = [&](double now) {
        if (now < nextStep) return;
        const ProgressTexts texts = LogReadProgressText(ctx_, true);
        const std::int64_t done = file.Kind().empty() ? reader.Position() : file.Taken();
        report.Step(static_cast<double>(done), texts.summary + " - " + texts.details);
        nextStep = now + kProgressEvery;
    };
    file.OnWork([&] { look(env_.clock.Seconds()); });  // within one line, too: it can be a gigabyte
    RawLine line;
    for (std::int64_t count = 0;; ++count) {
        if (count % kLinesPerLook == 0) {
            const double now = env_.clock.Seconds();
            if (store_) store_->CommitWhenDue(request_.batchLines, now);
            look(now);
        }
        if (!reader.Next(line)) break;
        processor_->LogLnProcess(line);
    }
    file.OnWork({});
}

// A damaged file is read to its end as far as there is one: its lines stay and it is no stopped read.
bool Reading::TellFailure(const core::UnpackReader& file, const FileRecord& record) {
    outcome_.errors.push_back(file.Failed().error);
    if (!file.Damaged()) return false;
    ctx_.Problems.LogFileProblemAdd(record.FileName, kDamaged);
    return true;
}

bool Reading::LogFileReadChunks(core::UnpackReader& file, const Place& place, FileRecord& record) {
    LineReader reader(file, request_.chunk);
    try {
        dialogs::Report report(env_.progress, Caption(place, "Read data for "), "bytes",
                               static_cast<double>(file.Size()));
        ReadLines(file, reader, report);
        if (store_) store_->Commit();
    } catch (const core::Stopped&) {
        if (store_) store_->Commit();  // the lines so far stay
        return false;
    }
    return !reader.Failed() || TellFailure(file, record);
}

void Reading::AddTotals(FileRecord& record) {
    ctx_.File.Filtered = ctx_.Filters.main.HitCount;
    ctx_.File.Bots = ctx_.Filters.robots.HitCount;
    ctx_.File.Comps = ctx_.Filters.components.HitCount;
    const FileCounters& file = record.counters = ctx_.File;
    AllCounters& all = ctx_.All;
    // A file without accepted lines has no first date to give.
    if (file.FirstDate != 0 && (all.AllFirstDate == 0 || all.AllFirstDate > file.FirstDate))
        all.AllFirstDate = file.FirstDate;
    all.AllLastDate = std::max(all.AllLastDate, file.LineDateTime);
    all.AllBytesRead += file.BytesRead;
    all.AllBytesAdded += file.BytesAdded;
    all.AllLinesRead += file.LinesRead;
    all.AllLinesAdded += file.LinesAdded;
    all.AllLinesExist += file.LinesExist;
    all.AllFiltered += file.Filtered;
    all.AllBots += file.Bots;
    all.AllComps += file.Comps;
}

void Reading::Start(FileRecord& record, const Place& place) {
    if (request_.events != nullptr) request_.events->FileStarts(record, place, ctx_.Problems);
}

void Reading::End(FileRecord record, const Place& place) {
    AddTotals(record);
    if (request_.events != nullptr && !record.skipped) request_.events->FileEnds(record, place, ctx_.Problems);
    outcome_.files.push_back(std::move(record));
}

void Reading::ReadOneFile(const std::string& path, const std::string& formatName, const Place& place) {
    FileRecord record;
    record.FileName = ctx_.FileName = path;
    record.format = formatName;
    ctx_.File = {};
    ctx_.Filters.main.HitCount = ctx_.Filters.robots.HitCount = ctx_.Filters.components.HitCount = 0;
    if (store_) store_->Commit();  // counters at the last commit are this file's from here on
    const double start = env_.clock.Seconds();
    const logdefs::LogFormat& format = Format(formatName);
    core::UnpackReader file;
    bool wanted = false;
    try {
        wanted = Probe(file, format, place, record);
    } catch (const core::Stopped&) {
        record.stopped = true;
        outcome_.ok = false;
        if (record.firstStamp == 0) Start(record, place);
    }
    if (wanted) {
        outcome_.anyRead = true;
        processor_->SetFormat(format);
        try {
            record.stopped = !LogFileReadChunks(file, place, record);
        } catch (...) {
            if (store_) store_->RollBack();
            record.stopped = true;
            record.seconds = env_.clock.Seconds() - start;
            End(std::move(record), place);
            throw;
        }
        if (record.stopped) outcome_.ok = false;
    }
    record.seconds = env_.clock.Seconds() - start;
    End(std::move(record), place);
}

void Reading::ReadItems() {
    Place place;
    place.items = request_.files.size();
    place.list = place.items > 1;
    bool told = false;
    for (const logdefs::LogFileSpec& spec : request_.files) {
        ++place.item;
        if (core::fTrim(spec.file).empty()) continue;
        const auto files = FilesOf(spec);
        if (!files) return;
        place.list = place.list || NamesMany(spec.file);
        place.files = files->size();
        place.file = 0;
        for (const std::string& path : *files) {
            if (request_.events != nullptr && place.list && !std::exchange(told, true)) request_.events->ListStarts();
            ++place.file;
            ReadOneFile(path, FormatOf(spec), place);
        }
    }
}

ReadOutcome Reading::Run() {
    outcome_.NoPromptInvalid = ctx_.NoPromptInvalid;
    outcome_.NoPromptOverlap = ctx_.NoPromptOverlap;
    if (request_.files.empty()) return std::move(outcome_);
    const double start = env_.clock.Seconds();
    try {
        if (!ctx_.Check.Active) {
            PrepareFolder();
            work_.emplace(site_.Db());
            // Into an empty table the lines go faster without the index of visits, which is made when they are built.
            if (site_.Db().Scalar("SELECT NOT EXISTS (SELECT 1 FROM logline)") != 0)
                site_.Db().Exec("DROP INDEX IF EXISTS " + std::string(kVisitIndex));
            store_.emplace(env_, site_, ctx_);
        }
        processor_.emplace(env_, site_, ctx_, store_ ? &*store_ : nullptr);
        ReadItems();
        if (store_) {
            env_.ini.IniPut("Main", "LastLogLnID", std::to_string(store_->LastLogLnID()), site_.Paths().lastVals,
                            core::OnFail::Ignore);
            store_.reset();
            site_.Pages().Release();
            work_->End();
        }
    } catch (const core::ErrorNumber& error) {
        // A full disk, a failing file: everything up to the last commit stands.
        store_.reset();
        site_.Pages().Release();
        work_.reset();
        outcome_.ok = false;
        outcome_.storeFailed = true;
        outcome_.errors.emplace_back(error.what());
    }
    outcome_.totals = ctx_.All;
    outcome_.problems = std::move(ctx_.Problems);
    outcome_.check = std::move(ctx_.Check);
    outcome_.NoPromptInvalid = ctx_.NoPromptInvalid;
    outcome_.NoPromptOverlap = ctx_.NoPromptOverlap;
    outcome_.seconds = env_.clock.Seconds() - start;
    return std::move(outcome_);
}

}  // namespace

ReadOutcome RawLog_AddData_ReadLogFiles(core::Env& env, sitedb::Site& site, ReadRequest request) {
    return Reading(env, site, std::move(request)).Run();
}

std::vector<logdefs::LogFileSpec> FileListFromText(std::string_view list) {
    std::vector<logdefs::LogFileSpec> files;
    const core::StrArray items = core::CDSSplitPlain(list, 0);
    for (const std::string& item : items.Items())
        if (!core::fTrim(item).empty()) files.push_back(logdefs::LogFileSpecSplit(item));
    return files;
}

}  // namespace logread
