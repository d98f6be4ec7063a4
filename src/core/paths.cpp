#include "core/paths.h"

#include <algorithm>

#include "core/fileio.h"
#include "core/namechars.h"
#include "core/text.h"

namespace core {

namespace {

constexpr char kRootDrive = 'Z';
constexpr char kHomeDrive = 'C';

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// The rest of `path` below `folder` without a leading "/", or no value when it is not below it.
bool Below(std::string_view path, std::string_view folder, std::string_view& rest) {
    if (folder.empty() || !path.starts_with(folder)) return false;
    path.remove_prefix(folder.size());
    if (!path.empty() && path.front() != '/') return false;
    rest = path.substr(std::min<std::size_t>(path.size(), 1));
    return true;
}

// "//" and "/./" are other spellings of "/"; the stored form knows neither.
std::string Tidy(std::string_view native) {
    std::string tidy;
    for (std::size_t at = 0; at < native.size();) {
        const std::size_t end = std::min(native.find('/', at), native.size());
        const std::string_view part = native.substr(at, end - at);
        if (!part.empty() && part != ".") tidy.append("/").append(part);
        at = end + 1;
    }
    if (tidy.empty() || native.back() == '/') tidy += '/';
    return tidy;
}

}  // namespace

std::string Paths::ToNative(std::string_view text) const {
    if (text.find('\0') != std::string_view::npos) return {};
    if (text.starts_with('/')) return std::string(text);
    if (text.size() < 2 || text[1] != ':') return {};
    std::string rest = fReplace(text.substr(2), "\\", "/");
    if (!rest.empty() && rest.front() != '/') return {};
    switch (Upper(text[0])) {
        case kRootDrive:
            return rest.empty() ? "/" : rest;
        case kHomeDrive:
            return rest.size() <= 1 ? home_ : home_ + rest;
        default:
            return {};
    }
}

Paths::Stored Paths::ToStored(std::string_view native) const {
    if (!native.starts_with('/'))
        return {{false, "Name >>" + fileio::Shown(native) + "<< is no full path. Give it from \"/\" on."}, {}};
    const std::string tidy = Tidy(native);
    std::string_view rest = std::string_view(tidy).substr(1);
    const bool inHome = Below(tidy, home_, rest);
    std::string bad;
    for (const char c : rest)
        if (c != '/' && !IsNameChar(c, false) && bad.find(c) == std::string::npos) bad += c;
    if (!bad.empty())
        return {
            {false,
             "Name >>" + fileio::Shown(native) + "<< cannot be used: it holds " + fileio::Shown(bad) +
                 " which names here may not hold. Rename it, or make a link to it under another name, and use that."},
            {}};
    return {{}, std::string(1, inHome ? kHomeDrive : kRootDrive) + ":\\" + fReplace(rest, "/", "\\")};
}

}  // namespace core
