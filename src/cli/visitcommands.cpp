#include <memory>
#include <nlohmann/json.hpp>

#include "analysis/visitsbehind.h"
#include "cli/analysisarguments.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/reportline.h"
#include "core/numbers.h"
#include "dialogs/csv.h"
#include "reports/behind.h"
#include "reports/plot.h"
#include "sitedb/site.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t kMostVisits = 10000;
constexpr int kStopped = 3;

struct VisitArguments {
    AnalysisArguments analysis{};
    std::string line{};
    bool total = false, lines = false;
    std::optional<std::int32_t> visit{};
    std::size_t most = kMostVisits;
    std::string as = "table", output = "-";
};

std::string Stamp(std::int64_t stamp) { return core::fFormatText(std::to_string(stamp), "@@@@-@@-@@ @@:@@:@@"); }

ordered_json LinesJson(const std::vector<analysis::LineFacts>& lines) {
    ordered_json all = ordered_json::array();
    for (const analysis::LineFacts& line : lines)
        all.push_back({{"time", Stamp(line.Timestamp)},
                       {"address", line.address},
                       {"page", line.page},
                       {"status", line.status},
                       {"bytes", line.bytes},
                       {"repeated", line.repeated},
                       {"referrer", line.referrer},
                       {"agent", line.userAgent}});
    return all;
}

ordered_json VisitJson(const analysis::VisitFacts& visit) {
    return {{"visit", visit.VisitID},
            {"start", Stamp(visit.StartTimeStamp)},
            {"end", Stamp(visit.EndTimeStamp)},
            {"address", visit.address},
            {"term", visit.term},
            {"engine", visit.engine},
            {"startPage", visit.startPage},
            {"further", visit.further}};
}

// Rows with their headers, as CSV or as a table.
std::string RowsText(const dialogs::Rows& rows, const VisitArguments& arguments) {
    if (arguments.as == "csv") {
        std::string text;
        for (const std::vector<std::string>& row : rows) text += dialogs::CsvLine(row);
        return text;
    }
    TextTable table;
    for (const std::string& header : rows.front()) table.columns.push_back({header, false});
    table.rows.assign(rows.begin() + 1, rows.end());
    return TableText(table, arguments.output == "-" ? TerminalWidth() : 0);
}

void Write(const VisitArguments& arguments, const std::string& text) {
    WriteReport(arguments.output, text, arguments.as == "csv");
}

int ShowVisit(Program& program, const VisitArguments& arguments) {
    const std::unique_ptr<sitedb::Site> site = program.OpenSite();
    const std::vector<analysis::LineFacts> lines = analysis::LinesOfVisit(*site, *arguments.visit);
    if (lines.empty())
        throw UsageError("The site keeps no lines of a visit " + std::to_string(*arguments.visit) +
                         ". List visits with their numbers: corvane-cli visits FIELD --total");
    if (arguments.as == "json")
        Write(arguments, JsonText({{"version", 1}, {"visit", *arguments.visit}, {"lines", LinesJson(lines)}}));
    else
        Write(arguments, RowsText(reports::LogLineRows(lines), arguments));
    return 0;
}

// One row for each visit, its number in front; with the log lines one for each of these.
dialogs::Rows NumberedRows(sitedb::Site& site, const std::vector<analysis::VisitFacts>& visits, bool lines) {
    dialogs::Rows rows = lines ? reports::LogLineRows({}) : reports::VisitRows(visits);
    rows.front().insert(rows.front().begin(), "Visit");
    for (std::size_t i = 0; i < visits.size(); ++i) {
        const std::string number = std::to_string(visits[i].VisitID);
        if (!lines) {
            rows[i + 1].insert(rows[i + 1].begin(), number);
            continue;
        }
        const dialogs::Rows ofVisit = reports::LogLineRows(analysis::LinesOfVisit(site, visits[i].VisitID));
        for (std::size_t line = 1; line < ofVisit.size(); ++line) {
            rows.push_back(ofVisit[line]);
            rows.back().insert(rows.back().begin(), number);
        }
    }
    return rows;
}

std::string BehindJson(const DrawnReport& drawn, const VisitArguments& arguments, const std::string& line,
                       const analysis::VisitsBehind& found) {
    ordered_json visits = ordered_json::array();
    for (const analysis::VisitFacts& visit : found.visits) {
        visits.push_back(VisitJson(visit));
        if (arguments.lines) visits.back()["lines"] = LinesJson(analysis::LinesOfVisit(*drawn.site, visit.VisitID));
    }
    return JsonText({{"version", 1},
                     {"field", drawn.field->word},
                     {"line", line},
                     {"site", drawn.results->siteName},
                     {"count", found.count},
                     {"visits", std::move(visits)}});
}

int ShowBehind(Program& program, const VisitArguments& arguments) {
    if (arguments.total == !arguments.line.empty())
        throw UsageError("Name one line with --line TEXT, or take the whole report with --total.");
    const DrawnReport drawn = Draw(program, arguments.analysis, reports::ReportKind::All);
    if (drawn.status != 0) return drawn.status;
    const std::string line = LineOf(drawn.grid, arguments.line, arguments.total);
    const reports::LineBehind behind{
        .results = *drawn.results, .indexes = reports::PlotIndexes(drawn.grid, line), .leftCell = line};
    const analysis::VisitsBehind found =
        analysis::FindVisitsBehind(program.Env(), *drawn.site, *drawn.results, behind.indexes, arguments.most);
    Write(arguments, arguments.as == "json"
                         ? BehindJson(drawn, arguments, line, found)
                         : RowsText(NumberedRows(*drawn.site, found.visits, arguments.lines), arguments));
    PrintError(SafeMessage(reports::BehindMessage(behind, found)));
    return found.stopped ? kStopped : 0;
}

int Visits(Program& program, const VisitArguments& arguments) {
    Choice("--as", arguments.as, {"table", "csv", "json"});
    if (arguments.visit.has_value() == !arguments.analysis.field.empty())
        throw UsageError("Name a field, such as terms, and a line of its report; or one visit with --visit NUMBER.");
    return arguments.visit ? ShowVisit(program, arguments) : ShowBehind(program, arguments);
}

}  // namespace

void AddVisitCommands(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<VisitArguments>();
    CLI::App* command = NewCommand(root, "visits", "The visits behind one line of a report, or the lines of a visit",
                                   "visits terms --line \"cheap hotel\" --lines --as json -o visits.json");
    AddText(*command, "FIELD", arguments->analysis.field, "What the report lists: terms, start-pages, engines ...");
    AddText(*command, "--line", arguments->line, "Left cell of the line");
    command->add_flag("--total", arguments->total, "All that the report counts");
    command->add_option("--visit", arguments->visit, "The log lines of this visit instead")->type_name("NUMBER");
    command->add_flag("--lines", arguments->lines, "The log lines of each visit too");
    command->add_option("--most", arguments->most, "The most visits to list (default 10000)")
        ->check(CLI::Range(1, 2147483647).description(""))
        ->type_name("N");
    AddAnalysisOptions(*command, arguments->analysis);
    AddText(*command, "--as", arguments->as, "table (default), csv or json");
    AddText(*command, "-o,--output", arguments->output, "File to write, - is standard output (default)");
    AddFieldsFooter(*command);
    command->callback([=, &program] { program.run = [=, &program] { return Visits(program, *arguments); }; });
}

}  // namespace cli
