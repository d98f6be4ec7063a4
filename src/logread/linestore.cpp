#include "logread/linestore.h"

#include <algorithm>

#include "core/env.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/quicknum.h"

namespace logread {

LineStore::LineStore(core::Env& env, sitedb::Site& site, LogReadCtx& ctx)
    : site_(site), ctx_(ctx), lines_(site.Db(), {ctx.KeepExtra, site.Options().domain}) {
    lines_.StartFrom(
        core::ToLong(env.ini.IniGetNum("Main", "LastLogLnID", site.Paths().lastVals, core::Missing::Default, -1)));
    lastLine_ = lines_.LastLogLnID();
    lastPage_ = site.Pages().UpperBound();
    if (!ctx.Check.Active) {
        Begin();
        ctx.NoPagePageID = site.Pages().Page_FindOrAdd(names::kNoPageName, sitedb::Add::Yes, site.Db());
        Commit();
    }
}

void LineStore::Begin() {
    if (!batch_) batch_.emplace(site_.Db());
}

void LineStore::Add(const logdefs::LogLnFields& fields, std::int64_t timestamp) {
    Begin();
    ++batchLines_;
    sitedb::LogLn_Fill(record_, fields, timestamp, ctx_.KeepExtra);
    const names::StripParts strip{ctx_.RemFrag, ctx_.RemQuery};
    sitedb::PageList& pages = site_.Pages();
    if (ctx_.CheckDupes) {
        const std::int32_t page = pages.FindRaw(fields[logdefs::kFile], strip, sitedb::Add::No, site_.Db());
        record_.PageID = page < 0 ? ctx_.NoPagePageID : page;
        if (const auto same = lines_.LogLn_FindSame(record_)) {
            ++ctx_.File.LinesExist;
            // Only once this file has added a line: reading stored data again leaves the counts alone.
            if (ctx_.File.LinesAdded > 0) lines_.CountDupe(*same);
            return;
        }
    }
    record_.PageID = pages.FindRaw(fields[logdefs::kFile], strip, sitedb::Add::Yes, site_.Db());
    lines_.LogLnRaw_Add(record_);
    ++ctx_.File.LinesAdded;
    ctx_.File.BytesAdded += core::QuickNum(fields[logdefs::kBytes]);
}

void LineStore::CommitWhenDue(std::int64_t lines, double now) {
    if (!batch_) return;
    if (batchStart_ < 0) batchStart_ = now;
    if (batchLines_ >= lines || now - batchStart_ >= 1.0) Commit();
}

void LineStore::Commit() {
    if (batch_) batch_->Commit();
    batch_.reset();
    batchLines_ = 0;
    batchStart_ = -1;
    file_ = ctx_.File;
    lastLine_ = lines_.LastLogLnID();
    lastPage_ = site_.Pages().UpperBound();
}

void LineStore::RollBack() {
    batch_.reset();
    batchLines_ = 0;
    batchStart_ = -1;
    ctx_.File = file_;
    lines_.Rewind(lastLine_);
    site_.Pages().CutBack(lastPage_);
}

bool LineStore::Overlaps(std::int64_t first, std::int64_t last) {
    sitedb::Statement query =
        site_.Db().Prepare("SELECT EXISTS (SELECT 1 FROM logline WHERE Timestamp>=? AND Timestamp<=?)");
    query.Bind(1, std::min(first, last)).Bind(2, std::max(first, last));
    return query.Step() && query.Int(0) != 0;
}

}  // namespace logread
