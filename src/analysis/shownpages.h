#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/texttable.h"
#include "visits/pageshow.h"

namespace sitedb {
class PageList;
}

namespace analysis {

// Stands for the start of a visit that asked for skipped types only.
inline constexpr std::string_view kNoPages = "No pages requested of selected types";

// What a run has to know of a page.
struct PageFact {
    std::uint32_t name = 0;   // of its shown name; pages can share one
    bool counts = false;      // is not of a skipped file type
    bool forAverage = false;  // counts for the average of pages
    bool known = false;
};

// Shown names and file types of pages, worked out at the first sighting of each.
class ShownPages {
public:
    ShownPages(const sitedb::PageList& pages, visits::ShowParts parts, std::string skipTypes, std::string countTypes);

    const PageFact& Of(std::int32_t pageId) {
        const auto at = static_cast<std::uint32_t>(pageId);
        if (at < facts_.size() && facts_[at].known) return facts_[at];
        return WorkOut(pageId);
    }
    std::string_view Name(std::uint32_t name) const { return names_.Text(name); }
    // The folder of a shown name with its trailing "/"; "/" for the root and for a name without one.
    std::uint32_t DirOf(std::uint32_t name);
    std::string_view Dir(std::uint32_t dir) const { return dirs_.Text(dir); }

    // Of names that do not exist false, of the root true, else whether the type is not skipped.
    static bool Page_Counts(std::string_view name, std::string_view skipTypes);

private:
    const PageFact& WorkOut(std::int32_t pageId);

    const sitedb::PageList& pages_;
    visits::ShowParts parts_;
    std::string skipTypes_;
    std::string countTypes_;
    std::vector<PageFact> facts_;
    PageFact missing_{};
    TextTable names_{};
    TextTable dirs_{};
    std::vector<std::uint32_t> dirOfName_{};
};

}  // namespace analysis
