#include "names/pagename.h"

#include "core/text.h"
#include "core/utf8.h"
#include "names/url.h"
#include "names/urlcode.h"

namespace names {
namespace {

// Makes a whole URL of a bare path, so that one parser serves all names. The host can't be registered.
constexpr std::string_view kDummyHostPrefix = "http://www.page.invalid";

void DropProtocol(std::string_view& name) {
    for (const std::string_view protocol : {std::string_view("http://"), std::string_view("https://")}) {
        if (!name.starts_with(protocol)) continue;
        name.remove_prefix(protocol.size());
        return;
    }
}

// Only a www. host is taken off. Any other stays as the first folder of the path.
void DropWwwHost(std::string_view& name) {
    if (!name.starts_with("www.")) return;
    const std::size_t slash = name.find('/');
    name.remove_prefix(slash == std::string_view::npos ? name.size() : slash + 1);
}

}  // namespace

std::string Page_NameStd(std::string_view name) {
    if (name.starts_with('/')) name.remove_prefix(1);
    DropProtocol(name);
    DropWwwHost(name);
    // Decoding comes before the double slashes: an escaped slash counts as one.
    std::string standard = core::ToUtf8(core::fReplace(URL_Decode(name), "//", "/"));
    standard = core::fLeft(standard, kPageNameWidth, "..").text;
    for (int i = 0; i < 2 && standard.ends_with('/'); ++i) standard.pop_back();
    return standard;
}

std::string Page_StripParts(std::string_view name, StripParts remove) {
    std::string url;
    bool dummy = false;
    if (name.starts_with("http")) {
        url = name;
    } else if (name.starts_with("www.")) {
        url.append("http://").append(name);
    } else {
        dummy = true;
        url.append(kDummyHostPrefix);
        if (!name.starts_with('/')) url += '/';
        url.append(name);
    }
    UrlParts parts = URL_Parse(url);
    if (remove.fragment) parts.fragment = {};
    if (remove.query) parts.query = {};
    std::string joined = URL_Join(parts);
    return dummy ? joined.substr(kDummyHostPrefix.size()) : joined;
}

}  // namespace names
