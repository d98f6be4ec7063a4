#include "logdefs/formatstore.h"

#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"

namespace logdefs {
namespace {

constexpr std::string_view kSpecs = "DefsCDS";
constexpr std::string_view kNames = "AcD";

constexpr std::size_t kLongestName = 120;  // bytes

std::string NotWritten(const std::string& file) { return "The log formats could not be written to " + file; }

bool HasControl(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
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

std::string LogFmtNameProblem(core::IniStore& ini, std::string_view name, const std::string& file) {
    if (name.empty() || core::fTrim(name).size() != name.size())
        return "A log format needs a name without blanks at its ends.";
    if (name.size() > kLongestName)
        return "The name of a log format can have at most " + std::to_string(kLongestName) + " bytes.";
    if (HasControl(name) || name.find_first_of("|[]\"") != std::string_view::npos)
        return "The name of a log format cannot hold | [ ] \" or control characters: | parts the names in the list.";
    for (const std::string_view start : {"AltNo.", "SplitEntry."})
        if (core::fStartsWith(name, start, core::Case::Ignore))
            return "A name cannot begin with \"" + std::string(start) + "\".";
    const bool taken = core::fEquals(name, "Main", core::Case::Ignore) ||
                       core::fEquals(name, "Filters", core::Case::Ignore) ||
                       (!ini.IniHas(name, kSpecs, file) && !ini.IniEntries(name, file).empty());
    return taken ? "\"" + std::string(name) + "\" is taken. Choose another name." : std::string();
}

std::string LogFmtSpecProblem(std::string_view spec) {
    if (spec.find('|') != std::string_view::npos)
        return "A specification cannot hold |, which parts the specifications of a format: " + std::string(spec);
    if (!core::IsUtf8(spec)) return "A specification must be UTF-8 text: " + core::ToUtf8(spec);
    const LogFormat compiled({0, {"", std::string(spec)}});
    for (int field = 1; field <= FmtFieldCount; ++field)
        if (compiled.Names(field)) return {};
    return "A specification without a placeholder (%) fits no line: " + std::string(spec);
}

std::optional<std::string> LogFmtStore(core::IniStore& ini, std::string_view name,
                                       const std::vector<std::string>& specs, const std::string& file) {
    if (std::string problem = LogFmtNameProblem(ini, name, file); !problem.empty()) return problem;
    if (specs.empty()) return "A log format needs at least one specification.";
    std::string stored;  // item 0 stays empty: the list begins with the delimiter
    for (const std::string& spec : specs) {
        if (std::string problem = LogFmtSpecProblem(spec); !problem.empty()) return problem;
        stored.append("|").append(spec);
    }
    if (!ini.IniPutWhole(name, kSpecs, stored, file)) return NotWritten(file);
    const core::CDSAdded added = core::CDSAdd(ini.IniGet("Main", kNames, file), name, {}, 2);
    if (added.added && !ini.IniPutWhole("Main", kNames, added.list, file)) return NotWritten(file);
    return std::nullopt;
}

std::optional<std::string> LogFmtErase(core::IniStore& ini, std::string_view name, const std::string& file) {
    const core::CDSRemoved left = core::CDSRemove(ini.IniGet("Main", kNames, file), name, {}, core::Case::Ignore);
    if (left.removed && !ini.IniPutWhole("Main", kNames, left.list, file)) return NotWritten(file);
    if (ini.IniHas(name, kSpecs, file) && !ini.IniEraseSection(name, file)) return NotWritten(file);
    return std::nullopt;
}

std::optional<std::string> LogFmtSequence(core::IniStore& ini, const std::vector<std::string>& names,
                                          const std::string& file) {
    if (!ini.IniPutWhole("Main", kNames, core::CDSOf(names), file)) return NotWritten(file);
    return std::nullopt;
}

}  // namespace logdefs
