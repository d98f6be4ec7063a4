#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "analysis/results.h"

namespace core {
struct Env;
}
namespace sitedb {
class Site;
}

// The visits that were counted for values of an analysis, found again by the same options.
namespace analysis {

struct VisitFacts {
    std::int32_t VisitID = 0;
    std::int64_t StartTimeStamp = 0;
    std::int64_t EndTimeStamp = 0;
    std::string address{};  // the first one
    std::string term{};     // as it was searched for; "" without one
    std::string engine{};
    std::string startPage{};   // as reports show it
    std::int32_t further = 0;  // further pages that count for the average
};
struct VisitsBehind {
    std::vector<VisitFacts> visits{};  // in order of time, the first `most` of them
    std::int64_t count = 0;            // of all
    bool stopped = false;
};
// Reads the visits of the analysis' range again, with the options that it was made with; each visit is listed once,
// whichever of the values it has.
VisitsBehind FindVisitsBehind(core::Env& env, sitedb::Site& site, const SrchTrmData& results,
                              std::span<const std::int32_t> indexes, std::size_t most = 10000);

// The log lines of a visit in order of time. Empty texts where the site does not keep them.
struct LineFacts {
    std::int64_t Timestamp = 0;
    std::string address{};
    std::string page{};  // stored name
    std::int32_t bytes = 0;
    std::int32_t repeated = 0;  // equal lines beside this one
    std::string referrer{}, userAgent{}, status{}, method{};
};
std::vector<LineFacts> LinesOfVisit(sitedb::Site& site, std::int32_t visitId);

}  // namespace analysis
