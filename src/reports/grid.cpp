#include "reports/grid.h"

#include <array>

#include "core/text.h"
#include "reports/deviation.h"
#include "reports/fieldtable.h"

namespace reports {
namespace {

struct FixedColumnRow {
    std::string_view header;
    int width;
    ColumnKind kind;
};
// From column 1 on.
constexpr std::array kFixed{
    FixedColumnRow{"Visitors (Users)", 600, ColumnKind::Count},
    FixedColumnRow{"Stayed", 600, ColumnKind::Count},
    FixedColumnRow{"stay %", 600, ColumnKind::Percent},
    FixedColumnRow{"Avg htm pages", 675, ColumnKind::Average},
    FixedColumnRow{"% of Ttl Visitors", 675, ColumnKind::Percent},
};
static_assert(kFixed.size() + 1 == kFirstTargetColumn);

constexpr int kValueWidth = 3000;
constexpr int kWideValueWidth = 5000;
constexpr std::array<std::int32_t, analysis::kMaxTargets> kTargetColours{0xFFC0C0, 0xC0FFFF, 0xFFC0FF, 0xFFFFC0};
constexpr std::int32_t kSeparatorColour = 65535;
// A column of users per day and the comparisons behind it share a colour.
constexpr std::array<std::int32_t, 4> kDeviationColours{0xC0E0FF, 0xC0FFC0, 0xC0E0FF, 0xC0FFC0};
constexpr int kUsersWidth = 900;
constexpr int kCompareWidth = 660;
constexpr int kHiddenWidth = 1;

int Append(ReportGrid& grid, std::string header, int width, ColumnKind kind) {
    grid.columns.push_back({.header = std::move(header), .width = width, .kind = kind});
    return static_cast<int>(grid.columns.size()) - 1;
}

void AppendTarget(ReportGrid& grid, const analysis::Target& target) {
    Append(grid, TargetLabel(target), 1200, ColumnKind::Count);
    Append(grid, "% of total", 550, ColumnKind::Percent);
    Append(grid, "% of stays", 550, ColumnKind::Percent);
    Append(grid, "", 60, ColumnKind::Separator);
}

void AppendDeviation(ReportGrid& grid, const Deviation& deviation) {
    std::size_t colour = 0;
    for (int column = 0; column < kDevColumns; ++column) {
        const Deviation::ColumnFacts& facts = deviation.Facts(column);
        if (facts.isValueCol) colour = (colour + 1) % kDeviationColours.size();
        const int width = facts.isValueCol ? kUsersWidth : facts.isNoData ? kHiddenWidth : kCompareWidth;
        const int number = Append(grid, facts.header, width, ColumnKind::Deviation);
        grid.columns[static_cast<std::size_t>(number)].colour = kDeviationColours[colour];
        if (column == 0) grid.dGCol_Deviation = number;
    }
}

bool HasFileType(int field) {
    return field == analysis::kStartPage || field == analysis::kTermAndStart || field == analysis::kExitPage ||
           field == analysis::kPage;
}

std::string OneLine(std::string text) {
    text = core::fReplace(text, "\r\r", " / ");
    return core::fReplace(text, "\r", " / ");
}

}  // namespace

std::size_t ReportGrid::AddRow(LineKind kind) {
    rows.push_back({kind, std::vector<std::string>(columns.size())});
    return rows.size() - 1;
}

std::string TargetLabel(const analysis::Target& target) {
    const std::string_view joint = target.kind == analysis::kAll ? " & " : " / ";
    std::string label;
    for (const logdefs::FltrRule& filter : target.filters) {
        if (filter.Val.empty()) continue;
        if (!label.empty()) label += joint;
        label += filter.Val;
    }
    return (target.kind == analysis::kSize ? "*B " : "") + label;
}

void pBuildRepCols(ReportGrid& grid, const analysis::SrchTrmData& results, const Deviation* deviation) {
    const FieldRow* field = FindField(results.Analyzed_Field);
    grid.caption += ". // " + OneLine(GetDataDesc(results));
    grid.field = results.Analyzed_Field;
    grid.targets = results.Targets.size();
    Append(grid, std::string(field->name), grid.field == analysis::kTermAndStart ? kWideValueWidth : kValueWidth,
           ColumnKind::Value);
    grid.columns.front().leftAligned = true;
    for (const FixedColumnRow& row : kFixed) Append(grid, std::string(row.header), row.width, row.kind);
    for (const analysis::Target& target : results.Targets) AppendTarget(grid, target);
    const analysis::OptionRecord& options = results.options;
    const auto distribution = [&](bool wanted, std::string_view header, int width) {
        return wanted ? Append(grid, std::string(header), width, ColumnKind::Distribution) : -1;
    };
    grid.dGcol_Dist0 = distribution(options.ShowDist1, field->firstDistribution, 2000);
    grid.dGcol_DistAlternate = distribution(options.ShowDist2, field->alternate, 4000);
    grid.dGcol_DistClickThru = distribution(options.ShowClickThru, "Surf thru to page", 4000);
    if (HasFileType(grid.field)) grid.dGCol_Ftype = Append(grid, "File Type", 900, ColumnKind::FileType);
    if (deviation != nullptr) AppendDeviation(grid, *deviation);
}

void pFinishRepGrid(ReportGrid& grid) {
    for (std::size_t t = 0; t < grid.targets; ++t) {
        const std::size_t first = kFirstTargetColumn + kTargetColumns * t;
        for (std::size_t c = first; c < first + 3; ++c) grid.columns[c].colour = kTargetColours[t];
        grid.columns[first + 3].colour = kSeparatorColour;
    }
    const bool distributions = grid.dGcol_Dist0 >= 0 || grid.dGcol_DistAlternate >= 0 || grid.dGcol_DistClickThru >= 0;
    grid.lineHeight = grid.field == analysis::kTrack || distributions ? kThickLine : kThinLine;
}

}  // namespace reports
