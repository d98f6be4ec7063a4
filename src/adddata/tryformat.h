#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/files.h"
#include "logdefs/format.h"

namespace core {
class IniStore;
}

namespace adddata {

// How well a format fits the first lines of a file.
struct FormatTrial {
    std::string format{};
    std::int64_t lines = 0;  // that are not blank
    std::int64_t fit = 0;
    std::int64_t firstMisfitNumber = 0;  // 1-based, 0: none
    std::string firstMisfit{};
    struct Field {
        std::string name{};
        std::string text{};
    };
    // Fields of the first lines that fit, the empty ones left out.
    std::vector<std::vector<Field>> samples{};
};

inline constexpr std::int64_t kTrialLines = 1000;

// Fails when the file cannot be read.
core::Result TryFormat(const std::string& path, const std::string& name, const logdefs::LogFormat& format,
                       std::size_t samples, FormatTrial& trial);
// All formats of the store that fit at least one line, the best first: more lines that fit, then more fields.
core::Result TryAllFormats(core::IniStore& ini, const std::string& formatFile, const std::string& path,
                           std::vector<FormatTrial>& trials);

}  // namespace adddata
