#include <memory>
#include <nlohmann/json.hpp>

#include "analysis/areas.h"
#include "analysis/run.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/dates.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dialogs/csv.h"
#include "reports/fieldtable.h"
#include "reports/lines.h"

namespace cli {
namespace {

constexpr int kFailed = 1;
constexpr int kStopped = 3;
constexpr std::int32_t kDefaultTop = 20;
constexpr std::string_view kIso = "yyyy-mm-dd";

struct ReportArguments {
    std::string field{};
    std::string kind{};
    std::optional<std::int32_t> top{};
    std::string from{}, to{};
    std::optional<std::int32_t> threshold{};
    std::optional<bool> notSearch{}, dist1{}, dist2{}, clickThrough{}, targets{};
    std::string area{};
    bool deviation = false;
    bool safe = false;
    std::string as = "table";
    std::string output = "-";
};

const reports::FieldRow& FieldOf(const std::string& text) {
    if (const reports::FieldRow* row = reports::FieldOfWord(text)) return *row;
    std::vector<std::string> words;
    for (const reports::FieldRow& row : reports::kFieldTable)
        if (!row.word.empty()) words.emplace_back(row.word);
    throw UsageError("There is no field \"" + text + "\". " + ValidAre(text, words, words.size()));
}

std::optional<std::int32_t> DayOf(const std::string& option, const std::string& text) {
    if (text.empty()) return std::nullopt;
    const std::optional<std::int32_t> day = core::ParseIsoDate(text);
    if (!day) throw UsageError(option + " cannot be \"" + text + "\". Valid is a date YYYY-MM-DD, such as 2024-02-29.");
    return day;
}

reports::ReportKind KindOf(const ReportArguments& arguments) {
    if (arguments.deviation) throw UsageError("--deviation is not built yet.");
    Choice("--as", arguments.as, {"table", "csv", "json"}, {"html"});
    if (arguments.kind.empty() || Choice("--kind", arguments.kind, {"top", "all"}, {"grouped"}) == "top")
        return reports::ReportKind::Top;
    return reports::ReportKind::All;
}

// Dates that are left out mean all the data, whatever is stored.
analysis::DayRange DatesOf(const ReportArguments& arguments) {
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
analysis::AnalysisRequest RequestOf(Program& program, const ReportArguments& arguments, int field) {
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

std::vector<std::string> Headers(const reports::ReportGrid& grid) {
    std::vector<std::string> headers;
    for (const reports::Column& column : grid.columns) headers.push_back(column.header);
    return headers;
}

// The grid as it stands.
std::string CsvText(const reports::ReportGrid& grid, bool safe) {
    const auto guard = safe ? dialogs::CsvGuard::Spreadsheet : dialogs::CsvGuard::Plain;
    std::string text = dialogs::CsvLine(Headers(grid), dialogs::CsvQuotes::Doubled, guard);
    for (const reports::GridRow& row : grid.rows)
        text += dialogs::CsvLine(row.cells, dialogs::CsvQuotes::Doubled, guard);
    return text;
}

std::string GridJson(const reports::ReportGrid& grid, const analysis::SrchTrmData& results,
                     const reports::FieldRow& field, reports::ReportKind kind) {
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (const reports::GridRow& row : grid.rows) rows.push_back(row.cells);
    return JsonText({{"field", field.word},
                     {"kind", kind == reports::ReportKind::Top ? "top" : "all"},
                     {"site", results.siteName},
                     {"from", core::fDateText(results.days.first, kIso)},
                     {"to", core::fDateText(results.days.Last(), kIso)},
                     {"columns", Headers(grid)},
                     {"rows", std::move(rows)}});
}

std::string GridTable(const reports::ReportGrid& grid, const analysis::SrchTrmData& results, int width) {
    TextTable table;
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < grid.columns.size(); ++i) {
        const reports::Column& column = grid.columns[i];
        if (column.kind == reports::ColumnKind::Separator) continue;
        const bool number = column.kind == reports::ColumnKind::Count || column.kind == reports::ColumnKind::Percent ||
                            column.kind == reports::ColumnKind::Average;
        shown.push_back(i);
        table.columns.push_back({column.header, number && !column.leftAligned});
    }
    for (const reports::GridRow& row : grid.rows) {
        std::vector<std::string>& cells = table.rows.emplace_back();
        for (const std::size_t i : shown) cells.push_back(row.cells[i]);
    }
    const std::string heading = results.siteName + ", " + core::fDateText(results.days.first, kIso) + " to " +
                                core::fDateText(results.days.Last(), kIso);
    return CutToWidth(Safe(heading), width) + "\n\n" + TableText(table, width);
}

void Write(const ReportArguments& arguments, const std::string& text) {
    if (arguments.output == "-") {
        if (arguments.as == "csv")
            PrintData(text);
        else
            Print(text);
        return;
    }
    if (const core::Result written = core::WriteWhole(AbsolutePath(arguments.output), text); !written)
        throw Failure(written.error);
}

int Report(Program& program, const ReportArguments& arguments) {
    const reports::FieldRow& field = FieldOf(arguments.field);
    const reports::ReportKind kind = KindOf(arguments);
    DatesOf(arguments);  // wrong dates are told before anything is opened
    const auto site = program.OpenSite();
    if (!arguments.area.empty()) CheckArea(program, *site, arguments.area);
    const analysis::AnalysisRequest request = RequestOf(program, arguments, field.code);
    const analysis::AnalysisOutcome outcome = analysis::CVNA_VisitsAnalyse(program.Env(), *site, request);
    if (outcome.stopped) {
        PrintError("Stopped.");
        return kStopped;
    }
    if (!outcome.results) {
        const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(*site);
        PrintError(facts.visits == 0 ? "The site has no visits yet. Add a log with: corvane-cli add FILE"
                                     : "The site has visits from " + DateText(facts.firstStamp) + " to " +
                                           DateText(facts.lastStamp) + ".");
        return kFailed;
    }
    const reports::ReportGrid grid = reports::pShowReport({program.Env(), *outcome.results}, kind, request.CntTopVals);
    if (grid.rows.empty() && !grid.messages.empty()) return kFailed;
    if (arguments.as == "csv")
        Write(arguments, CsvText(grid, arguments.safe));
    else if (arguments.as == "json")
        Write(arguments, GridJson(grid, *outcome.results, field, kind));
    else
        Write(arguments, GridTable(grid, *outcome.results, arguments.output == "-" ? TerminalWidth() : 0));
    return 0;
}

void AddReportOptions(CLI::App& report, ReportArguments& arguments) {
    AddText(report, "FIELD", arguments.field, "What to list: terms, start-pages, engines, pages ...")->required();
    AddText(report, "--kind", arguments.kind, "top (default) or all");
    report.add_option("--top", arguments.top, "Number of values of a top report (default: the site's CntTopVals)")
        ->check(CLI::Range(1, 32767).description(""))
        ->type_name("N");
    AddText(report, "--from", arguments.from, "First day, YYYY-MM-DD (default: all the data)");
    AddText(report, "--to", arguments.to, "Last day, YYYY-MM-DD");
    report.add_option("--threshold", arguments.threshold, "Sightings that give a value a line of its own")
        ->check(CLI::Range(0, 2147483647).description(""))
        ->type_name("N");
    AddSwitch(report, "not-search", arguments.notSearch, "Count visits without a search term too");
    AddSwitch(report, "dist1", arguments.dist1, "Distribution over engines (of engines: over terms)");
    AddSwitch(report, "dist2", arguments.dist2, "Distribution over start pages or terms");
    AddSwitch(report, "click-through", arguments.clickThrough, "Distribution over the pages that followed");
    AddText(report, "--area", arguments.area, "Only visits that touched this site area");
    AddSwitch(report, "targets", arguments.targets, "Columns of the site's targets");
    report.add_flag("--deviation", arguments.deviation)->group("");
    report.add_flag("--safe", arguments.safe, "Guard cells of a CSV that a spreadsheet would take for formulas");
    AddText(report, "--as", arguments.as, "table (default), csv or json");
    AddText(report, "-o,--output", arguments.output, "File to write, - is standard output (default)");
}

}  // namespace

void AddReportCommands(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<ReportArguments>();
    CLI::App* report =
        NewCommand(root, "report", "Report on one field",
                   "report terms --kind top --top 20 --threshold 1 --from 2024-01-01 --as csv -o terms.csv");
    AddReportOptions(*report, *arguments);
    std::string words = "\nFields:";
    for (const reports::FieldRow& row : reports::kFieldTable)
        if (!row.word.empty()) words.append(" ").append(row.word);
    report->footer(report->get_footer() + words);
    report->callback([=, &program] { program.run = [=, &program] { return Report(program, *arguments); }; });
}

}  // namespace cli
