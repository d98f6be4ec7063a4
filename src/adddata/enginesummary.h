#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "core/files.h"

namespace core {
class IniStore;
}
namespace sitedb {
struct SitePaths;
}

// What search engines sent in one add: counts by "engine|yyyymmdd". A file of its own for each add.
namespace adddata {

using EngineCounts = std::map<std::string, std::int64_t>;

struct SavedSummary {
    core::Result result{};
    std::string name{};  // of the file in the site's parameter folder, "" when none was made
};
// Without counts there is no file.
SavedSummary SaveEngineSummary(core::IniStore& ini, const sitedb::SitePaths& site, const EngineCounts& counts);
// Empty for a name that is none of a summary.
EngineCounts ReadEngineSummary(core::IniStore& ini, const sitedb::SitePaths& site, std::string_view name);

}  // namespace adddata
