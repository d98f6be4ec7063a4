#pragma once

#include <string>

#include "adddata/checks.h"
#include "dialogs/showmb.h"

// The lists of what a check of definitions found.
namespace adddata {

void ListReferrers(const dialogs::Desk& desk, const ReferrerCheck& check);
void ListUndefined(const dialogs::Desk& desk, const ReferrerCheck& check);
void ListUnknown(const dialogs::Desk& desk, const ReferrerCheck& check);

enum class PageChoice { All, Skipped, Accepted, New };
void ListPages(const dialogs::Desk& desk, const PageCheck& check, PageChoice choice);

void ListAgents(const dialogs::Desk& desk, const RobotCheck& check);
void ListRejected(const dialogs::Desk& desk, const RobotCheck& check);

}  // namespace adddata
