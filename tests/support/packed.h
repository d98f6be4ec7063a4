#pragma once

#include <bzlib.h>
#include <gtest/gtest.h>
#include <lzma.h>
#include <zlib.h>
#include <zstd.h>

#include <string>
#include <string_view>

namespace testsupport {

inline constexpr std::string_view kPackedKinds[] = {"gzip", "bzip2", "xz", "zstd"};

// One packed member, made by the libraries' own packers.
inline std::string Pack(std::string_view kind, const std::string& text) {
    std::string packed(text.size() + text.size() / 50 + 1000, '\0');
    const auto room = static_cast<unsigned>(packed.size()), given = static_cast<unsigned>(text.size());
    std::string input = text;  // the packers take their input by a pointer to bytes that may change
    if (kind == "gzip") {
        z_stream stream{};
        EXPECT_EQ(deflateInit2(&stream, 1, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
        stream.next_in = reinterpret_cast<Bytef*>(input.data());
        stream.avail_in = given;
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = room;
        EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
        packed.resize(stream.total_out);
        deflateEnd(&stream);
    } else if (kind == "bzip2") {
        unsigned size = room;
        EXPECT_EQ(BZ2_bzBuffToBuffCompress(packed.data(), &size, input.data(), given, 1, 0, 0), BZ_OK);
        packed.resize(size);
    } else if (kind == "xz") {
        std::size_t size = 0;
        EXPECT_EQ(
            lzma_easy_buffer_encode(0, LZMA_CHECK_CRC64, nullptr, reinterpret_cast<std::uint8_t*>(input.data()),
                                    input.size(), reinterpret_cast<std::uint8_t*>(packed.data()), &size, packed.size()),
            LZMA_OK);
        packed.resize(size);
    } else {
        packed.resize(ZSTD_compress(packed.data(), packed.size(), input.data(), input.size(), 1));
    }
    return packed;
}

}  // namespace testsupport
