#include "reports/exports.h"

#include "core/env.h"
#include "core/numbers.h"
#include "reports/html.h"
#include "reports/lines.h"

namespace reports {

dialogs::Rows GridTable(const ReportGrid& grid) {
    dialogs::Rows table(1);
    table.reserve(grid.rows.size() + 1);
    for (const Column& column : grid.columns) table.front().push_back(column.header);
    for (const GridRow& row : grid.rows) table.push_back(row.cells);
    return table;
}

dialogs::Rows ChartTable(const ChartData& chart) {
    dialogs::Rows table{{"Period"}};
    table.front().insert(table.front().end(), chart.headers.begin(), chart.headers.end());
    for (const ChartRow& row : chart.rows) {
        std::vector<std::string>& cells = table.emplace_back(1, row.label);
        for (const std::optional<double>& value : row.values)
            cells.push_back(value ? core::NumText(*value) : std::string());
    }
    return table;
}

std::string ReportPage(core::Env& env, const analysis::SrchTrmData& results, const ReportGrid& grid) {
    if (grid.rows.empty()) return HtmlPage(results, grid, ChartData{});
    PlotRequest request{.leftCell = std::string(kTotal),
                        .indexes = PlotIndexes(grid, kTotal),
                        .dates = grid.dPlotStartEndDate,
                        .options = ReadPlotOptions(env.ini)};
    request.options.Plotpct = false;
    return HtmlPage(results, grid, PlotTtl4IndexesSTByDate(env, results, request));
}

}  // namespace reports
