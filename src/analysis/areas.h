#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace core {
class IniStore;
}
namespace sitedb {
class Site;
}

namespace analysis {

// The pages of an area as flags by PageID. Names that the site has no page for are passed over; the set has no element
// beyond the highest page of the area.
std::vector<bool> Area_Pages(core::IniStore& ini, sitedb::Site& site, std::string_view area);

std::vector<std::string> Area_Names(core::IniStore& ini, const sitedb::Site& site);

}  // namespace analysis
