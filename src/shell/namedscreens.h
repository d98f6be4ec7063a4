#pragma once

#include <string_view>

#include "dialogs/named.h"

// Dialogs of screens.ini that the menu opens by name.
namespace shell {

// Tells that a dialog of screens.ini cannot be shown, which file to mend and how; false when it can. `complete` is
// false when a control that the program reads is missing.
bool TellDamaged(const dialogs::Desk& desk, dialogs::NamedDialog& dialog, std::string_view name, bool complete = true);

// Shows an option dialog until OK or Cancel; true when its values were stored.
bool ShowOptionDialog(const dialogs::Desk& desk, const dialogs::NamedBox& box);

}  // namespace shell
