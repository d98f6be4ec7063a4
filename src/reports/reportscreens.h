#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/options.h"
#include "dialogs/showmb.h"
#include "reports/catalogue.h"
#include "reports/openanalyses.h"

namespace core {
struct Env;
}
namespace sitedb {
class Site;
}

// From a command to a report: which analysis, which report.
namespace reports {

class ReportScreens {
public:
    ReportScreens(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site, OpenAnalyses& analyses)
        : env_(env), desk_(desk), site_(site), analyses_(analyses) {}

    // A report that is to be opened. Nothing: the person cancelled or stopped, or there is nothing to analyse.
    struct Chosen {
        AnalysisPtr analysis{};
        ReportChoice report{};
    };
    // A command of the menu: an analysis that is there, or a new one.
    std::optional<Chosen> OpenReport(const ReportChoice& report);
    // What was changed needs a new analysis: "To use ", subject, " you must analyse now."; "" is no subject.
    std::optional<Chosen> pReportAfterChange(std::string_view subject, ReportList list);
    // A report on an analysis that is there, or a new one.
    std::optional<Chosen> pNewReportFromAnalysis();

    // The flow of one field: nothing when cancelled.
    AnalysisPtr pChooseAnalysis(int field, bool useSoleAnalysis);
    AnalysisPtr Analyse(int field);

private:
    std::optional<ReportChoice> pSelectReport(const std::vector<int>& fields, const std::string& text, bool askDates);
    std::vector<AnalysisPtr> AllOfSite() const;

    core::Env& env_;
    const dialogs::Desk& desk_;
    sitedb::Site& site_;
    OpenAnalyses& analyses_;
};

}  // namespace reports
