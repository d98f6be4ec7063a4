// Loaded in front of the C library (LD_PRELOAD): counts a program's changes to files under one folder and makes the
// n-th of them fail.
//
//   CORVANE_FAULT_ROOT   calls on paths under this folder count
//   CORVANE_FAULT_AT     number of the call, from 1
//   CORVANE_FAULT_KIND   kill, eio-once, eio-from, enospc-from
//   CORVANE_FAULT_COUNT  file that gets the number of calls at the end
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

enum class Kind { None, Kill, EioOnce, EioFrom, EnospcFrom };
enum class Call { Write, Sync, Cut, Make, Name };  // Make: a new file or folder. Name: rename, unlink

struct KindRow {
    std::string_view word;
    Kind kind;
};
constexpr std::array kKinds{KindRow{"kill", Kind::Kill}, KindRow{"eio-once", Kind::EioOnce},
                            KindRow{"eio-from", Kind::EioFrom}, KindRow{"enospc-from", Kind::EnospcFrom}};

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

template <typename Function>
Function Next(Function, const char* name) {
    void* found = ::dlsym(RTLD_NEXT, name);
    if (found == nullptr) std::abort();
    return reinterpret_cast<Function>(found);
}

class Injector {
public:
    Injector() : root_(Variable("CORVANE_FAULT_ROOT")), countFile_(Variable("CORVANE_FAULT_COUNT")) {
        at_ = std::atol(Variable("CORVANE_FAULT_AT").c_str());
        const std::string word = Variable("CORVANE_FAULT_KIND");
        for (const KindRow& row : kKinds)
            if (row.word == word) kind_ = row.kind;
    }

    ~Injector() {
        if (countFile_.empty()) return;
        root_.clear();
        if (std::FILE* file = std::fopen(countFile_.c_str(), "w")) {
            std::fprintf(file, "%ld\n", calls_);
            std::fclose(file);
        }
    }

    // The error that the call ends with, 0 for none.
    int Judge(Call call, std::string_view path) {
        if (root_.empty() || !path.starts_with(root_)) return 0;
        ++calls_;
        if (kind_ == Kind::None || at_ <= 0 || calls_ < at_) return 0;
        switch (kind_) {
            case Kind::Kill:
                ::raise(SIGKILL);
                return EIO;
            case Kind::EioOnce:
                return calls_ == at_ ? EIO : 0;
            case Kind::EioFrom:
                return EIO;
            default:
                return call == Call::Write || call == Call::Make ? ENOSPC : 0;
        }
    }
    int Judge(Call call, int fd) {
        const int before = errno;
        std::array<char, PATH_MAX> path{};
        const std::string link = "/proc/self/fd/" + std::to_string(fd);
        const ssize_t length = root_.empty() ? -1 : ::readlink(link.c_str(), path.data(), path.size());
        errno = before;
        return length > 0 ? Judge(call, std::string_view(path.data(), static_cast<std::size_t>(length))) : 0;
    }
    int Judge(Call call, int folder, const char* name) {
        if (name[0] == '/' || folder == AT_FDCWD) return Judge(call, std::string_view(name));
        return Judge(call, folder);
    }

    // On a full disk the first write still finds room for a part.
    std::size_t Room(std::size_t bytes) const { return kind_ == Kind::EnospcFrom && calls_ == at_ ? bytes / 2 : 0; }

private:
    std::string root_{};
    std::string countFile_{};
    Kind kind_ = Kind::None;
    long at_ = 0;
    long calls_ = 0;
};

Injector& Faults() {
    static Injector injector;
    return injector;
}

int Failed(int error) {
    errno = error;
    return -1;
}

template <typename Writer>
ssize_t Write(int fd, std::size_t bytes, Writer writer) {
    const int error = Faults().Judge(Call::Write, fd);
    if (error == 0) return writer(bytes);
    const std::size_t room = Faults().Room(bytes);
    return room > 0 ? writer(room) : Failed(error);
}

// Reading the mode argument that stands there only when a file may be made.
mode_t ModeOf(int flags, va_list rest) { return (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0; }

int JudgeOpen(int folder, const char* path, int flags) {
    return (flags & O_CREAT) != 0 ? Faults().Judge(Call::Make, folder, path) : 0;
}

}  // namespace

extern "C" {

ssize_t write(int fd, const void* data, size_t bytes) {
    static const auto next = Next(&write, "write");
    return Write(fd, bytes, [&](size_t part) { return next(fd, data, part); });
}

ssize_t pwrite(int fd, const void* data, size_t bytes, off_t offset) {
    static const auto next = Next(&pwrite, "pwrite");
    return Write(fd, bytes, [&](size_t part) { return next(fd, data, part, offset); });
}

ssize_t pwrite64(int fd, const void* data, size_t bytes, off64_t offset) {
    static const auto next = Next(&pwrite64, "pwrite64");
    return Write(fd, bytes, [&](size_t part) { return next(fd, data, part, offset); });
}

int fsync(int fd) {
    static const auto next = Next(&fsync, "fsync");
    const int error = Faults().Judge(Call::Sync, fd);
    return error != 0 ? Failed(error) : next(fd);
}

int fdatasync(int fd) {
    static const auto next = Next(&fdatasync, "fdatasync");
    const int error = Faults().Judge(Call::Sync, fd);
    return error != 0 ? Failed(error) : next(fd);
}

int ftruncate(int fd, off_t size) noexcept {
    static const auto next = Next(&ftruncate, "ftruncate");
    const int error = Faults().Judge(Call::Cut, fd);
    return error != 0 ? Failed(error) : next(fd, size);
}

int ftruncate64(int fd, off64_t size) noexcept {
    static const auto next = Next(&ftruncate64, "ftruncate64");
    const int error = Faults().Judge(Call::Cut, fd);
    return error != 0 ? Failed(error) : next(fd, size);
}

int rename(const char* from, const char* to) noexcept {
    static const auto next = Next(&rename, "rename");
    const int error = Faults().Judge(Call::Name, std::string_view(to));
    return error != 0 ? Failed(error) : next(from, to);
}

int unlink(const char* path) noexcept {
    static const auto next = Next(&unlink, "unlink");
    const int error = Faults().Judge(Call::Name, std::string_view(path));
    return error != 0 ? Failed(error) : next(path);
}

int unlinkat(int folder, const char* path, int flags) noexcept {
    static const auto next = Next(&unlinkat, "unlinkat");
    const int error = Faults().Judge(Call::Name, folder, path);
    return error != 0 ? Failed(error) : next(folder, path, flags);
}

int rmdir(const char* path) noexcept {
    static const auto next = Next(&rmdir, "rmdir");
    const int error = Faults().Judge(Call::Name, std::string_view(path));
    return error != 0 ? Failed(error) : next(path);
}

int mkdir(const char* path, mode_t mode) noexcept {
    static const auto next = Next(&mkdir, "mkdir");
    const int error = Faults().Judge(Call::Make, std::string_view(path));
    return error != 0 ? Failed(error) : next(path, mode);
}

int open(const char* path, int flags, ...) {
    static const auto next = Next(&open, "open");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    const int error = JudgeOpen(AT_FDCWD, path, flags);
    return error != 0 ? Failed(error) : next(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    static const auto next = Next(&open64, "open64");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    const int error = JudgeOpen(AT_FDCWD, path, flags);
    return error != 0 ? Failed(error) : next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    static const auto next = Next(&openat, "openat");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    const int error = JudgeOpen(folder, path, flags);
    return error != 0 ? Failed(error) : next(folder, path, flags, mode);
}

}  // extern "C"
