#include "core/freename.h"

#include <sys/stat.h>

#include <cerrno>

#include "core/fileio.h"
#include "core/files.h"
#include "core/utf8.h"

namespace core {

namespace {

constexpr std::size_t kMostFolder = 224;
constexpr std::size_t kMostPath = 232;
constexpr std::size_t kShortName = 8;
constexpr long kMostTries = 1'000'000;

FreeName Error(std::string_view text) { return {false, "**Error. " + std::string(text)}; }

// A name is free when nothing stands there, not even a link that leads nowhere.
bool IsFree(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) != 0 && errno == ENOENT;
}

char Next(char c) {
    if ((c >= '0' && c <= '8') || (c >= 'a' && c <= 'y') || (c >= 'A' && c <= 'Y')) return static_cast<char>(c + 1);
    return c == '9' ? 'a' : '\0';
}

struct Pieces {
    std::string folder{};
    std::string name{};
    std::string type{};  // with its point
};

// "a.12" goes on from 12, anything else begins at 0.
FreeName LongName(const Pieces& pieces) {
    std::string stem = pieces.name;
    long number = 0;
    const std::string digits = fTypeOf(stem);
    constexpr std::size_t kMostDigits = 9;
    if (!digits.empty() && digits.size() <= kMostDigits &&
        digits.find_first_not_of("0123456789") == std::string::npos) {
        number = std::stol(digits);
        stem.resize(stem.size() - digits.size() - 1);
    }
    for (const long end = number + kMostTries; number < end; ++number) {
        std::string path = pieces.folder + stem + "." + std::to_string(number) + pieces.type;
        if (path.size() > kMostPath) return Error("File name is too long. Use a shorter name.");
        if (IsFree(path)) return {true, std::move(path)};
    }
    return Error("All filenames used in this dir.");
}

FreeName ShortName(const Pieces& pieces) {
    std::string name(CutUtf8(pieces.name, kShortName));
    name.append(kShortName - name.size(), '0');
    for (std::optional<std::string> next = name; next; next = NextFreeText(*next)) {
        std::string path = pieces.folder + *next + pieces.type;
        if (IsFree(path)) return {true, std::move(path)};
    }
    return Error("All filenames used in this dir.");
}

}  // namespace

std::optional<std::string> NextFreeText(std::string_view text) {
    std::string next(text);
    for (std::size_t at = next.size(); at-- > 0;) {
        const char c = next[at];
        if (const char stepped = Next(c)) {
            next[at] = stepped;
            return next;
        }
        if (c == 'z' || c == 'Z') next[at] = '0';
    }
    return {};
}

FreeName MakeFreeName(std::string_view nativeTemplate, const FreeNameRules& rules) {
    const std::string type = fTypeOf(nativeTemplate);
    const Pieces pieces{fPathOf(nativeTemplate), fBaseOf(nativeTemplate), type.empty() ? type : "." + type};
    const std::string shown = fileio::Shown(nativeTemplate);
    if (!pieces.folder.starts_with('/') || nativeTemplate.find('\0') != std::string_view::npos)
        return Error("Path and file name is not in a valid format: " + shown);
    if (pieces.name.empty()) return Error("Must include file name after dir spec.");
    if (!IsDir(pieces.folder)) return Error("Directory does not exist: " + shown);
    if (pieces.folder.size() > kMostFolder) return Error("Folder name is too long. Use a shorter one.");
    return rules.longName ? LongName(pieces) : ShortName(pieces);
}

}  // namespace core
