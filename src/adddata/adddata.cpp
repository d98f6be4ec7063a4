#include "adddata/adddata.h"

#include <utility>

#include "adddata/addrecorder.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/ports.h"

namespace adddata {
namespace {

constexpr std::string_view kNotRecorded =
    "The data are not touched by this, but the add log does not tell all of this add. Make room or give the right to "
    "write, so that the next add is recorded.\r";

logdefs::FilterSwitches SwitchesOf(core::Env& env, const logdefs::FilterFiles& files, const AddRequest& request) {
    logdefs::FilterSwitches switches = logdefs::FltrReadSwitches(env.ini, files);
    if (request.mainFilter) switches.main = *request.mainFilter;
    if (request.skipRobots) switches.skipRobots = *request.skipRobots;
    if (request.skipComponents) switches.skipComponents = *request.skipComponents;
    return switches;
}

logread::ReadRequest ReadRequestOf(const AddRequest& request, const ProgramFiles& program,
                                   logdefs::AddFilters filters) {
    logread::ReadRequest read;
    read.files = request.files;
    read.formatFile = program.formats;
    read.filters = std::move(filters);
    read.NoPromptInvalid = request.NoPromptInvalid;
    read.NoPromptOverlap = request.NoPromptOverlap;
    read.Keep404List = request.Keep404List;
    read.progressPrefix = "Add. Step 1/3: ";
    return read;
}

// A read that was stopped has stored lines all the same; the user says whether they become visits now.
bool WantsVisits(core::Env& env, const logread::ReadOutcome& read) {
    if (read.ok || read.totals.AllLinesRead == 0) return true;
    const core::Answer answer = env.user.Ask(
        {.id = "ReadStoppedAddVisits",
         .message = "Read log file stopped. Do you want to add visit data for log records processed so far?",
         .buttons = "&Yes|&No",
         .cancelButton = 2});
    return !answer.Cancelled();
}

visits::VisitsOutcome BuildVisits(core::Env& env, sitedb::Site& site, const ProgramFiles& program) {
    const logdefs::SearchEngines engines = logdefs::SearchEngines::SEDefsLoad(env.ini, program.Engines());
    return visits::VisitsAdd(env, site, engines);
}

// Says what could not be recorded.
std::string Told(core::Env& env, const AddRecorder& recorder) {
    const std::string& failure = recorder.Failure();
    if (!failure.empty()) env.user.Tell("AddRecordIncomplete", std::string(kNotRecorded) + failure);
    return failure;
}

}  // namespace

logdefs::FilterFiles FilterFilesOf(const ProgramFiles& program, const sitedb::SitePaths& site) {
    return {site.mainFilter, site.componentFilter, program.robots, site.lastVals};
}

int AddOutcome::Status() const {
    if (visits.cancelled) return 3;
    const bool failed = !read.errors.empty() || !read.ok || !visits.error.empty() || (visitsWanted && !visits.done);
    return failed ? 1 : 0;
}

AddOutcome AddLogData(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request) {
    AddOutcome outcome;
    outcome.preprocessSeconds = request.preprocessSeconds;
    const logdefs::FilterFiles files = FilterFilesOf(program, site.Paths());
    const logdefs::FilterSwitches switches = SwitchesOf(env, files, request);
    logdefs::AddFilters filters = logdefs::FltrLoadAddFilters(env.ini, files, switches);
    outcome.warnings = filters.warnings;
    for (const std::string& warning : filters.warnings) env.user.Tell("FilterWithoutRule", warning);
    logread::ReadRequest read = ReadRequestOf(request, program, std::move(filters));
    outcome.format =
        request.format.empty() ? env.ini.IniGet("Main", "LFmtDflt", site.Paths().lastVals) : request.format;
    read.defaultFormat = outcome.format;
    AddRecorder recorder(env, site, {read.files, switches, files, request.preprocessSeconds});
    recorder.AddStarts();
    read.events = &recorder;
    outcome.read = logread::RawLog_AddData_ReadLogFiles(env, site, std::move(read));
    recorder.ReadEnds(outcome.read);
    // What failed for the lines would fail for their visits: one message, and the lines wait.
    outcome.visitsWanted = !outcome.read.storeFailed && WantsVisits(env, outcome.read);
    if (outcome.visitsWanted) outcome.visits = BuildVisits(env, site, program);
    if (outcome.visitsWanted && outcome.visits.done) recorder.AddEnds(outcome.read, outcome.visits);
    outcome.recordError = Told(env, recorder);
    return outcome;
}

std::optional<visits::VisitsOutcome> VisitsAdd_Resume(core::Env& env, sitedb::Site& site, const ProgramFiles& program) {
    const std::string mark = site.UnfinishedAdd(env);
    if (mark.empty()) return std::nullopt;
    const auto moment = core::ParseMoment(mark);
    const core::Answer answer = env.user.Ask(
        {.id = "CompleteUnfinishedAdd",
         .message =
             "Data was added from raw log files but process to create visits data was not completed. Reports will not "
             "include the data until the add process is completed.\rDate Last Added: " +
             (moment ? core::FormatDate(*moment, "mmm dd yyyy hh:nn") : mark) +
             "\rDo you want to complete process to add raw log data now?",
         .buttons = "&Yes|&No",
         .cancelButton = 2});
    if (answer.Cancelled()) return std::nullopt;
    return ResumeAdd(env, site, program);
}

visits::VisitsOutcome ResumeAdd(core::Env& env, sitedb::Site& site, const ProgramFiles& program) {
    AddRecorder recorder(env, site, {});
    visits::VisitsOutcome visits = BuildVisits(env, site, program);
    if (!visits.done) return visits;
    recorder.ResumeEnds(visits);
    Told(env, recorder);
    return visits;
}

}  // namespace adddata
