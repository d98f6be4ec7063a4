#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "logdefs/editing.h"
#include "logdefs/enginedefs.h"

// What a definition of an engine does to the first lines of a log.
namespace logdefs {

struct TrialReferrer {
    std::string text{};
    std::int64_t lines = 0;
};
struct TrialReferrers {
    std::string problem{};   // why there are none
    std::int64_t lines = 0;  // of the log that were looked at
    std::vector<TrialReferrer> referrers{};
};
TrialReferrers ReadTrialReferrers(const Editing& editing);

struct EngineEffect {
    std::string text{};    // the engine and its counts
    dialogs::Rows rows{};  // term, lines, referrer; those with a term first
};
EngineEffect EffectOf(const SEDef& definition, const TrialReferrers& trial);

// The engine and the term of a referrer, by one definition and by the whole list.
std::string TriedReferrer(const std::string& referrer, const SEDef& definition,
                          const std::vector<std::string>& wholeList);

}  // namespace logdefs
