#include "analysis/results.h"

#include "core/dates.h"
#include "core/numbers.h"

namespace analysis {

std::string DaysList::Text(std::int32_t index) const { return core::fDateText(first + index); }

std::int32_t ResultTable::Append(std::string_view value, std::size_t targets) {
    const std::size_t size = STs.empty() ? 2 : STs.size() + 1;
    STs.resize(size);
    STs.back() = value;
    Visitors.resize(size);
    Stayed.resize(size);
    HtmPages.resize(size);
    for (std::size_t t = 0; t < targets; ++t) TargetCnt[t].resize(size);
    return UpperBound();
}

std::int32_t ResultTable::Result_Add(std::int32_t day, std::string_view value, const VisitCounts& counts,
                                     std::size_t targets, std::int32_t row) {
    if (row < 0) row = Append(value, targets);
    const auto at = static_cast<std::size_t>(row);
    Visitors[at] += counts.visitors;
    Stayed[at] += counts.stayed;
    HtmPages[at] += counts.pages;
    DayCounts ofDay{counts.visitors, counts.stayed, {}};
    for (std::size_t t = 0; t < targets; ++t) {
        TargetCnt[t][at] += counts.targets[t];
        ofDay.targets[t] = counts.targets[t];
    }
    if (day >= 0) days.Add(static_cast<std::uint32_t>(row), day, ofDay, targets > 0);
    return row;
}

std::uint32_t CountedTexts::NumberOf(std::string_view value) {
    const std::uint32_t id = STs.FindOrAdd(value);
    if (id >= Visitors.size()) Visitors.resize(id + 1);
    return id;
}

std::uint32_t CountedTexts::Add(std::string_view value) {
    const std::uint32_t id = NumberOf(value);
    ++Visitors[id];
    return id;
}

std::uint32_t CrossTable::Cross_Add(std::uint32_t mainRow, std::string_view value, std::int32_t count) {
    const std::uint32_t id = second.Add(value);
    cross.Sparse_Add(count, mainRow, id);
    return id;
}

void CrossTable::Cross_AddKnown(std::uint32_t mainRow, std::uint32_t value, std::int32_t count) {
    ++second.Visitors[value];
    cross.Sparse_Add(count, mainRow, value);
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
