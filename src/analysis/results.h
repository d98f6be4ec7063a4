#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/options.h"
#include "analysis/sparse.h"
#include "analysis/targets.h"
#include "analysis/texttable.h"

// What a finished analysis leaves behind. Kept in memory for as long as somebody shows it.
namespace analysis {

// The calendar days of a run, one after the other. Index 0 is the first.
struct DaysList {
    std::int32_t first = 0;
    std::int32_t count = 0;
    std::int32_t Last() const { return first + count - 1; }
    // -1 outside the list.
    std::int32_t IndexOf(std::int32_t day) const { return day >= first && day - first < count ? day - first : -1; }
    std::string Text(std::int32_t index) const;  // "dd mmm yyyy"
};

// What a row gathers on one day.
struct DayCounts {
    std::int32_t visitors = 0;
    std::int32_t stayed = 0;
    std::array<std::int32_t, kMaxTargets> targets{};
};

// Counts by (row, day), of the days that a row has.
class DaySeries {
public:
    // Row by row.
    void Add(std::int32_t day, const DayCounts& counts, bool withTargets);
    void EndRow() { cells_.EndRow(); }
    void Shrink();
    // Calls `see` with each day and its counts, in no order.
    template <typename See>
    void ForEach(std::uint32_t row, See see) const {
        const std::span<const Cell> cells = cells_.OfRow(row);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            DayCounts counts{cells[i].visitors, cells[i].stayed, {}};
            if (!targets_.empty()) counts.targets = targets_[cells_.StartOf(row) + i];
            see(cells[i].day, counts);
        }
    }

private:
    struct Cell {
        std::int32_t day = 0;
        std::int32_t visitors = 0;
        std::int32_t stayed = 0;
    };

    RowLists<Cell> cells_{};
    std::vector<std::array<std::int32_t, kMaxTargets>> targets_{};  // goes along with the cells; empty without targets
};

// Parallel arrays by row. Rows count from 1; once there is a row, element 0 exists and stays empty.
struct ResultTable {
    std::vector<std::string> STs{};
    std::vector<std::int32_t> Visitors{};
    std::vector<std::int32_t> Stayed{};
    std::vector<std::int32_t> HtmPages{};
    std::array<std::vector<std::int32_t>, kMaxTargets> TargetCnt{};  // of defined targets only
    DaySeries days{};

    bool IsDim() const { return !STs.empty(); }
    std::int32_t UpperBound() const { return static_cast<std::int32_t>(STs.size()) - 1; }
};

// Values with a count each, numbered from 0 in the order of their first sighting.
struct CountedTexts {
    TextTable STs{};
    std::vector<std::int32_t> Visitors{};
    // The value's number; one that was not seen yet comes in with a count of 0.
    std::uint32_t NumberOf(std::string_view value);
};

// A second axis: its values, numbered in the order of their first sighting, and counts by (main row, value).
struct CrossTable {
    TextTable second{};
    RowLists<CrossCell> cells{};
};

struct SrchTrmData {
    std::string siteName{};
    std::string iniPath{};
    std::string CDSNoCntSurfToFileTypes{};  // of the run, normalised
    std::string CDSCntAsPageForAvgPages{};
    bool ShowNotSEitem = false;
    OptionRecord options{};
    std::int32_t threshold = 0;
    std::string siteArea{};
    int Analyzed_Field = 0;
    DaysList days{};
    ResultTable table{};
    bool WordListsOn = false;
    CountedTexts words{};
    CrossTable DistSE{};
    CrossTable DistAlternate{};
    CrossTable DistClickThru{};
    double visits = 0;  // in the date range
    std::vector<Target> Targets{};
    std::int32_t CntTopVals = 0;
};

// Dates, options and limits of an analysis, for captions: lines parted by CR.
std::string GetDataDesc(const SrchTrmData& results);

}  // namespace analysis
