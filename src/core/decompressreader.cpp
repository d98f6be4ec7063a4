#include "core/decompressreader.h"

#include <algorithm>
#include <array>

#include "core/fileio.h"

namespace core {
namespace {

constexpr std::size_t kRawChunk = 1 << 16;

std::string DamageText(const std::string& path, std::string_view kind, Decoder::State state, bool atEnd,
                       std::int64_t at, std::int64_t size) {
    const std::string name = "File >>" + fileio::Shown(path) + "<< ";
    if (state == Decoder::State::TooLarge)
        return name + "needs more than " + std::to_string(kUnpackMemory >> 20U) + " MiB of memory to be unpacked (" +
               std::string(kind) + "). Unpack it first.";
    if (atEnd)
        return name + "is not complete (" + std::string(kind) +
               "): it ends within its packed data. Only the lines before count. Get a whole copy and add that too.";
    return name + "is damaged (" + std::string(kind) + ") near byte " + std::to_string(at) + " of " +
           std::to_string(size) + ". Only the lines before count. Get a whole copy and add that too.";
}

}  // namespace

Result UnpackReader::Open(const std::string& path) {
    kind_ = {};
    decoder_.reset();
    path_ = path;
    const Result opened = raw_.Open(path);
    Rewind();
    if (!opened) return failed_ = opened;
    std::array<char, kUnpackStart> start{};
    kind_ = UnpackKind({start.data(), raw_.ReadAt(0, start.data(), start.size())});
    if (!raw_.Failed()) return failed_ = raw_.Failed();
    if (kind_.empty()) return {};
    decoder_ = MakeDecoder(kind_);
    chunk_.resize(kRawChunk);
    return {};
}

void UnpackReader::Rewind() {
    input_ = {};
    rawAt_ = 0;
    between_ = true;
    rawEnd_ = damaged_ = false;
    later_ = failed_ = {};
}

std::size_t UnpackReader::ReadAt(std::int64_t offset, char* into, std::size_t room) {
    if (decoder_) return 0;
    const std::size_t got = raw_.ReadAt(offset, into, room);
    failed_ = raw_.Failed();
    return got;
}

std::size_t UnpackReader::Read(char* into, std::size_t room) {
    if (!failed_) return 0;
    std::size_t got = 0;
    if (!decoder_) {
        if (onWork_) onWork_();
        got = raw_.ReadAt(rawAt_, into, room);
        rawAt_ += static_cast<std::int64_t>(got);
        later_ = raw_.Failed();
    } else if (later_) {
        got = Unpack(into, room);
    }
    if (got == 0) failed_ = later_;
    return got;
}

void UnpackReader::Refill() {
    const std::size_t got = raw_.ReadAt(rawAt_, chunk_.data(), chunk_.size());
    rawAt_ += static_cast<std::int64_t>(got);
    rawEnd_ = got == 0;  // also where the file has become shorter
    input_ = {chunk_.data(), got};
    later_ = raw_.Failed();
}

// Behind a member stand padding, another member, or nothing.
UnpackReader::Go UnpackReader::NextMember() {
    input_.remove_prefix(std::min(input_.find_first_not_of('\0'), input_.size()));
    if (input_.empty()) return rawEnd_ ? Go::End : Go::On;
    if (const Decoder::State state = decoder_->Begin(); state != Decoder::State::More) {
        Stop(state, false);
        return Go::End;
    }
    between_ = false;
    return Go::On;
}

void UnpackReader::Stop(Decoder::State state, bool atEnd) {
    damaged_ = true;
    later_ = {false, DamageText(path_, kind_, state, atEnd, Taken(), Size())};
}

std::size_t UnpackReader::Unpack(char* into, std::size_t room) {
    std::size_t have = 0;
    while (have < room) {
        if (onWork_) onWork_();
        if (input_.empty()) Refill();
        if (!later_) break;
        if (between_) {
            if (NextMember() == Go::End) break;
            if (between_) continue;
        }
        const Decoder::Step step = decoder_->Decode(input_, into + have, room - have);
        input_.remove_prefix(step.taken);
        have += step.made;
        between_ = step.state == Decoder::State::Ended;
        const bool stuck = step.state == Decoder::State::More && step.taken == 0 && step.made == 0;
        const bool atEnd = stuck && rawEnd_;
        if (atEnd || (stuck && !input_.empty()) || step.state == Decoder::State::Damaged ||
            step.state == Decoder::State::TooLarge) {
            Stop(step.state, atEnd);
            break;
        }
    }
    return have;
}

}  // namespace core
