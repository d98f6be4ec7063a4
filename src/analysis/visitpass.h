#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/fieldvalues.h"
#include "analysis/results.h"
#include "analysis/shownpages.h"
#include "analysis/visitreader.h"
#include "sitedb/analysisrows.h"

namespace core {
struct Env;
}
namespace sitedb {
class Site;
}

namespace analysis {

sitedb::StampRange RangeOf(const DayRange& dates);

// Which visits of a range count for an analysis, and what they contribute. One object lives for a pass; whoever goes
// through the rows asks Counts, then Pages, then Values of each.
class VisitPass {
public:
    struct Wants {
        bool names = false;  // further names, also where the field has no need of them
        bool bytes = false;
        ValueUse use = ValueUse::Listed;
        bool notes = false;  // of terms, also where the field has no need of them
    };
    // `results` holds the options of the run. An area limits the pass to visits that touched it.
    VisitPass(core::Env& env, sitedb::Site& site, const SrchTrmData& results, const std::optional<std::string>& area,
              Wants wants);
    VisitPass(const VisitPass&) = delete;
    VisitPass& operator=(const VisitPass&) = delete;

    sitedb::AnalysisRows Rows() const;

    // Told before its pages are looked at.
    bool Counts(const sitedb::AnalysisRow& visit) const { return notSearch_ || !visit.StzdSearchTerm.empty(); }
    // Fetches what Values of the visit soon will need.
    void Expect(const sitedb::AnalysisRow& visit) const { values_.Expect(visit); }
    // nullptr: outside the area. The list stands until the next call.
    VisitPageList* Pages(const sitedb::AnalysisRow& visit) {
        VisitPageList& pages = reader_.Visit_Pages(visit);
        return area_ && !InArea(visit, pages) ? nullptr : &pages;
    }
    const VisitValues& Values(const sitedb::AnalysisRow& visit, VisitPageList& pages) {
        return values_.pValuesForField(visit, pages);
    }
    std::string_view Name(std::uint32_t name) const { return shown_.Name(name); }
    std::string Text(const TermStart& value) const { return values_.Text(value); }
    std::string_view StartName(const VisitPageList& pages) const;

private:
    bool InArea(const sitedb::AnalysisRow& visit, const VisitPageList& pages) const;

    sitedb::Site& site_;
    int field_;
    DayRange dates_;
    bool bytes_;
    bool notSearch_;
    std::optional<std::vector<bool>> area_{};  // by PageID
    ShownPages shown_;
    std::optional<sitedb::VisitReferrers> referrers_{};
    VisitReader reader_;
    FieldValues values_;
};

}  // namespace analysis
