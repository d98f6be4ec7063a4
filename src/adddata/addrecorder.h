#pragma once

#include <optional>
#include <span>
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
    std::optional<double> preprocessSeconds{};
};

// Writes the records of one add at the moments of its run: what was killed has told how far it came. No failure of a
// record stops the add: the first is kept for the end.
class AddRecorder final : public logread::ReadEvents {
public:
    AddRecorder(core::Env& env, sitedb::Site& site, AddRecordRequest request);

    // Before the read: the robot rules are copied as they are used.
    void AddStarts();
    void ListStarts() override;
    void FileStarts(const logread::FileRecord& file, const logread::ReadPlace& place,
                    const logread::ProblemList& problems) override;
    void FileEnds(const logread::FileRecord& file, const logread::ReadPlace& place,
                  const logread::ProblemList& problems) override;
    // After the read, however it ended.
    void ReadEnds(const logread::ReadOutcome& read);
    // After everything: the totals, the filters, the engine summary. An add that did not come so far has no such line.
    void AddEnds(const logread::ReadOutcome& read, const visits::VisitsOutcome& visits);
    // The totals of an add that was completed later: of its lines, what is known then.
    void ResumeEnds(const visits::VisitsOutcome& visits);

    const std::string& Failure() const { return failure_; }  // for the user, "" when all is recorded

private:
    std::string ProblemsOf(const std::string& file, const logread::ProblemList& problems);
    void KeepProblems(const logread::ProblemList& problems, bool all);
    AddLogRecord Totals(bool whole) const;
    AddLogRecord Base(double moment) const;
    void SetCounters(AddLogRecord& record, const logread::AllCounters& all, bool overlapped) const;
    void SetFilters(AddLogRecord& record) const;
    void SetUnfinished(AddLogRecord& record) const;
    void LogTotals(AddLogRecord record, const visits::VisitsOutcome& visits);
    void LogAddRecord(const AddLogRecord& record);
    void Note(const core::Result& result);
    template <typename Step>
    void Try(const Step& step);

    core::Env& env_;
    sitedb::Site& site_;
    AddRecordRequest request_;
    double start_ = 0;      // moment
    AddLogRecord file_{};   // the start of the file that is read
    double fileStart_ = 0;  // moment
    long problems_ = 0;     // number of their record
    std::size_t problemsKept_ = 0;
    RobotCopy robots_{};
    std::string failure_{};
};

}  // namespace adddata
