#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"

namespace logread {

inline constexpr std::size_t kMaxLine = 1048576;    // bytes as they stand in the file, without the line feed
inline constexpr std::size_t kReadChunk = 1 << 20;  // any size gives the same lines

struct RawLine {
    std::string_view text{};  // without its line feed; a carriage return stays. Cut when tooLong.
    bool tooLong = false;     // more than kMaxLine bytes: matches no specification
    bool blank = false;       // tooLong, and nothing but blanks, tabs and carriage returns
};

// Lines of a file, whatever their length, in bounded memory. Ends where the file ended when it was opened; if it
// has grown since, a last line without its line feed is not complete and is left for the next read.
class LineReader {
public:
    explicit LineReader(core::ChunkSource& file, std::size_t chunk = kReadChunk);

    // False at the end; then Failed() tells whether it was the real one.
    bool Next(RawLine& line);
    std::int64_t Position() const { return position_; }  // bytes of the lines given so far
    bool Failed() const { return !file_.Failed().ok; }

private:
    bool Fill();  // reads more behind what is held; false at the end of the file
    bool Emit(RawLine& line, std::size_t length, std::size_t consumed);
    void Discard();

    core::ChunkSource& file_;
    std::vector<char> buffer_;
    std::size_t chunk_;
    std::size_t begin_ = 0;  // of what is held
    std::size_t end_ = 0;
    std::size_t scanned_ = 0;  // bytes behind begin_ known to hold no line feed
    std::int64_t position_ = 0;
    bool tooLong_ = false;
    bool blankSoFar_ = true;
    std::string start_{};  // of a line that is too long, for messages
};

}  // namespace logread
