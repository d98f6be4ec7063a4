#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "logdefs/filter.h"

namespace logread {

// Unique texts in the order in which they came, each with a count.
class CountedList {
public:
    // `count` is added to the text's count.
    void Add(std::string_view text, std::int64_t count = 1);
    const std::vector<std::string>& Texts() const { return texts_; }
    const std::vector<std::int64_t>& Counts() const { return counts_; }

private:
    std::vector<std::string> texts_{};
    std::vector<std::int64_t> counts_{};
    std::unordered_map<std::string, std::size_t, logdefs::TextHash, std::equal_to<>> index_{};
};

// Problem texts by file, each text once.
class ProblemList {
public:
    struct File {
        std::string name{};
        std::vector<std::string> texts{};
    };
    void LogFileProblemAdd(std::string_view file, std::string_view text);
    const std::vector<File>& Files() const { return files_; }
    bool Has(std::string_view file) const { return index_.find(file) != index_.end(); }

private:
    std::vector<File> files_{};
    std::unordered_map<std::string, std::size_t, logdefs::TextHash, std::equal_to<>> index_{};
};

// What a check collects instead of storing lines.
struct CheckRecord {
    std::string Title{};
    bool Active = false;
    bool CollectUA = false;
    bool CollectReferrer = false;
    bool CollectRejected = false;
    bool CollectCol = false;
    int ColIndex = 0;
    int StatusToList = 0;  // 404: lines with status 400 to 599 go to StatusFiles
    bool Status4xxContinue = false;
    CountedList UAs{}, Referrers{}, ColValues{}, StatusFiles{};
    std::vector<CountedList> RejectedValues{};  // by robot rule
};

// Counters of one file.
struct FileCounters {
    double BytesRead = 0, BytesAdded = 0;
    std::int64_t LinesRead = 0, LinesAdded = 0, LinesExist = 0;
    std::int64_t Filtered = 0, Bots = 0, Comps = 0;
    double FirstDate = 0;     // moment of the first line that passed the tests, 0: none
    double LineDateTime = 0;  // of the last
};

struct FileRecord {
    std::string FileName{};
    std::string format{};
    FileCounters counters{};
    std::int64_t firstStamp = 0, lastStamp = 0;  // yyyymmddhhnnss at its two ends; 0 before they were looked at
    bool skipped = false;                        // not read at all: empty, no valid line, the user's No
    bool stopped = false;
    bool overlapped = false;
    double seconds = 0;
};

struct AllCounters {
    double AllFirstDate = 0, AllLastDate = 0;
    double AllBytesRead = 0, AllBytesAdded = 0;
    std::int64_t AllLinesRead = 0, AllLinesAdded = 0, AllLinesExist = 0;
    std::int64_t AllFiltered = 0, AllBots = 0, AllComps = 0;
};

// The one record of a read.
struct LogReadCtx {
    bool KeepExtra = true;
    bool Skip404 = false;
    bool RemQuery = false;
    bool RemFrag = false;
    std::int32_t NoPagePageID = -1;
    bool CheckDupes = false;
    std::string FileName{};
    bool NoPromptInvalid = false;
    bool NoPromptOverlap = false;
    bool Keep404List = false;
    ProblemList Problems{};
    logdefs::AddFilters Filters{};
    CheckRecord Check{};
    FileCounters File{};
    AllCounters All{};
};

// The counts of skipped lines as people read them.
struct ProgressTexts {
    std::string summary{};  // "12% skipped", or long "1,234 lines (12% of TTL) skipped"
    std::string details{};
};
ProgressTexts LogReadProgressText(const LogReadCtx& ctx, bool isShort);

}  // namespace logread
