#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/results.h"

namespace core {
struct Env;
}
namespace sitedb {
class Site;
}

// The analysis of visits: one pass in order of time, everything counted in memory.
namespace analysis {

struct AnalysisOutcome {
    std::unique_ptr<SrchTrmData> results{};  // none: stopped, or nothing to analyse
    bool stopped = false;
    std::vector<std::string> messages{};  // also told through env.user
};

// Reads the visits of the range once; no field must be listed that HasField denies.
AnalysisOutcome CVNA_VisitsAnalyse(core::Env& env, sitedb::Site& site, const AnalysisRequest& request);

}  // namespace analysis
