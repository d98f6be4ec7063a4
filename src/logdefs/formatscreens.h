#pragma once

#include <optional>
#include <string>

#include "logdefs/editing.h"

// Log formats on screen. Nothing is stored before the list is left with OK.
namespace logdefs {

// The list of log formats: new, edit, copy, remove. True when something was stored.
bool LogFmtEdit(const Editing& editing);

// The specifications of one format; "" asks for a new name. The name that was stored, or nothing.
std::optional<std::string> LogFmtEditOne(const Editing& editing, const std::string& name);

}  // namespace logdefs
