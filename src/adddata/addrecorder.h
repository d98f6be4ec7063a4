#pragma once

#include <string>
#include <vector>

#include "adddata/addlog.h"
#include "adddata/robotcopy.h"
#include "logdefs/filter.h"
#include "logread/readfiles.h"
#include "visits/visitsadd.h"

namespace core {
struct Env;
}

namespace adddata {

// What is recorded of one add. Lives as long as the add.
struct AddRecordRequest {
    std::vector<logdefs::LogFileSpec> files{};
    logdefs::FilterSwitches switches{};
    logdefs::FilterFiles filters{};
};

// Writes the records of one add at the moments of its run. No failure of a record stops the add: the first is kept for
// the end.
class AddRecorder {
public:
    AddRecorder(core::Env& env, sitedb::Site& site, AddRecordRequest request);

    // Before the read. A list of files gets its start line; the robot rules are copied as they are used.
    void ReadStarts();
    // After the read, however it ended: the problems, and two lines for each file.
    void ReadEnds(const logread::ReadOutcome& read);
    // After everything: the totals, the filters, the engine summary. An add that did not come so far has no such line.
    void AddEnds(const logread::ReadOutcome& read, const visits::VisitsOutcome& visits);

    const std::string& Failure() const { return failure_; }  // for the user, "" when all is recorded

private:
    struct Span {  // moments
        double begun = 0, ended = 0;
    };
    AddLogRecord FileStarted(const logread::FileRecord& file, double moment, bool problems) const;
    AddLogRecord FileDone(AddLogRecord record, const logread::FileRecord& file, const Span& time,
                          const std::string& listText) const;
    AddLogRecord Totals(const logread::ReadOutcome& read);
    std::vector<std::string> ListTexts(const std::vector<logread::FileRecord>& files) const;
    AddLogRecord Base(double moment) const;
    void SetCounters(AddLogRecord& record, const logread::AllCounters& all, bool overlapped) const;
    void SetFilters(AddLogRecord& record) const;
    void LogAddRecord(std::span<const AddLogRecord> records);
    void Note(const core::Result& result);
    template <typename Step>
    void Try(const Step& step);

    core::Env& env_;
    sitedb::Site& site_;
    AddRecordRequest request_;
    bool list_ = false;  // several items, or one that names many files
    double start_ = 0;   // moment
    long problems_ = 0;  // number of their record
    RobotCopy robots_{};
    std::string failure_{};
};

}  // namespace adddata
