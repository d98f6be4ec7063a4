#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "visits/pageshow.h"

namespace core {
class IniStore;
}

// What an analysis looks at: the stored keys of a site, each of which a caller may override for one run.
namespace analysis {

// What is left out means all the data in that direction.
struct DayRange {
    std::optional<std::int32_t> first{};
    std::optional<std::int32_t> last{};
};

struct OptionRecord {
    DayRange dates{};
    bool SepFrag = false;
    bool SepQuery = false;
    bool ShowDist1 = false;
    bool ShowDist2 = false;
    bool ShowClickThru = false;
    visits::ShowParts Show() const { return {SepFrag, SepQuery}; }
};
// From section Main of the site's last values.
OptionRecord Analyse_Options(core::IniStore& ini);

struct AnalysisRequest {
    int field = 0;
    OptionRecord options{};
    bool ShowNotSEitem = false;
    std::string CDSNoCntSurfToFileTypes{};
    std::string CDSCntAsPageForAvgPages{};
    std::optional<std::string> siteArea{};  // limits the run to visits that touched the area
    bool AnalTgt = false;
    std::optional<std::int32_t> threshold{};  // the key's value; left out: as stored
    bool WordListsOn = false;
    std::int32_t CntTopVals = 0;
};
// A run as the stored keys settle it.
AnalysisRequest Analyse_Request(core::IniStore& ini, int field);

// A list of file types, trimmed, with "|" at both ends. The empty list is "|".
std::string NormaliseTypes(std::string_view list);
// Case ignored. An empty item stands for names without a type.
bool HasType(std::string_view normalisedList, std::string_view type);

// Writes the default of each threshold key that is empty.
void StoreThresholdDefaults(core::IniStore& ini);
// T of a run: rows open at sighting T + 1. Never below 0.
std::int32_t ThresholdOfRun(core::IniStore& ini, const AnalysisRequest& request);

}  // namespace analysis
