#include "names/url.h"

#include <algorithm>

namespace names {
namespace {

bool IsSchemeChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' ||
           c == '.';
}

// The text behind the first `mark`, taken off `rest` together with it.
std::string_view CutBehind(std::string_view& rest, char mark) {
    const std::size_t at = rest.find(mark);
    if (at == std::string_view::npos) return {};
    const std::string_view behind = rest.substr(at + 1);
    rest = rest.substr(0, at);
    return behind;
}

std::string_view TakeScheme(std::string_view& rest) {
    const std::size_t at = rest.find(':');
    if (at == std::string_view::npos || at == 0) return {};
    const std::string_view scheme = rest.substr(0, at);
    if (!std::ranges::all_of(scheme, IsSchemeChar)) return {};
    rest.remove_prefix(at + 1);
    return scheme;
}

std::string_view TakeNet(std::string_view& rest) {
    if (!rest.starts_with("//")) return {};
    rest.remove_prefix(2);
    const std::size_t end = std::min(rest.find_first_of("/?;#"), rest.size());
    const std::string_view net = rest.substr(0, end);
    rest.remove_prefix(end);
    return net;
}

void AppendPart(std::string& out, std::string_view separator, std::string_view part) {
    if (!part.empty()) out.append(separator).append(part);
}

}  // namespace

UrlParts URL_Parse(std::string_view url) {
    UrlParts parts;
    parts.fragment = CutBehind(url, '#');
    parts.scheme = TakeScheme(url);
    parts.net = TakeNet(url);
    parts.query = CutBehind(url, '?');
    parts.params = CutBehind(url, ';');
    parts.path = url;
    return parts;
}

std::string URL_Join(const UrlParts& parts) {
    std::string out(parts.scheme);
    if (!parts.scheme.empty()) out += ':';
    AppendPart(out, "//", parts.net);
    out.append(parts.path);
    AppendPart(out, ";", parts.params);
    AppendPart(out, "?", parts.query);
    AppendPart(out, "#", parts.fragment);
    return out;
}

}  // namespace names
