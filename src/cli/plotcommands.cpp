#include <memory>
#include <nlohmann/json.hpp>

#include "cli/analysisarguments.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/reportline.h"
#include "core/dates.h"
#include "core/numbers.h"
#include "dialogs/csv.h"
#include "dialogs/options.h"
#include "reports/exports.h"
#include "reports/plot.h"
#include "reports/words.h"
#include "shell/menu.h"

namespace cli {
namespace {

struct PlotArguments {
    AnalysisArguments analysis{};
    std::string line{};
    bool total = false, percent = false;
    std::optional<std::int32_t> period{};
    std::int32_t remove = 0;
    std::string as = "table", output = "-";
};

struct WordArguments {
    AnalysisArguments analysis{.field = "terms"};
    int length = 1;
    std::string as = "table", output = "-";
};

std::string ChartCsv(const reports::ChartData& chart) {
    std::string text;
    for (const std::vector<std::string>& row : reports::ChartTable(chart)) text += dialogs::CsvLine(row);
    return text;
}

std::string ChartJson(const DrawnReport& drawn, const std::string& line, const reports::ChartData& chart) {
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < chart.rows.size(); ++i) {
        nlohmann::ordered_json values = nlohmann::ordered_json::array();
        for (const std::optional<double>& value : chart.rows[i].values)
            values.push_back(value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr));
        rows.push_back({{"label", chart.rows[i].label},
                        {"from", core::fDateText(chart.firstDays[i], "yyyy-mm-dd")},
                        {"exact", chart.dPlotColLabelsCDS[i]},
                        {"values", std::move(values)}});
    }
    return JsonText({{"version", 1},
                     {"field", drawn.field->word},
                     {"line", line},
                     {"site", drawn.results->siteName},
                     {"period", chart.period},
                     {"description", chart.desc},
                     {"series", chart.headers},
                     {"rows", std::move(rows)}});
}

std::string ShownTable(const reports::ChartData& chart, int width) {
    TextTable table;
    std::vector<std::size_t> shown;
    for (std::size_t s = 0; s < reports::kScaleHelper; ++s) {
        const bool any = std::ranges::any_of(chart.rows, [s](const auto& row) { return row.values[s].has_value(); });
        if (any && !chart.Removed(s)) shown.push_back(s);
    }
    table.columns.push_back({"Period", false});
    for (const std::size_t s : shown) table.columns.push_back({chart.headers[s], true});
    for (const reports::ChartRow& row : chart.rows) {
        std::vector<std::string>& cells = table.rows.emplace_back();
        cells.push_back(row.label);
        for (const std::size_t s : shown)
            cells.push_back(row.values[s] ? core::fFormat(*row.values[s], "0.##") : std::string());
    }
    return SafeMessage(chart.desc) + "\n\n" + TableText(table, width);
}

std::string TargetsEntry() { return dialogs::PlainCaption(shell::FindMenuRow("fMnu_ST")->caption); }

int Plot(Program& program, const PlotArguments& arguments) {
    Choice("--as", arguments.as, {"table", "csv", "json"});
    if (arguments.total == !arguments.line.empty())
        throw UsageError("Name one line with --line TEXT, or plot the total with --total.");
    const DrawnReport drawn = Draw(program, arguments.analysis, reports::ReportKind::All);
    if (drawn.status != 0) return drawn.status;
    const std::string line = LineOf(drawn.grid, arguments.line, arguments.total);
    reports::PlotRequest request{.leftCell = line,
                                 .indexes = reports::PlotIndexes(drawn.grid, line),
                                 .options = reports::ReadPlotOptions(program.Ini()),
                                 .removed = arguments.remove,
                                 .targetsEntry = TargetsEntry()};
    request.options.Plotpct = arguments.percent;
    if (arguments.period) request.options.DaysToPlot = *arguments.period;
    const reports::ChartData chart = reports::PlotTtl4IndexesSTByDate(program.Env(), *drawn.results, request);
    const int width = arguments.output == "-" ? TerminalWidth() : 0;
    WriteReport(arguments.output,
                arguments.as == "csv"    ? ChartCsv(chart)
                : arguments.as == "json" ? ChartJson(drawn, line, chart)
                                         : ShownTable(chart, width),
                arguments.as == "csv");
    return 0;
}

std::string WordsText(const std::vector<reports::WordCount>& words, const WordArguments& arguments) {
    if (arguments.as == "json") {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const reports::WordCount& word : words) list.push_back({{"text", word.text}, {"visitors", word.count}});
        return JsonText({{"version", 1}, {"length", arguments.length}, {"words", std::move(list)}});
    }
    const std::vector<std::string> headers{reports::FrequencyTitle(arguments.length), "Visitors"};
    std::string csv = dialogs::CsvLine(headers);
    TextTable table{{{headers[0], false}, {headers[1], true}}, {}};
    for (const reports::WordCount& word : words) {
        csv += dialogs::CsvLine({word.text, core::NumText(word.count)});
        table.rows.push_back({word.text, core::NumText(word.count)});
    }
    return arguments.as == "csv" ? csv : TableText(table, arguments.output == "-" ? TerminalWidth() : 0);
}

int Words(Program& program, const WordArguments& arguments) {
    Choice("--as", arguments.as, {"table", "csv", "json"});
    const DrawnReport drawn = Draw(program, arguments.analysis, reports::ReportKind::Top);
    if (drawn.status != 0) return drawn.status;
    WriteReport(arguments.output, WordsText(reports::WordFrequencies(drawn.grid, arguments.length), arguments),
                arguments.as == "csv");
    return 0;
}

}  // namespace

void AddPlotCommands(CLI::App& root, Program& program) {
    auto plot = std::make_shared<PlotArguments>();
    CLI::App* command = NewCommand(root, "plot", "The trend of one line of a report",
                                   "plot terms --line \"cheap hotel\" --period 7 --as csv -o trend.csv");
    AddText(*command, "FIELD", plot->analysis.field, "What the report lists: terms, start-pages, engines ...")
        ->required();
    AddText(*command, "--line", plot->line, "Left cell of the line");
    command->add_flag("--total", plot->total, "The total of the report");
    command
        ->add_option("--period", plot->period, "Days of a period; a long range makes it longer (default: DaysToPlot)")
        ->check(CLI::Range(1, 36600).description(""))
        ->type_name("DAYS");
    command->add_flag("--percent", plot->percent, "With --remove: the last removed series is the 100 %");
    command->add_option("--remove", plot->remove, "Leading series to leave out")
        ->check(CLI::Range(0, 7).description(""))
        ->type_name("N");
    AddAnalysisOptions(*command, plot->analysis);
    AddText(*command, "--as", plot->as, "table (default), csv or json");
    AddText(*command, "-o,--output", plot->output, "File to write, - is standard output (default)");
    AddFieldsFooter(*command);
    command->callback([=, &program] { program.run = [=, &program] { return Plot(program, *plot); }; });

    auto words = std::make_shared<WordArguments>();
    CLI::App* frequencies = NewCommand(root, "words", "How often words stand in the lines of a report on search terms",
                                       "words --length 2 --top 500");
    frequencies->add_option("--length", words->length, "Words that stand together, 1 to 4 (default 1)")
        ->check(CLI::Range(1, reports::kMostFrequencyWords).description(""))
        ->type_name("N");
    AddAnalysisOptions(*frequencies, words->analysis);
    AddText(*frequencies, "--as", words->as, "table (default), csv or json");
    AddText(*frequencies, "-o,--output", words->output, "File to write, - is standard output (default)");
    frequencies->callback([=, &program] { program.run = [=, &program] { return Words(program, *words); }; });
}

}  // namespace cli
