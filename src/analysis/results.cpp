#include "analysis/results.h"

#include "core/dates.h"
#include "core/numbers.h"

namespace analysis {

std::string DaysList::Text(std::int32_t index) const { return core::fDateText(first + index); }

void DaySeries::Add(std::int32_t day, const DayCounts& counts, bool withTargets) {
    cells_.Add({day, counts.visitors, counts.stayed});
    if (withTargets) targets_.push_back(counts.targets);
}

void DaySeries::Shrink() {
    cells_.Shrink();
    targets_.shrink_to_fit();
}

std::uint32_t CountedTexts::NumberOf(std::string_view value) {
    const std::uint32_t id = STs.FindOrAdd(value);
    if (id >= Visitors.size()) Visitors.resize(id + 1);
    return id;
}

std::string GetDataDesc(const SrchTrmData& results) {
    std::string text = "Dates: " + results.days.Text(0) + " to " + results.days.Text(results.days.count - 1);
    text += "\r\rVisits: " + core::CountText(results.visits);
    if (results.threshold > 0) text += "\rThreshold: " + std::to_string(results.threshold + 1);
    if (!results.siteArea.empty()) text += "\rArea of Site: " + results.siteArea;
    if (!results.ShowNotSEitem) text += "\rOnly visits with a search term";
    return text;
}

}  // namespace analysis
