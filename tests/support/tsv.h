#pragma once

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace testsupport {

// Rows of a tab separated file by the names of its first line.
using TsvRow = std::map<std::string, std::string>;

inline std::vector<std::string> SplitTabs(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == '\t') {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    return cells;
}

inline std::vector<TsvRow> ReadTsv(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<TsvRow> rows;
    std::string line;
    std::vector<std::string> names;
    while (std::getline(in, line)) {
        const std::vector<std::string> cells = SplitTabs(line);
        if (names.empty()) {
            names = cells;
            continue;
        }
        TsvRow row;
        for (std::size_t i = 0; i < names.size(); ++i) row[names[i]] = i < cells.size() ? cells[i] : "";
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace testsupport
