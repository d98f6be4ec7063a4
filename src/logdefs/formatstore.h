#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/strarray.h"
#include "logdefs/format.h"

namespace core {
class IniStore;
}

// Named log formats: one section for each in logfmts.ini.
namespace logdefs {

struct LogFormatLoaded {
    bool found = false;  // false: no such section or no specification in it
    LogFormat format{};
};
LogFormatLoaded LogFmtLoad(core::IniStore& ini, std::string_view name, const std::string& file);

// Names in stored order (entry AcD of section Main).
std::vector<std::string> LogFmtNames(core::IniStore& ini, const std::string& file);
// The specifications of a format, index 0 being the empty item in front.
core::StrArray LogFmtSpecs(core::IniStore& ini, std::string_view name, const std::string& file);

// What is wrong with a name (a specification), "" when nothing is. The name of a format that is stored is a good one.
std::string LogFmtNameProblem(core::IniStore& ini, std::string_view name, const std::string& file);
std::string LogFmtSpecProblem(std::string_view spec);

// Each gives a text that says what is wrong, or nothing when it is done.
// Stores a format, new or in the place of the one of that name, and adds its name.
std::optional<std::string> LogFmtStore(core::IniStore& ini, std::string_view name,
                                       const std::vector<std::string>& specs, const std::string& file);
std::optional<std::string> LogFmtErase(core::IniStore& ini, std::string_view name, const std::string& file);
// Puts the names, which are those of the store, into this order.
std::optional<std::string> LogFmtSequence(core::IniStore& ini, const std::vector<std::string>& names,
                                          const std::string& file);

}  // namespace logdefs
