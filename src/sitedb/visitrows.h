#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sitedb/sqlite.h"

// Rows of visit and visitpages.
namespace sitedb {

struct VisitRow {
    std::int32_t VisitID = -1;
    std::int32_t StartPageID = 0;
    std::int32_t StartLogLnID = 0;
    std::int32_t Files = 0;
    std::int64_t StartTimeStamp = 0;
    std::int64_t EndTimeStamp = 0;
    std::string FirstIP{};
    std::string CDSIPs{};
    std::optional<std::string> SearchTerm{};      // Null: equal to the standard form, or none
    std::optional<std::string> StzdSearchTerm{};  // Null: did not come from a search engine
    std::optional<std::string> SearchEngine{};
};

// What a line adds to the click lists of its visit.
struct ClickLine {
    std::int64_t Timestamp = 0;
    std::int32_t LogLnID = 0;
    std::int32_t PageID = 0;
    std::int32_t Bytes = 0;
    std::int32_t CntDupes = 0;
};

struct Clicks {
    std::string pages{};  // "|" list of PageIDs in order of first request
    std::string bytes{};  // parallel: byte totals
};
// Lines ordered by time and number. The root (page 0) enters no list; the bytes of its duplicates count for the page
// before it, if there is one.
Clicks Visit_ListClicks(const std::vector<ClickLine>& lines);

class VisitStore {
public:
    explicit VisitStore(Database& db);

    // Visits of one address that start in a range of timestamps, in the order of their numbers.
    std::vector<VisitRow> OfAddress(std::string_view ip, std::int64_t from, std::int64_t to);
    std::vector<ClickLine> LinesOf(std::int32_t visitId);

    void Insert(const VisitRow& row, const Clicks& clicks);
    void Update(const VisitRow& row, const Clicks& clicks);

    std::int32_t HighestID();

    // Each gives the number of rows that went.
    std::int64_t Visit_DelLogLines(std::int32_t visitId);
    std::int64_t Visit_DelPages(std::int32_t visitId);

private:
    void BindRow(Statement& statement, const VisitRow& row);
    void Visit_StoreClicks(const VisitRow& row, const Clicks& clicks, Statement& statement, int first);
    void VisitPg_Store(std::int32_t visitId, const Clicks& clicks);

    Database& db_;
    Statement ofAddress_{};
    Statement linesOf_{};
    Statement insert_{};
    Statement update_{};
    Statement addPages_{};
    Statement delPages_{};
    Statement delLines_{};
};

// The overflow rows of a visit joined again; nothing when it has none.
class VisitPages {
public:
    explicit VisitPages(Database& db);
    std::optional<Clicks> VisitPg_Read(std::int32_t visitId);

private:
    Statement select_;
};

inline constexpr std::string_view kOverflowMark = "||";

}  // namespace sitedb
