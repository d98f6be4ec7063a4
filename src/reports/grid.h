#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/results.h"
#include "reports/rowtable.h"

// A report as texts: what is shown, printed and exported. Cells are the only store of displayed numbers.
namespace reports {

enum class ColumnKind { Value, Count, Percent, Average, Separator, Distribution, FileType, Deviation };
enum class LineKind { Value, Rest, Group, Gap, Total };

struct Column {
    std::string header{};
    int width = 0;  // twips, 1440 to the inch
    ColumnKind kind = ColumnKind::Count;
    std::int32_t colour = -1;  // background as blue, green, red; -1 none
    bool leftAligned = false;
};

struct GridRow {
    LineKind kind = LineKind::Value;
    std::vector<std::string> cells{};
};

inline constexpr int kFixedColumns = 3;
inline constexpr int kHeaderHeight = 450;  // twips
inline constexpr int kThickLine = 1400;
inline constexpr int kThinLine = 240;
inline constexpr int kTargetColumns = 4;  // count, two percentages, separator
inline constexpr int kFirstTargetColumn = 6;

// Columns that every report has.
enum FixedColumn : int {
    kColValue = 0,
    kColVisitors = 1,
    kColStayed = 2,
    kColStayPercent = 3,
    kColAverage = 4,
    kColShare = 5,
};

struct ReportGrid {
    std::string caption{};
    int field = 0;
    std::size_t targets = 0;
    std::vector<Column> columns{};
    std::vector<GridRow> rows{};  // below the header line
    RowTable rowTable{};
    // Column numbers, -1 for a column that the report does not have.
    int dGcol_Dist0 = -1;
    int dGcol_DistAlternate = -1;
    int dGcol_DistClickThru = -1;
    int dGCol_Ftype = -1;
    int dGCol_Deviation = -1;
    std::string dPlotStartEndDate{};  // first date, "|", last date
    int lineHeight = kThinLine;
    bool grouped = false;                 // ValIsGroupedRep
    std::vector<std::string> messages{};  // for the user

    std::string& Cell(std::size_t row, int column) { return rows[row].cells[static_cast<std::size_t>(column)]; }
    const std::string& Cell(std::size_t row, int column) const {
        return rows[row].cells[static_cast<std::size_t>(column)];
    }
    std::size_t AddRow(LineKind kind);  // gives its number, from 0
};

class Deviation;

// Columns and header line; called once for a report, after its caption is set. Without `deviation` there are no such
// columns.
void pBuildRepCols(ReportGrid& grid, const analysis::SrchTrmData& results, const Deviation* deviation = nullptr);

// Names of the target's pages in one text.
std::string TargetLabel(const analysis::Target& target);

// Colours of target columns and the height of lines.
void pFinishRepGrid(ReportGrid& grid);

}  // namespace reports
