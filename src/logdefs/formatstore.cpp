#include "logdefs/formatstore.h"

#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/text.h"

namespace logdefs {
namespace {

constexpr std::string_view kSpecs = "DefsCDS";
constexpr std::string_view kNames = "AcD";

std::optional<std::string> Refusal(std::string_view name, const std::vector<std::string>& specs) {
    if (core::fTrim(name).empty()) return "A log format needs a name.";
    if (name.find('|') != std::string_view::npos || name.find(']') != std::string_view::npos)
        return "The name of a log format cannot contain | or ].";
    if (core::fEquals(core::fTrim(name), "Main", core::Case::Ignore))
        return "\"Main\" cannot be the name of a log format.";
    if (specs.empty()) return "A log format needs at least one specification.";
    for (const std::string& spec : specs) {
        if (spec.find('|') != std::string::npos)
            return "A specification cannot contain |, which parts the specifications of a format: " + spec;
        const LogFormat compiled({0, {"", spec}});
        if (!compiled.Warnings().empty()) return compiled.Warnings().front();
    }
    return std::nullopt;
}

}  // namespace

core::StrArray LogFmtSpecs(core::IniStore& ini, std::string_view name, const std::string& file) {
    return core::CDSSplitPlain(ini.IniGet(name, kSpecs, file), 0);
}

LogFormatLoaded LogFmtLoad(core::IniStore& ini, std::string_view name, const std::string& file) {
    LogFormatLoaded loaded;
    if (name.empty()) return loaded;
    loaded.format = LogFormat(LogFmtSpecs(ini, name, file));
    loaded.found = !loaded.format.Empty();
    return loaded;
}

std::vector<std::string> LogFmtNames(core::IniStore& ini, const std::string& file) {
    std::vector<std::string> names;
    const core::StrArray list = core::CDSSplitPlain(ini.IniGet("Main", kNames, file));
    for (const std::string& name : list.Items())
        if (!core::fTrim(name).empty()) names.push_back(name);
    return names;
}

std::optional<std::string> LogFmtStore(core::IniStore& ini, std::string_view name,
                                       const std::vector<std::string>& specs, const std::string& file) {
    if (auto refusal = Refusal(name, specs)) return refusal;
    std::string stored;  // item 0 stays empty: the list begins with the delimiter
    for (const std::string& spec : specs) stored.append("|").append(spec);
    if (!ini.IniPut(name, kSpecs, stored, file)) return "The log format could not be written to " + file;
    const std::string names = ini.IniGet("Main", kNames, file);
    const core::CDSAdded added = core::CDSAdd(names, name, {}, 2);
    if (added.added && !ini.IniPutWhole("Main", kNames, added.list, file))
        return "The log format could not be written to " + file;
    return std::nullopt;
}

}  // namespace logdefs
