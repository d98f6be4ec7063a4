#include "sitedb/analysisrows.h"

#include "core/dates.h"

namespace sitedb {
namespace {

constexpr std::int64_t kOneDay = 1000000;

std::int64_t DayDigits(std::int32_t day) {
    const core::Ymd date = core::YmdOf(day);
    return ((std::int64_t{date.year} * 100 + date.month) * 100 + date.day) * kOneDay;
}

}  // namespace

StampRange DateRange(std::int32_t firstDay, std::int32_t lastDay) {
    return {DayDigits(firstDay), DayDigits(lastDay) + kOneDay - 1};
}

AnalysisRows::AnalysisRows(Database& db, StampRange range, AnalysisColumns columns)
    : columns_(columns),
      select_(db.Prepare(
          "SELECT StartTimeStamp, VisitID, StartPageID, StzdSearchTerm, SearchEngine, CDSClickFurtherPageIDs" +
          std::string(columns.bytes ? ", CDSBytesClickFurtherPageIDs" : ", NULL") +
          std::string(columns.referrer ? ", NONSERefr" : ", NULL") +
          " FROM visit WHERE StartTimeStamp>=? AND StartTimeStamp<=? ORDER BY StartTimeStamp, VisitID")) {
    select_.Bind(1, range.from).Bind(2, range.to);
}

bool AnalysisRows::Next(AnalysisRow& row) {
    if (!select_.Step()) return false;
    row.StartTimeStamp = select_.Int(0);
    row.VisitID = static_cast<std::int32_t>(select_.Int(1));
    row.StartPageID = static_cast<std::int32_t>(select_.Int(2));
    row.StzdSearchTerm = select_.Text(3);
    row.SearchEngine = select_.Text(4);
    row.CDSClickFurtherPageIDs = select_.Text(5);
    if (columns_.bytes) row.CDSBytesClickFurtherPageIDs = select_.Text(6);
    if (columns_.referrer) row.NonSErefr = select_.Text(7);
    return true;
}

VisitSpan SpanOf(Database& db, StampRange range) {
    constexpr std::string_view kInRange = " FROM visit WHERE StartTimeStamp>=? AND StartTimeStamp<=? ";
    const auto first = [&](std::string_view column, std::string_view tail) -> std::int64_t {
        Statement query = db.Prepare("SELECT " + std::string(column) + std::string(kInRange) + std::string(tail));
        query.Bind(1, range.from).Bind(2, range.to);
        return query.Step() ? query.Int(0) : 0;
    };
    VisitSpan span;
    span.firstStart = first("StartTimeStamp", "ORDER BY StartTimeStamp, VisitID LIMIT 1");
    span.lastEnd = first("EndTimeStamp", "ORDER BY StartTimeStamp DESC, VisitID DESC LIMIT 1");
    // Counting the whole table looks at no row, so an open range costs nothing.
    const bool whole = db.Scalar("SELECT min(StartTimeStamp) FROM visit") >= range.from &&
                       db.Scalar("SELECT max(StartTimeStamp) FROM visit") <= range.to;
    span.count = whole ? db.Scalar("SELECT count(*) FROM visit") : first("count(*)", "");
    return span;
}

VisitReferrers::VisitReferrers(Database& db)
    : select_(db.Prepare("SELECT Referrer FROM logline WHERE VisitID=? ORDER BY Timestamp, LogLnID")) {}

void VisitReferrers::Start(std::int32_t visitId) {
    select_.Reset();
    select_.Bind(1, std::int64_t{visitId});
}

bool VisitReferrers::Next(std::string_view& referrer) {
    if (!select_.Step()) return false;
    referrer = select_.Text(0);
    return true;
}

}  // namespace sitedb
