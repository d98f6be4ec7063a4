#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/files.h"

// The first lines of a log, by which editors show what a definition does to it.
namespace logdefs {

struct LogSample {
    std::string file{};  // native path, "" when there is none
    // UTF-8, without blank lines and line feeds. A carriage return stays, as it does in an add: a specification can
    // name it. A line longer than 64 KiB is cut.
    std::vector<std::string> lines{};
};
inline constexpr std::size_t kSampleLines = 1000;

// Plain and packed files; no more than 4 MiB of lines. Of one that can be read in part, the lines before the damage.
core::Result ReadLogSample(const std::string& path, std::size_t most, LogSample& sample);

// The log and its format that editors try definitions on; both "" when no log is known.
struct TrialLog {
    std::string file{};
    std::string format{};
};

}  // namespace logdefs
