#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/shownpages.h"
#include "analysis/visitreader.h"
#include "logdefs/memo.h"
#include "sitedb/analysisrows.h"

namespace analysis {

inline constexpr std::string_view kNoPages = "No pages requested of selected types";
inline constexpr std::string_view kOnlySkipped = "Only Skipped File Types";
inline constexpr std::string_view kTrackBreak = "\r\n";

// What a visit contributes to the field of a run. Views live until the next visit.
struct VisitValues {
    std::vector<std::string_view> values{};
    std::string_view alternate{};  // "" when the field has none
    std::string_view firstDistribution{};
};

class FieldValues {
public:
    // `referrers` only for the field of referrers, and only with extra data.
    FieldValues(int field, ShownPages& shown, sitedb::VisitReferrers* referrers)
        : field_(field), shown_(shown), referrers_(referrers) {}

    // Of an exit page also puts what led to it into the list of further names.
    const VisitValues& pValuesForField(const sitedb::AnalysisRow& visit, VisitPageList& pages);

private:
    void ExitPage(VisitPageList& pages);
    void Track(const VisitPageList& pages);
    void Pages(const VisitPageList& pages);
    void Dirs(const VisitPageList& pages);
    void Words(const sitedb::AnalysisRow& visit);
    void ListValues(const sitedb::AnalysisRow& visit, VisitPageList& pages);
    std::string_view Start(const VisitPageList& pages) const;

    int field_;
    ShownPages& shown_;
    sitedb::VisitReferrers* referrers_;
    VisitValues found_{};
    std::string room_{};
    IdSet seen_{};
    logdefs::BoundedMemo<std::vector<std::string>> cuts_{1U << 16U};
};

}  // namespace analysis
