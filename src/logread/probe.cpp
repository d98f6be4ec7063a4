#include "logread/probe.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/utf8.h"
#include "logdefs/linedate.h"

namespace logread {
namespace {

constexpr std::int64_t kWindow = 3000;

struct Magic {
    std::string_view bytes;
    std::string_view name;
};
constexpr std::array kMagics{
    Magic{"\x1f\x8b", "gzip"},
    Magic{"BZh", "bzip2"},
    Magic{"\xfd"
          "7zXZ",
          "xz"},
    Magic{"\x28\xb5\x2f\xfd", "zstd"},
    Magic{"PK\x03\x04", "zip"},
    Magic{"7z\xbc\xaf\x27\x1c", "7z"},
    Magic{"\x04\x22\x4d\x18", "lz4"},
    Magic{"\x1f\x9d", "compress"},
    Magic{"Rar!\x1a\x07", "rar"},
};

// Tries lines as they are: also the pieces at a window's edges.
class LineTester {
public:
    explicit LineTester(const logdefs::LogFormat& format) : format_(format) {}

    std::optional<std::int64_t> Timestamp(std::string_view line) {
        if (!format_.LogLnInterpret(core::ToUtf8(line, room_), fields_)) return std::nullopt;
        return clock_.LogLnTimestamp(fields_).timestamp;
    }

private:
    const logdefs::LogFormat& format_;
    logdefs::LogLnFields fields_{};
    logdefs::LineClock clock_{};
    std::string room_{};
};

std::optional<std::int64_t> FirstIn(std::string_view window, LineTester& tester) {
    for (std::size_t from = 0; from <= window.size();) {
        const std::size_t end = std::min(window.find('\n', from), window.size());
        if (const auto stamp = tester.Timestamp(window.substr(from, end - from))) return stamp;
        from = end + 1;
    }
    return std::nullopt;
}

std::optional<std::int64_t> LastIn(std::string_view window, LineTester& tester) {
    for (;;) {
        const std::size_t feed = window.rfind('\n');
        const std::string_view line = feed == std::string_view::npos ? window : window.substr(feed + 1);
        if (const auto stamp = tester.Timestamp(line)) return stamp;
        if (feed == std::string_view::npos) return std::nullopt;
        window = window.substr(0, feed);
    }
}

}  // namespace

LogFileDates LogFileDateRange(core::ChunkReader& file, const logdefs::LogFormat& format) {
    using Outcome = LogFileDates::Outcome;
    LogFileDates dates;
    std::array<char, kWindow> room{};
    const auto window = [&](std::int64_t offset) {
        return std::string_view(room.data(), file.ReadAt(offset, room.data(), room.size()));
    };
    const std::string_view start = window(0);
    dates.start = start;
    if (start.empty()) {
        dates.outcome = Outcome::EmptyOrMissing;
        return dates;
    }
    LineTester tester(format);
    const auto first = FirstIn(start, tester);
    if (!first) {
        dates.outcome = Outcome::NoValidLines;
        return dates;
    }
    dates.first = *first;
    for (std::int64_t offset = std::max<std::int64_t>(0, file.Size() - kWindow);;
         offset = std::max<std::int64_t>(0, offset - kWindow)) {
        if (const auto last = LastIn(window(offset), tester)) {
            dates.last = *last;
            return dates;
        }
        if (offset == 0) break;
    }
    dates.outcome = Outcome::EndsCorrupt;
    return dates;
}

std::string_view PackedKind(std::string_view start) {
    const auto magic = std::ranges::find_if(kMagics, [&](const Magic& row) { return start.starts_with(row.bytes); });
    return magic == kMagics.end() ? std::string_view() : magic->name;
}

bool LooksBinary(std::string_view start) { return start.find('\0') != std::string_view::npos; }

}  // namespace logread
