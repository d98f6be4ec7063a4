#include "adddata/addrecorder.h"

#include <algorithm>
#include <new>

#include "adddata/enginesummary.h"
#include "adddata/problemstore.h"
#include "core/cds.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/error.h"
#include "core/inistore.h"
#include "core/ports.h"

namespace adddata {
namespace {

constexpr double kSecondsOfDay = 86400;
constexpr std::string_view kFilterOff = "filter not selected";
constexpr std::string_view kStartFile = "START Read File.";
constexpr std::string_view kEndAdd = "END ADD";
constexpr std::size_t kLookedBack = 200;        // records of the log
constexpr std::string_view kDateOfList = "..";  // the list's start line has the date

std::string& At(AddLogRecord& record, std::size_t column) { return record.fields[column]; }

// The counters of one file in the form of those of all.
logread::AllCounters CountersOf(const logread::FileCounters& file) {
    logread::AllCounters all;
    all.AllFirstDate = file.FirstDate;
    all.AllLastDate = file.LineDateTime;
    all.AllBytesRead = file.BytesRead;
    all.AllBytesAdded = file.BytesAdded;
    all.AllLinesRead = file.LinesRead;
    all.AllLinesAdded = file.LinesAdded;
    all.AllLinesExist = file.LinesExist;
    all.AllFiltered = file.Filtered;
    all.AllBots = file.Bots;
    all.AllComps = file.Comps;
    return all;
}

// Both forms of both moments.
void SetDates(AddLogRecord& record, double first, double last) {
    At(record, AddLogAt("firstDate")) = AddLogDate(first);
    At(record, AddLogAt("lastDate")) = AddLogDate(last);
    At(record, AddLogAt("firstLogLine")) = AddLogSort(first);
    At(record, AddLogAt("lastLogLine")) = AddLogSort(last);
}

// The digits of a time as a date, whether there is such a day or not: 0000-00-00 00:00.00
std::string StampText(std::int64_t stamp) {
    constexpr std::string_view kForm = "0000-00-00 00:00.00";
    std::string text(kForm);
    for (std::size_t i = text.size(); i-- > 0;) {
        if (kForm[i] != '0') continue;
        text[i] = static_cast<char>('0' + stamp % 10);
        stamp /= 10;
    }
    return text;
}

double MomentOf(std::int64_t stamp) {
    const auto digits = static_cast<double>(stamp);
    return core::TS_Date(digits) + core::TS_Time(digits) / kSecondsOfDay;
}

void SetStamps(AddLogRecord& record, std::int64_t first, std::int64_t last) {
    if (first == 0) return;
    SetDates(record, MomentOf(first), MomentOf(last));
    At(record, AddLogAt("firstLogLine")) = StampText(first);
    At(record, AddLogAt("lastLogLine")) = StampText(last);
}

std::string SpecsText(const std::vector<logdefs::LogFileSpec>& specs) {
    core::StrArray items(0, {});
    for (const logdefs::LogFileSpec& spec : specs) items.Append(logdefs::LogFileSpecJoin(spec));
    return core::CDSJoinPlain(items);
}

// " [List 1/2 3/4]": which item of how many, which of its files. Of a list of one item nothing.
std::string ListText(const logread::ReadPlace& place) {
    if (place.items < 2) return {};
    return " [List " + std::to_string(place.item) + "/" + std::to_string(place.items) + " " +
           std::to_string(place.file) + "/" + std::to_string(place.files) + "]";
}

}  // namespace

AddRecorder::AddRecorder(core::Env& env, sitedb::Site& site, AddRecordRequest request)
    : env_(env), site_(site), request_(std::move(request)), start_(env.clock.Now()) {}

void AddRecorder::Note(const core::Result& result) {
    if (!result && failure_.empty()) failure_ = result.error;
}

// A record may fail in any way; the add goes on.
template <typename Step>
void AddRecorder::Try(const Step& step) {
    try {
        step();
    } catch (const core::ErrorNumber& error) {
        Note({false, error.what()});
    } catch (const std::bad_alloc&) {
        Note({false, "There is not enough memory for the record of this add."});
    }
}

void AddRecorder::LogAddRecord(const AddLogRecord& record) {
    Note(AppendAddLog(AddLogFile(site_.Paths()), {&record, 1}));
}

AddLogRecord AddRecorder::Base(double moment) const {
    AddLogRecord record;
    At(record, AddLogAt("date")) = AddLogDate(moment);
    At(record, AddLogAt("addedDay")) = AddLogSort(moment);
    return record;
}

void AddRecorder::AddStarts() {
    if (!request_.switches.skipRobots) return;
    Try([&] {
        robots_ = CopyRobotFilter(env_.ini, request_.filters.robots, site_.Paths());
        Note(robots_.result);
    });
}

void AddRecorder::ListStarts() {
    Try([&] {
        AddLogRecord record = Base(start_);
        At(record, AddLogAt("fileSpec")) = "** Start ADD **";
        At(record, AddLogAt("action")) = "START ADD";
        At(record, AddLogAt("fullFileName")) = SpecsText(request_.files);
        LogAddRecord(record);
    });
}

void AddRecorder::SetCounters(AddLogRecord& record, const logread::AllCounters& all, bool overlapped) const {
    const auto count = [&](std::size_t column, auto value) {
        At(record, column) = AddLogCount(static_cast<double>(value));
    };
    const auto flag = [&](std::size_t column, bool value) { At(record, column) = AddLogFlag(value); };
    count(AddLogAt("linesAdded"), all.AllLinesAdded);
    SetDates(record, all.AllFirstDate, all.AllLastDate);
    count(AddLogAt("totalLines"), all.AllLinesRead);
    count(AddLogAt("acceptLines"), all.AllLinesAdded);
    count(AddLogAt("acceptBytes"), all.AllBytesAdded);
    flag(AddLogAt("skipDupes"), overlapped);
    count(AddLogAt("skipDupesLines"), all.AllLinesExist);
    flag(AddLogAt("addByFilter"), request_.switches.main != logdefs::MainFilter::All);
    count(AddLogAt("addByFilterLines"), all.AllFiltered);
    flag(AddLogAt("exclBots"), request_.switches.skipRobots);
    count(AddLogAt("exclBotsLines"), all.AllBots);
    flag(AddLogAt("exclFiles"), request_.switches.skipComponents);
    count(AddLogAt("exclFilesLines"), all.AllComps);
    count(AddLogAt("bytesSkipped"), all.AllBytesRead - all.AllBytesAdded);
    const sitedb::SiteOptions& options = site_.Options();
    flag(AddLogAt("remFragment"), options.RemFrag);
    flag(AddLogAt("remQuery"), options.RemQuery);
    flag(AddLogAt("allData"), options.LastKeepVal);
    flag(AddLogAt("skip4xx5xx"), options.Skip404);
}

// The record of all problems so far is stored when it has grown by half, and at the end: a killed add keeps most of
// them, and a thousand bad files do not cost a thousand times all.
void AddRecorder::KeepProblems(const logread::ProblemList& problems, bool all) {
    const std::size_t count = problems.Files().size();
    if (count == 0 || (!all && count < problemsKept_ + problemsKept_ / 2 + 1)) return;
    const std::string file = ProblemStoreFile(site_.Paths());
    if (problems_ > 0) {
        Note(StoreProblemsAgain(env_.ini, file, problems_, problems));
    } else if (problemsKept_ == 0 || all) {
        const ProblemRecord record = StoreProblems(env_.ini, file, problems);
        problems_ = record.number;
        Note(record.result);
    }
    problemsKept_ = count;
}

// The number of the record with a file's problems, nothing when it has none.
std::string AddRecorder::ProblemsOf(const std::string& file, const logread::ProblemList& problems) {
    if (!problems.Has(file)) return std::string(kNoField);
    Try([&] { KeepProblems(problems, false); });
    return problems_ > 0 ? std::to_string(problems_) : std::string(kNoField);
}

void AddRecorder::FileStarts(const logread::FileRecord& file, const logread::ReadPlace& place,
                             const logread::ProblemList& problems) {
    Try([&] {
        fileStart_ = env_.clock.Now();
        file_ = Base(fileStart_);
        if (place.list) At(file_, AddLogAt("date")) = kDateOfList;
        At(file_, AddLogAt("fileSpec")) = "Start Read File: " + file.FileName;
        At(file_, AddLogAt("action")) = kStartFile;
        At(file_, AddLogAt("fullFileName")) = file.FileName;
        At(file_, AddLogAt("problems")) = ProblemsOf(file.FileName, problems);
        SetStamps(file_, file.firstStamp, file.lastStamp);
        LogAddRecord(file_);
    });
}

void AddRecorder::FileEnds(const logread::FileRecord& file, const logread::ReadPlace& place,
                           const logread::ProblemList& problems) {
    Try([&] {
        AddLogRecord record = file_;
        const double end = fileStart_ + file.seconds / kSecondsOfDay;
        const std::string elapsed = core::fElapsedText(fileStart_, end);
        At(record, AddLogAt("fileSpec")) = file.FileName;
        At(record, AddLogAt("action")) =
            (file.stopped ? "File Read Stopped." : "Done. Read File. " + elapsed) + ListText(place);
        At(record, AddLogAt("addedDay")) = AddLogSort(end);
        At(record, AddLogAt("minsAddData")) = elapsed;
        At(record, AddLogAt("problems")) = ProblemsOf(file.FileName, problems);
        SetCounters(record, CountersOf(file.counters), file.overlapped);
        LogAddRecord(record);
    });
}

void AddRecorder::ReadEnds(const logread::ReadOutcome& read) {
    Try([&] { KeepProblems(read.problems, true); });
}

// What each family was given to work with; of one that is off, that it is.
void AddRecorder::SetFilters(AddLogRecord& record) const {
    using logdefs::MainFilter;
    const logdefs::FilterSwitches& on = request_.switches;
    for (const std::size_t column :
         {AddLogAt("mainFilterKind"), AddLogAt("mainFilterUsed"), AddLogAt("componentFilterKind"),
          AddLogAt("componentFilterUsed"), AddLogAt("robotFilterKind")})
        At(record, column) = kFilterOff;
    if (on.main != MainFilter::All) {
        At(record, AddLogAt("mainFilterKind")) = on.main == MainFilter::Only ? "Only Lines" : "Exclude Lines";
        At(record, AddLogAt("mainFilterUsed")) = logdefs::FltrDescribe(env_.ini, request_.filters, on);
    }
    if (on.skipComponents) {
        const std::string& file = request_.filters.components;
        At(record, AddLogAt("componentFilterKind")) = AddLogFlag(true);
        At(record, AddLogAt("componentFilterUsed")) =
            logdefs::FltrCndnText(env_.ini, env_.ini.IniGet("Filters", "Fltr Sel", file), file);
    }
    if (on.skipRobots) At(record, AddLogAt("robotFilterKind")) = AddLogFlag(true);
    At(record, AddLogAt("robotFilterCopy")) = robots_.name;
}

AddLogRecord AddRecorder::Totals(bool whole) const {
    const double now = env_.clock.Now();
    AddLogRecord record = Base(now);
    At(record, AddLogAt("date")) = std::string("** ") + (whole ? "" : "Part ") + "Done **";
    At(record, AddLogAt("fileSpec")) = "** End ADD ** Totals. All Files.";
    At(record, AddLogAt("action")) = kEndAdd;
    At(record, AddLogAt("minsAddData")) = core::fElapsedText(start_, now);
    return record;
}

void AddRecorder::LogTotals(AddLogRecord record, const visits::VisitsOutcome& visits) {
    Try([&] {
        const SavedSummary summary = SaveEngineSummary(env_.ini, site_.Paths(), visits.foundTerms);
        Note(summary.result);
        At(record, AddLogAt("engineSummary")) = summary.name;
    });
    LogAddRecord(record);
}

void AddRecorder::AddEnds(const logread::ReadOutcome& read, const visits::VisitsOutcome& visits) {
    Try([&] {
        AddLogRecord record = Totals(read.ok);
        At(record, AddLogAt("fullFileName")) = SpecsText(request_.files);
        if (request_.preprocessSeconds)
            At(record, AddLogAt("minsPreProcess")) =
                core::fElapsedText(start_, start_ + *request_.preprocessSeconds / kSecondsOfDay);
        SetCounters(record, read.totals, std::ranges::any_of(read.files, &logread::FileRecord::overlapped));
        if (problems_ > 0) At(record, AddLogAt("problems")) = std::to_string(problems_);
        SetFilters(record);
        LogTotals(std::move(record), visits);
    });
}

// Which files an add had that never came to its totals, and the number of their problems, stands in what it wrote.
void AddRecorder::SetUnfinished(AddLogRecord& record) const {
    const std::vector<AddLogRecord> log = ReadAddLog(AddLogFile(site_.Paths()), kLookedBack).records;
    std::vector<std::string> names;
    for (auto at = log.rbegin(); at != log.rend(); ++at) {
        const auto& fields = at->fields;
        if (fields[AddLogAt("action")] == kEndAdd) break;
        std::string& problems = At(record, AddLogAt("problems"));
        if (problems == kNoField) problems = fields[AddLogAt("problems")];
        if (fields[AddLogAt("action")] == kStartFile) names.push_back(fields[AddLogAt("fullFileName")]);
    }
    std::ranges::reverse(names);
    if (!names.empty()) At(record, AddLogAt("fullFileName")) = core::CDSJoinPlain(core::StrArray(0, std::move(names)));
}

void AddRecorder::ResumeEnds(const visits::VisitsOutcome& visits) {
    Try([&] {
        AddLogRecord record = Totals(true);
        At(record, AddLogAt("linesAdded")) = At(record, AddLogAt("acceptLines")) =
            AddLogCount(static_cast<double>(visits.lines));
        Try([&] { SetUnfinished(record); });
        LogTotals(std::move(record), visits);
    });
}

}  // namespace adddata
