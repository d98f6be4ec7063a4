#include "sitedb/visitlines.h"

namespace sitedb {

VisitTextReader::VisitTextReader(Database& db)
    : select_(db.Prepare("SELECT EndTimeStamp, FirstIP, ifnull(SearchTerm, StzdSearchTerm), SearchEngine FROM visit "
                         "WHERE VisitID=?")) {}

VisitTexts VisitTextReader::Read(std::int32_t visitId) {
    VisitTexts texts;
    select_.Bind(1, std::int64_t{visitId});
    if (select_.Step()) {
        texts.EndTimeStamp = select_.Int(0);
        texts.FirstIP = select_.Text(1);
        texts.SearchTerm = select_.Text(2);
        texts.SearchEngine = select_.Text(3);
    }
    select_.Reset();
    return texts;
}

std::vector<StoredLine> ReadLinesOfVisit(Database& db, std::int32_t visitId, bool keep) {
    Statement select =
        db.Prepare("SELECT Timestamp, PageID, Bytes, CntDupes, IP, " +
                   std::string(keep ? "Referrer, Browser, HTTPStatus, CodeWordsHTTP" : "NULL, NULL, NULL, NULL") +
                   " FROM logline WHERE VisitID=? ORDER BY Timestamp, LogLnID");
    select.Bind(1, std::int64_t{visitId});
    std::vector<StoredLine> lines;
    while (select.Step()) {
        StoredLine& line = lines.emplace_back();
        line.Timestamp = select.Int(0);
        line.PageID = static_cast<std::int32_t>(select.Int(1));
        line.Bytes = static_cast<std::int32_t>(select.Int(2));
        line.CntDupes = static_cast<std::int32_t>(select.Int(3));
        line.IP = select.Text(4);
        line.Referrer = select.Text(5);
        line.Browser = select.Text(6);
        line.HTTPStatus = select.Text(7);
        line.CodeWordsHTTP = select.Text(8);
    }
    return lines;
}

}  // namespace sitedb
