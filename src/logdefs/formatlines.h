#pragma once

#include <functional>
#include <string>
#include <vector>

#include "logdefs/editing.h"

namespace logdefs {

// The dialog of the specifications of one format, a box for each, with what they do to a log. Stores nothing itself.
class FormatLines {
public:
    // `specs` none: one empty box. `log` is the one it shows first, and then the one that was named.
    FormatLines(const Editing& editing, std::string name, std::vector<std::string> specs, std::string& log)
        : editing_(editing), name_(std::move(name)), specs_(std::move(specs)), log_(log) {}

    // Keeps what was entered; a text that says why not leaves the dialog up.
    using Keep = std::function<std::string(const std::vector<std::string>& specs)>;
    // False: cancelled.
    bool Run(const Keep& keep);

private:
    enum class Step { Again, Rebuild, Kept, Left };
    Step Shown(const Keep& keep);
    Step Pressed(int button, dialogs::DialogModel& model, const Keep& keep);
    void AddBoxes(dialogs::Controls& controls) const;
    std::vector<std::string> Entered(const dialogs::Controls& controls) const;  // all boxes
    static std::vector<std::string> Filled(const std::vector<std::string>& boxes);
    std::string Problem(const std::vector<std::string>& boxes) const;

    const Editing& editing_;
    std::string name_;
    std::vector<std::string> specs_;
    std::string& log_;
};

}  // namespace logdefs
