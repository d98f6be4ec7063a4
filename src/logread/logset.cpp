#include "logread/logset.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <string_view>

#include "core/decompressreader.h"
#include "logread/probe.h"

namespace logread {
namespace {

// What editors, package managers and unfinished copies leave beside a file.
constexpr std::array<std::string_view, 8> kLeftovers{"~", "#", ".bak", ".orig", ".swp", ".swo", ".tmp", ".part"};
constexpr std::array<std::string_view, 4> kPackedTypes{".gz", ".bz2", ".xz", ".zst"};

bool IsLeftover(std::string_view name) {
    return name.starts_with('.') || std::ranges::any_of(kLeftovers, [&](auto end) { return name.ends_with(end); });
}

struct Member {
    std::string path{};
    std::int64_t first = std::numeric_limits<std::int64_t>::max();  // time of its first line; behind all others
};

std::string FolderOf(const std::string& path) {
    if (!core::IsDir(path)) return core::fPathOf(path);
    return path.ends_with('/') ? path : path + "/";
}

std::vector<std::string> NamesOf(const std::string& path) {
    const std::string folder = FolderOf(path);
    const bool whole = core::IsDir(path);
    std::vector<std::string> names = core::ListFiles(folder.empty() ? "." : folder, whole ? "*" : core::fNameOf(path));
    if (whole)
        std::erase_if(names, [&](const std::string& name) {
            return IsLeftover(name) || !core::IsRegularFile(folder + name) || core::FileSize(folder + name) == 0;
        });
    return names;
}

// False for what cannot be a log. A file that cannot be read, or is packed in a way that cannot be, stays: the read
// tells why.
bool Look(Member& member, const logdefs::LogFormat& format) {
    core::UnpackReader file;
    if (!file.Open(member.path)) return true;
    const LogFileStart start = LogFileStartOf(file, format);
    if (start.first) member.first = *start.first;
    return start.first || !file.Failed() || !PackedKind(start.text).empty() || !LooksBinary(start.text);
}

std::vector<std::string> PackedTwins(const std::string& folder, const std::vector<std::string>& names) {
    const std::set<std::string, std::less<>> known(names.begin(), names.end());
    std::vector<std::string> twins;
    for (const std::string& name : names)
        for (const std::string_view type : kPackedTypes)
            if (name.ends_with(type) && known.contains(std::string_view(name).substr(0, name.size() - type.size())))
                twins.push_back(folder + name);
    return twins;
}

}  // namespace

bool NamesMany(const std::string& path) {
    if (path == kStandardInput) return false;
    return core::IsDir(path) || (path.find('*') != std::string::npos && !core::IsRegularFile(path));
}

bool NamesFiles(const std::string& path) { return !NamesOf(path).empty(); }

LogSet LogSetOf(const std::string& path, const logdefs::LogFormat& format,
                const std::function<void(std::size_t done, std::size_t of)>& onFile) {
    const std::vector<std::string> names = NamesOf(path);
    const std::string folder = FolderOf(path);
    const bool whole = core::IsDir(path);
    std::vector<Member> members;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (onFile) onFile(i, names.size());
        Member member{folder + names[i]};
        if (Look(member, format) || !whole) members.push_back(std::move(member));
    }
    std::ranges::stable_sort(members, {}, &Member::first);
    LogSet set;
    for (Member& member : members) set.files.push_back(std::move(member.path));
    set.twice = PackedTwins(folder, names);
    return set;
}

}  // namespace logread
