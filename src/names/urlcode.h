#pragma once

#include <string>
#include <string_view>

namespace names {

// Replaces percent escapes, each by one byte; what comes out is not looked at again ("%2541" gives "%41").
// Escapes whose two characters stand in `keep` (case ignored) stay. Two characters that are not both
// hex digits give a blank. Fewer than two characters behind a "%" end the work.
std::string fPercentDecode(std::string_view text, std::string_view keep = {});

// The same under the name that page and term rules use.
inline std::string URL_Decode(std::string_view text, std::string_view skip = {}) { return fPercentDecode(text, skip); }

}  // namespace names
