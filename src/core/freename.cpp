#include "core/freename.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "core/fileio.h"
#include "core/files.h"
#include "core/inistore.h"
#include "core/paths.h"
#include "core/utf8.h"

namespace core {

namespace {

constexpr std::size_t kMostFolder = 224;
constexpr std::size_t kMostPath = 232;
constexpr std::size_t kShortName = 8;
constexpr long kMostTries = 1'000'000;
constexpr std::string_view kAllUsed = "All filenames used in this dir.";

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

// One search: where it began, how far it is.
class Search {
public:
    Search(const Pieces& pieces, const FreeNameRules& rules)
        : pieces_(pieces), rules_(rules), memory_(pieces.folder + std::string(kFreeNameFile)) {}

    FreeName Long();
    FreeName Short();

private:
    std::string Path(std::string_view stem) const { return pieces_.folder + std::string(stem) + pieces_.type; }
    std::string Entry() const { return pieces_.name + pieces_.type; }
    // The kept name without its type, "" when none is kept.
    std::string Kept() const {
        if (!rules_.saved) return {};
        const std::string kept = rules_.saved->IniGet("Main", Entry(), memory_, Missing::Marker);
        return kept == kNotFound || !kept.ends_with(pieces_.type) ? std::string()
                                                                  : kept.substr(0, kept.size() - pieces_.type.size());
    }
    FreeName Found(std::string_view stem) const {
        // Only a help for the next search: a failed write loses nothing.
        if (rules_.saved && tries_ > rules_.triesBeforeSave)
            rules_.saved->IniPut("Main", Entry(), std::string(stem) + pieces_.type, memory_, OnFail::Ignore);
        return {true, Path(stem)};
    }

    const Pieces& pieces_;
    const FreeNameRules& rules_;
    std::string memory_;
    long tries_ = 0;
};

// The digits behind the last point, and what stands before it.
struct Numbered {
    std::string stem{};
    std::optional<long> number{};
};
Numbered SplitNumber(const std::string& name) {
    constexpr std::size_t kMostDigits = 9;
    const std::string digits = fTypeOf(name);
    if (digits.empty() || digits.size() > kMostDigits || digits.find_first_not_of("0123456789") != std::string::npos)
        return {name, {}};
    return {name.substr(0, name.size() - digits.size() - 1), std::stol(digits)};
}

// "a.12" goes on from 12, anything else begins at 0.
FreeName Search::Long() {
    const Numbered begin = SplitNumber(pieces_.name);
    long number = begin.number.value_or(0);
    if (const Numbered kept = SplitNumber(Kept()); kept.number && kept.stem == begin.stem)
        number = std::max(number, *kept.number);
    for (const long end = number + kMostTries; number < end; ++number, ++tries_) {
        const std::string stem = begin.stem + "." + std::to_string(number);
        if (Path(stem).size() > kMostPath) return Error("File name is too long. Use a shorter name.");
        if (IsFree(Path(stem))) return Found(stem);
    }
    return Error(kAllUsed);
}

FreeName Search::Short() {
    std::string name(CutUtf8(pieces_.name, kShortName));
    name.append(kShortName - name.size(), '0');
    if (const std::string kept = Kept(); kept.size() == kShortName && kept.find('/') == std::string::npos) name = kept;
    for (std::optional<std::string> next = name; next; next = NextFreeText(*next, rules_.fixed), ++tries_)
        if (IsFree(Path(*next))) return Found(*next);
    return Error(kAllUsed);
}

}  // namespace

std::optional<std::string> NextFreeText(std::string_view text, const std::vector<bool>& fixed) {
    std::string next(text);
    for (std::size_t at = next.size(); at-- > 0;) {
        const char c = next[at];
        if (at < fixed.size() && fixed[at]) continue;
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
    Search search(pieces, rules);
    return rules.longName ? search.Long() : search.Short();
}

FreeName MakeFreeName(const Paths& paths, std::string_view pafnTemplate, const FreeNameRules& rules) {
    if (const NameCheck check = CheckPAFN(pafnTemplate, paths); !check.ok) return Error(check.error);
    return MakeFreeName(paths.ToNative(pafnTemplate), rules);
}

}  // namespace core
