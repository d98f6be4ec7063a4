#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/files.h"
#include "logdefs/format.h"

namespace logread {

// The first and last valid line of a file, from two small windows: the whole file is not read.
struct LogFileDates {
    enum class Outcome { Ok, EmptyOrMissing, NoValidLines, EndsCorrupt };
    Outcome outcome = Outcome::Ok;
    std::int64_t first = 0;  // yyyymmddhhnnss
    std::int64_t last = 0;
    std::string start{};  // the file's first bytes, for messages
};
LogFileDates LogFileDateRange(core::ChunkReader& file, const logdefs::LogFormat& format);

// The kind of a packed file by its first bytes ("gzip"), or "".
std::string_view PackedKind(std::string_view start);
// No text: NUL bytes among the first.
bool LooksBinary(std::string_view start);

}  // namespace logread
