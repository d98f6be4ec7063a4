#include "logread/probe.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

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
    Magic{{"\x5d\0\0", 3}, "lzma"},
};
// An archive begins with a name and a block of its own; log lines may follow at once, so lines alone don't tell.
constexpr std::string_view kTarMark = "ustar";
constexpr std::size_t kTarMarkAt = 257;

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

// The end of a file as text, by offsets from its first byte.
class Ending {
public:
    explicit Ending(core::UnpackReader& file) : file_(file), size_(file.Size()) {
        if (!file.Kind().empty()) ReadPacked();
    }

    std::int64_t Size() const { return size_; }    // of the text
    std::int64_t First() const { return first_; }  // offset of the first byte that can be had
    std::size_t ReadAt(std::int64_t offset, char* into, std::size_t room) const {
        if (ring_.empty()) return file_.ReadAt(offset, into, room);
        std::size_t have = 0;
        for (; have < room && offset < size_; ++have, ++offset)
            into[have] = ring_[static_cast<std::size_t>(offset) % ring_.size()];
        return have;
    }

private:
    // Each byte stands at its offset modulo the ring's size, so the last ones overwrite the others.
    void ReadPacked() {
        ring_.resize(kPackedTail);
        size_ = 0;
        for (;;) {
            const std::size_t at = static_cast<std::size_t>(size_) % ring_.size();
            const std::size_t got = file_.Read(ring_.data() + at, ring_.size() - at);
            if (got == 0) break;
            size_ += static_cast<std::int64_t>(got);
        }
        first_ = std::max<std::int64_t>(0, size_ - static_cast<std::int64_t>(ring_.size()));
    }

    core::UnpackReader& file_;
    std::int64_t size_;
    std::int64_t first_ = 0;
    std::vector<char> ring_{};
};

void FindLast(core::UnpackReader& file, LineTester& tester, LogFileDates& dates) {
    const Ending ending(file);
    std::array<char, kWindow> room{};
    for (std::int64_t offset = std::max<std::int64_t>(0, ending.Size() - kWindow); offset >= ending.First();
         offset = std::max<std::int64_t>(0, offset - kWindow)) {
        const std::size_t got = ending.ReadAt(offset, room.data(), room.size());
        if (const auto last = LastIn({room.data(), got}, tester)) {
            dates.last = *last;
            return;
        }
        if (offset == 0) break;
    }
    dates.outcome = LogFileDates::Outcome::EndsCorrupt;
}

std::string StartOf(core::UnpackReader& file) {
    std::string start(kWindow, '\0');
    std::size_t have = 0;
    while (const std::size_t got = file.Read(start.data() + have, start.size() - have)) have += got;
    start.resize(have);
    return start;
}

std::optional<std::int64_t> FirstOf(std::string_view start, LineTester& tester) {
    return PackedKind(start) == "tar" ? std::nullopt : FirstIn(start, tester);
}

}  // namespace

LogFileStart LogFileStartOf(core::UnpackReader& file, const logdefs::LogFormat& format) {
    LogFileStart start{StartOf(file), {}};
    LineTester tester(format);
    start.first = FirstOf(start.text, tester);
    return start;
}

LogFileDates LogFileDateRange(core::UnpackReader& file, const logdefs::LogFormat& format) {
    using Outcome = LogFileDates::Outcome;
    LogFileDates dates;
    dates.packed = !file.Kind().empty();
    dates.start = StartOf(file);
    if (!file.Failed()) dates.damage = file.Failed().error;
    file.Rewind();
    if (dates.start.empty()) {
        dates.outcome = dates.damage.empty() ? Outcome::EmptyOrMissing : Outcome::NoValidLines;
        return dates;
    }
    LineTester tester(format);
    const auto first = FirstOf(dates.start, tester);
    if (!first) {
        dates.outcome = Outcome::NoValidLines;
        return dates;
    }
    dates.first = *first;
    FindLast(file, tester, dates);
    file.Rewind();
    return dates;
}

std::string_view PackedKind(std::string_view start) {
    if (start.size() > kTarMarkAt && start.substr(kTarMarkAt).starts_with(kTarMark)) return "tar";
    const auto magic = std::ranges::find_if(kMagics, [&](const Magic& row) { return start.starts_with(row.bytes); });
    return magic == kMagics.end() ? std::string_view() : magic->name;
}

bool LooksBinary(std::string_view start) { return start.find('\0') != std::string_view::npos; }

}  // namespace logread
