#pragma once

#include <string>
#include <string_view>

#include "cli/program.h"

// The filter of a family that is in use, tried without an add.
namespace cli {

inline constexpr std::string_view kFilterSection = "Filters";
inline constexpr std::string_view kFilterSelected = "Fltr Sel";

// One family of conditions: its file and the key that lists its names.
struct FilterFamily {
    std::string word{};
    std::string file{};
    std::string listKey{};
    bool allApply = false;  // robots: every condition of the list applies, none is selected
};

// Each rule of the filter against one value, whatever field it looks at.
int TryFilterOnValue(Program& program, const FilterFamily& family, const std::string& text, bool json);
// The first lines of a log; `formatName` is "" for the site's default.
int TryFilterOnLog(Program& program, const FilterFamily& family, const std::string& file, const std::string& formatName,
                   bool json);

}  // namespace cli
