#pragma once

#include "dialogs/showmb.h"

namespace core {
struct Env;
}
namespace sitedb {
class Site;
}

namespace reports {

// The site areas: a list with an editor of their pages, and which of them an analysis is limited to. True when the
// choice was entered with OK.
bool ShowSiteAreas(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site);

}  // namespace reports
