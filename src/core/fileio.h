#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "core/files.h"

// The system calls under files.h, each with its interruptions and short counts
// seen to. Failures leave errno as the call set it.
namespace core::fileio {

class Fd {
public:
    Fd() = default;
    explicit Fd(int fd) : fd_(fd) {}
    ~Fd() { Close(); }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;

    explicit operator bool() const { return fd_ >= 0; }
    int Get() const { return fd_; }
    int Release() { return std::exchange(fd_, -1); }
    void Reset(int fd) {
        Close();
        fd_ = fd;
    }
    bool Close();  // false when the system reports a failed write here

private:
    int fd_ = -1;
};

int OpenRetry(const std::string& path, int flags, mode_t mode = 0);
bool WriteAll(int fd, std::string_view text);
// Bytes read, fewer only at the end of the file; -1 on an error.
ssize_t ReadAllAt(int fd, off_t offset, char* into, std::size_t room);

// Opens for reading without ever waiting for a writer; refuses whatever is no regular file.
Result OpenRegular(const std::string& path, Fd& fd, struct stat& info);

// A new file beside its later name, removed again unless it is put in place: until then an old one stands as it was.
class NewFile {
public:
    NewFile() = default;
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // Refuses what cannot be written, and whatever is there and no regular file.
    Result Create(const std::string& path);
    Result Write(std::string_view text);
    Result PutInPlace();  // flushed, then renamed, the folder flushed

private:
    Result KeepRights(const struct stat& old) const;

    std::string path_{};
    std::string temp_{};
    Fd fd_{};
};

// The folder that holds a file, "." for a bare name.
std::string FolderOf(const std::string& path);

// Texts for the user: what failed, why, and what to do.
Result Fail(std::string_view done, const std::string& path, int error);
Result NotRegular(const std::string& path, mode_t mode);
std::string Reason(int error);  // "Permission denied"
// A name as it can be shown: control characters and those that turn the direction of writing, as "?".
std::string Shown(std::string_view path);

}  // namespace core::fileio
