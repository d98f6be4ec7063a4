#include "reports/words.h"

#include <algorithm>
#include <unordered_map>

#include "core/numbers.h"
#include "core/utf8.h"
#include "names/searchterm.h"
#include "reports/lines.h"

namespace reports {
namespace {

// Words of a cell parted at single blanks: two blanks in a row have an empty word between them.
std::vector<std::string_view> WordsOf(std::string_view cell) {
    std::vector<std::string_view> words;
    for (std::size_t start = 0; start <= cell.size();) {
        const std::size_t end = std::min(cell.find(' ', start), cell.size());
        words.push_back(cell.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

bool Counts(std::string_view cell) {
    return !cell.empty() && cell != kTotal && cell != kRest && cell != names::kNotSearchEngine;
}

// Equal counts in the order of a list that is read from its end: the later one first.
void SortByCount(std::vector<WordCount>& words) {
    std::ranges::reverse(words);
    std::ranges::stable_sort(words, [](const WordCount& a, const WordCount& b) { return a.count > b.count; });
}

}  // namespace

std::vector<WordCount> pFillWordGrid(const analysis::SrchTrmData& results) {
    std::vector<WordCount> words;
    for (std::uint32_t id = 0; id < results.words.Visitors.size(); ++id)
        words.push_back({std::string(results.words.STs.Text(id)), static_cast<double>(results.words.Visitors[id])});
    std::ranges::stable_sort(words, [](const WordCount& a, const WordCount& b) { return a.count > b.count; });
    return words;
}

std::vector<WordCount> WordFrequencies(const ReportGrid& grid, int length) {
    std::vector<WordCount> found;
    std::unordered_map<std::string, std::size_t> places;
    const auto wanted = static_cast<std::size_t>(std::clamp(length, 1, kMostFrequencyWords));
    for (const GridRow& row : grid.rows) {
        const std::string& cell = row.cells[kColValue];
        if (!Counts(cell)) continue;
        const std::vector<std::string_view> words = WordsOf(cell);
        const double visitors = core::fNum(row.cells[kColVisitors]);
        for (std::size_t first = 0; first + wanted <= words.size(); ++first) {
            std::string run(words[first]);
            for (std::size_t i = first + 1; i < first + wanted; ++i) run.append(" ").append(words[i]);
            const auto [at, added] = places.try_emplace(core::LowerUtf8(run), found.size());
            if (added) found.push_back({std::move(run), 0});
            found[at->second].count += visitors;
        }
    }
    SortByCount(found);
    return found;
}

std::string FrequencyTitle(int length) {
    return "Total users for each " + std::to_string(length) + " word combination in Search term";
}

}  // namespace reports
