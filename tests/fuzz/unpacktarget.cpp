// Packed logs: whatever the bytes, unpacking ends, gives the same in any pieces, and damage is told.
#include <string>

#include "core/decompressreader.h"
#include "logread/linereader.h"
#include "logread/probe.h"
#include "tests/fuzz/memoryfile.h"
#include "tests/fuzz/targets.h"

namespace fuzz {
namespace {

constexpr std::size_t kMostText = std::size_t{32} << 20U;  // a bomb is not unpacked to its end here

struct Unpacked {
    std::string text{};
    bool bomb = false;  // cut at kMostText
    bool damaged = false;
};

Unpacked UnpackIn(core::UnpackReader& file, std::size_t room) {
    Unpacked all;
    std::string piece(room, '\0');
    while (all.text.size() < kMostText) {
        const std::size_t got = file.Read(piece.data(), room);
        if (got == 0) break;
        Need(got <= room, "more bytes than room");
        all.text.append(piece, 0, got);
    }
    all.bomb = all.text.size() >= kMostText;
    if (all.bomb) return all;
    Need(file.Read(piece.data(), room) == 0, "bytes behind the end");
    Need(file.Taken() >= 0 && file.Taken() <= file.Size(), "more taken than there is");
    all.damaged = file.Damaged();
    Need(all.damaged == !file.Failed(), "a failure without a damaged file");
    return all;
}

// The same text, whatever the pieces. Before damage, packers give more of their last block the smaller the pieces are.
void CheckSame(const Unpacked& one, const Unpacked& other) {
    if (one.bomb || other.bomb) return;
    Need(one.damaged == other.damaged, "other pieces find other damage");
    if (one.damaged)
        Need(one.text.starts_with(other.text) || other.text.starts_with(one.text), "damage changes what is before it");
    else
        Need(one.text == other.text, "other pieces give another text");
}

}  // namespace

int RunUnpack(const std::uint8_t* data, std::size_t size) {
    const MemoryFile packed(TextOf(data, size));
    core::UnpackReader file;
    Need(file.Open(packed.Path()).ok, "the file cannot be opened");
    const Unpacked whole = UnpackIn(file, 1 << 16);
    for (const std::size_t room : {std::size_t{1 << 12}, std::size_t{61}}) {
        file.Rewind();
        CheckSame(whole, UnpackIn(file, room));
    }
    if (file.Kind().empty()) Need(!whole.damaged && whole.text == TextOf(data, size), "a plain file is changed");
    file.Rewind();
    const logdefs::LogFormat format({0, {"", "%S [%d/%M/%Y:%h:%n:%e] %r|"}});
    const logread::LogFileDates dates = logread::LogFileDateRange(file, format);
    Need(whole.damaged || whole.text.starts_with(dates.start), "the file's start is not its first bytes");
    logread::LineReader reader(file);
    logread::RawLine line;
    std::size_t read = 0;
    while (reader.Next(line) && read < kMostText) read = static_cast<std::size_t>(reader.Position());
    Need(whole.damaged || whole.bomb || read == whole.text.size(), "lines that are not the text's");
    return 0;
}

}  // namespace fuzz
