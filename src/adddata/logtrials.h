#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "adddata/adddesk.h"
#include "logdefs/formatfinder.h"

namespace adddata {

// What the formats make of the first lines of chosen files. Each file is read once, so an object lives no longer than
// a dialog is shown.
class LogTrials {
public:
    explicit LogTrials(const AddDesk& at) : at_(at) {}

    struct Tried {
        core::Result read{};
        std::vector<logdefs::FormatTrial> formats{};  // that fit a line, the best first
    };
    // Of a wildcard or folder its first file; of what is none nothing.
    const Tried& Of(const std::string& path);

    // The format that fits best. `otherwise` stays when no other is better, and when none fits.
    std::string Best(const std::string& path, const std::string& otherwise);
    // How a format does on a file, for a person.
    std::string Text(const std::string& path, const std::string& format);
    // A file none of whose lines has the format would be left out: what to do about it, "" for a good one.
    std::string Misfit(const std::string& path, const std::string& format);

private:
    const AddDesk& at_;
    std::map<std::string, Tried, std::less<>> tried_{};
};

}  // namespace adddata
