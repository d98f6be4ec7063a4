#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/decompressreader.h"
#include "logdefs/format.h"

namespace logread {

inline constexpr std::size_t kPackedTail = 1 << 20;  // bytes kept of a packed file's end

// The first and last valid line of a file, from small windows at its two ends. A plain file is not read as a whole; a
// packed one is unpacked once to its end, of which kPackedTail bytes are kept in memory. The reader stands at its
// first byte afterwards.
struct LogFileDates {
    enum class Outcome { Ok, EmptyOrMissing, NoValidLines, EndsCorrupt };
    Outcome outcome = Outcome::Ok;
    std::int64_t first = 0;  // yyyymmddhhnnss
    std::int64_t last = 0;
    std::string start{};   // the file's first bytes as text, for messages
    std::string damage{};  // why no first line could be had, "" when the file itself is whole
    bool packed = false;
};
LogFileDates LogFileDateRange(core::UnpackReader& file, const logdefs::LogFormat& format);

// The first of both alone, from the file's first bytes; nothing when no line there is valid.
struct LogFileStart {
    std::string text{};
    std::optional<std::int64_t> first{};
};
LogFileStart LogFileStartOf(core::UnpackReader& file, const logdefs::LogFormat& format);

// The kind of a packed file or an archive by its first bytes ("gzip", "tar"), or "".
std::string_view PackedKind(std::string_view start);
// No text: NUL bytes among the first.
bool LooksBinary(std::string_view start);

}  // namespace logread
