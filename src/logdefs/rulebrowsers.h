#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "logdefs/rule.h"

// User agents of people's browsers, as far as robot filters must know them.
namespace logdefs {

// True when a rule "Starts with" on the user agent would take visitors for robots: it begins as browsers do and has no
// mark of a robot, or browsers of today begin with it.
bool LooksLikeBrowser(std::string_view agent);

// A browser of today that the rule takes; nothing for rules on other fields.
std::optional<std::string> BrowserTaken(const StoredRule& stored);

}  // namespace logdefs
