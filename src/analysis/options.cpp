#include "analysis/options.h"

#include "analysis/fields.h"
#include "core/cds.h"
#include "core/dates.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"

namespace analysis {
namespace {

constexpr std::string_view kMain = "Main";
constexpr std::string_view kAreaKey = "ShowOnlySelSiteArea";

std::string Get(core::IniStore& ini, std::string_view key) { return ini.IniGet(kMain, key, core::kBySection); }
bool GetBool(core::IniStore& ini, std::string_view key) { return ini.IniGetBool(kMain, key, core::kBySection); }

std::int32_t Value(core::IniStore& ini, const ThresholdRow& row) {
    const std::string text = Get(ini, row.key);
    return text.empty() ? row.otherwise : core::ToLong(core::fNum(text));
}

}  // namespace

OptionRecord Analyse_Options(core::IniStore& ini) {
    OptionRecord options;
    const std::string dates = Get(ini, "AnalStartEnd");
    options.dates = {core::ParseDate(core::CDSItem(1, dates)), core::ParseDate(core::CDSItem(2, dates))};
    options.SepFrag = GetBool(ini, "SepFrag");
    options.SepQuery = GetBool(ini, "SepQuery");
    options.ShowDist1 = GetBool(ini, "ShowDist1");
    options.ShowDist2 = GetBool(ini, "ShowDist2");
    options.ShowClickThru = GetBool(ini, "ShowClickThru");
    return options;
}

AnalysisRequest Analyse_Request(core::IniStore& ini, int field) {
    AnalysisRequest request;
    request.field = field;
    request.options = Analyse_Options(ini);
    request.ShowNotSEitem = GetBool(ini, "ShowNotSEitem");
    request.CDSNoCntSurfToFileTypes = Get(ini, "CDSNoCntSurfToFileTypes");
    request.CDSCntAsPageForAvgPages = Get(ini, "CDSCntAsPageForAvgPages");
    if (GetBool(ini, kAreaKey)) request.siteArea = Get(ini, "Parm" + std::string(kAreaKey));
    request.AnalTgt = GetBool(ini, "AnalTgt");
    request.CntTopVals = core::ToLong(core::fNum(Get(ini, "CntTopVals")));
    return request;
}

std::string NormaliseTypes(std::string_view list) {
    std::string types(core::fTrim(list));
    if (!types.starts_with('|')) types.insert(types.begin(), '|');
    if (!types.ends_with('|')) types.push_back('|');
    return types;
}

bool HasType(std::string_view normalisedList, std::string_view type) {
    return core::fFind(normalisedList, "|" + std::string(type) + "|", core::Case::Ignore) != std::string_view::npos;
}

void StoreThresholdDefaults(core::IniStore& ini) {
    for (const ThresholdRow& row : kThresholds)
        if (Get(ini, row.key).empty())
            ini.IniPut(kMain, row.key, std::to_string(row.otherwise), core::kBySection, core::OnFail::Ignore);
}

std::int32_t ThresholdOfRun(core::IniStore& ini, const AnalysisRequest& request) {
    const ThresholdRow* row = ThresholdOf(request.field);
    if (row == nullptr) return 0;
    return core::fMaxL(request.threshold ? *request.threshold : Value(ini, *row), 1) - 1;
}

}  // namespace analysis
