#include "sitedb/pagelist.h"

#include "sitedb/storeerror.h"

namespace sitedb {
namespace {

// Far above any site; a row number beyond it can only come from a damaged file.
constexpr std::int64_t kMaxPages = 100'000'000;
constexpr std::int64_t kMaxGap = 1'000'000;

}  // namespace

void PageList::Append(std::string name) {
    names_.push_back(std::move(name));
    ids_.try_emplace(names_.back(), UpperBound());
}

void PageList::Load(Database& db) {
    ids_.clear();
    raw_.Clear();
    names_.assign(1, std::string());
    Statement query = db.Prepare("SELECT PageID, Filename FROM page ORDER BY PageID");
    while (query.Step()) {
        const std::int64_t id = query.Int(0);
        if (id <= UpperBound() || id > kMaxPages || id > UpperBound() + kMaxGap)
            throw StoreError(core::errnum::kStore, 11,
                             "The page table is damaged (PageID " + std::to_string(id) + ").");
        while (UpperBound() + 1 < id) names_.emplace_back();
        Append(std::string(query.Text(1)));
    }
}

std::int32_t PageList::Page_FindOrAdd(std::string_view name, Add add, Database& db) {
    std::string standard = names::Page_NameStd(name);
    if (standard.empty()) return 0;
    const auto at = ids_.find(standard);
    if (at != ids_.end()) return at->second;
    if (add == Add::No) return -1;
    if (!insert_) insert_ = db.Prepare("INSERT INTO page (PageID, Filename) VALUES (?, ?)");
    const std::int32_t id = UpperBound() + 1;
    insert_.Bind(1, std::int64_t{id}).Bind(2, standard).Run();
    Append(std::move(standard));
    return id;
}

std::int32_t PageList::FindRaw(std::string_view rawName, names::StripParts remove, Add add, Database& db) {
    if (const std::int32_t* known = raw_.Find(rawName)) return *known;
    const std::int32_t id = Page_FindOrAdd(names::Page_StripParts(rawName, remove), add, db);
    if (id >= 0) raw_.Put(rawName, id);
    return id;
}

std::string_view PageList::Page_Name(std::int64_t pageId) const {
    if (pageId < 0 || pageId > UpperBound()) return {};
    return names_[static_cast<std::size_t>(pageId)];
}

void PageList::CutBack(std::int32_t upperBound) {
    raw_.Clear();
    while (UpperBound() > upperBound && UpperBound() > 0) {
        const auto at = ids_.find(names_.back());
        if (at != ids_.end() && at->second == UpperBound()) ids_.erase(at);
        names_.pop_back();
    }
}

}  // namespace sitedb
