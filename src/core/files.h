#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Files, in native paths. Every return code is tested; a failure is told as a
// text that says what to do, never by a half-written file.
namespace core {

struct Result {
    bool ok = true;
    std::string error{};  // for the user, "" when ok
    int code = 0;         // the system's number of the error (errno), 0 when it gave none
    explicit operator bool() const { return ok; }
};

// Replaces `path` by `text` in one step: a new file beside it, flushed, renamed
// over it, the folder flushed. On failure the old file stands whole.
Result WriteWhole(const std::string& path, std::string_view text);
// Appends with one write and flushes; a failed append is cut off again.
Result AppendWhole(const std::string& path, std::string_view text);
// Flushes a file that another has written.
Result SyncFile(const std::string& path);
// Flushes a folder so that names in it survive a power loss.
Result SyncFolder(const std::string& folder);

// Removes what WriteWhole left in a folder when its process was killed.
void RemoveStaleTemps(const std::string& folder);

struct ReadText {
    Result result{};
    std::string text{};
    bool truncated = false;
    bool existed = false;
};
// Reads from byte `start` (1-based); `maxChars` below 1 means no limit.
ReadText ReadFile(const std::string& path, std::int64_t start = 1, std::int64_t maxChars = 0);
std::int64_t FileSize(const std::string& path);  // bytes, or -1 when missing

// Bytes that come in order, whatever lies under them: a plain file, a packed one.
class ChunkSource {
public:
    virtual ~ChunkSource() = default;
    // Reads up to `room` bytes at the position; 0 at the end. An error throws nothing: check Failed() once 0 came.
    virtual std::size_t Read(char* into, std::size_t room) = 0;
    virtual const Result& Failed() const = 0;
    virtual bool Grown() const = 0;  // the file has more bytes now than when it was opened
};

// Forward reading of a regular file in chunks, up to the size it had when opened. Bytes as they lie; UnpackReader
// (decompressreader.h) is the one for logs.
class ChunkReader final : public ChunkSource {
public:
    ChunkReader() = default;
    ~ChunkReader() override;
    ChunkReader(const ChunkReader&) = delete;
    ChunkReader& operator=(const ChunkReader&) = delete;

    // Refuses FIFOs, devices, folders and what cannot be read, with the file's name and what to do.
    Result Open(const std::string& path);
    std::int64_t Size() const { return size_; }
    std::size_t Read(char* into, std::size_t room) override;
    std::size_t ReadAt(std::int64_t offset, char* into, std::size_t room);
    const Result& Failed() const override { return failed_; }
    bool Grown() const override;

private:
    int fd_ = -1;
    std::int64_t size_ = 0;
    std::int64_t position_ = 0;
    std::string path_{};
    Result failed_{};
};

Result FileCopy(const std::string& from, const std::string& to);  // replaces silently, atomic
Result FileDelete(const std::string& path);
Result FileRename(const std::string& from, const std::string& to);
Result MakeDir(const std::string& path);  // with parents
// Protects a file against writing, or gives its owner the right back.
Result FileSetAttributes(const std::string& path, bool readOnly);
// Whether a file could be opened for reading, or for writing too; nothing in it changes.
Result FileOpenCheck(const std::string& path, bool forWriting = false);
// Removes a folder and what is in it; never follows a symbolic link out of it.
Result RemoveDir(const std::string& path);
bool IsDir(const std::string& path);
bool IsRegularFile(const std::string& path);
bool Exists(const std::string& path);
bool IsWritable(const std::string& path);

// Names in a folder that match a pattern with * and ?, sorted by bytes. No subfolders.
std::vector<std::string> ListFiles(const std::string& folder, std::string_view pattern);

// Pieces of a path; `separator` is "/" or "\\".
std::string fPathOf(std::string_view path, char separator = '/');  // with the last separator
std::string fNameOf(std::string_view path, char separator = '/');
std::string fBaseOf(std::string_view path, char separator = '/');
std::string fTypeOf(std::string_view path, char separator = '/');  // behind the last "." of the name, else ""

// An advisory lock on a file, freed by the kernel when the process ends however it ends.
class FileLock {
public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    // False: another program holds it (taken = true) or the file cannot be made.
    struct Outcome {
        bool ok = false;
        bool taken = false;
        std::string error{};
    };
    Outcome Lock(const std::string& path);
    void Unlock();
    bool Held() const { return fd_ >= 0; }

private:
    int fd_ = -1;
};

}  // namespace core
