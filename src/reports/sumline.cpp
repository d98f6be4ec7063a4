#include <algorithm>
#include <array>
#include <optional>
#include <unordered_set>

#include "core/env.h"
#include "dialogs/report.h"
#include "reports/cells.h"
#include "reports/distribution.h"
#include "reports/fieldtable.h"
#include "reports/lines.h"

namespace reports {
namespace {

constexpr std::size_t kProgressAbove = 300;
constexpr std::size_t kStepEvery = 256;

// One distribution column with the sums of a line.
struct SummedColumn {
    int column = -1;
    const analysis::CrossTable* table = nullptr;
    analysis::KeyedSums<std::int64_t> sums{};
};

std::array<SummedColumn, 3> ColumnsOf(const ReportGrid& grid, const analysis::SrchTrmData& results) {
    return {{{grid.dGcol_Dist0, &results.DistSE},
             {grid.dGcol_DistAlternate, &results.DistAlternate},
             {grid.dGcol_DistClickThru, &results.DistClickThru}}};
}

class Summing {
public:
    Summing(const analysis::SrchTrmData& results, const ReportGrid& grid, bool withDist)
        : results_(results), columns_(ColumnsOf(grid, results)), withDist_(withDist) {}

    void Add(std::size_t row) {
        const analysis::ResultTable& table = results_.table;
        line_.LineVisitors += table.Visitors[row];
        line_.LineAdd[kAddStayed] += table.Stayed[row];
        line_.LinePages += table.HtmPages[row];
        for (std::size_t t = 0; t < analysis::kMaxTargets; ++t)
            if (row < table.TargetCnt[t].size()) line_.LineAdd[kAddTargets + t] += table.TargetCnt[t][row];
        if (!withDist_) return;
        for (SummedColumn& column : columns_) {
            if (column.column < 0) continue;
            for (const auto& cell : column.table->cells.OfRow(static_cast<std::uint32_t>(row)))
                column.sums.Of(cell.column) += cell.count;
        }
    }

    // Called once.
    void Write(ReportGrid& grid, std::size_t row, std::string_view label) {
        WriteCounts(grid, row, label, line_);
        WriteTargets(grid, row, line_);
        if (!withDist_) return;
        for (SummedColumn& column : columns_) {
            if (column.column < 0) continue;
            std::vector<LabelCount> pairs;
            column.sums.Take([&pairs](std::uint32_t name, std::int64_t count) { pairs.push_back({name, count}); });
            grid.Cell(row, column.column) = DistributionText(*column.table, std::move(pairs), line_.LineVisitors);
        }
    }

private:
    const analysis::SrchTrmData& results_;
    std::array<SummedColumn, 3> columns_;
    bool withDist_;
    LineRecord line_{};
};

// The user's stop ends the summing early; what has been summed stands.
void SumByText(core::Env& env, const std::unordered_set<std::string_view>& texts, std::size_t listed,
               const analysis::SrchTrmData& results, Summing& sum) {
    std::optional<dialogs::Report> report;
    if (listed > kProgressAbove)
        report.emplace(env.progress, "Calculating totals for " + std::string(FieldName(results.Analyzed_Field)) + "s.",
                       "terms", static_cast<double>(listed));
    std::size_t matched = 0;
    try {
        for (std::size_t row = 0; row < results.table.STs.size(); ++row) {
            if (!texts.contains(results.table.STs[row])) continue;
            sum.Add(row);
            if (++matched % kStepEvery == 0 && report) report->Step(static_cast<double>(matched));
        }
    } catch (const core::Stopped&) {}
}

std::string JoinTexts(std::span<const std::int32_t> indexes, const analysis::SrchTrmData& results) {
    std::string joined;
    for (const std::int32_t index : indexes)
        joined.append(joined.empty() ? "" : ", ").append(results.table.STs[static_cast<std::size_t>(index)]);
    return joined;
}

}  // namespace

void pAddLine(const ReportSource& source, std::span<const std::int32_t> indexes, ReportGrid& grid,
              const SummingLine& line) {
    const analysis::SrchTrmData& results = source.results;
    const std::size_t row = grid.AddRow(line.kind);
    const std::string shown = line.label.empty() ? JoinTexts(indexes, results) : std::string(line.label);
    grid.rowTable.PutST(shown, indexes);
    std::unordered_set<std::string_view> texts;
    for (const std::int32_t index : indexes) texts.insert(results.table.STs[static_cast<std::size_t>(index)]);
    Summing sum(results, grid, line.withDist);
    SumByText(source.env, texts, indexes.size(), results, sum);
    sum.Write(grid, row, shown);
}

}  // namespace reports
