#include "analysis/areas.h"

#include "core/cds.h"
#include "core/inistore.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

constexpr std::string_view kSection = "SiteAreas";

}  // namespace

std::vector<bool> Area_Pages(core::IniStore& ini, sitedb::Site& site, std::string_view area) {
    std::vector<bool> pages;
    const std::string list = ini.IniGet(kSection, area, site.Paths().siteAreas);
    if (list.empty()) return pages;
    const core::StrArray names = core::CDSSplitPlain(list);
    for (const std::string& name : names.Items()) {
        const std::int32_t id = site.Pages().Page_FindOrAdd(name, sitedb::Add::No, site.Db());
        if (id < 0) continue;
        const auto at = static_cast<std::size_t>(id);
        if (at >= pages.size()) pages.resize(at + 1);
        pages[at] = true;
    }
    return pages;
}

std::vector<std::string> Area_Names(core::IniStore& ini, const sitedb::Site& site) {
    return ini.IniEntries(kSection, site.Paths().siteAreas);
}

}  // namespace analysis
