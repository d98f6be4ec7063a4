#pragma once

#include <cstdint>
#include <string_view>

#include "sitedb/sqlite.h"

namespace sitedb {

// One visit as an analysis reads it. Views live until the next row.
struct AnalysisRow {
    std::int32_t StartPageID = 0;
    std::int32_t VisitID = 0;
    std::string_view CDSClickFurtherPageIDs{};
    std::string_view CDSBytesClickFurtherPageIDs{};
    std::string_view StzdSearchTerm{};
    std::string_view NonSErefr{};
    std::string_view SearchEngine{};
    std::int64_t StartTimeStamp = 0;
};
// What not every analysis looks at; a column that is not asked for is not read and stays empty.
struct AnalysisColumns {
    bool bytes = false;
    bool referrer = false;
};

struct StampRange {
    std::int64_t from = 0;
    std::int64_t to = 99991231999999;
};
// "from" day with time 000000 to "to" day with 999999.
StampRange DateRange(std::int32_t firstDay, std::int32_t lastDay);

// Forward pass over the visits of a range, in order of start time and number.
class AnalysisRows {
public:
    AnalysisRows(Database& db, StampRange range, AnalysisColumns columns);
    bool Next(AnalysisRow& row);

private:
    AnalysisColumns columns_;
    Statement select_;
};

struct VisitSpan {
    std::int64_t count = 0;
    std::int64_t firstStart = 0;  // StartTimeStamp of the first row in order
    std::int64_t lastEnd = 0;     // EndTimeStamp of the last row in order
};
VisitSpan SpanOf(Database& db, StampRange range);

// Referrers of a visit's lines in order of time; only with extra data.
class VisitReferrers {
public:
    explicit VisitReferrers(Database& db);
    void Start(std::int32_t visitId);
    bool Next(std::string_view& referrer);

private:
    Statement select_;
};

}  // namespace sitedb
