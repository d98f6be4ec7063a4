#include "visits/pageshow.h"

#include "names/pagename.h"
#include "sitedb/pagelist.h"

namespace visits {
namespace {

bool IsRoot(std::string_view name) { return name.empty() || name == "/"; }

}  // namespace

std::string Page_ShowName(const sitedb::PageList& pages, std::int64_t pageId, ShowParts separate) {
    if (pageId < 0 || pageId > pages.UpperBound()) return std::string(names::kNoPageName);
    const std::string_view name = pages.Page_Name(pageId);
    if (IsRoot(name)) return std::string(names::kRootName);
    if (separate.SepFrag && separate.SepQuery) return std::string(name);
    std::string shown = names::Page_StripParts(name, {.fragment = !separate.SepFrag, .query = !separate.SepQuery});
    return IsRoot(shown) ? std::string(names::kRootName) : shown;
}

}  // namespace visits
