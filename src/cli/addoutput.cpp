#include "cli/addoutput.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/output.h"
#include "core/dates.h"
#include "core/numbers.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

constexpr double kMostWhole = 9e15;
constexpr std::size_t kShownFormats = 6;
constexpr std::string_view kAllPrefix = "All";

ordered_json Moment(double moment) {
    return moment == 0 ? ordered_json(nullptr) : ordered_json(core::FormatDate(moment, "yyyy-mm-dd hh:nn:ss"));
}

ordered_json Whole(double number) {
    if (std::floor(number) == number && std::fabs(number) < kMostWhole) return static_cast<std::int64_t>(number);
    return number;
}

double Rounded(double seconds) { return std::round(seconds * 1000) / 1000; }

const std::vector<std::string>* ProblemsOf(const logread::ProblemList& problems, const std::string& file) {
    for (const logread::ProblemList::File& item : problems.Files())
        if (item.name == file) return &item.texts;
    return nullptr;
}

ordered_json FileJson(const logread::FileRecord& file, const logread::ProblemList& problems) {
    const logread::FileCounters& counters = file.counters;
    const std::vector<std::string>* texts = ProblemsOf(problems, file.FileName);
    return {{"FileName", file.FileName},
            {"format", file.format},
            {"LinesRead", counters.LinesRead},
            {"LinesAdded", counters.LinesAdded},
            {"LinesExist", counters.LinesExist},
            {"Filtered", counters.Filtered},
            {"Bots", counters.Bots},
            {"Comps", counters.Comps},
            {"BytesRead", Whole(counters.BytesRead)},
            {"BytesAdded", Whole(counters.BytesAdded)},
            {"FirstDate", Moment(counters.FirstDate)},
            {"LastDate", Moment(counters.LineDateTime)},
            {"skipped", file.skipped},
            {"stopped", file.stopped},
            {"overlapped", file.overlapped},
            {"seconds", Rounded(file.seconds)},
            {"problems", texts != nullptr ? ordered_json(*texts) : ordered_json::array()}};
}

ordered_json TotalsJson(const logread::AllCounters& all) {
    return {{"AllLinesRead", all.AllLinesRead},
            {"AllLinesAdded", all.AllLinesAdded},
            {"AllLinesExist", all.AllLinesExist},
            {"AllFiltered", all.AllFiltered},
            {"AllBots", all.AllBots},
            {"AllComps", all.AllComps},
            {"AllBytesRead", Whole(all.AllBytesRead)},
            {"AllBytesAdded", Whole(all.AllBytesAdded)},
            {"AllFirstDate", Moment(all.AllFirstDate)},
            {"AllLastDate", Moment(all.AllLastDate)}};
}

ordered_json VisitsJson(const visits::VisitsOutcome& visits) {
    return {{"done", visits.done},
            {"lines", visits.lines},
            {"visitsMade", visits.visitsMade},
            {"visitsContinued", visits.visitsContinued},
            {"visitsErased", visits.visitsErased},
            {"linesIgnored", visits.linesIgnored},
            {"compacted", visits.compacted}};
}

ordered_json ErrorsJson(std::vector<std::string> errors, const visits::VisitsOutcome& visits) {
    if (!visits.error.empty()) errors.push_back(visits.error);
    for (std::string& text : errors) text = SafeMessage(text);
    return errors;
}

ordered_json MisfitJson(const Misfit& misfit) {
    return {{"FileName", misfit.file},
            {"format", misfit.format},
            {"lines", misfit.lines},
            {"fit", misfit.fit},
            {"firstMisfitNumber", misfit.firstMisfitNumber},
            {"firstMisfit", misfit.firstMisfit},
            {"wouldFit", misfit.wouldFit}};
}

std::string Count(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

std::string SecondsText(double seconds) { return core::fFormat(seconds, "0.0") + " s"; }

std::vector<std::string> CounterCells(const std::string& name, std::int64_t read, std::int64_t added,
                                      std::int64_t exist, std::int64_t filtered, std::int64_t bots,
                                      std::int64_t comps) {
    return {name, Count(read), Count(added), Count(exist), Count(filtered), Count(bots), Count(comps)};
}

}  // namespace

void PrintAddJson(const AddResult& result) {
    const logread::ReadOutcome& read = result.outcome.read;
    const visits::VisitsOutcome& visits = result.outcome.visits;
    ordered_json files = ordered_json::array();
    for (const logread::FileRecord& file : read.files) files.push_back(FileJson(file, read.problems));
    ordered_json problems = ordered_json::object();
    for (const logread::ProblemList::File& file : read.problems.Files()) problems[file.name] = file.texts;
    ordered_json misfits = ordered_json::array();
    for (const Misfit& misfit : result.misfits) misfits.push_back(MisfitJson(misfit));
    std::vector<std::string> errors = result.errors;
    errors.insert(errors.end(), read.errors.begin(), read.errors.end());
    const ordered_json totals = TotalsJson(read.totals);
    ordered_json json{{"site", result.site}, {"format", result.outcome.format}, {"status", result.status}};
    // Each total also under the name that its counter has in a file.
    for (const auto& [name, value] : totals.items()) json[name.substr(kAllPrefix.size())] = value;
    json.update({{"files", std::move(files)},
                 {"totals", totals},
                 {"visits", VisitsJson(visits)},
                 {"visitsMade", visits.visitsMade},
                 {"seconds",
                  {{"read", Rounded(read.seconds)},
                   {"visits", Rounded(visits.buildSeconds)},
                   {"compaction", Rounded(visits.compactSeconds)}}},
                 {"problems", std::move(problems)},
                 {"misfits", std::move(misfits)},
                 {"errors", ErrorsJson(std::move(errors), visits)},
                 {"warnings", result.outcome.warnings},
                 {"messages", visits.messages}});
    if (result.newRobots) json["newRobots"] = NewRobotsJson(*result.newRobots);
    PrintJson(json);
}

void PrintAddText(const AddResult& result) {
    const logread::ReadOutcome& read = result.outcome.read;
    TextTable table{{{"File"},
                     {"Lines read", true},
                     {"Added", true},
                     {"Exist", true},
                     {"Filtered", true},
                     {"Robots", true},
                     {"Components", true}},
                    {}};
    for (const logread::FileRecord& file : read.files) {
        const logread::FileCounters& c = file.counters;
        table.rows.push_back(
            CounterCells(file.FileName, c.LinesRead, c.LinesAdded, c.LinesExist, c.Filtered, c.Bots, c.Comps));
    }
    const logread::AllCounters& all = read.totals;
    table.rows.push_back(CounterCells("All files", all.AllLinesRead, all.AllLinesAdded, all.AllLinesExist,
                                      all.AllFiltered, all.AllBots, all.AllComps));
    PrintTable(table);
    Print("Read in " + SecondsText(read.seconds) + ".\n");
    for (const logread::FileRecord& file : read.files) {
        const std::vector<std::string>* texts = ProblemsOf(read.problems, file.FileName);
        if (texts == nullptr || (file.skipped && !file.overlapped)) continue;  // told as an error already
        for (const std::string& text : *texts) PrintError(file.FileName + ": " + text);
    }
    if (result.outcome.visitsWanted) PrintVisitsText(result.outcome.visits);
}

void PrintVisitsJson(const std::string& site, int status, const visits::VisitsOutcome& visits) {
    PrintJson({{"site", site},
               {"status", status},
               {"visits", VisitsJson(visits)},
               {"visitsMade", visits.visitsMade},
               {"seconds", {{"visits", Rounded(visits.buildSeconds)}, {"compaction", Rounded(visits.compactSeconds)}}},
               {"errors", ErrorsJson({}, visits)},
               {"messages", visits.messages}});
}

void PrintVisitsText(const visits::VisitsOutcome& visits) {
    std::string text = "Visits: " + Count(visits.visitsMade) + " made, " + Count(visits.visitsContinued) + " continued";
    if (visits.visitsErased > 0) text += ", " + Count(visits.visitsErased) + " without a term erased";
    Print(text + ", in " + SecondsText(visits.buildSeconds) + "; compaction " + SecondsText(visits.compactSeconds) +
          ".\n");
    for (const std::string& message : visits.messages) PrintError(message);
}

void PrintMisfit(const Misfit& misfit) {
    std::string text = misfit.file + ": " + Count(misfit.fit) + " of the first " + Count(misfit.lines) +
                       " lines fit the format " + misfit.format + ".";
    if (misfit.firstMisfitNumber > 0)
        text +=
            "\nThe first that does not is line " + Count(misfit.firstMisfitNumber) + ": " + Safe(misfit.firstMisfit);
    std::string names;
    for (std::size_t i = 0; i < misfit.wouldFit.size() && i < kShownFormats; ++i)
        names += (i > 0 ? ", " : "") + misfit.wouldFit[i];
    text += names.empty() ? "\nNo stored format fits. Describe one with: corvane-cli format set NAME SPEC"
                          : "\nFormats that would fit, the best first: " + names + ". Choose with: --format NAME";
    PrintError(text);
}

}  // namespace cli
