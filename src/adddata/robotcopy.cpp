#include "adddata/robotcopy.h"

#include "core/freename.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "sitedb/site.h"

namespace adddata {
namespace {

constexpr std::string_view kEntry = "LastBotPiniAdd";
constexpr std::string_view kNameBegin = "AddCpy_fltrbots";
constexpr std::string_view kType = ".ini";

// The name alone counts: a copy never leaves the site's folder, wherever that stands now.
std::string LastCopy(core::IniStore& ini, const sitedb::SitePaths& site) {
    const std::string path = ini.IniGet("Main", kEntry, site.lastVals);
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    return name.starts_with(kNameBegin) && name.ends_with(kType) ? name : std::string();
}

std::string StoredPath(const std::string& native) {
    const core::Paths::Stored stored = core::Paths("", "").ToStored(native);
    return stored.result ? stored.text : native;
}

}  // namespace

RobotCopy CopyRobotFilter(core::IniStore& ini, const std::string& robots, const sitedb::SitePaths& site) {
    const core::ReadText now = core::ReadFile(robots);
    if (!now.existed) return {};
    if (!now.result) return {now.result, {}};
    const std::string folder = core::fPathOf(site.lastVals);
    const std::string last = LastCopy(ini, site);
    if (!last.empty()) {
        const core::ReadText then = core::ReadFile(folder + last);
        if (then.existed && then.result && then.text == now.text) return {{}, last};
    }
    const std::string model = last.empty() ? std::string(kNameBegin).append(kType) : last;
    const core::FreeName free = core::MakeFreeName(folder + model);
    if (!free.ok) return {{false, free.result}, {}};
    const core::Result written = core::WriteWhole(free.result, now.text);
    if (!written) return {written, {}};
    const std::string name = core::fNameOf(free.result);
    if (ini.IniPut("Main", kEntry, StoredPath(free.result), site.lastVals, core::OnFail::Ignore)) return {{}, name};
    return {{false, "This file cannot be written: " + site.lastVals}, name};
}

}  // namespace adddata
