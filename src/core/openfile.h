#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"

namespace core::fileio {
class NewFile;
}

namespace core {

class Paths;
class User;

// What to do about a file to be created that exists, or one to be read that is missing. The letters are what settings
// hold.
struct OpenRules {
    char existsAction = 'E';   // W warn and ask, E error, D delete silently, A append
    char missingAction = 'C';  // C continue silently (the caller sees the text), E error with a message
    bool checkName = true;
    bool textMode = false;  // in append mode, a last line without its end gets one
};

// An open file; closed when it goes out of scope.
class OpenedFile {
public:
    OpenedFile() = default;
    ~OpenedFile() { Close(); }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    int Get() const { return fd_; }
    bool IsOpen() const { return fd_ >= 0; }
    Result Write(std::string_view text);
    Result Close();  // tells a write that failed only now

private:
    friend Result OpenFile(User& user, const Paths& paths, std::string_view name, char mode, const OpenRules& rules,
                           OpenedFile& file);
    int fd_ = -1;
    std::string path_{};
};

// Opens a file given by a stored or a native name: mode 'I' for input, 'O' for output. On failure the file stays
// closed. Raises 1031 or 1032 for a letter that is none of the rules', 1001 for any other mode.
Result OpenFile(User& user, const Paths& paths, std::string_view name, char mode, const OpenRules& rules,
                OpenedFile& file);
// A text file for output: as above, and what is appended begins on a line of its own.
Result OpenText(User& user, const Paths& paths, std::string_view name, OpenRules rules, OpenedFile& file);
// A whole text as a file, by the same rules. In one step: on failure an old file stands as it was.
Result WriteFile(User& user, const Paths& paths, std::string_view name, std::string_view text,
                 const OpenRules& rules = {});

// The same for a text that is written piece by piece: the file is in place, and an old one gone, when the caller puts
// it there. Not for action 'A'.
Result OpenNew(User& user, const Paths& paths, std::string_view name, const OpenRules& rules, fileio::NewFile& file);

inline constexpr std::int64_t kChunkChars = 64000;
inline constexpr std::size_t kMostChunks = 30000;
struct BigText {
    Result result{};
    std::vector<std::string> chunks{};  // each of kChunkChars bytes, the last of the rest
    bool truncated = false;
};
// Reads a file (a native path) that is too large for one text, from byte `start` (1-based). A file of more chunks is
// cut there and the user told. `between` runs behind every chunk, so that a window lives on.
BigText ReadFileBig(User& user, const std::string& path, std::int64_t start = 1, std::size_t maxChunks = kMostChunks,
                    const std::function<void()>& between = {});

}  // namespace core
