#include "core/openfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

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
    const std::string end = "\rFile name: " + fileio::Shown(name) + "\rAction aborted.";
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

Result MissingFile(User& user, const std::string& path, const OpenRules& rules) {
    const std::string text = "File to be read does not exist.\rFile name: " + fileio::Shown(path);
    if (rules.missingAction == 'E')
        user.Ask({.id = "FileOpenerMissing",
                  .message = "Error.\r" + text + "\rAction aborted.",
                  .title = std::string(kTitle)});
    return Refused(text);
}

// Whether the file may be replaced or added to: 'W' asks, 'E' tells, 'D' and 'A' go on.
Result MayWrite(User& user, const std::string& path, const OpenRules& rules) {
    const std::string text = "File to be created already exists.\rFile name: " + fileio::Shown(path);
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
    return {};
}

// The native name of a file that may be written.
Result NameToWrite(User& user, const Paths& paths, std::string_view name, const OpenRules& rules, std::string& path) {
    CheckLetters(rules);
    if (Result named = NativeName(paths, name, rules.checkName, path); !named) return named;
    return Exists(path) ? MayWrite(user, path, rules) : Result{};
}

// The end that the last line of a file lacks, so that what is appended stands on a line of its own.
Result MissingEnd(const std::string& path, std::string& end) {
    const std::int64_t size = FileSize(path);
    if (size < 1) return {};
    const ReadText last = ReadFile(path, size, 1);
    if (last.result && last.text != "\n") end = "\r\n";
    return last.result;
}

Result StartFits(std::int64_t start, std::int64_t size) {
    if (start <= 1 || start <= size) return {};
    return Refused("Start at byte specified is after End of file. File length: " + std::to_string(size) +
                   ". Start at Byte: " + std::to_string(start));
}

void TellCut(User& user, const std::string& path, const std::vector<std::string>& chunks, std::int64_t size) {
    std::size_t bytes = 0;
    for (const std::string& chunk : chunks) bytes += chunk.size();
    user.Tell("ReadFileBigTruncated", "File >> " + fileio::Shown(path) + " <<Truncated.\r\rFirst >> " +
                                          std::to_string(bytes) + "<< bytes of >> " + std::to_string(size) +
                                          " << will be processed.");
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
    if (mode == 'I' && !exists) return MissingFile(user, path, rules);
    if (mode == 'O' && exists) {
        if (Result allowed = MayWrite(user, path, rules); !allowed) return allowed;
        if (rules.existsAction != 'A') {
            if (Result deleted = FileDelete(path); !deleted) return deleted;
        }
    }
    const int access = mode == 'I' ? O_RDONLY : O_RDWR | O_CREAT | O_APPEND;
    file.path_ = path;
    file.fd_ = fileio::OpenRetry(path, access | O_CLOEXEC | O_NONBLOCK, 0666);
    if (!file.IsOpen() || !IsRegularFile(path)) {
        file.Close();
        return Refused("Error when try to open file.\rFile name: " + fileio::Shown(path));
    }
    if (mode == 'I' || rules.existsAction != 'A' || !rules.textMode) return {};
    std::string end;
    Result ended = MissingEnd(path, end);
    if (ended) ended = file.Write(end);
    if (!ended) file.Close();
    return ended;
}

Result OpenText(User& user, const Paths& paths, std::string_view name, OpenRules rules, OpenedFile& file) {
    rules.textMode = true;
    return OpenFile(user, paths, name, 'O', rules, file);
}

Result WriteFile(User& user, const Paths& paths, std::string_view name, std::string_view text, const OpenRules& rules) {
    std::string path;
    if (Result allowed = NameToWrite(user, paths, name, rules, path); !allowed) return allowed;
    if (rules.existsAction != 'A') return WriteWhole(path, text);
    std::string end;
    if (rules.textMode) {
        if (Result known = MissingEnd(path, end); !known) return known;
    }
    return AppendWhole(path, end.append(text));
}

Result OpenNew(User& user, const Paths& paths, std::string_view name, const OpenRules& rules, fileio::NewFile& file) {
    if (rules.existsAction == 'A') throw ErrorNumber(errnum::kBadExistsAction, "OpenNew");
    std::string path;
    if (Result allowed = NameToWrite(user, paths, name, rules, path); !allowed) return allowed;
    return file.Create(path);
}

BigText ReadFileBig(User& user, const std::string& path, std::int64_t start, std::size_t maxChunks,
                    const std::function<void()>& between) {
    BigText read;
    ChunkReader reader;
    if (read.result = reader.Open(path); !read.result) return read;
    if (read.result = StartFits(start, reader.Size()); !read.result) return read;
    try {
        for (std::int64_t at = std::max<std::int64_t>(start, 1) - 1; at < reader.Size(); at += kChunkChars) {
            read.truncated = read.chunks.size() == maxChunks;
            if (read.truncated) break;
            std::string chunk(static_cast<std::size_t>(std::min(kChunkChars, reader.Size() - at)), '\0');
            chunk.resize(reader.ReadAt(at, chunk.data(), chunk.size()));
            if (!reader.Failed()) break;
            read.chunks.push_back(std::move(chunk));
            if (between) between();
        }
    } catch (const std::bad_alloc&) {
        read = {.result = Refused("File >>" + fileio::Shown(path) + "<< cannot be processed. Insufficient space.")};
        return read;
    }
    read.result = reader.Failed();
    if (read.truncated) TellCut(user, path, read.chunks, reader.Size());
    return read;
}

}  // namespace core
