#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reports/grid.h"

// Words inside search terms, beside a report.
namespace reports {

struct WordCount {
    std::string text{};
    double count = 0;
};

inline constexpr std::array<std::string_view, 2> kWordHeaders{"word in Search term", "No. Users"};
// Words that the analysis collected, the most frequent first.
std::vector<WordCount> pFillWordGrid(const analysis::SrchTrmData& results);

inline constexpr int kMostFrequencyWords = 4;
// Runs of `length` words (1 to 4) in the left cells of a report's lines, with the visitors of the lines: the most
// frequent first. Ignores case; a run that stands in a cell twice counts twice.
std::vector<WordCount> WordFrequencies(const ReportGrid& grid, int length);
std::string FrequencyTitle(int length);

}  // namespace reports
