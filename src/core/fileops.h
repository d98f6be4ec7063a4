#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/files.h"

// File operations in front of a person: a failure is told in one dialog, with Retry where another try can help. Paths
// are native. Code that reports failures in its own way uses files.h.
namespace core {

class Clock;
class IniStore;
class User;

enum class FileAction { Copy, Delete, Rename, MakeDir, RemoveDir, Attributes, Open, Backup };
// One of several files: the dialog offers to stop them all.
enum class FileSequence { No, Yes };

// The failure dialog; gives the number of the pressed button. `to` is of copies and renames.
struct FileFailure {
    Result why{};
    FileAction action = FileAction::Copy;
    std::string path{}, to{};
    FileSequence sequence = FileSequence::No;
};
inline constexpr int kFileOpOk = 1;
int FileOpFailed(User& user, const FileFailure& failure);
// Busy or protected: what a person can change while the dialog waits.
bool CanRetry(const Result& why);

struct FileOpDone {
    Result result{};
    bool stopped = false;  // Cancel: nothing more of the sequence
};
// Tries until it succeeds or the person leaves it.
FileOpDone AskUntilDone(User& user, FileFailure failure, const std::function<Result()>& attempt);

FileOpDone FileCopyAsk(User& user, const std::string& from, const std::string& to,
                       FileSequence sequence = FileSequence::No);
FileOpDone FileDeleteAsk(User& user, const std::string& path, FileSequence sequence = FileSequence::No);
FileOpDone FileRenameAsk(User& user, const std::string& from, const std::string& to,
                         FileSequence sequence = FileSequence::No);
FileOpDone MakeDirAsk(User& user, const std::string& path, FileSequence sequence = FileSequence::No);
FileOpDone RemoveDirAsk(User& user, const std::string& path, FileSequence sequence = FileSequence::No);
FileOpDone FileSetAttributesAsk(User& user, const std::string& path, bool readOnly,
                                FileSequence sequence = FileSequence::No);
FileOpDone FileOpenCheckAsk(User& user, const std::string& path, bool forWriting = false,
                            FileSequence sequence = FileSequence::No);

// Copies a file beside itself with the day in the copy's name ("a.20090302.ini", then "a.20090302.1.ini"), when the
// entry kBackupEntry of `section` is True. The copy can be written and bears today's date.
inline constexpr std::string_view kBackupEntry = "ReadWrite BkUp File To Change Date";
struct Backup {
    FileOpDone done{};
    std::string path{};  // of the copy, "" when none was made
};
struct BackupPlace {
    std::string_view section = "Main";
    std::string_view file{};
};
Backup MakeBackup(User& user, IniStore& ini, const Clock& clock, const std::string& path, const BackupPlace& place);

}  // namespace core
