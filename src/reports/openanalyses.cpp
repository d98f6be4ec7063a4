#include "reports/openanalyses.h"

#include <algorithm>

#include "core/text.h"

namespace reports {

const Deviation& OpenAnalysis::Deviations(core::IniStore& ini) const {
    if (!deviation_) deviation_.emplace(results_->days, ReadDevSettings(ini));
    return *deviation_;
}

AnalysisPtr OpenAnalyses::Analysis_New(std::unique_ptr<analysis::SrchTrmData> results) {
    return list_.emplace_back(std::make_shared<const OpenAnalysis>(std::move(results)));
}

std::vector<AnalysisPtr> OpenAnalyses::Analyses_List(std::string_view site, int field) const {
    std::vector<AnalysisPtr> found;
    std::ranges::copy_if(list_, std::back_inserter(found), [&](const AnalysisPtr& analysis) {
        return analysis->SiteDBName() == site && analysis->Analyzed_Field() == field;
    });
    return found;
}

std::string DescLine(const OpenAnalysis& analysis) {
    return core::fReplace(core::fReplace(analysis.GetDataDesc(), "\r\r", " ^ "), "\r", " ^ ");
}

}  // namespace reports
