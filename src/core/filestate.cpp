#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "core/fileio.h"
#include "core/files.h"

namespace core {

Result SyncFile(const std::string& path) {
    fileio::Fd file(fileio::OpenRetry(path, O_RDWR | O_CLOEXEC, 0));
    if (!file || ::fsync(file.Get()) != 0) return fileio::Fail("flushed", path, errno);
    return {};
}

bool IsWritable(const std::string& path) { return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; }

Result FileSetAttributes(const std::string& path, bool readOnly) {
    struct stat info {};
    if (path.find('\0') != std::string::npos) return fileio::Fail("changed", path, ENOENT);
    if (::stat(path.c_str(), &info) != 0) return fileio::Fail("changed", path, errno);
    constexpr mode_t kAllWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    const mode_t rights = (readOnly ? info.st_mode & ~kAllWrite : info.st_mode | S_IWUSR) & 07777;
    return ::chmod(path.c_str(), rights) == 0 ? Result{} : fileio::Fail("changed", path, errno);
}

Result FileOpenCheck(const std::string& path, bool forWriting) {
    fileio::Fd fd;
    struct stat info {};
    if (Result opened = fileio::OpenRegular(path, fd, info); !opened || !forWriting) return opened;
    fd.Reset(fileio::OpenRetry(path, O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return fd ? Result{} : fileio::Fail("written", path, errno);
}

void RemoveStaleTemps(const std::string& folder) {
    constexpr std::string_view kStart = ".corvane-";
    for (const std::string& name : ListFiles(folder, std::string(kStart) + "*.tmp")) {
        const auto process = static_cast<pid_t>(std::atol(name.c_str() + kStart.size()));
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH) FileDelete(fPathOf(folder + "/") + name);
    }
}

bool ChunkReader::Grown() const {
    struct stat now {};
    return ::fstat(fd_, &now) == 0 && now.st_size > size_;
}

}  // namespace core
