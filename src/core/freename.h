#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace core {

class IniStore;
class Paths;

// A name of the template's folder that does not exist yet. `result` begins with "**Error. " on failure.
struct FreeName {
    bool ok = false;
    std::string result{};
};
struct FreeNameRules {
    bool longName = true;       // numbers behind the name ("a.0.ini", "a.1.ini"), else 8 characters that step
    std::vector<bool> fixed{};  // positions of the 8 characters that never change
    // After so many tries the last name is kept in kFreeNameFile of the folder, and the next search begins there.
    IniStore* saved = nullptr;
    long triesBeforeSave = 100;
};
inline constexpr std::string_view kFreeNameFile = "~~~FN_altPAFN.ini";

FreeName MakeFreeName(std::string_view nativeTemplate, const FreeNameRules& rules = {});
// A stored or native template, checked first.
FreeName MakeFreeName(const Paths& paths, std::string_view pafnTemplate, const FreeNameRules& rules = {});

// The text with its last character one up ("name09" gives "name0a"); behind "z" the character to its left steps
// and the last ones begin at "0" again. Nothing when no character can step.
std::optional<std::string> NextFreeText(std::string_view text, const std::vector<bool>& fixed = {});

}  // namespace core
