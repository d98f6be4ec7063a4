#include "analysis/areas.h"

#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

constexpr std::string_view kSection = "SiteAreas";
constexpr std::string_view kMain = "Main";
constexpr std::string_view kLimited = "ShowOnlySelSiteArea";
constexpr std::string_view kLimit = "ParmShowOnlySelSiteArea";
constexpr std::size_t kLongestName = 120;
// They part lists, names and values in parameter files.
constexpr std::string_view kNotInNames = "|{}[]=;\"\\";

bool IsControl(char c) { return static_cast<unsigned char>(c) < 32 || c == 127; }

}  // namespace

std::vector<SiteArea> Area_List(core::IniStore& ini, const sitedb::SitePaths& site) {
    std::vector<SiteArea> areas;
    for (std::string& name : ini.IniEntries(kSection, site.siteAreas)) {
        const core::StrArray pages = core::CDSSplitPlain(ini.IniGet(kSection, name, site.siteAreas));
        SiteArea& area = areas.emplace_back(SiteArea{std::move(name), {pages.Items().begin(), pages.Items().end()}});
        std::erase(area.pages, "");
    }
    return areas;
}

std::vector<std::string> Area_Names(core::IniStore& ini, const sitedb::Site& site) {
    return ini.IniEntries(kSection, site.Paths().siteAreas);
}

std::optional<std::size_t> Area_Find(const std::vector<SiteArea>& areas, std::string_view name) {
    const auto at = std::ranges::find_if(
        areas, [name](const SiteArea& area) { return core::fEquals(area.name, name, core::Case::Ignore); });
    if (at == areas.end()) return std::nullopt;
    return static_cast<std::size_t>(at - areas.begin());
}

std::string Area_NameProblem(std::string_view name) {
    if (name.empty() || core::fTrim(name).size() != name.size())
        return "A site area needs a name without blanks at its ends.";
    if (name.size() > kLongestName)
        return "The name of a site area can have at most " + std::to_string(kLongestName) + " bytes.";
    if (std::ranges::any_of(name, IsControl) || name.find_first_of(kNotInNames) != std::string_view::npos)
        return "The name of a site area cannot hold | { } [ ] = ; \" \\ or control characters.";
    for (const std::string_view start : {"AltNo.", "SplitEntry."})
        if (core::fStartsWith(name, start, core::Case::Ignore))
            return "A name cannot begin with \"" + std::string(start) + "\".";
    return {};
}

bool Area_CanHold(std::string_view page) {
    return !page.empty() && page.find('|') == std::string_view::npos && core::IsUtf8(page);
}

bool Area_Put(core::IniStore& ini, const sitedb::SitePaths& site, const SiteArea& area) {
    return ini.IniPutWhole(kSection, area.name, core::CDSOf(area.pages), site.siteAreas);
}

bool Area_Remove(core::IniStore& ini, const sitedb::SitePaths& site, const std::string& name) {
    if (!ini.IniErase(kSection, name, site.siteAreas)) return false;
    const std::string limit = ini.IniGet(kMain, kLimit, site.lastVals);
    return !core::fEquals(limit, name, core::Case::Ignore) || Area_SetLimit(ini, site, std::nullopt);
}

std::optional<std::string> Area_Limit(core::IniStore& ini, const sitedb::SitePaths& site) {
    if (!ini.IniGetBool(kMain, kLimited, site.lastVals)) return std::nullopt;
    return ini.IniGet(kMain, kLimit, site.lastVals);
}

bool Area_SetLimit(core::IniStore& ini, const sitedb::SitePaths& site, const std::optional<std::string>& name) {
    if (name && !ini.IniPut(kMain, kLimit, *name, site.lastVals)) return false;
    return ini.IniPutBool(kMain, kLimited, name.has_value(), site.lastVals);
}

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

}  // namespace analysis
