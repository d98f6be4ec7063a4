#pragma once

#include <string>
#include <string_view>
#include <utility>

// What the toolkit-free code asks of whoever sits in front of it: a person, a
// command line, a test. The dialogs folder answers for a person.
namespace core {

struct Question {
    std::string id{};             // stable name of the question, for hosts that answer without a person
    std::string message{};        // lines parted by a lone carriage return
    std::string buttons = "&OK";  // "|" list
    std::string title{};
    std::string checkBox{};  // caption of one extra check box, or none
    int cancelButton = -99;  // 1-based number of the button that means Cancel
};

struct Answer {
    int button = 1;          // 1-based
    int cancelButton = -99;  // -99: this question had no Cancel (MBCancelNo)
    bool boxTicked = false;
    bool Cancelled() const { return button == cancelButton; }
};

class User {
public:
    virtual ~User() = default;
    virtual Answer Ask(const Question&) = 0;
    void Tell(std::string id, std::string message) { Ask({.id = std::move(id), .message = std::move(message)}); }
};

// A long job's bar. Reports nest; the number names one of them.
class Progress {
public:
    virtual ~Progress() = default;
    virtual int PIStart(std::string_view caption, std::string_view unit, double total) = 0;
    // True once the user has confirmed the stop.
    [[nodiscard]] virtual bool PIStep(int report, double count, std::string_view text) = 0;
    virtual void PIDone(int report) = 0;
    // From within one long step: lets the window live. True once the user has confirmed the stop.
    [[nodiscard]] virtual bool Beat() { return false; }
};

// The wall clock of the program, local time. Only records for people use it.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double Now() const = 0;      // a moment (see dates.h)
    virtual double Seconds() const = 0;  // monotonic, for throttling and elapsed times
};

}  // namespace core
