#include "adddata/enginesummary.h"

#include <cmath>

#include "core/cds.h"
#include "core/freename.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "sitedb/site.h"

namespace adddata {
namespace {

constexpr std::string_view kTemplate = "Add_SEsummary.ini";
constexpr std::string_view kNameBegin = "Add_SEsummary";
constexpr core::CDSForm kForm{.delim = ":::"};
constexpr double kMostCount = 9e15;

}  // namespace

SavedSummary SaveEngineSummary(core::IniStore& ini, const sitedb::SitePaths& site, const EngineCounts& counts) {
    if (counts.empty()) return {};
    const core::FreeName free = core::MakeFreeName(core::fPathOf(site.lastVals).append(kTemplate), {.saved = &ini});
    if (!free.ok) return {{false, free.result}, {}};
    core::StrArray items(0, {}), numbers(0, {});
    for (const auto& [item, count] : counts) {
        items.Append(item);
        numbers.Append(std::to_string(count));
    }
    const std::string& file = free.result;
    const bool saved = ini.IniPutWhole("Main", "Parm", core::CDSJoin(items, kForm, 0), file, core::OnFail::Ignore) &&
                       ini.IniPutWhole("Main", "MaxNo", core::CDSJoin(numbers, kForm, 0), file, core::OnFail::Ignore);
    if (saved) return {{}, core::fNameOf(file)};
    core::FileDelete(file);
    ini.IniFlush(file, core::OnFail::Ignore);
    return {{false, "This file cannot be written: " + file}, {}};
}

EngineCounts ReadEngineSummary(core::IniStore& ini, const sitedb::SitePaths& site, std::string_view name) {
    if (!name.starts_with(kNameBegin) || name.find_first_of("/\\") != std::string_view::npos) return {};
    const std::string file = core::fPathOf(site.lastVals).append(name);
    const std::string parm = ini.IniGet("Main", "Parm", file);
    if (parm.empty()) return {};
    const core::StrArray items = core::CDSSplit(parm, kForm, 0);
    const core::StrArray numbers = core::CDSSplit(ini.IniGet("Main", "MaxNo", file), kForm, 0);
    EngineCounts counts;
    for (long i = 0; i <= items.Upper(); ++i)
        counts[items[i]] +=
            static_cast<std::int64_t>(std::fmin(std::fmax(core::fNum(numbers.Item(i, {})), 0), kMostCount));
    return counts;
}

}  // namespace adddata
