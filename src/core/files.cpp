#include "core/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

#include "core/fileio.h"

namespace core {

namespace {

using fileio::Fail;
using fileio::Fd;
using fileio::FolderOf;
using fileio::NewFile;
using fileio::OpenRetry;
using fileio::Shown;

Result CutBack(const Fd& fd, const std::string& path, off_t size, bool created, int error) {
    Result failed = Fail("written", path, error);
    const bool undone = created ? ::unlink(path.c_str()) == 0 : ::ftruncate(fd.Get(), size) == 0;
    if (!undone) failed.error += " Its last line may be incomplete.";
    return failed;
}

}  // namespace

Result WriteWhole(const std::string& path, std::string_view text) {
    NewFile file;
    if (Result made = file.Create(path); !made) return made;
    if (Result written = file.Write(text); !written) return written;
    return file.PutInPlace();
}

Result AppendWhole(const std::string& path, std::string_view text) {
    constexpr int kFlags = O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    if (path.empty() || path.find('\0') != std::string::npos) return Fail("written", path, ENOENT);
    Fd fd(OpenRetry(path, kFlags));
    bool created = false;
    if (!fd && errno == ENOENT) {
        fd.Reset(OpenRetry(path, kFlags | O_CREAT | O_EXCL, 0666));
        created = static_cast<bool>(fd);
        if (!fd && errno == EEXIST) fd.Reset(OpenRetry(path, kFlags | O_CREAT, 0666));
    }
    if (!fd) return Fail("written", path, errno);
    struct stat info {};
    if (::fstat(fd.Get(), &info) != 0) return Fail("written", path, errno);
    if (!S_ISREG(info.st_mode)) return fileio::NotRegular(path, info.st_mode);
    if (!fileio::WriteAll(fd.Get(), text) || ::fsync(fd.Get()) != 0)
        return CutBack(fd, path, info.st_size, created, errno);
    if (!fd.Close()) return Fail("written", path, errno);
    return created ? SyncFolder(FolderOf(path)) : Result{};
}

Result SyncFolder(const std::string& folder) {
    Fd fd(OpenRetry(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd) return Fail("flushed", folder, errno);
    // Some file systems know no flush of a folder; their renames need none.
    if (::fsync(fd.Get()) != 0 && errno != EINVAL && errno != ENOTSUP) return Fail("flushed", folder, errno);
    if (!fd.Close()) return Fail("flushed", folder, errno);
    return {};
}

ReadText ReadFile(const std::string& path, std::int64_t start, std::int64_t maxChars) {
    ReadText read;
    Fd fd;
    struct stat info {};
    read.result = fileio::OpenRegular(path, fd, info);
    read.existed = read.result.ok || (errno != ENOENT && errno != ENOTDIR);
    if (!read.result) return read;
    start = std::max<std::int64_t>(start, 1);
    if (start > 1 && start > info.st_size) {
        read.result = {false, "Start at byte specified is after End of file. File length: " +
                                  std::to_string(info.st_size) + ". Start at Byte: " + std::to_string(start)};
        return read;
    }
    std::int64_t wanted = info.st_size - (start - 1);
    if (maxChars >= 1 && wanted > maxChars) {
        wanted = maxChars;
        read.truncated = true;
    }
    try {
        read.text.resize(static_cast<std::size_t>(wanted));
    } catch (const std::exception&) {  // no room, or more than a text can hold
        read.result = {false, "File >>" + Shown(path) + "<< cannot be processed. Insufficient space."};
        return read;
    }
    const ssize_t got = fileio::ReadAllAt(fd.Get(), start - 1, read.text.data(), read.text.size());
    if (got < 0) read.result = Fail("read", path, errno);
    read.text.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    return read;
}

std::int64_t FileSize(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? static_cast<std::int64_t>(info.st_size) : -1;
}

ChunkReader::~ChunkReader() {
    if (fd_ >= 0) ::close(fd_);
}

Result ChunkReader::Open(const std::string& path) {
    if (fd_ >= 0) ::close(std::exchange(fd_, -1));
    size_ = position_ = 0;
    Fd fd;
    struct stat info {};
    failed_ = fileio::OpenRegular(path, fd, info);
    if (!failed_) return failed_;
    path_ = path;
    size_ = info.st_size;
    fd_ = fd.Release();
    return {};
}

std::size_t ChunkReader::Read(char* into, std::size_t room) {
    const std::size_t got = ReadAt(position_, into, room);
    position_ += static_cast<std::int64_t>(got);
    return got;
}

std::size_t ChunkReader::ReadAt(std::int64_t offset, char* into, std::size_t room) {
    if (fd_ < 0 || offset < 0 || offset >= size_) return 0;
    const std::size_t wanted = std::min(room, static_cast<std::size_t>(size_ - offset));
    const ssize_t got = fileio::ReadAllAt(fd_, offset, into, wanted);
    if (got >= 0) return static_cast<std::size_t>(got);
    failed_ = Fail("read", path_, errno);
    return 0;
}

Result FileCopy(const std::string& from, const std::string& to) {
    constexpr std::size_t kChunk = 1 << 18;
    ChunkReader source;
    if (Result opened = source.Open(from); !opened) return opened;
    NewFile file;
    if (Result made = file.Create(to); !made) return made;
    std::string chunk(kChunk, '\0');
    while (const std::size_t got = source.Read(chunk.data(), chunk.size()))
        if (Result written = file.Write(std::string_view(chunk).substr(0, got)); !written) return written;
    if (!source.Failed()) return source.Failed();
    return file.PutInPlace();
}

Result FileDelete(const std::string& path) {
    if (::unlink(path.c_str()) != 0) return Fail("deleted", path, errno);
    return SyncFolder(FolderOf(path));
}

Result FileRename(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) return Fail("renamed", from, errno);
    const std::string folder = FolderOf(to);
    if (Result synced = SyncFolder(folder); !synced) return synced;
    return FolderOf(from) == folder ? Result{} : SyncFolder(FolderOf(from));
}

bool IsDir(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool IsRegularFile(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool Exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

FileLock::~FileLock() { Unlock(); }

FileLock::Outcome FileLock::Lock(const std::string& path) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
    if (Held()) return {.ok = true};
    for (;;) {
        Fd fd(OpenRetry(path, kFlags, 0666));
        if (!fd) return {.error = Fail("locked", path, errno).error};
        int rc = 0;
        do rc = ::flock(fd.Get(), LOCK_EX | LOCK_NB);
        while (rc != 0 && errno == EINTR);
        if (rc != 0 && errno == EWOULDBLOCK) return {.taken = true};
        if (rc != 0) return {.error = Fail("locked", path, errno).error};
        struct stat held {
        }, named{};
        if (::fstat(fd.Get(), &held) != 0) return {.error = Fail("locked", path, errno).error};
        // The name may have been removed and made anew between opening and locking.
        if (::stat(path.c_str(), &named) != 0 || held.st_ino != named.st_ino || held.st_dev != named.st_dev) continue;
        fd_ = fd.Release();
        return {.ok = true};
    }
}

void FileLock::Unlock() {
    if (fd_ >= 0) ::close(std::exchange(fd_, -1));
}

}  // namespace core
