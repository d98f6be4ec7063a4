#include "logread/lineprocess.h"

#include "core/dates.h"
#include "core/env.h"
#include "core/errnums.h"
#include "core/error.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "core/quicknum.h"
#include "core/utf8.h"

namespace logread {
namespace {

using logdefs::kAgent;
using logdefs::kBytes;
using logdefs::kFile;
using logdefs::kReferrer;
using logdefs::kStatus;

bool IsErrorStatus(std::string_view status) {
    const double code = core::QuickNum(status);
    return code >= 400 && code <= 599;
}

void Collect(const logdefs::LogLnFields& fields, LogReadCtx& ctx) {
    CheckRecord& check = ctx.Check;
    if (check.CollectUA) check.UAs.Add(fields[kAgent]);
    if (check.CollectReferrer) check.Referrers.Add(fields[kReferrer]);
    if (check.CollectCol) check.ColValues.Add(fields[check.ColIndex]);
    ++ctx.File.LinesAdded;
}

bool TakenByRobots(const logdefs::LogLnFields& fields, LogReadCtx& ctx) {
    const logdefs::LineVerdict verdict = logdefs::FltrTestLine(fields, ctx.Filters.robots);
    if (verdict.skip && ctx.Check.CollectRejected) {
        std::vector<CountedList>& rejected = ctx.Check.RejectedValues;
        if (rejected.size() <= verdict.index) rejected.resize(verdict.index + 1);
        rejected[verdict.index].Add(verdict.text);
    }
    return verdict.skip;
}

}  // namespace

bool LogLnTests(const logdefs::LogLnFields& fields, LogReadCtx& ctx) {
    if (ctx.Skip404 && IsErrorStatus(fields[kStatus])) {
        if (ctx.Check.StatusToList == 404) ctx.Check.StatusFiles.Add(fields[kFile]);
        if (!(ctx.Check.Active && ctx.Check.Status4xxContinue)) return true;
    }
    if (logdefs::FltrTestLine(fields, ctx.Filters.main).skip) return true;
    if (logdefs::FltrTestLine(fields, ctx.Filters.components).skip) return true;
    if (TakenByRobots(fields, ctx)) return true;
    if (!ctx.Check.Active) return false;
    Collect(fields, ctx);
    return true;  // a check stores nothing
}

void LineProcessor::LogLnProcess(const RawLine& raw) {
    if (raw.tooLong) {
        if (!raw.blank) LogLnInvalid(core::ToUtf8(raw.text, room_));
        return;
    }
    const std::string_view line = core::ToUtf8(raw.text, room_);
    if (!format_->LogLnInterpret(line, fields_)) {
        if (!logdefs::IsBlankLine(line)) LogLnInvalid(line);
        return;
    }
    if (++ctx_.File.LinesRead == 1 && !ctx_.Check.Active) MarkUnfinished();
    ctx_.File.BytesRead += core::QuickNum(fields_[kBytes]);
    if (LogLnTests(fields_, ctx_)) return;
    const logdefs::LineTime time = clock_.LogLnTimestamp(fields_);
    ctx_.File.LineDateTime = time.moment;
    if (ctx_.File.FirstDate == 0) ctx_.File.FirstDate = time.moment;
    store_->Add(fields_, time.timestamp);
}

// On disk before the first line is: whoever opens the site after a failure finds it.
void LineProcessor::MarkUnfinished() {
    const std::string now = core::FormatDate(env_.clock.Now(), "yyyy-mm-dd hh:nn:ss");
    const std::string& file = site_.Paths().lastVals;
    if (!env_.ini.IniPut("Main", "AddedLogLns_MustDoVisitsAdd", now, file, core::OnFail::Ignore))
        throw core::ErrorNumber(core::errnum::kStore, "Nothing was read, since this file cannot be written: " + file);
}

void LineProcessor::LogLnInvalid(std::string_view line) {
    constexpr std::string_view kNoMatch = "Log Line Found cannot be matched for specified format.";
    ctx_.Problems.LogFileProblemAdd(ctx_.FileName, std::string(kNoMatch) + " Line[s] Skipped.");
    if (ctx_.NoPromptInvalid) return;
    if (store_ != nullptr) store_->Commit();  // nothing waits while a person thinks
    const core::Answer answer = env_.user.Ask(
        {.id = "LogLnInvalid",
         .message = "FileName: " + ctx_.FileName + "\r" + std::string(kNoMatch) +
                    "\r\rPress OK to skip line and continue with this log file. Press Cancel to skip rest of log file."
                    "\r\rLine:\r" +
                    std::string(core::CutUtf8(line, 1000)),
         .buttons = "&OK|&Cancel",
         .checkBox = "Check box to skip prompt for all invalid lines. [Invalid lines will be skipped]",
         .cancelButton = 2});
    if (answer.boxTicked) ctx_.NoPromptInvalid = true;
    if (answer.Cancelled()) throw core::Stopped("LogLnInvalid");
}

}  // namespace logread
