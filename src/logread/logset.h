#pragma once

#include <functional>
#include <string>
#include <vector>

#include "logdefs/format.h"

// The files that one specification names, in the order in which they are read.
namespace logread {

// What stands for the standard input among file names.
inline constexpr const char* kStandardInput = "-";
// Where a file of a read is opened.
inline std::string OpenedPath(const std::string& file) { return file == kStandardInput ? "/dev/stdin" : file; }

// A folder, or a wildcard that is not the name of a file itself.
bool NamesMany(const std::string& path);

struct LogSet {
    std::vector<std::string> files{};
    std::vector<std::string> twice{};  // packed files that lie unpacked beside it, too
};
// Of a path that NamesMany: all that match a wildcard, or what may be a log in a folder. A rotated log comes in the
// order of its time, whatever its files are called: by the first line of each that fits the format. Files without one
// come last, by name. `onFile` is called before each that is opened; what it throws passes through.
LogSet LogSetOf(const std::string& path, const logdefs::LogFormat& format,
                const std::function<void(std::size_t done, std::size_t of)>& onFile = {});
// Whether there is any file in it, without a look into them.
bool NamesFiles(const std::string& path);

}  // namespace logread
