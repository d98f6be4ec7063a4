#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "core/fileio.h"
#include "core/files.h"

namespace core {

Result SyncFile(const std::string& path) {
    fileio::Fd file(fileio::OpenRetry(path, O_RDWR | O_CLOEXEC, 0));
    if (!file || ::fsync(file.Get()) != 0) return fileio::Fail("flushed", path, errno);
    return {};
}

bool IsWritable(const std::string& path) { return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; }

bool ChunkReader::Grown() const {
    struct stat now {};
    return ::fstat(fd_, &now) == 0 && now.st_size > size_;
}

}  // namespace core
