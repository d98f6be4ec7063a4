#include "adddata/loglist.h"

#include <algorithm>
#include <unordered_set>

#include "core/cds.h"
#include "core/env.h"
#include "core/fileio.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "core/text.h"
#include "logread/logset.h"

namespace adddata {
namespace {

constexpr std::string_view kList = "Log Files";
constexpr std::string_view kChoice = "PAFNlog";
constexpr std::string_view kFormatMark = " [LogFormat: ";

LogSpecs Read(const AddDesk& at, std::string_view entry) {
    LogSpecs specs;
    const std::string list = at.env.ini.IniGet("Main", entry, at.site.Paths().lastVals);
    const core::StrArray items = core::CDSSplitPlain(list);
    for (const std::string& item : items.Items()) {
        logdefs::LogFileSpec spec = logdefs::LogFileSpecSplit(core::fTrim(item));
        spec.file = at.paths.ToNative(spec.file);
        if (!spec.file.empty()) specs.push_back(std::move(spec));
    }
    return specs;
}

// A wildcard has no stored form of its own: its folder has, and the name goes behind it.
core::Paths::Stored StoredPath(const AddDesk& at, const std::string& path) {
    const std::string name = core::fNameOf(path);
    if (name.find('*') == std::string::npos) return at.paths.ToStored(path);
    core::Paths::Stored checked = at.paths.ToStored(core::fPathOf(path) + core::fReplace(name, "*", "_"));
    if (checked.result) checked.text = checked.text.substr(0, checked.text.rfind('\\') + 1) + name;
    return checked;
}

bool Store(const AddDesk& at, std::string_view entry, const LogSpecs& specs, std::size_t most) {
    core::StrArray items(0, {});
    std::unordered_set<std::string> known;
    for (const logdefs::LogFileSpec& spec : specs) {
        const core::Paths::Stored stored = StoredPath(at, spec.file);
        if (!stored.result || items.Items().size() >= most || !known.insert(stored.text).second) continue;
        items.Append(logdefs::LogFileSpecJoin({stored.text, spec.format}));
    }
    return at.env.ini.IniPutWhole("Main", entry, core::CDSJoinPlain(items), at.site.Paths().lastVals);
}

// The first regular file of a folder that matches.
std::string FirstOf(const std::string& folder, std::string_view pattern) {
    for (const std::string& name : core::ListFiles(folder, pattern))
        if (core::IsRegularFile(folder + name)) return folder + name;
    return {};
}

}  // namespace

LogSpecs ReadLogList(const AddDesk& at) { return Read(at, kList); }

LogSpecs ReadLogChoice(const AddDesk& at) { return Read(at, kChoice); }

bool StoreLogList(const AddDesk& at, const LogSpecs& list) { return Store(at, kList, list, kMostLogFiles); }

bool StoreLogChoice(const AddDesk& at, const LogSpecs& chosen) { return Store(at, kChoice, chosen, chosen.size()); }

bool ChooseLogs(const AddDesk& at, const LogSpecs& chosen) {
    LogSpecs list = chosen;
    for (logdefs::LogFileSpec& spec : ReadLogList(at)) list.push_back(std::move(spec));
    const bool kept = StoreLogList(at, list);
    return StoreLogChoice(at, chosen) && kept;
}

std::string LogFileProblem(const AddDesk& at, const std::string& path) {
    if (!path.starts_with('/')) return "Give the full path, from \"/\" on: " + path;
    if (path.find_first_of("\r\n") != std::string::npos || path.find(kFormatMark) != std::string::npos)
        return "A log file of this name cannot be kept in the list; rename it: " + core::fileio::Shown(path);
    if (const core::Paths::Stored stored = StoredPath(at, path); !stored.result) return stored.result.error;
    if (logread::NamesMany(path)) return logread::NamesFiles(path) ? "" : "No log file is found by this: " + path;
    return core::Exists(path) ? "" : "There is no such file: " + path;
}

std::vector<std::string> PathsOf(std::string_view text) {
    std::vector<std::string> paths;
    const auto append = [&](std::string_view path) {
        if (!core::fTrim(path).empty()) paths.emplace_back(path);
    };
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.find('|') == std::string_view::npos || core::Exists(std::string(line))) {
            append(line);
            continue;
        }
        const core::StrArray items = core::CDSSplitPlain(line);
        for (const std::string& item : items.Items()) append(item);
    }
    return paths;
}

std::string PathLines(const LogSpecs& specs) {
    std::string lines;
    for (const logdefs::LogFileSpec& spec : specs) lines.append(lines.empty() ? "" : "\r").append(spec.file);
    return lines;
}

std::string LogToLookAt(const std::string& path) {
    if (core::IsRegularFile(path)) return path;
    if (core::IsDir(path)) return FirstOf(path.ends_with('/') ? path : path + "/", "*");
    if (path.find('*') == std::string::npos) return {};
    return FirstOf(core::fPathOf(path), core::fNameOf(path));
}

}  // namespace adddata
