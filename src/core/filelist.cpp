#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

#include "core/fileio.h"
#include "core/files.h"
#include "core/utf8.h"

// Folders and names: making, listing and removing folders, pieces of a path.
namespace core {

namespace {

using fileio::Fail;
using fileio::Fd;

// * any text, ? one letter; everything else stands for itself, since file names may hold "#" and "[".
bool Matches(std::string_view name, std::string_view pattern) {
    std::size_t n = 0, p = 0;
    std::size_t star = std::string_view::npos, resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            n += LetterAt(name, n).length;
            ++p;
        } else if (p < pattern.size() && pattern[p] == name[n]) {
            ++n;
            ++p;
        } else if (star != std::string_view::npos) {
            resume += LetterAt(name, resume).length;
            n = resume;
            p = star + 1;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

struct CloseDir {
    void operator()(DIR* dir) const { ::closedir(dir); }
};

// Names in the folder of `fd`, without "." and ".."; nothing when it cannot be read to its end.
std::optional<std::vector<std::string>> NamesIn(int fd) {
    const int copy = ::openat(fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (copy < 0) return {};
    const std::unique_ptr<DIR, CloseDir> dir(::fdopendir(copy));
    if (!dir) {
        ::close(copy);
        return {};
    }
    std::vector<std::string> names;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(dir.get());
        if (!entry && errno != 0) return {};
        if (!entry) return names;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
}

// Empties the folder of `fd`. Links are removed, never followed.
Result Empty(int fd, const std::string& shownPath) {
    const auto names = NamesIn(fd);
    if (!names) return Fail("read", shownPath, errno);
    for (const std::string& name : *names) {
        const std::string path = shownPath + "/" + name;
        struct stat info {};
        if (::fstatat(fd, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) return Fail("removed", path, errno);
        const bool folder = S_ISDIR(info.st_mode);
        if (folder) {
            const Fd inner(::openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (!inner) return Fail("removed", path, errno);
            if (Result emptied = Empty(inner.Get(), path); !emptied) return emptied;
        }
        if (::unlinkat(fd, name.c_str(), folder ? AT_REMOVEDIR : 0) != 0) return Fail("removed", path, errno);
    }
    return {};
}

bool IsRoot(int fd) {
    struct stat root {
    }, info{};
    if (::stat("/", &root) != 0 || ::fstat(fd, &info) != 0) return true;
    return root.st_dev == info.st_dev && root.st_ino == info.st_ino;
}

Result Refused(const std::string& path) {
    return {false, "Folder >>" + fileio::Shown(path) + "<< is not removed. Give the full name of a folder."};
}

std::size_t NameStart(std::string_view path, char separator) {
    const std::size_t at = path.rfind(separator);
    return at == std::string_view::npos ? 0 : at + 1;
}

}  // namespace

Result MakeDir(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) return Fail("made", path, ENOENT);
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string part = path.substr(0, end);
        if (!IsDir(part)) {
            if (::mkdir(part.c_str(), 0777) != 0 && !(errno == EEXIST && IsDir(part))) return Fail("made", part, errno);
            const std::string parent = fPathOf(part.substr(0, part.find_last_not_of('/') + 1));
            if (Result synced = SyncFolder(parent.empty() ? "." : parent); !synced) return synced;
        }
        if (end == std::string::npos) return {};
    }
}

Result RemoveDir(const std::string& path) {
    const std::string bare = path.substr(0, path.find_last_not_of('/') + 1);
    const std::string name = fNameOf(bare);
    if (name.empty() || name == "." || name == ".." || bare.find('\0') != std::string::npos) return Refused(path);
    const std::string parentPath = fPathOf(bare).empty() ? "." : fPathOf(bare);
    const Fd parent(fileio::OpenRetry(parentPath, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!parent) return Fail("removed", path, errno);
    {
        const Fd folder(::openat(parent.Get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!folder) return Fail("removed", path, errno);
        if (IsRoot(folder.Get())) return Refused(path);
        if (Result emptied = Empty(folder.Get(), bare); !emptied) return emptied;
    }
    if (::unlinkat(parent.Get(), name.c_str(), AT_REMOVEDIR) != 0) return Fail("removed", path, errno);
    return SyncFolder(parentPath);
}

std::vector<std::string> ListFiles(const std::string& folder, std::string_view pattern) {
    const Fd fd(fileio::OpenRetry(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd) return {};
    std::vector<std::string> found;
    for (std::string& name : NamesIn(fd.Get()).value_or(std::vector<std::string>{})) {
        struct stat info {};
        const bool subfolder = ::fstatat(fd.Get(), name.c_str(), &info, 0) == 0 && S_ISDIR(info.st_mode);
        if (!subfolder && Matches(name, pattern)) found.push_back(std::move(name));
    }
    std::ranges::sort(found);
    return found;
}

std::string fPathOf(std::string_view path, char separator) {
    return std::string(path.substr(0, NameStart(path, separator)));
}

std::string fNameOf(std::string_view path, char separator) {
    return std::string(path.substr(NameStart(path, separator)));
}

std::string fBaseOf(std::string_view path, char separator) {
    const std::string_view name = path.substr(NameStart(path, separator));
    return std::string(name.substr(0, name.rfind('.')));
}

std::string fTypeOf(std::string_view path, char separator) {
    const std::string_view name = path.substr(NameStart(path, separator));
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::string() : std::string(name.substr(point + 1));
}

}  // namespace core
