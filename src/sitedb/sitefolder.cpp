#include "sitedb/sitefolder.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "core/fileio.h"
#include "core/paths.h"

namespace sitedb {
namespace {

core::Result Refuse(const std::string& folder, std::string_view why) {
    return {false, "This folder cannot be a site's: " + core::fileio::Shown(folder) + ". " + std::string(why)};
}

// The path without links; "" for what does not exist.
std::string Real(const std::string& path) {
    std::array<char, PATH_MAX> real{};
    return ::realpath(path.c_str(), real.data()) != nullptr ? std::string(real.data()) : std::string();
}

bool RealWithin(const std::string& path, const std::string& folder) {
    if (path.empty() || folder.empty()) return false;
    return path == folder || folder == "/" || path.starts_with(folder + "/");
}

bool HasUpwardStep(const std::string& path) {
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        if (std::string_view(path).substr(at, end - at) == "..") return true;
        at = end + 1;
    }
    return false;
}

std::string ProgramFolder() {
    const std::string program = Real("/proc/self/exe");
    return program.empty() ? program : core::fPathOf(program).substr(0, core::fPathOf(program).size() - 1);
}

std::string UserHome() {
    const char* home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? Real(home) : std::string();
}

}  // namespace

bool IsNameTaken(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

bool IsWithin(const std::string& path, const std::string& folder) { return RealWithin(Real(path), Real(folder)); }

core::Result CheckSitePlace(const std::string& folder, const core::Paths& paths) {
    if (!folder.starts_with('/')) return Refuse(folder, "It is no full path.");
    if (HasUpwardStep(folder)) return Refuse(folder, "A path with \"..\" is not followed.");
    std::string bare = folder;
    while (bare.size() > 1 && bare.ends_with('/')) bare.pop_back();
    struct stat info {};
    if (::lstat(bare.c_str(), &info) != 0) return {};  // what is not there is told by whoever needs it
    if (S_ISLNK(info.st_mode)) return Refuse(folder, "It is a link to another folder.");
    const std::string real = Real(bare), shared = Real(paths.Shared());
    if (real.empty()) return Refuse(folder, "It cannot be read.");
    for (const std::string& kept : {std::string("/"), UserHome(), Real(paths.Home()), ProgramFolder(), shared})
        if (RealWithin(kept, real)) return Refuse(folder, "Other things than a site are kept in it.");
    for (const char* own : {"param", "sites", "recycled", "help"})
        if (real == Real(paths.Home() + "/" + own)) return Refuse(folder, "The program keeps its own files there.");
    if (RealWithin(real, shared)) return Refuse(folder, "The program's delivered files stand there.");
    return {};
}

core::Result CheckSiteFolder(const std::string& folder, const core::Paths& paths) {
    if (!core::IsDir(folder)) return {false, "Dir does not exist. " + core::fileio::Shown(folder)};
    if (core::Result place = CheckSitePlace(folder, paths); !place) return place;
    if (!core::IsRegularFile(folder + "/param/dbdef.ini") || !core::IsDir(folder + "/data"))
        return {false, "No site database in this folder: " + core::fileio::Shown(folder)};
    return {};
}

}  // namespace sitedb
