#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "logdefs/engines.h"
#include "sitedb/site.h"

namespace core {
struct Env;
}

namespace visits {

struct VisitsOutcome {
    bool done = false;       // false: stopped or failed; the lines wait, the mark stands
    bool cancelled = false;  // the user stopped it
    std::string error{};     // of the store
    std::int64_t lines = 0;  // handled
    std::int64_t visitsMade = 0;
    std::int64_t visitsContinued = 0;
    std::int64_t visitsErased = 0;  // without a term, where the site keeps none
    std::int64_t linesIgnored = 0;  // over the limit
    bool compacted = false;
    std::vector<std::string> messages{};
    std::map<std::string, std::int64_t> foundTerms{};  // "engine|yyyymmdd" -> lines
    double buildSeconds = 0;
    double compactSeconds = 0;
};

// Turns all lines without a visit into visits, erases what the site does not keep, compacts the file and clears the
// mark of the unfinished add. All of it is one transaction: a visit is on disk complete or not at all.
VisitsOutcome VisitsAdd(core::Env& env, sitedb::Site& site, const logdefs::SearchEngines& engines);

}  // namespace visits
