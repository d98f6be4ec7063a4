#pragma once

#include "core/inidraft.h"
#include "dialogs/showmb.h"

namespace dialogs {

// The end of an editor that was left with OK. Asks when another program changed a file meanwhile, and tells when one
// cannot be written. False: the person wants to go on editing, and nothing is lost.
bool SaveDraft(const Desk& desk, core::IniDraft& draft);

// The end of an editor that was left with Cancel: asks when there is something to lose. False: go on editing.
bool LeaveDraft(const Desk& desk, const core::IniDraft& draft);

}  // namespace dialogs
