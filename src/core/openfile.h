#pragma once

#include <string>
#include <string_view>

#include "core/files.h"

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

}  // namespace core
