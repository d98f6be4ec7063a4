#pragma once

#include <sys/resource.h>

#include <csignal>

namespace testsupport {

// While it lives no file of this process can grow beyond `most` bytes: each write that would fails.
class FullDisk {
public:
    explicit FullDisk(rlim_t most) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit now{most, old_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit old_{};
    void (*oldHandler_)(int);
};

}  // namespace testsupport
