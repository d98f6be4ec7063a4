#include "reports/distribution.h"

#include <algorithm>

#include "reports/cells.h"

namespace reports {
namespace {

constexpr std::string_view kBreak = "\r\n";

std::string Share(double count, double visitors) {
    return visitors == 0 ? "na" : NumberCell(count / visitors * 100, "0") + "%";
}

// The text is full after a few labels of many: they are put in order as they are needed, each time as many again.
constexpr std::size_t kSortFirst = 32;
constexpr std::size_t kUsualLabel = 32;  // bytes of text

bool StandsBefore(const LabelCount& a, const LabelCount& b) {
    return a.count != b.count ? a.count > b.count : a.label > b.label;
}

// Gives how many are in order.
std::size_t SortMore(std::vector<LabelCount>& pairs, std::size_t sorted) {
    const auto place = [&pairs](std::size_t at) { return pairs.begin() + static_cast<std::ptrdiff_t>(at); };
    const std::size_t next = std::max(kSortFirst, sorted * 2);
    if (next >= pairs.size()) {
        std::ranges::sort(place(sorted), pairs.end(), StandsBefore);
        return pairs.size();
    }
    std::ranges::partial_sort(place(sorted), place(next), pairs.end(), StandsBefore);
    return next;
}

}  // namespace

std::string DistributionText(const analysis::CrossTable& table, std::vector<LabelCount> pairs, double visitors,
                             std::size_t limit) {
    std::string text;
    text.reserve(std::min(limit, pairs.size() * kUsualLabel));
    std::size_t sorted = 0;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (i == sorted) sorted = SortMore(pairs, sorted);
        text.append(table.second.Text(pairs[i].label)).append(" ").append(std::to_string(pairs[i].count));
        text.append(" [").append(Share(static_cast<double>(pairs[i].count), visitors)).append("]").append(kBreak);
        if (text.size() <= limit) continue;
        if (i + 1 < pairs.size()) text.append(kBreak).append("...");
        break;
    }
    return text;
}

std::vector<LabelCount> PairsOfRow(const analysis::CrossTable& table, std::uint32_t row) {
    const std::span<const analysis::CrossCell> cells = table.cells.OfRow(row);
    std::vector<LabelCount> pairs;
    pairs.reserve(cells.size());
    for (const analysis::CrossCell& cell : cells) pairs.push_back({cell.column, cell.count});
    return pairs;
}

}  // namespace reports
