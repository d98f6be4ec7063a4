#include <memory>
#include <nlohmann/json.hpp>

#include "cli/analysisarguments.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "core/dates.h"
#include "core/numbers.h"
#include "dialogs/csv.h"
#include "reports/exports.h"

namespace cli {
namespace {

constexpr std::string_view kIso = "yyyy-mm-dd";
constexpr std::array<std::string_view, 4> kKindWords{"", "top", "all", "grouped"};

struct ReportArguments {
    AnalysisArguments analysis{};
    bool safe = false;
    std::string as = "table";
    std::string output = "-";
};

// The grid as it stands.
std::string CsvText(const reports::ReportGrid& grid, bool safe) {
    const auto guard = safe ? dialogs::CsvGuard::Spreadsheet : dialogs::CsvGuard::Plain;
    std::string text;
    for (const std::vector<std::string>& row : reports::GridTable(grid))
        text += dialogs::CsvLine(row, dialogs::CsvQuotes::Doubled, guard);
    return text;
}

std::string GridJson(const DrawnReport& drawn) {
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (const reports::GridRow& row : drawn.grid.rows) rows.push_back(row.cells);
    const analysis::DaysList& days = drawn.results->days;
    return JsonText({{"version", 1},
                     {"field", drawn.field->word},
                     {"kind", kKindWords[static_cast<std::size_t>(drawn.kind)]},
                     {"site", drawn.results->siteName},
                     {"from", core::fDateText(days.first, kIso)},
                     {"to", core::fDateText(days.Last(), kIso)},
                     {"columns", reports::GridTable(drawn.grid).front()},
                     {"rows", std::move(rows)}});
}

std::string GridTable(const reports::ReportGrid& grid, const analysis::SrchTrmData& results, int width) {
    TextTable table;
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < grid.columns.size(); ++i) {
        const reports::Column& column = grid.columns[i];
        if (column.kind == reports::ColumnKind::Separator || column.width <= 1) continue;
        const bool number = column.kind == reports::ColumnKind::Count || column.kind == reports::ColumnKind::Percent ||
                            column.kind == reports::ColumnKind::Average ||
                            column.kind == reports::ColumnKind::Deviation;
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

int Report(Program& program, const ReportArguments& arguments) {
    Choice("--as", arguments.as, {"table", "csv", "json", "html"});
    const DrawnReport drawn = Draw(program, arguments.analysis, reports::ReportKind::Top);
    if (drawn.status != 0) return drawn.status;
    const int width = arguments.output == "-" ? TerminalWidth() : 0;
    const std::string text = arguments.as == "csv"    ? CsvText(drawn.grid, arguments.safe)
                             : arguments.as == "json" ? GridJson(drawn)
                             : arguments.as == "html" ? reports::ReportPage(program.Env(), *drawn.results, drawn.grid)
                                                      : GridTable(drawn.grid, *drawn.results, width);
    WriteReport(arguments.output, text, arguments.as == "csv" || arguments.as == "html");
    return 0;
}

}  // namespace

void AddReportCommands(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<ReportArguments>();
    CLI::App* report =
        NewCommand(root, "report", "Report on one field",
                   "report terms --kind top --top 20 --threshold 1 --from 2024-01-01 --as csv -o terms.csv");
    AnalysisArguments& analysis = arguments->analysis;
    AddText(*report, "FIELD", analysis.field, "What to list: terms, start-pages, engines, pages ...")->required();
    AddAnalysisOptions(*report, analysis);
    AddSwitch(*report, "dist1", analysis.dist1, "Distribution over engines (of engines: over terms)");
    AddSwitch(*report, "dist2", analysis.dist2, "Distribution over start pages or terms");
    AddSwitch(*report, "click-through", analysis.clickThrough, "Distribution over the pages that followed");
    AddSwitch(*report, "deviation", analysis.deviation,
              "Columns that hold the last days, months and years against each other");
    report->add_flag("--safe", arguments->safe, "Guard cells of a CSV that a spreadsheet would take for formulas");
    AddText(*report, "--as", arguments->as, "table (default), csv, json or html");
    AddText(*report, "-o,--output", arguments->output, "File to write, - is standard output (default)");
    AddFieldsFooter(*report);
    report->callback([=, &program] { program.run = [=, &program] { return Report(program, *arguments); }; });
}

}  // namespace cli
