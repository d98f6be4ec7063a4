#include "core/decompress.h"

#include <bzlib.h>
#include <lzma.h>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace core {
namespace {

using State = Decoder::State;

constexpr std::size_t kMostAtOnce = std::size_t{1} << 20U;  // the libraries count in unsigned int

// zlib and bzip2 take their input by a pointer to bytes that may change; they don't.
template <typename Byte>
Byte* InputOf(std::string_view input) {
    return reinterpret_cast<Byte*>(const_cast<char*>(input.data()));
}

struct Row {
    int code;
    State state;
};

template <std::size_t N>
State StateOf(int code, const std::array<Row, N>& rows) {
    const auto row = std::ranges::find(rows, code, &Row::code);
    return row == rows.end() ? State::Damaged : row->state;
}

// The libraries for gzip, bzip2 and xz all keep a record of pointers and rooms.
template <typename Stream, typename In, typename Out, typename Run>
Decoder::Step RunStream(Stream& stream, std::string_view input, char* into, std::size_t room, Run run) {
    const std::size_t given = std::min(input.size(), kMostAtOnce), space = std::min(room, kMostAtOnce);
    stream.next_in = InputOf<In>(input);
    stream.avail_in = static_cast<decltype(stream.avail_in)>(given);
    stream.next_out = reinterpret_cast<Out*>(into);
    stream.avail_out = static_cast<decltype(stream.avail_out)>(space);
    const State state = run();
    return {state, given - stream.avail_in, space - stream.avail_out};
}

class GzipDecoder final : public Decoder {
public:
    GzipDecoder() = default;
    ~GzipDecoder() override {
        if (made_) inflateEnd(&stream_);
    }
    GzipDecoder(const GzipDecoder&) = delete;
    GzipDecoder& operator=(const GzipDecoder&) = delete;

    State Begin() override {
        constexpr int kGzipOnly = MAX_WBITS + 16;
        if (made_) return inflateReset(&stream_) == Z_OK ? State::More : State::TooLarge;
        made_ = inflateInit2(&stream_, kGzipOnly) == Z_OK;
        return made_ ? State::More : State::TooLarge;
    }
    Step Decode(std::string_view input, char* into, std::size_t room) override {
        static constexpr std::array kStates{Row{Z_OK, State::More}, Row{Z_BUF_ERROR, State::More},
                                            Row{Z_STREAM_END, State::Ended}, Row{Z_MEM_ERROR, State::TooLarge}};
        return RunStream<z_stream, Bytef, Bytef>(stream_, input, into, room,
                                                 [&] { return StateOf(inflate(&stream_, Z_NO_FLUSH), kStates); });
    }

private:
    z_stream stream_{};
    bool made_ = false;
};

class Bzip2Decoder final : public Decoder {
public:
    Bzip2Decoder() = default;
    ~Bzip2Decoder() override { End(); }
    Bzip2Decoder(const Bzip2Decoder&) = delete;
    Bzip2Decoder& operator=(const Bzip2Decoder&) = delete;

    State Begin() override {
        End();
        made_ = BZ2_bzDecompressInit(&stream_, 0, 0) == BZ_OK;
        return made_ ? State::More : State::TooLarge;
    }
    Step Decode(std::string_view input, char* into, std::size_t room) override {
        static constexpr std::array kStates{Row{BZ_OK, State::More}, Row{BZ_STREAM_END, State::Ended},
                                            Row{BZ_MEM_ERROR, State::TooLarge}};
        return RunStream<bz_stream, char, char>(stream_, input, into, room,
                                                [&] { return StateOf(BZ2_bzDecompress(&stream_), kStates); });
    }

private:
    void End() {
        if (made_) BZ2_bzDecompressEnd(&stream_);
        stream_ = {};
        made_ = false;
    }

    bz_stream stream_{};
    bool made_ = false;
};

class XzDecoder final : public Decoder {
public:
    XzDecoder() = default;
    ~XzDecoder() override { lzma_end(&stream_); }
    XzDecoder(const XzDecoder&) = delete;
    XzDecoder& operator=(const XzDecoder&) = delete;

    State Begin() override {
        return lzma_stream_decoder(&stream_, kUnpackMemory, 0) == LZMA_OK ? State::More : State::TooLarge;
    }
    Step Decode(std::string_view input, char* into, std::size_t room) override {
        static constexpr std::array kStates{Row{LZMA_OK, State::More}, Row{LZMA_BUF_ERROR, State::More},
                                            Row{LZMA_STREAM_END, State::Ended}, Row{LZMA_MEM_ERROR, State::TooLarge},
                                            Row{LZMA_MEMLIMIT_ERROR, State::TooLarge}};
        return RunStream<lzma_stream, std::uint8_t, std::uint8_t>(
            stream_, input, into, room, [&] { return StateOf(lzma_code(&stream_, LZMA_RUN), kStates); });
    }

private:
    lzma_stream stream_ = LZMA_STREAM_INIT;
};

class ZstdDecoder final : public Decoder {
public:
    ZstdDecoder() = default;
    ~ZstdDecoder() override { ZSTD_freeDCtx(context_); }
    ZstdDecoder(const ZstdDecoder&) = delete;
    ZstdDecoder& operator=(const ZstdDecoder&) = delete;

    State Begin() override {
        static_assert(std::size_t{1} << kWindowLog == kUnpackMemory, "the window is the memory");
        if (context_ == nullptr) context_ = ZSTD_createDCtx();
        if (context_ == nullptr) return State::TooLarge;
        const bool ready = ZSTD_isError(ZSTD_DCtx_reset(context_, ZSTD_reset_session_only)) == 0 &&
                           ZSTD_isError(ZSTD_DCtx_setParameter(context_, ZSTD_d_windowLogMax, kWindowLog)) == 0;
        return ready ? State::More : State::TooLarge;
    }
    Step Decode(std::string_view input, char* into, std::size_t room) override {
        ZSTD_inBuffer in{input.data(), input.size(), 0};
        ZSTD_outBuffer out{into, room, 0};
        const std::size_t left = ZSTD_decompressStream(context_, &out, &in);
        return {StateAfter(left), in.pos, out.pos};
    }

private:
    static constexpr int kWindowLog = 27;

    static State StateAfter(std::size_t left) {
        if (ZSTD_isError(left) == 0) return left == 0 ? State::Ended : State::More;
        const ZSTD_ErrorCode code = ZSTD_getErrorCode(left);
        const bool large = code == ZSTD_error_frameParameter_windowTooLarge || code == ZSTD_error_memory_allocation;
        return large ? State::TooLarge : State::Damaged;
    }

    ZSTD_DCtx* context_ = nullptr;
};

template <typename T>
std::unique_ptr<Decoder> Make() {
    return std::make_unique<T>();
}

struct Kind {
    std::string_view start;  // "?" stands for any byte
    std::string_view name;
    std::unique_ptr<Decoder> (*make)();
};
using std::string_view_literals::operator""sv;
// A log of text can begin with the name "BZh5...": for bzip2 the mark of its first block, or of its end, counts too.
constexpr std::array kKinds{
    Kind{"\x1f\x8b\x08"sv, "gzip", &Make<GzipDecoder>},
    Kind{"BZh?1AY&SY"sv, "bzip2", &Make<Bzip2Decoder>},
    Kind{"BZh?\x17rE8P\x90"sv, "bzip2", &Make<Bzip2Decoder>},
    Kind{"\xfd"
         "7zXZ\0"sv,
         "xz", &Make<XzDecoder>},
    Kind{"\x28\xb5\x2f\xfd"sv, "zstd", &Make<ZstdDecoder>},
    Kind{"P*M\x18"sv, "zstd", &Make<ZstdDecoder>},  // a frame to skip, with which parallel packers begin
};
static_assert(std::ranges::all_of(kKinds, [](const Kind& row) { return row.start.size() <= kUnpackStart; }));

bool StartsLike(std::string_view text, std::string_view start) {
    return text.size() >= start.size() &&
           std::ranges::equal(text.substr(0, start.size()), start, [](char a, char b) { return b == '?' || a == b; });
}

}  // namespace

std::string_view UnpackKind(std::string_view start) {
    const auto row = std::ranges::find_if(kKinds, [&](const Kind& kind) { return StartsLike(start, kind.start); });
    return row == kKinds.end() ? std::string_view() : row->name;
}

std::unique_ptr<Decoder> MakeDecoder(std::string_view kind) {
    const auto row = std::ranges::find(kKinds, kind, &Kind::name);
    return row == kKinds.end() ? nullptr : row->make();
}

}  // namespace core
