#include "cli/standardinput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "cli/commands.h"
#include "cli/host.h"
#include "cli/output.h"
#include "core/files.h"
#include "logread/logset.h"

namespace cli {
namespace {

constexpr std::size_t kPiece = 1 << 20;
constexpr int kSignalled = 128;  // and the signal's number
constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;

class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return fd_; }

private:
    int fd_;
};

// A file that stands at its first byte needs no copy.
bool IsFileAtStart() {
    struct stat info {};
    if (::fstat(STDIN_FILENO, &info) != 0 || !S_ISREG(info.st_mode)) return false;
    if (::lseek(STDIN_FILENO, 0, SEEK_CUR) != 0) return false;
    const Descriptor again(::open(logread::OpenedPath(logread::kStandardInput).c_str(), O_RDONLY | O_CLOEXEC));
    return again.Get() >= 0;
}

// Not every file system has files without a name.
int OpenNameless(const std::string& folder) {
    const int fd = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kPrivate);
    if (fd >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT)) return fd;
    std::string name = folder + "/input.XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0) ::unlink(name.c_str());
    return named;
}

struct Place {
    std::string folder{};
    int fd = -1;
};

Place OpenIn(const std::string& folder) {
    const bool existed = core::IsDir(folder);
    Place place{folder, -1};
    if (!existed && !core::MakeDir(folder)) return place;
    place.fd = OpenNameless(folder);
    if (!existed) ::rmdir(folder.c_str());
    return place;
}

Place OpenSomewhere(const std::string& folder) {
    Place place = OpenIn(folder);
    if (place.fd >= 0) return place;
    std::error_code error;
    const std::filesystem::path other = std::filesystem::temp_directory_path(error);
    if (!error) place = OpenIn(other.string());
    if (place.fd < 0) throw Failure("Standard input cannot be kept: no file can be made in " + folder);
    return place;
}

void WriteAll(const Place& place, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t done = ::write(place.fd, bytes, size);
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0)
            throw Failure("Standard input cannot be kept in " + place.folder + " (" +
                          std::generic_category().message(errno) +
                          "). Nothing was read. Make room there, or save the log to a file and name that.");
        bytes += done;
        size -= static_cast<std::size_t>(done);
    }
}

void CopyInput(const Place& place) {
    std::vector<char> piece(kPiece);
    for (;;) {
        const ssize_t got = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (SignalSeen() != 0) throw Failure("Stopped. Nothing was read.", kSignalled + SignalSeen());
        if (got == 0) return;
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw Failure("Standard input cannot be read: " + std::generic_category().message(errno));
        WriteAll(place, piece.data(), static_cast<std::size_t>(got));
    }
}

}  // namespace

std::string LogArgument(const std::string& given) {
    return given == logread::kStandardInput ? given : AbsolutePath(given);
}

bool WantsStandardInput(const std::vector<std::string>& files) {
    const auto times = std::ranges::count(files, logread::kStandardInput);
    if (times > 1) throw UsageError("Standard input (-) can be read once only.");
    return times == 1;
}

void KeepStandardInput(const std::string& folder) {
    if (::isatty(STDIN_FILENO) == 1)
        throw UsageError(
            "Standard input (-) is a terminal. Send a log through a pipe: zcat access.log.Z | corvane-cli "
            "add -");
    if (IsFileAtStart()) return;
    const Place place = OpenSomewhere(folder);
    const Descriptor file(place.fd);
    CopyInput(place);
    if (::dup2(place.fd, STDIN_FILENO) < 0)
        throw Failure("Standard input cannot be kept: " + std::generic_category().message(errno));
}

}  // namespace cli
