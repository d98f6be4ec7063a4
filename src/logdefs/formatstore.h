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

// Stores a format and adds its name. A text that says what is wrong, or nothing when it is stored.
std::optional<std::string> LogFmtStore(core::IniStore& ini, std::string_view name,
                                       const std::vector<std::string>& specs, const std::string& file);

}  // namespace logdefs
