#pragma once

#include <string>
#include <string_view>

namespace names {

inline constexpr std::string_view kRootName = "ROOT";
inline constexpr std::string_view kNoPageName = ".. Page does not exist ..";
inline constexpr int kPageNameWidth = 253;

// The name under which a page is stored and compared. The site's root in all its spellings is "".
std::string Page_NameStd(std::string_view name);

struct StripParts {
    bool fragment = false;
    bool query = false;
};
// The name without the chosen parts. A bare path comes back with a leading "/".
std::string Page_StripParts(std::string_view name, StripParts remove);

}  // namespace names
