#pragma once

#include <array>
#include <cstdint>
#include <string>
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

struct VisitCounts {
    std::int32_t visitors = 1;  // a row's first visit brings those of the threshold along
    std::int32_t pages = 0;
    std::int32_t stayed = 0;
    std::array<std::int32_t, kMaxTargets> targets{};
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
    // Row -1 appends one for the value. Day -1: in no series. Gives the row.
    std::int32_t Result_Add(std::int32_t day, std::string_view value, const VisitCounts& counts, std::size_t targets,
                            std::int32_t row);

private:
    std::int32_t Append(std::string_view value, std::size_t targets);
};

// Values with a count each, numbered from 0 in the order of their first sighting.
struct CountedTexts {
    TextTable STs{};
    std::vector<std::int32_t> Visitors{};
    // The value's number; one that was not seen yet comes in with a count of 0.
    std::uint32_t NumberOf(std::string_view value);
    std::uint32_t Add(std::string_view value);
};

// A second axis: its values, and counts by (main row, value).
struct CrossTable {
    CountedTexts second{};
    SparseTable cross{};
    // Gives the value's number.
    std::uint32_t Cross_Add(std::uint32_t mainRow, std::string_view value, std::int32_t count);
    // The same for a value that was added before.
    void Cross_AddKnown(std::uint32_t mainRow, std::uint32_t value, std::int32_t count);
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
