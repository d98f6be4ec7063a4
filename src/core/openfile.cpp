#include "core/openfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "core/errnums.h"
#include "core/error.h"
#include "core/fileio.h"
#include "core/paths.h"
#include "core/ports.h"

namespace core {
namespace {

constexpr std::string_view kTitle = "File Opener";

Result Refused(std::string text) { return {false, std::move(text)}; }

void CheckLetters(const OpenRules& rules) {
    if (std::string_view("WEDA").find(rules.existsAction) == std::string_view::npos)
        throw ErrorNumber(errnum::kBadExistsAction, "OpenFile");
    if (std::string_view("CE").find(rules.missingAction) == std::string_view::npos)
        throw ErrorNumber(errnum::kBadMissingAction, "OpenFile");
}

// The name in its native form, or what is wrong with it.
Result NativeName(const Paths& paths, std::string_view name, bool check, std::string& native) {
    const std::string end = "\rFile name: " + std::string(name) + "\rAction aborted.";
    if (name.empty()) return Refused("File name is required." + end);
    if (name.ends_with('\\') || name.ends_with('/')) return Refused("Must include file name after dir spec." + end);
    native = paths.ToNative(name);
    if (native.empty()) return Refused("File name must be of format x:\\name where x is drive letter." + end);
    if (!check) return {};
    const Paths::Stored stored = paths.ToStored(native);
    if (!stored.result) return stored.result;
    const NameCheck checked = CheckPAFN(stored.text, paths);
    return checked.ok ? Result{} : Refused(checked.error);
}

Result MissingFile(User& user, std::string_view name, const OpenRules& rules) {
    const std::string text = "File to be read does not exist.\rFile name: " + std::string(name);
    if (rules.missingAction == 'E')
        user.Ask({.id = "FileOpenerMissing",
                  .message = "Error.\r" + text + "\rAction aborted.",
                  .title = std::string(kTitle)});
    return Refused(text);
}

// True: go on. 'W' asks, 'E' tells, 'D' deletes and 'A' keeps what is there.
Result ExistingFile(User& user, const std::string& path, std::string_view name, const OpenRules& rules) {
    const std::string text = "File to be created already exists.\rFile name: " + std::string(name);
    if (rules.existsAction == 'A') return {};
    if (rules.existsAction == 'E') {
        user.Ask({.id = "FileOpenerExists",
                  .message = "Error.\r" + text + "\rAction aborted.",
                  .title = std::string(kTitle)});
        return Refused(text);
    }
    if (rules.existsAction == 'W') {
        const Answer answer = user.Ask({.id = "FileOpenerDelete",
                                        .message = "Warning.\r" + text + "\rPress OK to delete, CANCEL to abort.",
                                        .buttons = "&OK|&Cancel",
                                        .title = std::string(kTitle),
                                        .cancelButton = 2});
        if (answer.Cancelled()) return Refused(text);
    }
    return FileDelete(path);
}

// The last line gets its end, so that what is appended stands on a line of its own.
Result EndLastLine(OpenedFile& file) {
    const off_t size = ::lseek(file.Get(), 0, SEEK_END);
    char last = '\n';
    if (size > 0 && fileio::ReadAllAt(file.Get(), size - 1, &last, 1) != 1)
        return Refused("Error when try to open file.");
    return last == '\n' ? Result{} : file.Write("\r\n");
}

}  // namespace

Result OpenedFile::Write(std::string_view text) {
    return fileio::WriteAll(fd_, text) ? Result{} : fileio::Fail("written", path_, errno);
}

Result OpenedFile::Close() {
    if (fd_ < 0) return {};
    const int closed = ::close(fd_);
    fd_ = -1;
    return closed == 0 ? Result{} : fileio::Fail("written", path_, errno);
}

Result OpenFile(User& user, const Paths& paths, std::string_view name, char mode, const OpenRules& rules,
                OpenedFile& file) {
    CheckLetters(rules);
    if (mode != 'I' && mode != 'O') throw ErrorNumber(errnum::kOpenMode, "OpenFile");
    file.Close();
    std::string path;
    if (Result named = NativeName(paths, name, rules.checkName, path); !named) return named;
    const bool exists = Exists(path);
    if (mode == 'I' && !exists) return MissingFile(user, name, rules);
    if (mode == 'O' && exists) {
        if (Result cleared = ExistingFile(user, path, name, rules); !cleared) return cleared;
    }
    const int access = mode == 'I' ? O_RDONLY : O_RDWR | O_CREAT | O_APPEND;
    file.path_ = path;
    file.fd_ = fileio::OpenRetry(path, access | O_CLOEXEC | O_NONBLOCK, 0666);
    if (!file.IsOpen() || !IsRegularFile(path)) {
        file.Close();
        return Refused("Error when try to open file.\rFile name: " + std::string(name));
    }
    if (mode == 'O' && rules.existsAction == 'A' && rules.textMode) return EndLastLine(file);
    return {};
}

}  // namespace core
