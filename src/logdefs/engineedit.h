#pragma once

#include <optional>
#include <string>
#include <vector>

#include "logdefs/enginepreview.h"

namespace logdefs {

// A definition that is edited within its list.
struct SEDefEditing {
    const std::vector<std::string>& list;
    std::optional<std::size_t> at{};  // its place in the list; nothing: a new one
    SEDef start{};
};
// Shows, while it is edited, what the definition finds. Nothing: cancelled.
std::optional<SEDef> SEDefEditOne(const dialogs::Desk& desk, const TrialReferrers& trial, const SEDefEditing& editing);

// The list with the definition in its place, general ones before specific ones.
std::vector<std::string> SEDefsWith(const std::vector<std::string>& list, std::optional<std::size_t> at,
                                    const SEDef& definition);

inline constexpr std::string_view kSEDefsTitle = "Definitions of SE Referrer Strings - used to extract search term.";

}  // namespace logdefs
