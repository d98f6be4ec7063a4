#pragma once

#include <string>

#include "core/files.h"

namespace core {
class IniStore;
}
namespace sitedb {
struct SitePaths;
}

namespace adddata {

// The robot rules that an add used, kept beside its record. One copy serves all adds until the rules change.
struct RobotCopy {
    core::Result result{};
    std::string name{};  // of the copy in the site's parameter folder, "" when there is none
};
RobotCopy CopyRobotFilter(core::IniStore& ini, const std::string& robots, const sitedb::SitePaths& site);

}  // namespace adddata
