#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "reports/grid.h"

namespace core {
struct Env;
}

// The lines of a report.
namespace reports {

inline constexpr std::string_view kRest = ".. Rest ..";
inline constexpr std::string_view kTotal = ".. Total ..";
inline constexpr std::string_view kNotApplicable = "na";

// Sums of one line. Elements of LineAdd: 1 those who stayed, 3 to 6 the targets.
struct LineRecord {
    double LineVisitors = 0;
    double LinePages = 0;
    double LineAdd[7] = {};
};
inline constexpr std::size_t kAddStayed = 1;
inline constexpr std::size_t kAddTargets = 3;

// One value's line at the bottom.
void pAddRepRow(const analysis::SrchTrmData& results, ReportGrid& grid, std::int32_t valueIndex);
// Value lines and, below the sorted block, the values that are left and the total. Negative `numberToShow`: all.
// A failure leaves the grid without lines and tells why in its messages.
void pAddTopRows(core::Env& env, const analysis::SrchTrmData& results, ReportGrid& grid, std::int32_t numberToShow);
void pAddAllRows(core::Env& env, const analysis::SrchTrmData& results, ReportGrid& grid);
// Negative indexes are passed over.
void pAddRowsForIdxs(core::Env& env, std::span<const std::int32_t> indexes, const analysis::SrchTrmData& results,
                     ReportGrid& grid);
// One summing line. Values are told by their text: whatever value has a text of the list is summed.
void pAddLine(core::Env& env, std::span<const std::int32_t> indexes, const analysis::SrchTrmData& results,
              ReportGrid& grid, std::string_view label, bool withDist);
// A gap, the total, and the share of each line. Summed as displayed: the total average is made of rounded averages.
void pAddTotalLine(core::Env& env, const analysis::SrchTrmData& results, ReportGrid& grid, std::string_view label);

enum class ReportKind : int { Top = 1, All = 2 };
// A finished report.
ReportGrid pShowReport(core::Env& env, const analysis::SrchTrmData& results, ReportKind kind,
                       std::int32_t numberToShow);

}  // namespace reports
