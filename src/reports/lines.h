#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "reports/deviation.h"
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

// What a report is drawn from. References only.
struct ReportSource {
    core::Env& env;
    const analysis::SrchTrmData& results;
    const Deviation* deviation = nullptr;  // none: a report without its columns
};

// One value's line at the bottom.
void pAddRepRow(const ReportSource& source, ReportGrid& grid, std::int32_t valueIndex);
// Value lines and, below the sorted block, the values that are left and the total. Negative `numberToShow`: all.
// A failure leaves the grid without lines and tells why in its messages.
void pAddTopRows(const ReportSource& source, ReportGrid& grid, std::int32_t numberToShow);
void pAddAllRows(const ReportSource& source, ReportGrid& grid);
// Negative indexes are passed over.
void pAddRowsForIdxs(const ReportSource& source, std::span<const std::int32_t> indexes, ReportGrid& grid);
struct SummingLine {
    LineKind kind = LineKind::Rest;
    std::string_view label{};  // "": the values joined
    bool withDist = true;
};
// One line that sums values. Values are told by their text: whatever value has a text of the list is summed.
void pAddLine(const ReportSource& source, std::span<const std::int32_t> indexes, ReportGrid& grid,
              const SummingLine& line);
// A gap, the total, and the share of each line. Summed as displayed: the total average is made of rounded averages.
void pAddTotalLine(const ReportSource& source, ReportGrid& grid, std::string_view label);

// Adds what a line shows to the sums of a total.
void AddDisplayed(const ReportGrid& grid, std::size_t row, LineRecord& total);

enum class ReportKind : int { Top = 1, All = 2, Grouped = 3 };
// A finished Top or All report; groups.h has the grouped one.
ReportGrid pShowReport(const ReportSource& source, ReportKind kind, std::int32_t numberToShow);

}  // namespace reports
