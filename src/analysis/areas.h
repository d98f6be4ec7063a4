#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace core {
class IniStore;
}
namespace sitedb {
class Site;
struct SitePaths;
}  // namespace sitedb

// Parts of a site that can be analysed alone: named lists of pages in a file of the site.
namespace analysis {

struct SiteArea {
    std::string name{};
    std::vector<std::string> pages{};
};
std::vector<SiteArea> Area_List(core::IniStore& ini, const sitedb::SitePaths& site);
std::vector<std::string> Area_Names(core::IniStore& ini, const sitedb::Site& site);
// Ignoring case. Gives its place in the list.
std::optional<std::size_t> Area_Find(const std::vector<SiteArea>& areas, std::string_view name);

// What is wrong with the name of an area, "" when nothing is.
std::string Area_NameProblem(std::string_view name);
// Text that can stand in a list of pages.
bool Area_CanHold(std::string_view page);

// Each false: a write failed, and the user was told.
bool Area_Put(core::IniStore& ini, const sitedb::SitePaths& site, const SiteArea& area);
// An area that analyses are limited to takes the limit along.
bool Area_Remove(core::IniStore& ini, const sitedb::SitePaths& site, const std::string& name);

// The area that analyses are limited to, as stored.
std::optional<std::string> Area_Limit(core::IniStore& ini, const sitedb::SitePaths& site);
bool Area_SetLimit(core::IniStore& ini, const sitedb::SitePaths& site, const std::optional<std::string>& name);

// The pages of an area as flags by PageID. Names that the site has no page for are passed over; the set has no element
// beyond the highest page of the area.
std::vector<bool> Area_Pages(core::IniStore& ini, sitedb::Site& site, std::string_view area);

}  // namespace analysis
