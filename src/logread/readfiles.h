#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "logdefs/format.h"
#include "logread/linereader.h"
#include "logread/readctx.h"
#include "logread/readevents.h"
#include "sitedb/site.h"

namespace core {
struct Env;
}

namespace logread {

struct ReadRequest {
    std::vector<logdefs::LogFileSpec> files{};  // native paths; a folder or "*" in one names many (logset.h)
    std::string formatFile{};                   // logfmts.ini
    std::string defaultFormat{};                // for files that name none
    logdefs::AddFilters filters{};
    bool NoPromptInvalid = false;
    bool NoPromptOverlap = false;
    bool Keep404List = false;
    CheckRecord check{};
    std::string progressPrefix{};  // "Add. Step 1/3: "
    std::size_t chunk = kReadChunk;
    std::int64_t batchLines = 16384;  // lines between two commits at most
    ReadEvents* events = nullptr;     // hears of each file as it is read; may be none
};

struct ReadOutcome {
    bool ok = true;  // false: a file's read was stopped or failed
    bool anyRead = false;
    bool storeFailed = false;           // the store or a file of the site failed; `errors` tells how
    std::vector<std::string> errors{};  // failures of the store, for the user
    std::vector<FileRecord> files{};
    AllCounters totals{};
    ProblemList problems{};
    CheckRecord check{};
    double seconds = 0;
    bool NoPromptInvalid = false;  // as they stand at the end: a person may tick them in a question
    bool NoPromptOverlap = false;
};

// Reads the files in order and stores the wanted lines. A stopped or failed file does not end the list; a failure of
// the store (a full disk) does, with everything up to the last commit kept.
ReadOutcome RawLog_AddData_ReadLogFiles(core::Env& env, sitedb::Site& site, ReadRequest request);

// "|" list of the parameter file to requests, and back.
std::vector<logdefs::LogFileSpec> FileListFromText(std::string_view list);

}  // namespace logread
