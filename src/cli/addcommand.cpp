#include <algorithm>
#include <memory>

#include "cli/addoutput.h"
#include "cli/commands.h"
#include "cli/filearguments.h"
#include "cli/output.h"
#include "cli/standardinput.h"
#include "cli/suggest.h"
#include "core/decompressreader.h"
#include "core/inistore.h"
#include "core/text.h"
#include "logdefs/formatfinder.h"
#include "logdefs/formatstore.h"
#include "logread/logset.h"
#include "logread/probe.h"

namespace cli {
namespace {

constexpr int kFailed = 1;
constexpr int kStopped = 3;
constexpr int kSignalled = 128;          // and the signal's number
constexpr std::size_t kLookedAt = 4096;  // bytes that tell a packed or binary file

struct AddArguments {
    std::vector<std::string> files{};
    std::string format{};
    std::string filter{};
    std::string overlap{};
    std::string invalid{};
    std::optional<bool> robots{}, components{};
    bool json = false, newRobots = false;
};

// A format's name as it is stored, or wrong usage with those that are.
void CheckFormat(Program& program, const std::string& name, const std::string& whence) {
    const std::string file = program.Session().ProgramFiles().formats;
    if (logdefs::LogFmtLoad(program.Ini(), name, file).found) return;
    throw UsageError("There is no log format of that name" + whence + ": \"" + name + "\". " +
                     ValidAre(name, logdefs::LogFmtNames(program.Ini(), file)));
}

adddata::AddRequest RequestOf(Program& program, const AddArguments& arguments, std::vector<std::string>& errors) {
    adddata::AddRequest request;
    for (const std::string& given : arguments.files) {
        const std::string path = LogArgument(given);
        if (!logread::NamesMany(path) || logread::NamesFiles(path))
            request.files.push_back({path, ""});
        else
            errors.push_back(NoFile(path));
    }
    request.format = arguments.format;
    if (!request.format.empty()) CheckFormat(program, request.format, "");
    if (!arguments.filter.empty()) {
        const std::string& filter = Choice("--filter", arguments.filter, {"all", "only", "except"});
        request.mainFilter = filter == "all"    ? logdefs::MainFilter::All
                             : filter == "only" ? logdefs::MainFilter::Only
                                                : logdefs::MainFilter::Except;
    }
    if (arguments.robots) request.skipRobots = !*arguments.robots;
    if (arguments.components) request.skipComponents = !*arguments.components;
    CommandUser::Answers answers;
    if (!arguments.overlap.empty())
        answers.addOverlap = Choice("--overlap", arguments.overlap, {"add", "skip"}) == "add";
    if (!arguments.invalid.empty())
        answers.skipInvalid = Choice("--invalid", arguments.invalid, {"skip", "stop"}) == "skip";
    request.NoPromptOverlap = answers.addOverlap.value_or(false);
    request.NoPromptInvalid = answers.skipInvalid.value_or(false);
    program.User().SetAnswers(answers);
    return request;
}

// What fits a file that was left out because its format does not. Nothing for packed, binary, empty and missing ones.
// The first bytes of a log, unpacked; "" when it cannot be read.
std::string StartOf(const std::string& path) {
    core::UnpackReader file;
    if (!file.Open(path)) return {};
    std::string start(kLookedAt, '\0');
    start.resize(file.Read(start.data(), start.size()));
    return start;
}

std::optional<Misfit> MisfitOf(Program& program, const logread::FileRecord& record) {
    const std::string path = logread::OpenedPath(record.FileName);
    if (!record.skipped || record.overlapped || core::FileSize(path) <= 0) return std::nullopt;
    if (!core::IsRegularFile(path)) return std::nullopt;
    const std::string start = StartOf(path);
    if (start.empty() || !logread::PackedKind(start).empty() || logread::LooksBinary(start)) return std::nullopt;
    const std::string formats = program.Session().ProgramFiles().formats;
    const logdefs::LogFormatLoaded loaded = logdefs::LogFmtLoad(program.Ini(), record.format, formats);
    logdefs::LogSample sample;
    if (!logdefs::ReadLogSample(path, logdefs::kSampleLines, sample)) return std::nullopt;
    const double now = program.Env().clock.Now();
    const logdefs::FormatTrial trial = logdefs::TryFormat(sample, record.format, loaded.format, 0, now);
    const std::vector<logdefs::FormatTrial> trials = logdefs::FindFormats(program.Ini(), formats, sample, now);
    Misfit misfit{record.FileName,         record.format,     trial.lines, trial.fit,
                  trial.firstMisfitNumber, trial.firstMisfit, {}};
    for (const logdefs::FormatTrial& other : trials) misfit.wouldFit.push_back(other.format);
    return misfit;
}

// What is stored without visits stays, and is completed by `resume` or the next add.
void TellStopped(Program& program, sitedb::Site& site, const adddata::AddOutcome& outcome) {
    if (outcome.visitsWanted && outcome.visits.done) return;
    if (site.UnfinishedAdd(program.Env()).empty()) return;
    PrintError(
        "Not finished. What was read so far is stored and waits for its visits. Complete it with: corvane-cli resume");
}

int StatusOf(Program& program, const AddResult& result) {
    if (result.newRobots && !result.newRobots->goOn) {
        if (SignalSeen() != 0) return kSignalled + SignalSeen();
        return result.newRobots->stopped ? kStopped : kFailed;
    }
    if (SignalSeen() != 0 && result.outcome.Status() != 0) return kSignalled + SignalSeen();
    if (result.outcome.visits.cancelled || program.User().Cancelled()) return kStopped;
    return result.errors.empty() ? result.outcome.Status() : std::max(kFailed, result.outcome.Status());
}

// False: the search for new robots ended the add before it began.
bool NewRobots(Program& program, sitedb::Site& site, AddResult& result, adddata::AddRequest& request) {
    result.newRobots = MakeNewRobots(program, site, request);
    PrintNewRobots(*result.newRobots);
    request.preprocessSeconds = result.newRobots->seconds;
    return result.newRobots->goOn;
}

int Add(Program& program, const AddArguments& arguments) {
    AddResult result;
    const bool fromInput = WantsStandardInput(arguments.files);
    adddata::AddRequest request = RequestOf(program, arguments, result.errors);
    const auto site = program.OpenSite();
    if (site->ReadOnly()) throw Failure("The site's folder cannot be written: " + site->Paths().folder);
    result.site = site->Options().name;
    if (request.format.empty())
        CheckFormat(program, program.Ini().IniGet("Main", "LFmtDflt", site->Paths().lastVals),
                    " (the site's default, LFmtDflt; give one with --format)");
    for (const std::string& error : result.errors) PrintError(error);
    if (fromInput) KeepStandardInput(site->Paths().temp);
    if (!request.files.empty()) {
        try {
            if (!arguments.newRobots || NewRobots(program, *site, result, request))
                result.outcome = adddata::AddLogData(program.Env(), *site, program.Session().ProgramFiles(), request);
        } catch (const Unanswered& question) {
            const bool waits = !site->UnfinishedAdd(program.Env()).empty();
            throw UsageError(
                std::string(question.what()) +
                (waits ? "\nWhat was read so far is stored. Complete it with: corvane-cli resume, or add the "
                         "same files again with the option and --overlap add."
                       : ""));
        }
    }
    for (const std::string& error : result.outcome.read.errors) PrintError(error);
    if (!result.outcome.visits.error.empty()) PrintError(result.outcome.visits.error);
    for (const logread::FileRecord& record : result.outcome.read.files)
        if (auto misfit = MisfitOf(program, record)) result.misfits.push_back(std::move(*misfit));
    for (const Misfit& misfit : result.misfits) PrintMisfit(misfit);
    result.status = StatusOf(program, result);
    if (!request.files.empty()) TellStopped(program, *site, result.outcome);
    if (arguments.json)
        PrintAddJson(result);
    else if (!request.files.empty() && (!result.newRobots || result.newRobots->goOn))
        PrintAddText(result);
    return result.status;
}

int Resume(Program& program, bool json) {
    const auto site = program.OpenSite();
    if (site->ReadOnly()) throw Failure("The site's folder cannot be written: " + site->Paths().folder);
    const bool waits = !site->UnfinishedAdd(program.Env()).empty();
    if (!waits) PrintError("Nothing waits to be completed.");
    visits::VisitsOutcome visits;
    visits.done = true;
    if (waits) visits = adddata::ResumeAdd(program.Env(), *site, program.Session().ProgramFiles());
    if (!visits.error.empty()) PrintError(visits.error);
    if (visits.cancelled) PrintError("Stopped. The lines wait for their visits. Complete it with: corvane-cli resume");
    const int status = visits.cancelled ? kStopped : visits.done ? 0 : kFailed;
    if (json)
        PrintVisitsJson(site->Options().name, status, visits);
    else if (waits)
        PrintVisitsText(visits);
    return status;
}

int Compact(Program& program) {
    const auto site = program.OpenSite();
    const std::string& file = site->Paths().database;
    if (site->ReadOnly()) throw Failure("The site's folder cannot be written: " + site->Paths().folder);
    const std::int64_t before = core::FileSize(file);
    site->Pages().Release();
    if (!sitedb::BLDTBL_CompactDB(site->Db()))
        throw Failure(
            "The database could not be compacted and stands as it was. A compacted copy needs as much free disk space "
            "as the file has: " +
            file);
    Print("Compacted: " + std::to_string(before) + " bytes before, " + std::to_string(core::FileSize(file)) +
          " bytes now.\n");
    return 0;
}

}  // namespace

void AddAddCommands(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<AddArguments>();
    CLI::App* add = NewCommand(root, "add", "Read log files into the site and build visits",
                               "add --format apache-combined --no-robots --invalid skip --overlap add access.log*");
    AddTexts(*add, "FILE", arguments->files, std::string(kFileHelp))->required();
    AddText(*add, "--format", arguments->format, "Name of the log format (default: the site's LFmtDflt)");
    AddText(*add, "--filter", arguments->filter,
            "Main filter: all (off), only (what satisfies it), except (what does not)");
    AddSwitch(*add, "robots", arguments->robots, "Keep lines of robots");
    AddSwitch(*add, "components", arguments->components, "Keep page components (images, styles, scripts)");
    AddText(*add, "--overlap", arguments->overlap,
            "Files whose dates overlap stored data: add (identical lines are left out) or skip");
    AddText(*add, "--invalid", arguments->invalid, "Lines that do not fit: skip them, or stop at the first of a file");
    add->add_flag("--new-robots", arguments->newRobots,
                  "First look for user agents that asked for robots.txt, and make robot filters of those that do not "
                  "look like browsers");
    add->add_flag("--json", arguments->json, "All counters as JSON");
    add->callback([=, &program] { program.run = [=, &program] { return Add(program, *arguments); }; });

    CLI::App* resume = NewCommand(root, "resume", "Complete an add that did not finish", "resume");
    resume->add_flag("--json", arguments->json, "As JSON");
    resume->callback([=, &program] { program.run = [=, &program] { return Resume(program, arguments->json); }; });

    CLI::App* compact = NewCommand(root, "compact", "Make the site's database file as small as it can be", "compact");
    compact->callback([&program] { program.run = [&program] { return Compact(program); }; });
}

}  // namespace cli
