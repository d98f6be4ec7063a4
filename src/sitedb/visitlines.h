#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sitedb/sqlite.h"

// One visit, and its lines, for a person to look at.
namespace sitedb {

struct VisitTexts {
    std::int64_t EndTimeStamp = 0;
    std::string FirstIP{};
    std::string SearchTerm{};  // as it was searched for
    std::string SearchEngine{};
};
class VisitTextReader {
public:
    explicit VisitTextReader(Database& db);
    VisitTexts Read(std::int32_t visitId);  // empty when there is no such visit

private:
    Statement select_;
};

struct StoredLine {
    std::int64_t Timestamp = 0;
    std::int32_t PageID = 0;
    std::int32_t Bytes = 0;
    std::int32_t CntDupes = 0;
    std::string IP{};
    std::string Referrer{}, Browser{}, HTTPStatus{}, CodeWordsHTTP{};  // empty without extra data
};
// In order of time and number. `keep`: the table has the columns of extra data.
std::vector<StoredLine> ReadLinesOfVisit(Database& db, std::int32_t visitId, bool keep);

}  // namespace sitedb
