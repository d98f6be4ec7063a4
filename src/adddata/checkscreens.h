#pragma once

#include "adddata/adddesk.h"

// The checks of definitions against a log file on screen. What the last read found stays in AddDesk::memory.
namespace adddata {

// What "Back to Definitions" does: it opens the editor, or goes back to the one that the check was opened from.
enum class OpenedFrom { Menu, Editor };

void CheckReferrersOnScreen(const AddDesk& at, OpenedFrom from = OpenedFrom::Menu);
void CheckPagesOnScreen(const AddDesk& at, OpenedFrom from = OpenedFrom::Menu);
void CheckRobotsOnScreen(const AddDesk& at, OpenedFrom from = OpenedFrom::Menu);

}  // namespace adddata
