#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/inicache.h"
#include "core/inilong.h"
#include "core/inioverflow.h"
#include "core/inistore.h"

// The state behind IniStore, for its own sources only.
namespace core {

struct IniStore::Impl {
    User& user;
    std::unordered_map<std::string, std::string> sectionFiles{};  // folded section or section/entry -> path
    IniCache cache{};
    IniOverflow overflow{cache};
    Missing standing = Missing::Ask;
    bool writeFailed = false;
    bool suspended = false;

    std::string Resolve(std::string_view section, std::string_view entry, std::string_view file) const;
    std::optional<std::string> Raw(const std::string& path, std::string_view section, std::string_view entry);
    std::optional<std::string> Find(std::string_view section, std::string_view entry, std::string_view file,
                                    Missing mode);
    std::string ReadParts(const std::string& path, std::string_view section, std::string_view name, double last,
                          Missing mode);
    Missing TakeMode(Missing mode);
    std::string Missed(std::string_view section, std::string_view entry, const std::string& path, Missing mode);

    double OldParts(const std::string& path, std::string_view section, std::string_view name);
    bool Apply(const std::string& path, std::string_view section, const IniChanges& changes);
    bool Write(std::string_view section, std::string_view entry, std::string_view value, std::string_view file,
               OnFail rc, LastChar last);
    bool Check(bool written, const std::string& action, OnFail rc);
};

}  // namespace core
