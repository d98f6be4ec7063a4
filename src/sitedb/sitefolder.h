#pragma once

#include <string>

#include "core/files.h"

namespace core {
class Paths;
}

// Which folders are a site's own. The folder of a site is an entry of a file that anyone can edit, so whatever is
// opened, moved or emptied by that entry is tested here first.
namespace sitedb {

// Fails for places that no site can have: the root, the user's home, the data home and its own folders, the folders of
// the program and of its delivered files, whatever lies above any of these, links, and paths with "..".
core::Result CheckSitePlace(const std::string& folder, const core::Paths& paths);

// The place is allowed and a site stands in it: param/dbdef.ini and data.
core::Result CheckSiteFolder(const std::string& folder, const core::Paths& paths);

// Something stands under this name, be it a link that leads nowhere.
bool IsNameTaken(const std::string& path);

// True when `path` is `folder` or lies below it, whatever links lead there.
bool IsWithin(const std::string& path, const std::string& folder);

}  // namespace sitedb
