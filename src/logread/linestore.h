#pragma once

#include <memory>
#include <optional>
#include <string>

#include "logdefs/linedate.h"
#include "logread/readctx.h"
#include "sitedb/loglines.h"
#include "sitedb/site.h"

namespace core {
struct Env;
}

namespace logread {

// Stores lines in batches. Between two commits nothing is on disk; a failure brings counters, numbers and the page
// list back to the last commit.
class LineStore {
public:
    // Makes the page ".. Page does not exist .." and puts its number into the context.
    LineStore(core::Env& env, sitedb::Site& site, LogReadCtx& ctx);

    // Stores the line, or counts it as existing when the file overlaps stored data.
    void Add(const logdefs::LogLnFields& fields, std::int64_t timestamp);

    // Commits when the batch has `lines` lines or is a second old.
    void CommitWhenDue(std::int64_t lines, double now);
    void Commit();
    void RollBack();

    // Stored lines whose time lies in the range.
    bool Overlaps(std::int64_t first, std::int64_t last);
    std::int32_t LastLogLnID() const { return lines_.LastLogLnID(); }

private:
    void Begin();

    sitedb::Site& site_;
    LogReadCtx& ctx_;
    sitedb::LogLines lines_;
    sitedb::LogLnRecord record_{};
    std::optional<sitedb::Transaction> batch_{};
    std::int64_t batchLines_ = 0;
    double batchStart_ = -1;

    // State at the last commit.
    FileCounters file_{};
    std::int32_t lastLine_ = -1;
    std::int32_t lastPage_ = 0;
};

}  // namespace logread
