#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/texttable.h"

namespace reports {

// Which values stand behind a line. Found by the line's left cell and not by its row, since users sort the lines.
class RowTable {
public:
    void PutST(std::string_view cell, std::span<const std::int32_t> indexes);
    // Indexes of the first line of that text; empty when there is none. "|" and "-*-" in a cell are one text.
    std::span<const std::int32_t> GetSTs4Row(std::string_view cell) const;
    // Of all lines, in the order in which they came.
    const std::vector<std::int32_t>& dCDSallSTs() const { return all_; }

private:
    struct Part {
        std::size_t start = 0;
        std::size_t count = 0;
    };
    std::vector<std::int32_t> all_{};
    analysis::TextTable cells_{};
    std::vector<Part> parts_{};  // by number of the cell's text
};

}  // namespace reports
