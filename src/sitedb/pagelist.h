#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

#include "logdefs/memo.h"
#include "names/pagename.h"
#include "sitedb/sqlite.h"

namespace sitedb {

enum class Add { No, Yes };

// All page names of a site, in memory, indexed by PageID. 0 is the site's root: an empty name without a row.
class PageList {
public:
    // Reads the table. A PageID that cannot be raises the store's error: the file is damaged.
    void Load(Database& db);

    // The PageID of the standardised name; -1 when it is absent and may not be added.
    std::int32_t Page_FindOrAdd(std::string_view name, Add add, Database& db);
    // The same for a raw requested name, less the parts that the site removes; remembers what it worked out.
    std::int32_t FindRaw(std::string_view rawName, names::StripParts remove, Add add, Database& db);

    // "" when out of range.
    std::string_view Page_Name(std::int64_t pageId) const;
    std::int32_t UpperBound() const { return static_cast<std::int32_t>(names_.size()) - 1; }

    // Forgets names above a bound: after a rollback the list goes back with the table.
    void CutBack(std::int32_t upperBound);
    // Releases the prepared statement, so that the database can be closed.
    void Release() { insert_ = Statement(); }

private:
    void Append(std::string name);

    std::deque<std::string> names_{1, std::string()};
    std::unordered_map<std::string_view, std::int32_t> ids_{};  // views into names_; the first of equal names wins
    logdefs::BoundedMemo<std::int32_t> raw_{};
    Statement insert_{};
};

}  // namespace sitedb
