#pragma once

#include "logdefs/editing.h"

// The screens on which the definitions of search engines are maintained.
namespace logdefs {

// The editor of the definitions: the list of all, and behind "Change Se&quence" the two lists in their order of match.
// `check` leads to the check against a log file. True when something was stored.
bool SEDefsEdit(const Editing& editing, const LeadOut& check = {});

}  // namespace logdefs
