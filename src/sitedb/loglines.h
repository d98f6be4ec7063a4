#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "logdefs/fields.h"
#include "sitedb/columns.h"
#include "sitedb/linegroups.h"
#include "sitedb/sqlite.h"

namespace sitedb {

// One line as it is stored. Texts are cut; views live as long as the line and the object itself.
struct LogLnRecord {
    std::int64_t Timestamp = 0;
    std::int32_t PageID = 0;
    std::int32_t Bytes = 0;
    std::int32_t numIP = 0;
    std::int32_t ProcTimeMicroSecs = 0;
    std::string_view IP{};
    std::array<std::string_view, kTextColumns.size()> texts{};  // extra data, by kTextColumns
    std::string_view wholeReferrer{};
    bool referrerCut = false;

    std::array<std::string, kTextColumns.size() + 1> room{};  // of texts that had to be cut
};

// The stored form of a line's fields but for PageID, which the caller looks up.
void LogLn_Fill(LogLnRecord& record, const logdefs::LogLnFields& fields, std::int64_t timestamp, bool keep);

// Adds lines and finds equal ones. One object lives for a read.
class LogLines {
public:
    struct Options {
        bool keep = true;      // LastKeepVal: the table has the columns of extra data
        std::string domain{};  // the site's own host; referrers that start with it are internal
    };
    LogLines(Database& db, Options options);

    // Stores the line under the next number and gives it. A number that is taken is stepped past.
    std::int32_t LogLnRaw_Add(const LogLnRecord& record);
    // LogLnID of the first stored line equal to the record (referrers and the rest only with extra data).
    std::optional<std::int32_t> LogLn_FindSame(const LogLnRecord& record);
    void CountDupe(std::int32_t logLnId);

    // The larger of the stored generator and the highest number in the table.
    void StartFrom(std::int32_t stored);
    std::int32_t LastLogLnID() const { return lastId_; }
    // After a rollback: numbers and remembered lines go back.
    void Rewind(std::int32_t lastLogLnId);

private:
    void InsertRow(std::int32_t id, const LogLnRecord& record);
    void StoreReferrer(std::int32_t id, const LogLnRecord& record);
    void LoadGroup(std::int64_t timestamp, LineGroups::Group& group);
    std::string_view KeyOf(const LogLnRecord& record);

    Database& db_;
    Options options_;
    Statement insert_{};
    Statement insertReferrer_{};
    Statement select_{};
    Statement countDupe_{};
    LineGroups groups_{};
    std::string key_{};
    std::int32_t lastId_ = -1;
};

}  // namespace sitedb
