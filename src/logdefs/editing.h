#pragma once

#include <functional>
#include <string>

#include "dialogs/showmb.h"
#include "logdefs/engines.h"
#include "logdefs/filter.h"
#include "logdefs/sample.h"

namespace core {
class Clock;
class Progress;
}  // namespace core

namespace logdefs {

// What the editors of this folder work with. All that it refers to must outlive them.
struct Editing {
    const dialogs::Desk& desk;
    core::Progress& progress;
    const core::Clock& clock;
    std::string formats{};  // logfmts.ini
    EngineFiles engines{};
    FilterFiles filters{};
    std::string siteName{};
    TrialLog trial{};  // on which definitions show their effect
};

// What a button that leads out of an editor does ("Check vs. log file"); empty: the editor has no such button.
using LeadOut = std::function<void()>;

}  // namespace logdefs
