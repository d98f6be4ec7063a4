#pragma once

#include <string>
#include <string_view>

#include "logdefs/format.h"
#include "logdefs/linedate.h"
#include "logread/linereader.h"
#include "logread/linestore.h"
#include "logread/readctx.h"

namespace core {
struct Env;
}

namespace logread {

// True when the line is to be skipped. In this order: status, main filter, page components, robots; then what a check
// collects. Lines taken by the status are in no counter.
bool LogLnTests(const logdefs::LogLnFields& fields, LogReadCtx& ctx);

// One raw line after the other through interpretation, tests and the store.
class LineProcessor {
public:
    // `store` is nullptr in a check.
    LineProcessor(core::Env& env, sitedb::Site& site, LogReadCtx& ctx, LineStore* store)
        : env_(env), site_(site), ctx_(ctx), store_(store) {}

    void SetFormat(const logdefs::LogFormat& format) { format_ = &format; }
    // Throws core::Stopped when the user leaves the file at a line that fits no specification.
    void LogLnProcess(const RawLine& line);

private:
    void LogLnInvalid(std::string_view line);
    void MarkUnfinished();

    core::Env& env_;
    sitedb::Site& site_;
    LogReadCtx& ctx_;
    LineStore* store_;
    const logdefs::LogFormat* format_ = nullptr;
    logdefs::LogLnFields fields_{};
    logdefs::LineClock clock_{};
    std::string room_{};
};

}  // namespace logread
