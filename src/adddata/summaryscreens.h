#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "adddata/enginesummary.h"
#include "dialogs/controls.h"

// The engines of one add as lines of a grid.
namespace adddata {

struct EngineDays {
    std::string engine{};
    std::int64_t visitors = 0;
    std::map<std::string, std::int64_t> days{};  // by yyyymmdd; a count without a date is in none
};
// Those with the most visitors first.
std::vector<EngineDays> EnginesOf(const EngineCounts& counts);

// With their headers.
dialogs::Rows SummaryRows(const std::vector<EngineDays>& engines);
dialogs::Rows DetailRows(const EngineDays& engine);
// Visitors for each day that has some, "none" without dates.
std::string AverageText(const EngineDays& engine);

}  // namespace adddata
