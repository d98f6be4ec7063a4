#include "core/fileio.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "core/utf8.h"

namespace core::fileio {

namespace {

constexpr int kMaxLinks = 40;
constexpr int kMaxTempNames = 1000;

struct Advice {
    int error;
    std::string_view text;
};
constexpr std::array kAdvice{
    Advice{ENOENT, "Check the name and that its folder exists."},
    Advice{ENOTDIR, "Check the name: a part of it is no folder."},
    Advice{EISDIR, "Choose a file, not a folder."},
    Advice{EACCES, "Change the permissions of the file and its folder, then try again."},
    Advice{EPERM, "Change the permissions of the file and its folder, then try again."},
    Advice{EROFS, "The disk is read-only. Use another folder or mount it for writing."},
    Advice{ENOSPC, "The disk is full. Free some space, then try again."},
    Advice{EDQUOT, "Your share of the disk is used up. Free some space, then try again."},
    Advice{EFBIG, "The file is too large for this disk. Use another disk."},
    Advice{EIO, "The disk reports an error. Check the disk, then try again."},
    Advice{ELOOP, "The name is a symbolic link that leads nowhere. Use the file itself."},
    Advice{EMFILE, "Too many files are open. Close some programs, then try again."},
    Advice{ENFILE, "Too many files are open. Close some programs, then try again."},
    Advice{ENAMETOOLONG, "Use a shorter name."},
    Advice{ENOTEMPTY, "The folder is not empty."},
};

std::string_view AdviceFor(int error) {
    const auto* row = std::ranges::find(kAdvice, error, &Advice::error);
    return row != kAdvice.end() ? row->text : "Check the disk, then try again.";
}

// The file behind a chain of symbolic links, also where the last one does not exist yet.
bool ResolveLinks(std::string& path) {
    for (int hop = 0; hop < kMaxLinks; ++hop) {
        struct stat info {};
        if (::lstat(path.c_str(), &info) != 0) return errno == ENOENT;
        if (!S_ISLNK(info.st_mode)) return true;
        std::string target(PATH_MAX, '\0');
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length <= 0) return false;
        target.resize(static_cast<std::size_t>(length));
        path = target.front() == '/' ? target : fPathOf(path) + target;
    }
    errno = ELOOP;
    return false;
}

bool IsControl(char32_t code) {
    const bool direction = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    const bool lineEnd = code == 0x2028 || code == 0x2029;
    return code < 32 || (code >= 127 && code < 160) || direction || lineEnd;
}

}  // namespace

bool Fd::Close() {
    if (fd_ < 0) return true;
    // After EINTR the descriptor is gone all the same.
    return ::close(std::exchange(fd_, -1)) == 0 || errno == EINTR;
}

int OpenRetry(const std::string& path, int flags, mode_t mode) {
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
        return -1;
    }
    for (;;) {
        const int fd = ::open(path.c_str(), flags, mode);
        if (fd >= 0 || errno != EINTR) return fd;
    }
}

bool WriteAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written == 0) errno = ENOSPC;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

ssize_t ReadAllAt(int fd, off_t offset, char* into, std::size_t room) {
    std::size_t have = 0;
    while (have < room) {
        const ssize_t got = ::pread(fd, into + have, room - have, offset + static_cast<off_t>(have));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return -1;
        if (got == 0) break;
        have += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(have);
}

Result OpenRegular(const std::string& path, Fd& fd, struct stat& info) {
    fd.Reset(OpenRetry(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!fd || ::fstat(fd.Get(), &info) != 0) {
        const int error = errno;
        Result failed{
            false,
            "Error opening file >>" + Shown(path) + "<<. " + Reason(error) + ". " + std::string(AdviceFor(error)),
            error};
        errno = error;
        return failed;
    }
    if (S_ISREG(info.st_mode)) return {};
    Result refused = NotRegular(path, info.st_mode);
    errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
    return refused;
}

std::string Reason(int error) {
    const char* reason = strerrordesc_np(error);
    return reason != nullptr ? reason : "Unknown error";
}

Result Fail(std::string_view done, const std::string& path, int error) {
    return {false,
            "File >>" + Shown(path) + "<< cannot be " + std::string(done) + ". " + Reason(error) + ". " +
                std::string(AdviceFor(error)),
            error};
}

Result NotRegular(const std::string& path, mode_t mode) {
    const bool folder = S_ISDIR(mode);
    return {false, "File >>" + Shown(path) + "<< cannot be used. " +
                       (folder ? "It is a folder. Choose a file in it."
                               : "It is a pipe or a device. Save its data to an ordinary file and use that.")};
}

std::string Shown(std::string_view path) {
    std::string shown;
    const std::string text = ToUtf8(path);
    for (std::size_t at = 0; at < text.size();) {
        const Letter letter = LetterAt(text, at);
        shown += IsControl(letter.code) ? "?" : text.substr(at, letter.length);
        at += letter.length;
    }
    return shown;
}

std::string FolderOf(const std::string& path) {
    const std::string folder = fPathOf(path);
    return folder.empty() ? "." : folder;
}

NewFile::~NewFile() {
    if (!temp_.empty()) ::unlink(temp_.c_str());
}

Result NewFile::Create(const std::string& path) {
    path_ = path;
    if (path.empty() || path.find('\0') != std::string::npos) return Fail("written", path, ENOENT);
    if (!ResolveLinks(path_)) return Fail("written", path, errno);
    struct stat old {};
    const bool exists = ::stat(path_.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) return Fail("written", path, errno);
    if (exists && !S_ISREG(old.st_mode)) return NotRegular(path, old.st_mode);
    // A file that its owner protected against writing is not replaced behind his back.
    if (exists && ::faccessat(AT_FDCWD, path_.c_str(), W_OK, AT_EACCESS) != 0) return Fail("written", path, errno);
    const std::string stem = FolderOf(path_) + "/.corvane-" + std::to_string(::getpid()) + "-";
    for (int n = 0; n < kMaxTempNames && !fd_; ++n) {
        const std::string name = stem + std::to_string(n) + ".tmp";
        fd_.Reset(OpenRetry(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, exists ? 0600 : 0666));
        if (fd_)
            temp_ = name;
        else if (errno != EEXIST)
            break;
    }
    if (!fd_) return Fail("written", path, errno);
    return exists ? KeepRights(old) : Result{};
}

Result NewFile::KeepRights(const struct stat& old) const {
    struct stat made {};
    if (::fstat(fd_.Get(), &made) != 0) return Fail("written", path_, errno);
    // Only a privileged program can give a file away; for others the new file is simply theirs.
    if ((made.st_uid != old.st_uid || made.st_gid != old.st_gid) && ::fchown(fd_.Get(), old.st_uid, old.st_gid) != 0 &&
        errno != EPERM)
        return Fail("written", path_, errno);
    if (::fchmod(fd_.Get(), old.st_mode & 07777) != 0) return Fail("written", path_, errno);
    return {};
}

Result NewFile::Write(std::string_view text) {
    return WriteAll(fd_.Get(), text) ? Result{} : Fail("written", path_, errno);
}

Result NewFile::PutInPlace() {
    if (::fsync(fd_.Get()) != 0) return Fail("written", path_, errno);
    if (!fd_.Close()) return Fail("written", path_, errno);
    if (::rename(temp_.c_str(), path_.c_str()) != 0) return Fail("written", path_, errno);
    temp_.clear();
    return SyncFolder(FolderOf(path_));
}

}  // namespace core::fileio
