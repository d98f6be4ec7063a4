#pragma once

#include <string>
#include <string_view>

namespace core {

class Clock;

// Where a failure happened, as far as the caller knows.
struct EventPlace {
    std::string form{};
    std::string control{};
    std::string controlIndex{};
};

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
        std::string error{};  // why the record could not be written
    };
    Logged LogEvent(int number, std::string_view procName, std::string_view description, const EventPlace& place = {});

    // The last 100000 bytes of the log, or "No errors have been recorded.".
    std::string Tail() const;

private:
    const Clock& clock_;
    std::string fallback_;
    std::string path_{};
    std::string folder_{}, executable_{}, caption_{};
};

}  // namespace core
