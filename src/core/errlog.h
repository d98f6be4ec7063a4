#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"

namespace core {

class Clock;

// Where a failure happened, as far as the caller knows.
struct EventPlace {
    std::string form{};
    std::string control{};
    std::string controlIndex{};
};

// Names of a record's fields, for whoever shows the log as a table.
inline constexpr std::string_view kEventColumns =
    "Date,Time,No,Event,Install Dir,Exe,Caption,More?,Active Screen,Control,Data,Full Message. Ctrl+ Z or Ctrl+ "
    "double-click to show it";

// One record as it stands in the log.
struct EventRecord {
    std::string date{}, time{};
    int number = 0;
    std::string event{}, folder{}, executable{}, caption{}, more{};
    EventPlace place{};
    std::string message{};  // lines parted by CR
};
// The records of a log or of its end, the oldest first. What is no whole record is left out.
std::vector<EventRecord> ReadEventRecords(std::string_view text);

// The one log of failures that nobody expected. A log that cannot be written is told in the return
// value: it never ends the program.
class EventLog {
public:
    EventLog(const Clock& clock, std::string fallbackPath) : clock_(clock), fallback_(std::move(fallbackPath)) {}

    void SetPath(std::string path) { path_ = std::move(path); }  // gPAFN_Errorlog
    const std::string& Path() const { return path_; }
    void SetProgram(std::string folder, std::string executable, std::string caption);

    // Appends one record and gives the message for the user (lines parted by CR).
    struct Logged {
        std::string message{};
        bool written = false;
        std::string path{};   // of the log with the record
        std::string error{};  // why the record could not be written
    };
    Logged LogEvent(int number, std::string_view procName, std::string_view description, const EventPlace& place = {});

    // A text of its own at the end of the fallback file: the last resort when handling a failure fails.
    Result AppendFallback(std::string_view text) const;

    // The last 100000 bytes of the log, or "No errors have been recorded.".
    std::string Tail() const;

private:
    const Clock& clock_;
    std::string fallback_;
    std::string path_{};
    std::string folder_{}, executable_{}, caption_{};
};

}  // namespace core
