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

AnalysisRows::AnalysisRows(Database& db, StampRange range)
    : select_(db.Prepare("SELECT StartPageID, VisitID, CDSClickFurtherPageIDs, CDSBytesClickFurtherPageIDs, StzdSearchTerm, "
                         "NONSERefr, SearchEngine, StartLogLnID, StartTimeStamp, EndTimeStamp FROM visit "
                         "WHERE StartTimeStamp>=? AND StartTimeStamp<=? ORDER BY StartTimeStamp, VisitID")) {
    select_.Bind(1, range.from).Bind(2, range.to);
}

bool AnalysisRows::Next(AnalysisRow& row) {
    if (!select_.Step()) return false;
    row.StartPageID = static_cast<std::int32_t>(select_.Int(0));
    row.VisitID = static_cast<std::int32_t>(select_.Int(1));
    row.CDSClickFurtherPageIDs = select_.Text(2);
    row.CDSBytesClickFurtherPageIDs = select_.Text(3);
    row.StzdSearchTerm = select_.Text(4);
    row.NonSErefr = select_.Text(5);
    row.SearchEngine = select_.Text(6);
    row.StartLogLnID = static_cast<std::int32_t>(select_.Int(7));
    row.StartTimeStamp = select_.Int(8);
    row.EndTimeStamp = select_.Int(9);
    return true;
}

VisitSpan SpanOf(Database& db, StampRange range) {
    VisitSpan span;
    Statement count = db.Prepare("SELECT count(*) FROM visit WHERE StartTimeStamp>=? AND StartTimeStamp<=?");
    count.Bind(1, range.from).Bind(2, range.to);
    if (count.Step()) span.count = count.Int(0);
    const auto edge = [&](std::string_view sql) {
        Statement query = db.Prepare(sql);
        query.Bind(1, range.from).Bind(2, range.to);
        return query.Step() ? query.Int(0) : 0;
    };
    span.firstStart = edge("SELECT StartTimeStamp FROM visit WHERE StartTimeStamp>=? AND StartTimeStamp<=? "
                           "ORDER BY StartTimeStamp, VisitID LIMIT 1");
    span.lastEnd = edge("SELECT EndTimeStamp FROM visit WHERE StartTimeStamp>=? AND StartTimeStamp<=? "
                        "ORDER BY StartTimeStamp DESC, VisitID DESC LIMIT 1");
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
