#pragma once

#include <string>
#include <string_view>

#include "sitedb/analysisrows.h"

// What a visit is called in reports.
namespace visits {

// A host that never counts as the one that referred a visit. No real site can have it.
inline constexpr std::string_view kIgnoredHost = "referrer.invalid";

// The term, or the label of a visit without one. The view lives as long as the row.
std::string_view Visit_STLabel(const sitedb::AnalysisRow& visit);
// The engine, or the same label.
std::string_view Visit_SELabel(const sitedb::AnalysisRow& visit);

// The first outside host in the referrers of a visit's lines; "" when there is none.
std::string Visit_RefrHost(std::int32_t visitId, sitedb::VisitReferrers& referrers);

// The stored referrer, else the engine, else the host that referred, else a fixed text. Without extra data there
// are no referrers to look at: nullptr.
std::string Visit_RefrLabel(const sitedb::AnalysisRow& visit, sitedb::VisitReferrers* referrers);

}  // namespace visits
