#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace core {

// A name of the template's folder that does not exist yet. `result` begins with "**Error." on failure.
struct FreeName {
    bool ok = false;
    std::string result{};
};
struct FreeNameRules {
    bool longName = true;  // numbers behind the name ("a.0.ini", "a.1.ini"), else 8 characters that step
};
FreeName MakeFreeName(std::string_view nativeTemplate, const FreeNameRules& rules = {});

// The text with its last character one up ("name09" gives "name0a"); behind "z" the character to its left steps
// and the last ones begin at "0" again. Nothing when no character can step.
std::optional<std::string> NextFreeText(std::string_view text);

}  // namespace core
