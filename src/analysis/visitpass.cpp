#include "analysis/visitpass.h"

#include <algorithm>

#include "analysis/areas.h"
#include "analysis/fields.h"
#include "core/env.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

bool NeedsNames(int field) { return field >= kExitPage && field <= kDir; }

std::optional<sitedb::VisitReferrers> ReferrersFor(int field, sitedb::Site& site) {
    if (field != kReferrer || !site.Options().LastKeepVal) return std::nullopt;
    return std::optional<sitedb::VisitReferrers>(std::in_place, site.Db());
}

}  // namespace

sitedb::StampRange RangeOf(const DayRange& dates) {
    sitedb::StampRange range;
    if (dates.first) range.from = sitedb::DateRange(*dates.first, *dates.first).from;
    if (dates.last) range.to = sitedb::DateRange(*dates.last, *dates.last).to;
    return range;
}

VisitPass::VisitPass(core::Env& env, sitedb::Site& site, const SrchTrmData& results,
                     const std::optional<std::string>& area, Wants wants)
    : site_(site),
      field_(results.Analyzed_Field),
      dates_(results.options.dates),
      bytes_(wants.bytes),
      notSearch_(results.ShowNotSEitem),
      shown_(site.Pages(), results.options.Show(), results.CDSNoCntSurfToFileTypes, results.CDSCntAsPageForAvgPages),
      referrers_(ReferrersFor(field_, site)),
      reader_(site.Db(), shown_, {.names = wants.names || NeedsNames(field_), .bytes = wants.bytes}),
      values_(field_, shown_, referrers_ ? &*referrers_ : nullptr, wants.use, wants.notes) {
    if (area) area_ = Area_Pages(env.ini, site, *area);
}

sitedb::AnalysisRows VisitPass::Rows() const {
    return {site_.Db(), RangeOf(dates_), {.bytes = bytes_, .referrer = field_ == kReferrer}};
}

std::string_view VisitPass::StartName(const VisitPageList& pages) const {
    return pages.start == VisitPageList::kNoStart ? kNoPages : shown_.Name(static_cast<std::uint32_t>(pages.start));
}

bool VisitPass::InArea(const sitedb::AnalysisRow& visit, const VisitPageList& pages) const {
    const auto has = [this](std::int32_t id) {
        return id >= 0 && static_cast<std::size_t>(id) < area_->size() && (*area_)[static_cast<std::size_t>(id)];
    };
    return has(visit.StartPageID) || std::ranges::any_of(pages.pageIds, has);
}

}  // namespace analysis
