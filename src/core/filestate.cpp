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
