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
#include "core/like.h"
#include "core/ports.h"

namespace adddata {
namespace {

constexpr double kSecondsOfDay = 86400;
constexpr std::string_view kFilterOff = "filter not selected";
constexpr std::string_view kDateOfList = "..";  // the list's start line has the date

std::string& At(AddLogRecord& record, std::size_t column) { return record.fields[column]; }

bool IsWildcard(const logdefs::LogFileSpec& spec) {
    return spec.file.find('*') != std::string::npos && !core::IsRegularFile(spec.file);
}

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

void SetDates(AddLogRecord& record, double first, double last) {
    At(record, AddLogAt("firstDate")) = AddLogDate(first);
    At(record, AddLogAt("lastDate")) = AddLogDate(last);
    At(record, AddLogAt("firstLogLine")) = AddLogSort(first);
    At(record, AddLogAt("lastLogLine")) = AddLogSort(last);
}

bool HasProblems(const logread::ProblemList& problems, const std::string& file) {
    return std::ranges::find(problems.Files(), file, &logread::ProblemList::File::name) != problems.Files().end();
}

std::string SpecsText(const std::vector<logdefs::LogFileSpec>& specs) {
    core::StrArray items(0, {});
    for (const logdefs::LogFileSpec& spec : specs) items.Append(logdefs::LogFileSpecJoin(spec));
    return core::CDSJoinPlain(items);
}

// How many of the files from `at` on came from this item. Those of a wildcard follow each other by name.
std::size_t FilesOfItem(const logdefs::LogFileSpec& spec, const std::vector<logread::FileRecord>& files,
                        std::size_t at) {
    if (!IsWildcard(spec)) return at < files.size() ? 1 : 0;
    const std::string folder = core::fPathOf(spec.file), pattern = core::fNameOf(spec.file);
    std::size_t count = 0;
    for (; at + count < files.size(); ++count) {
        const std::string& name = files[at + count].FileName;
        if (core::fPathOf(name) != folder || !core::Like(core::fNameOf(name), pattern)) break;
        if (count > 0 && name <= files[at + count - 1].FileName) break;
    }
    return count;
}

}  // namespace

AddRecorder::AddRecorder(core::Env& env, sitedb::Site& site, AddRecordRequest request)
    : env_(env), site_(site), request_(std::move(request)), start_(env.clock.Now()) {
    list_ = request_.files.size() > 1 || std::ranges::any_of(request_.files, IsWildcard);
}

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

void AddRecorder::LogAddRecord(std::span<const AddLogRecord> records) {
    if (!records.empty()) Note(AppendAddLog(AddLogFile(site_.Paths()), records));
}

AddLogRecord AddRecorder::Base(double moment) const {
    AddLogRecord record;
    At(record, AddLogAt("date")) = AddLogDate(moment);
    At(record, AddLogAt("addedDay")) = AddLogSort(moment);
    return record;
}

void AddRecorder::ReadStarts() {
    Try([&] {
        if (request_.switches.skipRobots) {
            robots_ = CopyRobotFilter(env_.ini, request_.filters.robots, site_.Paths());
            Note(robots_.result);
        }
        if (!list_) return;
        AddLogRecord record = Base(start_);
        At(record, AddLogAt("fileSpec")) = "** Start ADD **";
        At(record, AddLogAt("action")) = "START ADD";
        At(record, AddLogAt("fullFileName")) = SpecsText(request_.files);
        LogAddRecord({&record, 1});
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

// " [List 1/2 3/4]" for each file: which item of how many, which of its files. Of a list of one item nothing.
std::vector<std::string> AddRecorder::ListTexts(const std::vector<logread::FileRecord>& files) const {
    std::vector<std::string> texts;
    const std::size_t items = request_.files.size();
    for (std::size_t item = 0; items > 1 && item < items; ++item) {
        const std::size_t count = FilesOfItem(request_.files[item], files, texts.size());
        for (std::size_t i = 1; i <= count; ++i)
            texts.push_back(" [List " + std::to_string(item + 1) + "/" + std::to_string(items) + " " +
                            std::to_string(i) + "/" + std::to_string(count) + "]");
    }
    texts.resize(files.size());
    return texts;
}

AddLogRecord AddRecorder::FileStarted(const logread::FileRecord& file, double moment, bool problems) const {
    AddLogRecord record = Base(moment);
    if (list_) At(record, AddLogAt("date")) = kDateOfList;
    At(record, AddLogAt("fileSpec")) = "Start Read File: " + file.FileName;
    At(record, AddLogAt("action")) = "START Read File.";
    At(record, AddLogAt("fullFileName")) = file.FileName;
    if (problems) At(record, AddLogAt("problems")) = std::to_string(problems_);
    SetDates(record, file.counters.FirstDate, file.counters.LineDateTime);
    return record;
}

AddLogRecord AddRecorder::FileDone(AddLogRecord record, const logread::FileRecord& file, const Span& time,
                                   const std::string& listText) const {
    const std::string elapsed = core::fElapsedText(time.begun, time.ended);
    At(record, AddLogAt("fileSpec")) = file.FileName;
    At(record, AddLogAt("action")) = (file.stopped ? "File Read Stopped." : "Done. Read File. " + elapsed) + listText;
    At(record, AddLogAt("addedDay")) = AddLogSort(time.ended);
    At(record, AddLogAt("minsAddData")) = elapsed;
    SetCounters(record, CountersOf(file.counters), file.overlapped);
    return record;
}

void AddRecorder::ReadEnds(const logread::ReadOutcome& read) {
    Try([&] {
        const ProblemRecord problems = StoreProblems(env_.ini, ProblemStoreFile(site_.Paths()), read.problems);
        problems_ = problems.number;
        Note(problems.result);
    });
    Try([&] {
        const std::vector<std::string> listTexts = ListTexts(read.files);
        std::vector<AddLogRecord> records;
        Span time{start_, start_};
        for (std::size_t i = 0; i < read.files.size(); ++i) {
            const logread::FileRecord& file = read.files[i];
            time.begun = time.ended;
            time.ended += file.seconds / kSecondsOfDay;
            const bool problems = problems_ > 0 && HasProblems(read.problems, file.FileName);
            records.push_back(FileStarted(file, time.begun, problems));
            if (!file.skipped) records.push_back(FileDone(records.back(), file, time, listTexts[i]));
        }
        LogAddRecord(records);
    });
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

AddLogRecord AddRecorder::Totals(const logread::ReadOutcome& read) {
    const double now = env_.clock.Now();
    AddLogRecord record = Base(now);
    At(record, AddLogAt("date")) = std::string("** ") + (read.ok ? "" : "Part ") + "Done **";
    At(record, AddLogAt("fileSpec")) = "** End ADD ** Totals. All Files.";
    At(record, AddLogAt("action")) = "END ADD";
    At(record, AddLogAt("fullFileName")) = SpecsText(request_.files);
    At(record, AddLogAt("minsAddData")) = core::fElapsedText(start_, now);
    SetCounters(record, read.totals, std::ranges::any_of(read.files, &logread::FileRecord::overlapped));
    if (problems_ > 0) At(record, AddLogAt("problems")) = std::to_string(problems_);
    SetFilters(record);
    return record;
}

void AddRecorder::AddEnds(const logread::ReadOutcome& read, const visits::VisitsOutcome& visits) {
    Try([&] {
        AddLogRecord record = Totals(read);
        Try([&] {
            const SavedSummary summary = SaveEngineSummary(env_.ini, site_.Paths(), visits.foundTerms);
            Note(summary.result);
            At(record, AddLogAt("engineSummary")) = summary.name;
        });
        LogAddRecord({&record, 1});
    });
}

}  // namespace adddata
