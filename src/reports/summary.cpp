#include "reports/summary.h"

#include <algorithm>
#include <vector>

#include "core/numbers.h"
#include "core/text.h"
#include "reports/grid.h"

namespace reports {
namespace {

constexpr std::int32_t kLastDays = 30;

// Visitors first, then each target.
using Counts = std::vector<double>;

Counts SumFrom(const analysis::SrchTrmData& results, std::int32_t firstDay) {
    Counts counts(results.Targets.size() + 1);
    for (std::int32_t row = 1; row <= results.table.UpperBound(); ++row) {
        results.table.days.ForEach(static_cast<std::uint32_t>(row),
                                   [&](std::int32_t day, const analysis::DayCounts& ofDay) {
                                       if (day < firstDay) return;
                                       counts[0] += ofDay.visitors;
                                       for (std::size_t t = 1; t < counts.size(); ++t)
                                           counts[t] += ofDay.targets[t - 1];
                                   });
    }
    return counts;
}

std::string Line(std::string_view label, double count, double base, std::int32_t days, bool withShare) {
    std::string text = std::string(label) + core::fFormat(count, "#,##0") + " [";
    if (withShare) text += base == 0 ? "na" : core::fFormat(count * 100 / base, "0") + "%";
    return text + " Average: " + core::fFormat(count / days, "0.0") + "/day]";
}

std::string Block(const analysis::SrchTrmData& results, const std::string& prefix, std::int32_t firstDay) {
    const std::int32_t days = std::max(results.days.count - firstDay, 1);
    const Counts counts = SumFrom(results, firstDay);
    std::string text = Line(prefix + "Selected Visits: ", counts[0], counts[0], days, false);
    for (std::size_t t = 1; t < counts.size(); ++t)
        text += "\r" + Line(prefix + TargetLabel(results.Targets[t - 1]) + ": ", counts[t], counts[0], days, true);
    return text;
}

}  // namespace

std::string SummaryText(const analysis::SrchTrmData& results) {
    const std::int32_t firstDay = std::max(results.days.count - kLastDays, 0);
    return "Total Visits: " + core::fFormat(results.visits, "#,##0") + "\r\r" + Block(results, "", 0) + "\r\r" +
           core::fRepeat("-", 60) + "\r\r" + Block(results, "Last " + std::to_string(kLastDays) + " days ", firstDay);
}

}  // namespace reports
