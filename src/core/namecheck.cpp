#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "core/files.h"
#include "core/namechars.h"
#include "core/paths.h"
#include "core/text.h"

namespace core {

namespace {

constexpr std::string_view kInDir = "Error In Directory name: ";
constexpr std::string_view kInFile = "Error In File Name: ";
constexpr std::string_view kAborted = "Action aborted.";
constexpr std::string_view kNotAllowed =
    " which are not allowed in a filename. Enter a file name in format xxxxxxxx.xxx ";
constexpr std::string_view kBadDirFormat =
    "Directory name is not in a valid format. Enter directory name in format x:\\maindir\\subdir\\ where x is a valid "
    "drive letter.";
constexpr std::string_view kBadFileFormat =
    "Path and file name is not in a valid format. Enter path and file name in format "
    "x:\\maindir\\subdir\\filename.type where x is a valid drive letter.";
constexpr std::size_t kMostParts = 11;

NameCheck Failed(std::string_view head, std::string_view text) {
    std::string error = std::string(head).append(text);
    if (!error.ends_with(kAborted)) error.append(error.ends_with(' ') ? "" : " ").append(kAborted);
    return {false, false, std::move(error)};
}

// The characters that may not stand in `text`, each once. The blank has its own rule.
std::string BadCharacters(std::string_view text, bool strict) {
    std::string bad;
    for (const char c : text)
        if (c != ' ' && !IsNameChar(c, strict) && bad.find(c) == std::string::npos) bad += c;
    return bad;
}

std::vector<std::string_view> PartsOf(std::string_view dir) {
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= dir.size();) {
        const std::size_t end = std::min(dir.find('\\', at), dir.size());
        parts.push_back(dir.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

bool Fits83(std::string_view name) {
    const std::size_t point = name.find('.');
    const std::string_view type = point == std::string_view::npos ? std::string_view() : name.substr(point + 1);
    return name.substr(0, point).size() <= 8 && type.size() <= 3;
}

bool IsDots(std::string_view part) { return part == "." || part == ".."; }

std::string StrictProblem(const std::vector<std::string_view>& parts) {
    for (std::size_t i = 1; i < parts.size(); ++i)
        if (parts[i].find(' ') != std::string_view::npos)
            return "Invalid directory name. Includes spaces" + std::string(kNotAllowed);
    for (std::size_t i = 1; i < parts.size(); ++i)
        if (!Fits83(parts[i]))
            return "Invalid subdirectory name: " + std::string(parts[i]) +
                   " Subdirectory name must by in 8.3 format (xxxx.yyy where xxxx cannot be longer than 8 characters, "
                   "yyy cannot be longer than 3 characters).";
    return {};
}

// What is wrong with the letters of a folder's name that ends in "\"; "" when nothing is.
std::string DirProblem(std::string_view dir, const Paths& paths, const NameRules& rules) {
    const char drive = dir[0];
    const bool letter = (drive >= 'a' && drive <= 'z') || (drive >= 'A' && drive <= 'Z') || drive == ',';
    if (!letter || dir.size() < 3 || dir.substr(1, 2) != ":\\")
        return "Dir name must be of format x:\\name where x is drive letter.";
    if (paths.ToNative(dir.substr(0, 3)).empty()) return "Invalid drive letter.";
    if (dir.find("\\\\") != std::string_view::npos)
        return " \"\\\\\" with directory name not allowed. Change to \"\\\".";
    const std::vector<std::string_view> parts = PartsOf(dir);
    std::string bad;
    for (std::size_t i = 1; i < parts.size(); ++i) bad += BadCharacters(parts[i], rules.strictNames);
    if (!bad.empty())
        return "Invalid directory name. Includes character(s) " + BadCharacters(bad, rules.strictNames) +
               std::string(kNotAllowed);
    if (std::ranges::any_of(parts, IsDots)) return std::string(kBadDirFormat);
    if (rules.levels && parts.size() > kMostParts)
        return "Invalid directory name. This version of " + std::string(rules.program) +
               " is written for older versions of Windows which only allow at most nine subdirectory levels.\r"
               "Reduce number of subdirectory levels and try again.";
    return rules.strictNames ? StrictProblem(parts) : std::string();
}

struct OnDisk {
    bool exists = false;
    bool folder = false;
    std::string problem{};
};
OnDisk LookUp(const std::string& native) {
    struct stat info {};
    if (::stat(native.c_str(), &info) == 0) return {true, S_ISDIR(info.st_mode), {}};
    if (errno == EIO || errno == ESTALE || errno == ENXIO)
        return {false, false, "Disk not ready. Insert disk and make sure that drive door is closed."};
    return {};
}

// A person types native paths; the checks speak of the stored form.
bool TakeNative(std::string_view text, const Paths& paths, std::string& stored, std::string& problem) {
    stored = text;
    if (!text.starts_with('/')) return true;
    const Paths::Stored form = paths.ToStored(text);
    stored = form.text;
    problem = form.result.error;
    return form.result.ok;
}

std::string WithoutEnd(std::string native) {
    while (native.size() > 1 && native.ends_with('/')) native.pop_back();
    return native;
}

std::string FileProblem(std::string_view pafn, const NameRules& rules) {
    const std::string name = fNameOf(pafn, '\\');
    if (name.empty()) return "Must include file name after dir spec.";
    if (IsDots(name)) return std::string(kBadFileFormat);
    const std::string badName = BadCharacters(fBaseOf(pafn, '\\'), rules.strictNames);
    if (!badName.empty()) return "Invalid File name. Includes character(s) " + badName + std::string(kNotAllowed);
    const std::string badType = BadCharacters(fTypeOf(pafn, '\\'), rules.strictNames);
    if (!badType.empty()) return "Invalid File type.  Includes character(s) " + badType + std::string(kNotAllowed);
    return {};
}

std::string NewProblem(std::string_view pafn, const NameRules& rules) {
    if (!rules.strictNames) return {};
    const std::string name = fNameOf(pafn, '\\');
    const std::size_t point = std::min(name.find('.'), name.size());
    if (point > 8) return "Invalid Filename. Max 8 characters allowed before the \".\".";
    if (point == 0) return "Invalid Filename. At least 1 character required before the \".\".";
    if (name.size() > point + 4) return "Invalid Filename. Max 3 characters allowed after the \".\".";
    return {};
}

}  // namespace

NameCheck CheckDir(std::string_view dir, const Paths& paths, const NameRules& rules) {
    if (rules.skipChecks) return {true, false, {}};
    std::string stored, problem;
    if (!TakeNative(dir, paths, stored, problem)) return Failed(kInDir, problem);
    if (!stored.ends_with('\\')) stored += '\\';
    if (problem = DirProblem(stored, paths, rules); !problem.empty()) return Failed(kInDir, problem);
    const OnDisk disk = LookUp(WithoutEnd(paths.ToNative(stored)));
    if (!disk.problem.empty()) return Failed(kInDir, disk.problem);
    if (disk.exists && !disk.folder) return Failed(kInDir, "Invalid directory name. Name is used as a file name.");
    return {true, disk.exists, {}};
}

NameCheck CheckDirExists(std::string_view dir, const Paths& paths, const NameRules& rules) {
    NameCheck check = CheckDir(dir, paths, rules);
    if (rules.skipChecks || !check.ok || check.exists) return check;
    return Failed(kInDir, "Dir does not exist.");
}

NameCheck CheckPAFN(std::string_view pafn, const Paths& paths, const NameRules& rules) {
    if (rules.skipChecks) return {true, false, {}};
    std::string stored, problem;
    if (!TakeNative(pafn, paths, stored, problem)) return Failed(kInFile, problem);
    const std::string dir = fPathOf(stored, '\\');
    if (dir.empty()) return Failed(kInFile, kBadFileFormat);
    if (problem = DirProblem(dir, paths, rules); !problem.empty()) return Failed(kInFile, problem);
    if (problem = FileProblem(stored, rules); !problem.empty()) return Failed(kInFile, problem);
    const OnDisk folder = LookUp(WithoutEnd(paths.ToNative(dir)));
    if (!folder.problem.empty()) return Failed(kInFile, folder.problem);
    if (!folder.folder) return Failed(kInFile, "Directory does not exist.");
    const OnDisk file = LookUp(paths.ToNative(stored));
    if (!file.problem.empty()) return Failed(kInFile, file.problem);
    if (file.folder) return Failed(kInFile, "That file name currently exists as a directory.");
    return {true, file.exists, {}};
}

NameCheck CheckPAFNMustExist(std::string_view pafn, const Paths& paths, const NameRules& rules) {
    NameCheck check = CheckPAFN(pafn, paths, rules);
    if (rules.skipChecks || !check.ok || check.exists) return check;
    return Failed(kInFile, "File does not exist.");
}

NameCheck CheckPAFNNew(std::string_view pafn, const Paths& paths, const NameRules& rules) {
    NameCheck check = CheckPAFN(pafn, paths, rules);
    if (rules.skipChecks || !check.ok) return check;
    std::string stored, problem;
    if (TakeNative(pafn, paths, stored, problem)) problem = NewProblem(stored, rules);
    if (!problem.empty()) return Failed(kInFile, problem);
    return check.exists ? Failed(kInFile, "File already exists. Enter a new file name.") : check;
}

}  // namespace core
