#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/results.h"
#include "reports/deviation.h"

namespace core {
class IniStore;
}

// The analyses of an open site, in memory for as long as it stays open or a report shows them.
namespace reports {

// A finished analysis. Any number of reports can be drawn from it.
class OpenAnalysis {
public:
    explicit OpenAnalysis(std::unique_ptr<analysis::SrchTrmData> results) : results_(std::move(results)) {}

    const analysis::SrchTrmData& GetSrchTrmData() const { return *results_; }
    const std::string& SiteDBName() const { return results_->siteName; }
    int Analyzed_Field() const { return results_->Analyzed_Field; }
    std::string GetDataDesc() const { return analysis::GetDataDesc(*results_); }
    // With the settings of the first call: a changed one shows in the next analysis.
    const Deviation& Deviations(core::IniStore& ini) const;

private:
    std::unique_ptr<analysis::SrchTrmData> results_;
    mutable std::optional<Deviation> deviation_{};
};
using AnalysisPtr = std::shared_ptr<const OpenAnalysis>;

class OpenAnalyses {
public:
    AnalysisPtr Analysis_New(std::unique_ptr<analysis::SrchTrmData> results);
    // In the order in which they were made.
    std::vector<AnalysisPtr> Analyses_List(std::string_view site, int field) const;
    void Clear() { list_.clear(); }  // another site: reports that are shown keep theirs

private:
    std::vector<AnalysisPtr> list_{};
};

// The description in one line of a list, and back over several lines.
std::string DescLine(const OpenAnalysis& analysis);

}  // namespace reports
