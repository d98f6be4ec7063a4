#pragma once

#include <string>
#include <string_view>

namespace shell {

// Where the help on a command or dialog stands.
struct HelpPlace {
    std::string page{};
    std::string anchor{};
};
inline constexpr std::string_view kHelpStart = "helpcont.htm";

// From <shared>/help/index.txt, lines "RT reports.htm#RT". An id that is not listed gets the contents.
HelpPlace HelpPlaceOf(const std::string& sharedFolder, std::string_view id);

}  // namespace shell
