#include "reports/groups.h"

#include <algorithm>
#include <unordered_map>

#include "reports/fieldtable.h"
#include "reports/gridsort.h"

namespace reports {
namespace {

// A value of this text counts into the group of that name.
constexpr std::string_view kGrouped = ".. Grouped: ";

using IndexOf = std::unordered_map<std::string_view, std::int32_t>;

IndexOf IndexesOf(const analysis::ResultTable& table) {
    IndexOf indexes;
    indexes.reserve(table.STs.size());
    for (std::int32_t index = 0; index <= table.UpperBound(); ++index)
        indexes.try_emplace(table.STs[static_cast<std::size_t>(index)], index);
    return indexes;
}

// Members that the analysis has, each once.
std::vector<std::int32_t> MembersOf(const dialogs::Group& group, const IndexOf& indexes) {
    std::vector<std::int32_t> found;
    std::vector<std::string> members = group.members;
    members.push_back(std::string(kGrouped) + group.name);
    for (const std::string& member : members)
        if (const auto at = indexes.find(member); at != indexes.end()) found.push_back(at->second);
    std::vector<std::int32_t> sorted = found;
    std::ranges::sort(sorted);
    if (std::ranges::adjacent_find(sorted) == sorted.end()) return found;
    std::vector<std::int32_t> once;
    for (const std::int32_t index : found)
        if (std::ranges::find(once, index) == once.end()) once.push_back(index);
    return once;
}

}  // namespace

const GroupRow* GroupsOfField(int field) {
    const auto* row = std::ranges::find(kGroupTable, field, &GroupRow::field);
    return row == kGroupTable.end() ? nullptr : row;
}

std::string_view pGroupListName(int field) {
    const GroupRow* row = GroupsOfField(field);
    return row == nullptr ? std::string_view() : row->section;
}

dialogs::GroupPlace GroupPlaceOf(int field) {
    const GroupRow* row = GroupsOfField(field);
    if (row == nullptr) return {};
    return {.section = std::string(row->section), .listKey = std::string(row->listKey)};
}

void pAddGroupRows(const ReportSource& source, ReportGrid& grid, const std::vector<dialogs::Group>& groups) {
    const analysis::ResultTable& table = source.results.table;
    if (!table.IsDim()) return;
    const IndexOf indexes = IndexesOf(table);
    std::vector<bool> grouped(table.STs.size());
    for (const dialogs::Group& group : groups) {
        const std::vector<std::int32_t> members = MembersOf(group, indexes);
        pAddLine(source, members, grid, {LineKind::Group, group.name});
        for (const std::int32_t index : members) grouped[static_cast<std::size_t>(index)] = true;
    }
    SortLines(grid, kColVisitors, SortKind::NumericDescending);
    std::vector<std::int32_t> rest;
    for (std::int32_t index = 0; index <= table.UpperBound(); ++index) {
        if (grouped[static_cast<std::size_t>(index)]) continue;
        if (source.results.Analyzed_Field == analysis::kReferrer)
            pAddRepRow(source, grid, index);
        else
            rest.push_back(index);
    }
    if (!rest.empty()) pAddLine(source, rest, grid, {LineKind::Rest, kRest});
    pAddTotalLine(source, grid, kTotal);
}

ReportGrid pShowGroupReport(const ReportSource& source, const std::vector<dialogs::Group>& groups) {
    const ReportSource plain{source.env, source.results};
    ReportGrid grid;
    grid.grouped = true;
    grid.caption =
        "Grouped " + std::string(FieldName(source.results.Analyzed_Field)) + "s. Site: " + source.results.siteName;
    pBuildRepCols(grid, source.results);
    pAddGroupRows(plain, grid, groups);
    pFinishRepGrid(grid);
    return grid;
}

MembersReport pShowGroupMembers(const ReportSource& source, const ReportGrid& from, std::string_view leftCell) {
    MembersReport report;
    const std::span<const std::int32_t> indexes = leftCell == kTotal
                                                      ? std::span<const std::int32_t>(from.rowTable.dCDSallSTs())
                                                      : from.rowTable.GetSTs4Row(leftCell);
    if (indexes.empty()) return report;
    report.found = true;
    report.grid.caption = std::string(FieldName(source.results.Analyzed_Field)) +
                          "s for group: " + std::string(leftCell) + ". Site: " + source.results.siteName;
    pBuildRepCols(report.grid, source.results, source.deviation);
    pAddRowsForIdxs(source, indexes, report.grid);
    pFinishRepGrid(report.grid);
    return report;
}

}  // namespace reports
