#pragma once

#include <cstdint>
#include <string>

namespace sitedb {
class PageList;
}

namespace visits {

// Which parts of a name keep pages apart in a report.
struct ShowParts {
    bool SepFrag = false;
    bool SepQuery = false;
};

// The name under which a report shows a page. Pages that differ only in a part that does not separate show under one
// name, while their numbers stay different.
std::string Page_ShowName(const sitedb::PageList& pages, std::int64_t pageId, ShowParts separate);

}  // namespace visits
