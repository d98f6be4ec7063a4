#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "tests/fuzz/targets.h"

namespace fuzz {

// A file without a name.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view text) : fd_(::memfd_create("log", MFD_CLOEXEC)) {
        Need(fd_ >= 0 && ::write(fd_, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
             "no file in memory");
    }
    ~MemoryFile() { ::close(fd_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    std::string Path() const { return "/proc/self/fd/" + std::to_string(fd_); }

private:
    int fd_;
};

}  // namespace fuzz
