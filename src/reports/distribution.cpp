#include "reports/distribution.h"

#include <algorithm>

#include "core/numbers.h"

namespace reports {
namespace {

constexpr std::string_view kBreak = "\r\n";

std::string Share(double count, double visitors) {
    return visitors == 0 ? "na" : core::fFormat(count / visitors * 100, "0") + "%";
}

}  // namespace

std::string DistributionText(const analysis::CrossTable& table, std::vector<LabelCount> pairs, double visitors,
                             std::size_t limit) {
    std::ranges::sort(pairs, [](const LabelCount& a, const LabelCount& b) {
        return a.count != b.count ? a.count > b.count : a.label > b.label;
    });
    std::string text;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        text.append(table.second.STs.Text(pairs[i].label)).append(" ").append(std::to_string(pairs[i].count));
        text.append(" [").append(Share(static_cast<double>(pairs[i].count), visitors)).append("]").append(kBreak);
        if (text.size() <= limit) continue;
        if (i + 1 < pairs.size()) text.append(kBreak).append("...");
        break;
    }
    return text;
}

std::vector<LabelCount> PairsOfRow(const analysis::CrossTable& table, std::uint32_t row) {
    std::vector<LabelCount> pairs;
    for (const analysis::SparseTable::Cell& cell : table.cross.OfRow(row)) pairs.push_back({cell.column, cell.count});
    return pairs;
}

}  // namespace reports
