#pragma once

#include <array>
#include <string_view>

#include "reports/plot.h"

namespace reports {

// Colours of the series, which people who do not tell red from green can tell apart too (after Okabe and Ito); each
// reads on white and on black.
inline constexpr std::array<std::string_view, kSeries> kSeriesColours{"#0072b2", "#e69f00", "#009e73", "#cc79a7",
                                                                      "#d55e00", "#56b4e9", "#999999"};

}  // namespace reports
