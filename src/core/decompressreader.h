#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/decompress.h"
#include "core/files.h"

namespace core {

// A log file as text, whether it lies plain or packed. Packed files are told by their first bytes and unpacked as a
// stream: members that follow each other are one text, memory does not grow with the file. Of a damaged one, the
// bytes before the damage come first; then Read gives 0 and Failed() tells what to do.
class UnpackReader final : public ChunkSource {
public:
    UnpackReader() = default;
    UnpackReader(const UnpackReader&) = delete;
    UnpackReader& operator=(const UnpackReader&) = delete;

    Result Open(const std::string& path);  // refuses what ChunkReader refuses
    void Rewind();                         // to the first byte; forgets a failure
    // Called before each piece of work (64 KiB packed, or a Read of a plain file), so that a job can be stopped
    // within it: what it throws passes through, and the reader is not used any further.
    void OnWork(std::function<void()> onWork) { onWork_ = std::move(onWork); }

    std::string_view Kind() const { return kind_; }    // "gzip", ... ; "" for a plain file
    std::int64_t Size() const { return raw_.Size(); }  // of the file as it lies
    std::int64_t Taken() const { return rawAt_ - static_cast<std::int64_t>(input_.size()); }  // of Size()
    std::size_t Read(char* into, std::size_t room) override;
    // Plain files only: a packed one gives 0.
    std::size_t ReadAt(std::int64_t offset, char* into, std::size_t room);
    const Result& Failed() const override { return failed_; }
    bool Damaged() const { return damaged_ && !failed_; }  // what failed is the packed stream, not the disk
    bool Grown() const override { return raw_.Grown(); }

private:
    enum class Go { On, End };

    void Refill();
    Go NextMember();
    std::size_t Unpack(char* into, std::size_t room);
    void Stop(Decoder::State state, bool atEnd);

    ChunkReader raw_{};
    std::string path_{};
    std::string_view kind_{};
    std::unique_ptr<Decoder> decoder_{};
    std::vector<char> chunk_{};
    std::string_view input_{};  // what is left of chunk_
    std::int64_t rawAt_ = 0;
    bool between_ = true;  // no member is open
    bool rawEnd_ = false;
    bool damaged_ = false;
    Result later_{};  // a failure behind bytes that are still to be given
    Result failed_{};
    std::function<void()> onWork_{};
};

}  // namespace core
