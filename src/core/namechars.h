#pragma once

#include <string_view>

namespace core {

// Characters that a part of a stored name may hold. Codes above 127 always pass; ":" and "\" are never
// part of a name. The blank has a rule of its own in strict names.
constexpr bool IsNameChar(char c, bool strict) {
    constexpr std::string_view kNever{"\0\"*/:<>?\\|", 10};
    constexpr std::string_view kNeverStrict = "+,;=[]";
    if (kNever.find(c) != std::string_view::npos) return false;
    const auto code = static_cast<unsigned char>(c);
    return !strict || (code >= 33 && code != 127 && kNeverStrict.find(c) == std::string_view::npos);
}
static_assert(!IsNameChar('\0', false) && IsNameChar(' ', false) && !IsNameChar(' ', true));
static_assert(IsNameChar('|' + 1, true) && !IsNameChar('|', false));

}  // namespace core
