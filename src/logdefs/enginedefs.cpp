#include "logdefs/enginedefs.h"

#include <algorithm>

#include "core/text.h"
#include "core/utf8.h"

namespace logdefs {
namespace {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";

bool HasControl(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; });
}

std::string UrlFault(std::string_view url) {
    if (url.empty()) return "it has no URL specification; the pattern of the engine's pages comes first";
    if (url.find(' ') != std::string_view::npos)
        return "its URL specification holds a blank, which parts the pattern from the places of the term";
    for (std::size_t open = url.find('['); open != std::string_view::npos; open = url.find('[', open)) {
        const std::size_t close = url.find(']', open);
        if (close == std::string_view::npos) return "the [ at character " + std::to_string(open + 1) + " is not closed";
        open = close;
    }
    return {};
}

std::string PlacesFault(std::string_view places) {
    for (std::string_view rest = places; !rest.empty();) {
        const std::string_view item = core::fTrim(core::fBefore(rest, ","));
        if (item.starts_with("::") && core::fBefore(item.substr(2), "::").empty())
            return "\"" + std::string(item) + "\" has no text in front of the term";
        rest = rest.find(',') == std::string_view::npos ? std::string_view() : rest.substr(rest.find(',') + 1);
    }
    return {};
}

}  // namespace

void JudgeAsHttp(std::string& url) {
    if (core::LowerAscii(url.substr(0, kHttps.size())) == kHttps) url.erase(4, 1);
}

SEDef SEDefSplit(std::string_view definition) {
    const std::size_t blank = definition.find(' ');
    if (blank == std::string_view::npos) return {std::string(definition), {}};
    return {std::string(definition.substr(0, blank)), std::string(core::fTrim(definition.substr(blank)))};
}

bool SEDefIsGeneral(std::string_view definition) { return definition.substr(0, definition.find(' ')).ends_with("*/*"); }

std::string SEDefName(std::string_view definition) {
    std::string spec = core::LowerUtf8(definition.substr(0, definition.find(' ')));
    JudgeAsHttp(spec);
    std::string_view name = spec;
    const std::size_t http = name.find(kHttp);
    if (http != std::string_view::npos) name.remove_prefix(http + kHttp.size());
    if (name.starts_with("*.")) name.remove_prefix(2);
    return core::UpperAscii(name.substr(0, name.find('.')));
}

std::string SEDefFault(const SEDef& definition) {
    const std::string text = definition.Text();
    if (!core::IsUtf8(text)) return "it is no UTF-8 text";
    if (HasControl(text)) return "it holds a tab, a line end or another control character";
    if (text.find('|') != std::string::npos) return "it holds |, which parts the definitions of the list";
    std::string fault = UrlFault(definition.url);
    return fault.empty() ? PlacesFault(definition.places) : fault;
}

bool SEDefHasProtocol(const SEDef& definition) {
    // A name of its own may stand in front: "[http://name.]ttp://so.example/*".
    return core::LowerAscii(definition.url).find("http") != std::string::npos;
}

}  // namespace logdefs
