#include "cli/analysisarguments.h"

#include "analysis/areas.h"
#include "analysis/run.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/dates.h"
#include "core/numbers.h"
#include "core/text.h"
#include "reports/groups.h"
#include "sitedb/analysisrows.h"

namespace cli {
namespace {

constexpr int kFailed = 1;
constexpr int kStopped = 3;
constexpr std::int32_t kDefaultTop = 20;

std::optional<std::int32_t> DayOf(const std::string& option, const std::string& text) {
    if (text.empty()) return std::nullopt;
    const std::optional<std::int32_t> day = core::ParseIsoDate(text);
    if (!day) throw UsageError(option + " cannot be \"" + text + "\". Valid is a date YYYY-MM-DD, such as 2024-02-29.");
    return day;
}

// Dates that are left out mean all the data, whatever is stored.
analysis::DayRange DatesOf(const AnalysisArguments& arguments) {
    const analysis::DayRange dates{DayOf("--from", arguments.from), DayOf("--to", arguments.to)};
    if (dates.first && dates.last && *dates.first > *dates.last)
        throw UsageError("--from " + arguments.from + " lies behind --to " + arguments.to + ".");
    return dates;
}

void CheckArea(Program& program, const sitedb::Site& site, const std::string& area) {
    const std::vector<std::string> names = analysis::Area_Names(program.Ini(), site);
    for (const std::string& name : names)
        if (core::fEquals(name, area, core::Case::Ignore)) return;
    throw UsageError("There is no site area \"" + area + "\". " +
                     (names.empty() ? "This site has none." : ValidAre(area, names)));
}

// The stored options, and over them what the call says. Nothing of it is stored.
analysis::AnalysisRequest RequestOf(Program& program, const AnalysisArguments& arguments, int field) {
    analysis::AnalysisRequest request = analysis::Analyse_Request(program.Ini(), field);
    request.options.dates = DatesOf(arguments);
    request.ShowNotSEitem = arguments.notSearch.value_or(request.ShowNotSEitem);
    request.options.ShowDist1 = arguments.dist1.value_or(request.options.ShowDist1);
    request.options.ShowDist2 = arguments.dist2.value_or(request.options.ShowDist2);
    request.options.ShowClickThru = arguments.clickThrough.value_or(request.options.ShowClickThru);
    request.AnalTgt = arguments.targets.value_or(request.AnalTgt);
    if (arguments.threshold) request.threshold = arguments.threshold;
    if (!arguments.area.empty()) request.siteArea = arguments.area;
    if (arguments.top) request.CntTopVals = *arguments.top;
    if (request.CntTopVals <= 0) request.CntTopVals = kDefaultTop;
    return request;
}

// Of a stamp "yyyymmddhhnnss".
std::string DateText(std::int64_t stamp) {
    constexpr std::int64_t kStampsOfDay = 1000000;
    return core::fFormatText(std::to_string(stamp / kStampsOfDay), "@@@@-@@-@@");
}

// Why there are no results.
int TellNothing(sitedb::Site& site) {
    const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(site);
    PrintError(facts.visits == 0 ? "The site has no visits yet. Add a log with: corvane-cli add FILE"
                                 : "The site has visits from " + DateText(facts.firstStamp) + " to " +
                                       DateText(facts.lastStamp) + ".");
    return kFailed;
}

void CheckGrouped(const reports::FieldRow& field) {
    if (reports::GroupsOfField(field.code) != nullptr) return;
    std::string fields;
    for (const reports::GroupRow& row : reports::kGroupTable)
        fields.append(fields.empty() ? "" : ", ").append(reports::FindField(row.field)->word);
    throw UsageError("There are no groups of " + std::string(field.word) + ". Fields with groups are: " + fields);
}

reports::ReportGrid GridOf(Program& program, const DrawnReport& drawn, const AnalysisArguments& arguments) {
    core::IniStore& ini = program.Ini();
    if (drawn.kind == reports::ReportKind::Grouped) {
        const dialogs::GroupLists groups(ini, reports::GroupPlaceOf(drawn.field->code));
        return reports::pShowGroupReport({program.Env(), *drawn.results}, groups.All());
    }
    const reports::Deviation deviation(drawn.results->days, reports::ReadDevSettings(ini));
    const bool wanted = arguments.deviation.value_or(reports::DevShow(ini));
    return reports::pShowReport({program.Env(), *drawn.results, wanted ? &deviation : nullptr}, drawn.kind,
                                drawn.results->CntTopVals);
}

}  // namespace

const reports::FieldRow& FieldOf(const std::string& text) {
    if (const reports::FieldRow* row = reports::FieldOfWord(text)) return *row;
    std::vector<std::string> words;
    for (const reports::FieldRow& row : reports::kFieldTable)
        if (!row.word.empty()) words.emplace_back(row.word);
    throw UsageError("There is no field \"" + text + "\". " + ValidAre(text, words, words.size()));
}

reports::ReportKind KindOf(const AnalysisArguments& arguments, reports::ReportKind otherwise) {
    if (arguments.kind.empty()) return otherwise;
    const std::string& kind = Choice("--kind", arguments.kind, {"top", "all", "grouped"});
    return kind == "top"   ? reports::ReportKind::Top
           : kind == "all" ? reports::ReportKind::All
                           : reports::ReportKind::Grouped;
}

DrawnReport Draw(Program& program, const AnalysisArguments& arguments, reports::ReportKind otherwise) {
    DrawnReport drawn;
    drawn.field = &FieldOf(arguments.field);
    drawn.kind = KindOf(arguments, otherwise);
    if (drawn.kind == reports::ReportKind::Grouped) CheckGrouped(*drawn.field);
    DatesOf(arguments);  // wrong dates are told before anything is opened
    drawn.site = program.OpenSite();
    if (!arguments.area.empty()) CheckArea(program, *drawn.site, arguments.area);
    const analysis::AnalysisRequest request = RequestOf(program, arguments, drawn.field->code);
    analysis::AnalysisOutcome outcome = analysis::CVNA_VisitsAnalyse(program.Env(), *drawn.site, request);
    if (outcome.stopped) {
        PrintError("Stopped.");
        drawn.status = kStopped;
        return drawn;
    }
    if (!outcome.results) {
        drawn.status = TellNothing(*drawn.site);
        return drawn;
    }
    drawn.results = std::move(outcome.results);
    drawn.grid = GridOf(program, drawn, arguments);
    if (drawn.grid.rows.empty() && !drawn.grid.messages.empty()) drawn.status = kFailed;
    return drawn;
}

void WriteReport(const std::string& output, const std::string& text, bool data) {
    if (output == "-") return data ? PrintData(text) : Print(text);
    if (const core::Result written = core::WriteWhole(AbsolutePath(output), text); !written)
        throw Failure(written.error);
}

void AddAnalysisOptions(CLI::App& command, AnalysisArguments& arguments) {
    AddText(command, "--kind", arguments.kind, "top, all or grouped");
    command.add_option("--top", arguments.top, "Number of values of a top report (default: the site's CntTopVals)")
        ->check(CLI::Range(1, 32767).description(""))
        ->type_name("N");
    AddText(command, "--from", arguments.from, "First day, YYYY-MM-DD (default: all the data)");
    AddText(command, "--to", arguments.to, "Last day, YYYY-MM-DD");
    command.add_option("--threshold", arguments.threshold, "Sightings that give a value a line of its own")
        ->check(CLI::Range(0, 2147483647).description(""))
        ->type_name("N");
    AddSwitch(command, "not-search", arguments.notSearch, "Count visits without a search term too");
    AddText(command, "--area", arguments.area, "Only visits that touched this site area");
    AddSwitch(command, "targets", arguments.targets, "Count who reached the site's targets");
}

void AddFieldsFooter(CLI::App& command) {
    std::string words = "\nFields:";
    for (const reports::FieldRow& row : reports::kFieldTable)
        if (!row.word.empty()) words.append(" ").append(row.word);
    command.footer(command.get_footer() + words);
}

}  // namespace cli
