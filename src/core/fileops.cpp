#include "core/fileops.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "core/dates.h"
#include "core/fileio.h"
#include "core/freename.h"
#include "core/inistore.h"
#include "core/ports.h"

namespace core {
namespace {

struct ActionText {
    FileAction action;
    std::string_view name;
    std::string_view line;
    std::string_view toLine;
};
constexpr std::string_view kTo = "To:            ";
constexpr std::array kActions{
    ActionText{FileAction::Copy, "Copy File", "Copy File:  ", kTo},
    ActionText{FileAction::Delete, "Delete File", "Delete File:  ", {}},
    ActionText{FileAction::Rename, "Rename File", "Rename File From:  ", kTo},
    ActionText{FileAction::MakeDir, "Make Directory", "Make Directory:  ", {}},
    ActionText{FileAction::RemoveDir, "Remove Directory", "Directory name:  ", {}},
    ActionText{FileAction::Attributes, "Change Attribute of File", "Change Attribute of File:  ", {}},
    ActionText{FileAction::Open, "Open File", "Open File:  ", {}},
    ActionText{FileAction::Backup, "Make Backup Copy", "Backup File:  ", kTo},
};
static_assert(std::ranges::is_sorted(kActions, {}, &ActionText::action), "found by the action's number");

// What another program or the rights of a file stand in the way of.
constexpr std::array kRetryCodes{EBUSY, ETXTBSY, EAGAIN, EACCES, EPERM};

const ActionText& TextOf(FileAction action) { return kActions[static_cast<std::size_t>(action)]; }

// An error text names files, whose names may hold anything.
std::string Reason(const Result& why) {
    if (why.code == 0) return fileio::Shown(why.error);
    return "Error:  >> " + std::to_string(why.code) + " " + fileio::Reason(why.code) + " <<\r" +
           fileio::Shown(why.error);
}

std::string FailureText(const FileFailure& failure) {
    const ActionText& action = TextOf(failure.action);
    const std::string name(action.name);
    std::string text = "Error from Windows when attempted to " + name + ".\r\r";
    text.append(action.line).append(fileio::Shown(failure.path)).append("\r");
    if (!action.toLine.empty() && !failure.to.empty())
        text.append(action.toLine).append(fileio::Shown(failure.to)).append("\r");
    text += "\r" + name + " not done.\r\r";
    if (CanRetry(failure.why)) {
        text +=
            "The file is locked by another Application. (Error 70, Permission denied.)\r"
            "Close the file in the other Application and press Retry to try again.\r" +
            fileio::Shown(failure.why.error) + "\r\rPress OK to skip " + name + " of this file and continue";
    } else {
        text += Reason(failure.why) + "\r\rPress OK to continue";
    }
    const bool sequence = failure.sequence == FileSequence::Yes;
    return text + (sequence ? " with other files & directories. Press Cancel to stop." : ".");
}

}  // namespace

bool CanRetry(const Result& why) { return std::ranges::find(kRetryCodes, why.code) != kRetryCodes.end(); }

int FileOpFailed(User& user, const FileFailure& failure) {
    Question question{.id = "FileOpFailed", .message = FailureText(failure)};
    int buttons = 1;
    const auto add = [&](std::string_view caption) {
        question.buttons.append("|").append(caption);
        return ++buttons;
    };
    if (CanRetry(failure.why)) add("&Retry");
    if (failure.sequence == FileSequence::Yes) question.cancelButton = add("&Cancel");
    return user.Ask(question).button;
}

FileOpDone AskUntilDone(User& user, FileFailure failure, const std::function<Result()>& attempt) {
    constexpr int kRetry = 2;
    for (;;) {
        failure.why = attempt();
        if (failure.why) return {};
        const bool retry = CanRetry(failure.why);
        const int button = FileOpFailed(user, failure);
        if (retry && button == kRetry) continue;
        return {failure.why, failure.sequence == FileSequence::Yes && button == (retry ? kRetry + 1 : kRetry)};
    }
}

FileOpDone FileCopyAsk(User& user, const std::string& from, const std::string& to, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::Copy, from, to, sequence}, [&] { return FileCopy(from, to); });
}

FileOpDone FileDeleteAsk(User& user, const std::string& path, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::Delete, path, {}, sequence}, [&] { return FileDelete(path); });
}

FileOpDone FileRenameAsk(User& user, const std::string& from, const std::string& to, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::Rename, from, to, sequence}, [&] { return FileRename(from, to); });
}

FileOpDone MakeDirAsk(User& user, const std::string& path, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::MakeDir, path, {}, sequence}, [&] { return MakeDir(path); });
}

FileOpDone RemoveDirAsk(User& user, const std::string& path, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::RemoveDir, path, {}, sequence}, [&] { return RemoveDir(path); });
}

FileOpDone FileSetAttributesAsk(User& user, const std::string& path, bool readOnly, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::Attributes, path, {}, sequence},
                        [&] { return FileSetAttributes(path, readOnly); });
}

FileOpDone FileOpenCheckAsk(User& user, const std::string& path, bool forWriting, FileSequence sequence) {
    return AskUntilDone(user, {{}, FileAction::Open, path, {}, sequence},
                        [&] { return FileOpenCheck(path, forWriting); });
}

Backup MakeBackup(User& user, IniStore& ini, const Clock& clock, const std::string& path, const BackupPlace& place) {
    if (!ini.IniGetBool(place.section, kBackupEntry, place.file)) return {};
    const std::string type = fTypeOf(path);
    const std::string copy =
        fPathOf(path) + fBaseOf(path) + FormatDate(clock.Now(), ".yyyymmdd") + (type.empty() ? type : "." + type);
    Backup backup{{}, copy};
    // A copy of this day that is there already stays.
    if (Exists(copy)) {
        const FreeName free = MakeFreeName(fPathOf(copy) + fBaseOf(copy) + ".1" + (type.empty() ? type : "." + type));
        if (!free.ok) return {{Result{false, free.result}}, {}};
        backup.path = free.result;
    }
    backup.done = AskUntilDone(user, {{}, FileAction::Backup, path, backup.path, FileSequence::No},
                               [&] { return FileCopy(path, backup.path); });
    if (!backup.done.result) backup.path.clear();
    return backup;
}

}  // namespace core
