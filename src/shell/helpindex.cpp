#include "shell/helpindex.h"

#include "core/files.h"
#include "core/text.h"

namespace shell {

HelpPlace HelpPlaceOf(const std::string& sharedFolder, std::string_view id) {
    const core::ReadText index = core::ReadFile(sharedFolder + "/help/index.txt");
    std::string_view rest = index.text;
    while (!rest.empty()) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (!core::fEquals(core::fBefore(line, " "), id, core::Case::Ignore)) continue;
        const std::string_view place = core::fTrim(core::fAfter(line, " "));
        if (!place.empty()) return {std::string(core::fBefore(place, "#")), std::string(core::fAfter(place, "#"))};
    }
    return {std::string(kHelpStart), {}};
}

}  // namespace shell
