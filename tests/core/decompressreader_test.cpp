#include "core/decompressreader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "tests/support/packed.h"
#include "tests/support/tempfolder.h"

namespace core {
namespace {

using testsupport::kPackedKinds;
using testsupport::Pack;
using testsupport::TempFolder;

// What can be read, with the same room each time.
std::string All(UnpackReader& reader, std::size_t room) {
    std::string text, piece(room, '\0');
    while (const std::size_t got = reader.Read(piece.data(), room)) text.append(piece, 0, got);
    EXPECT_EQ(reader.Read(piece.data(), room), 0U);
    return text;
}

std::string Numbers(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i) text += std::to_string(i * 7919 % 10007) + " a line\n";
    return text;
}

TEST(UnpackReader, GivesTheSameTextWhateverItsPackingAndTheRoom) {
    const TempFolder folder;
    const std::string text = Numbers(20000);
    std::vector<std::pair<std::string, std::string>> files{{"", text}};
    for (const std::string_view kind : kPackedKinds) files.emplace_back(kind, Pack(kind, text));
    for (const auto& [kind, bytes] : files) {
        SCOPED_TRACE(kind);
        UnpackReader reader;
        ASSERT_TRUE(reader.Open(folder.Write("access.log", bytes)));
        EXPECT_EQ(reader.Kind(), kind);
        for (const std::size_t room : {std::size_t{1}, std::size_t{4093}, std::size_t{1} << 20U}) {
            EXPECT_TRUE(All(reader, room) == text) << room;
            EXPECT_EQ(reader.Taken(), static_cast<std::int64_t>(bytes.size()));
            EXPECT_TRUE(reader.Failed());
            reader.Rewind();
        }
    }
}

TEST(UnpackReader, MembersThatFollowEachOtherAreOneText) {
    const TempFolder folder;
    const std::string first = Numbers(1000), second = Numbers(9000);
    for (const std::string_view kind : kPackedKinds) {
        SCOPED_TRACE(kind);
        UnpackReader reader;
        const std::string padded = Pack(kind, first) + Pack(kind, "") + Pack(kind, second) + std::string(70000, '\0');
        ASSERT_TRUE(reader.Open(folder.Write("a", padded)));
        EXPECT_TRUE(All(reader, 5000) == first + second);
        EXPECT_TRUE(reader.Failed());
        ASSERT_TRUE(reader.Open(folder.Write("a", Pack(kind, first) + "rubbish behind it")));
        EXPECT_TRUE(All(reader, 5000) == first);
        EXPECT_TRUE(reader.Damaged());
        EXPECT_NE(reader.Failed().error.find("is damaged (" + std::string(kind) + ")"), std::string::npos);
    }
}

TEST(UnpackReader, OfACutFileTheBytesBeforeTheCutCome) {
    const TempFolder folder;
    const std::string text = Numbers(100);
    for (const std::string_view kind : kPackedKinds) {
        const std::string whole = Pack(kind, text);
        for (std::size_t size = kUnpackStart; size < whole.size(); ++size) {
            UnpackReader reader;
            ASSERT_TRUE(reader.Open(folder.Write("a", whole.substr(0, size))));
            EXPECT_TRUE(text.starts_with(All(reader, 100))) << kind << size;
            EXPECT_TRUE(reader.Damaged()) << kind << size;
            EXPECT_NE(reader.Failed().error.find("not complete"), std::string::npos) << kind << size;
        }
    }
}

TEST(UnpackReader, AnyFlippedByteEndsInBytesOrAFailure) {
    const TempFolder folder;
    for (const std::string_view kind : kPackedKinds) {
        const std::string whole = Pack(kind, Numbers(100)) + Pack(kind, Numbers(10));
        for (std::size_t at = 0; at < whole.size(); ++at) {
            std::string bytes = whole;
            bytes[at] = static_cast<char>(bytes[at] ^ (at % 2 == 0 ? 0xFF : 0x04));
            UnpackReader reader;
            ASSERT_TRUE(reader.Open(folder.Write("a", bytes)));
            All(reader, 1000);
        }
    }
}

TEST(UnpackReader, TellsKindsByTheFirstBytesAlone) {
    const TempFolder folder;
    const auto kind = [&](std::string_view bytes) {
        UnpackReader reader;
        EXPECT_TRUE(reader.Open(folder.Write("log.gz", bytes)));
        return std::string(reader.Kind());
    };
    EXPECT_EQ(kind("BZh5.example.com - - [02/Mar/2009:08:00:00 +0000]\n"), "");
    EXPECT_EQ(kind("1.2.3.4 - - \n"), "");
    EXPECT_EQ(kind(""), "");
    EXPECT_EQ(kind("\x1f\x8b"), "");
    EXPECT_EQ(kind("PK\x03\x04 zipped"), "");
    EXPECT_EQ(kind(Pack("bzip2", "")), "bzip2");
}

TEST(UnpackReader, RefusesAStreamThatWantsTooMuchMemory) {
    const TempFolder folder;
    UnpackReader reader;
    // A frame with a window of 256 MiB and one empty block.
    ASSERT_TRUE(reader.Open(folder.Write("a", std::string_view("\x28\xb5\x2f\xfd\x00\x90\x01\x00\x00", 9))));
    EXPECT_EQ(All(reader, 100), "");
    EXPECT_NE(reader.Failed().error.find("more than 128 MiB"), std::string::npos);
}

TEST(UnpackReader, CanBeStoppedWithinABombAndWithinNothing) {
    const TempFolder folder;
    const std::string member = Pack("gzip", std::string(1 << 24, 'x')), empty = Pack("gzip", "");
    std::string bomb, nothing;
    for (int i = 0; i < 16; ++i) bomb += member;  // 256 MiB of text
    for (int i = 0; i < 10000; ++i) nothing += empty;
    for (const std::string& bytes : {bomb, nothing}) {
        UnpackReader reader;
        ASSERT_TRUE(reader.Open(folder.Write("a", bytes)));
        int calls = 0;
        reader.OnWork([&] {
            if (++calls == 100) throw std::runtime_error("stop");
        });
        EXPECT_THROW(All(reader, 1 << 20), std::runtime_error);
    }
}

TEST(UnpackReader, EndsWhenTheFileBecomesShorterMeanwhile) {
    const TempFolder folder;
    const std::string path = folder.Write("a", Pack("gzip", std::string(1000, 'a')) + std::string(200000, '\0'));
    for (const std::uintmax_t left : {100000U, 12U}) {
        UnpackReader reader;
        ASSERT_TRUE(reader.Open(path));
        std::filesystem::resize_file(path, left);
        All(reader, 100);
        EXPECT_EQ(static_cast<bool>(reader.Failed()), left == 100000U);
    }
}

}  // namespace
}  // namespace core
