#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

// Packed streams, unpacked step by step in bounded memory. Nothing outside src/core includes the libraries' headers.
namespace core {

// What an unpacker may hold beside its input and output; a stream that asks for more is refused.
inline constexpr std::size_t kUnpackMemory = std::size_t{128} << 20U;

class Decoder {
public:
    enum class State {
        More,      // goes on with more input or more room
        Ended,     // a member is complete; another may follow after Begin()
        Damaged,   // cannot be unpacked any further
        TooLarge,  // would need more than kUnpackMemory, or memory ran out
    };
    struct Step {
        State state = State::More;
        std::size_t taken = 0;  // bytes of the input
        std::size_t made = 0;   // bytes written
    };

    virtual ~Decoder() = default;
    virtual State Begin() = 0;  // of a member: More, or TooLarge
    // Takes some input and writes some output, either of which may be nothing. Only after Begin().
    virtual Step Decode(std::string_view input, char* into, std::size_t room) = 0;
};

// By the first bytes (kUnpackStart are enough), never by a file's name: "gzip", "bzip2", "xz", "zstd", or "" for what
// is no packed stream or one that cannot be unpacked here.
inline constexpr std::size_t kUnpackStart = 16;
std::string_view UnpackKind(std::string_view start);
std::unique_ptr<Decoder> MakeDecoder(std::string_view kind);  // null for an unknown kind

}  // namespace core
