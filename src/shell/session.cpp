#include "shell/session.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>

#include "core/text.h"
#include "sitedb/sitefolder.h"

namespace shell {
namespace {

constexpr std::array kProgramFiles{std::string_view("logfmts.ini"),           std::string_view("lastinstvals.ini"),
                                   std::string_view("fltrbots.ini"),          std::string_view("ppfindbots.ini"),
                                   std::string_view("ppfindbotsskipuas.ini"), std::string_view("screens.ini")};

std::string FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string Absolute(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    if (path.empty() || path.front() == '/') return path;
    std::array<char, PATH_MAX> here{};
    if (::getcwd(here.data(), here.size()) == nullptr) return {};
    return std::string(here.data()) + "/" + path;
}

std::string ProgramFolder() {
    std::array<char, PATH_MAX> program{};
    const ssize_t length = ::readlink("/proc/self/exe", program.data(), program.size() - 1);
    return length > 0 ? core::fPathOf(std::string_view(program.data(), static_cast<std::size_t>(length)))
                      : std::string();
}

}  // namespace

std::string DataHome(std::string_view option) {
    if (!option.empty()) return Absolute(std::string(option));
    if (std::string home = FromEnvironment("CORVANE_HOME"); !home.empty()) return Absolute(std::move(home));
    if (const std::string data = FromEnvironment("XDG_DATA_HOME"); data.starts_with('/'))
        return Absolute(data + "/corvane");
    const std::string home = FromEnvironment("HOME");
    return home.starts_with('/') ? home + "/.local/share/corvane" : std::string();
}

std::string SharedFolder(std::string_view installed, std::string_view source) {
    for (const std::string& folder :
         {ProgramFolder() + "../share/corvane", std::string(installed), std::string(source)})
        if (core::IsDir(folder + "/site/param")) return folder;
    return std::string(installed);
}

Session::Session(const Places& places, core::User& user, core::Progress& progress)
    : paths_(places.home, places.shared),
      ini_(user),
      events_(clock_, places.home + "/errors.log"),
      env_{ini_, user, progress, events_, clock_},
      sites_(env_, paths_) {}

core::Result Session::Prepare() {
    const std::string param = paths_.Home() + "/param/";
    for (const std::string& folder : {paths_.Home() + "/param", paths_.Home() + "/sites"})
        if (core::Result made = core::MakeDir(folder); !made) return made;
    core::RemoveStaleTemps(paths_.Home());
    core::RemoveStaleTemps(param);
    for (const std::string_view name : kProgramFiles) {
        const std::string file = param + std::string(name);
        if (core::Exists(file)) continue;
        if (core::Result copied = core::FileCopy(paths_.Shared() + "/program/" + std::string(name), file); !copied)
            return copied;
    }
    return {};
}

std::string Session::ScreensFile() const { return paths_.Home() + "/param/screens.ini"; }

adddata::ProgramFiles Session::ProgramFiles() const {
    const std::string param = paths_.Home() + "/param/";
    return {param + "logfmts.ini", param + "lastinstvals.ini", param + "fltrbots.ini"};
}

Session::Opened Session::Open(std::string_view name) {
    Opened opened;
    const std::string folder = name.empty() ? sites_.CurrentFolder() : sites_.Folder(name);
    if (folder.empty()) {
        opened.failure.error = name.empty()
                                   ? "No site is chosen: no folder of one stands in " + paths_.Home() + "/Dir.ini."
                                   : "There is no site of that name: " + std::string(name);
        return opened;
    }
    // A folder that has gone is told of by the opening, with the file that is missed.
    const bool there = core::Exists(folder + "/data/site1.mdb");
    const core::Result usable =
        there ? sitedb::CheckSiteFolder(folder, paths_) : sitedb::CheckSitePlace(folder, paths_);
    if (!usable) {
        opened.failure.error = usable.error;
        return opened;
    }
    sitedb::SetSectionFiles(ini_, paths_, sitedb::Site_Paths(folder));
    opened.site = sitedb::Site::Site_Open(env_, folder, opened.failure);
    return opened;
}

}  // namespace shell
