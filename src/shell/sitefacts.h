#pragma once

#include <string>

#include "sitedb/site.h"

namespace shell {

// One or two lines on what a site holds, or what to do when it holds nothing yet.
std::string SiteFactsText(sitedb::Site& site);

}  // namespace shell
