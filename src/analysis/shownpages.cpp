#include "analysis/shownpages.h"

#include "analysis/options.h"
#include "core/files.h"
#include "names/pagename.h"
#include "sitedb/pagelist.h"

namespace analysis {
namespace {

constexpr std::uint32_t kUnknown = 0xffffffff;

}  // namespace

ShownPages::ShownPages(const sitedb::PageList& pages, visits::ShowParts parts, std::string skipTypes,
                       std::string countTypes)
    : pages_(pages),
      parts_(parts),
      skipTypes_(std::move(skipTypes)),
      countTypes_(std::move(countTypes)),
      facts_(static_cast<std::size_t>(pages.UpperBound()) + 1) {}

bool ShownPages::Page_Counts(std::string_view name, std::string_view skipTypes) {
    if (name == names::kNoPageName) return false;
    return name == names::kRootName || !HasType(skipTypes, core::fTypeOf(name));
}

const PageFact& ShownPages::WorkOut(std::int32_t pageId) {
    const auto at = static_cast<std::uint32_t>(pageId);
    PageFact& fact = at < facts_.size() ? facts_[at] : missing_;
    if (fact.known) return fact;
    const std::string name = visits::Page_ShowName(pages_, pageId, parts_);
    fact.name = names_.FindOrAdd(name);
    fact.counts = Page_Counts(name, skipTypes_);
    fact.forAverage = HasType(countTypes_, core::fTypeOf(name));
    fact.known = true;
    return fact;
}

std::uint32_t ShownPages::DirOf(std::uint32_t name) {
    if (name >= dirOfName_.size()) dirOfName_.resize(names_.Size(), kUnknown);
    if (dirOfName_[name] == kUnknown) {
        const std::string dir = core::fPathOf(Name(name));
        dirOfName_[name] = dirs_.FindOrAdd(dir.empty() ? "/" : dir);
    }
    return dirOfName_[name];
}

}  // namespace analysis
