#pragma once

#include <string>
#include <string_view>

namespace names {

inline constexpr std::string_view kNotSearchEngine = " .. NOT SEARCH ENGINE .. ";
inline constexpr std::string_view kUnknownReferrer = "UNKNOWN referrer";

// The standard form of a search term. `term` itself is decoded and lower-cased but not trimmed: where the
// two differ the visit keeps both.
std::string ST_Std(std::string& term);

}  // namespace names
