#include "analysis/fieldvalues.h"

#include <algorithm>

#include "analysis/cutterm.h"
#include "analysis/fields.h"
#include "names/searchterm.h"
#include "visits/labels.h"

namespace analysis {

std::string_view FieldValues::Start(const VisitPageList& pages) const {
    return pages.start == VisitPageList::kNoStart ? kNoPages : shown_.Name(static_cast<std::uint32_t>(pages.start));
}

const VisitValues& FieldValues::pValuesForField(const sitedb::AnalysisRow& visit, VisitPageList& pages) {
    found_.values.clear();
    const bool ofTerms = field_ >= kEngine;
    found_.firstDistribution = ofTerms ? visits::Visit_STLabel(visit) : visits::Visit_SELabel(visit);
    if (ofTerms || field_ == kTerm) {
        found_.alternate = Start(pages);
    } else {
        found_.alternate = field_ == kTermAndStart || field_ == kReferrer ? "" : visits::Visit_STLabel(visit);
    }
    ListValues(visit, pages);
    return found_;
}

void FieldValues::ListValues(const sitedb::AnalysisRow& visit, VisitPageList& pages) {
    switch (field_) {
        case kTerm:
            found_.values.push_back(visits::Visit_STLabel(visit));
            break;
        case kStartPage:
            found_.values.push_back(Start(pages));
            break;
        case kTermAndStart:
            room_.assign(visits::Visit_STLabel(visit)).append(" - ").append(Start(pages));
            found_.values.push_back(room_);
            break;
        case kExitPage:
            ExitPage(pages);
            break;
        case kTrack:
            Track(pages);
            break;
        case kPage:
            Pages(pages);
            break;
        case kDir:
            Dirs(pages);
            break;
        case kReferrer:
            room_ = visits::Visit_RefrLabel(visit, referrers_);
            found_.values.push_back(room_);
            break;
        case kEngine:
            found_.values.push_back(visits::Visit_SELabel(visit));
            break;
        default:
            Words(visit);
    }
}

// The click-through of an exit page shows what led to it: the start comes in, the exit page goes out.
void FieldValues::ExitPage(VisitPageList& pages) {
    if (pages.names.empty()) {
        found_.values.push_back(Start(pages));
        return;
    }
    found_.values.push_back(shown_.Name(pages.names.back()));
    pages.names.pop_back();
    const auto start = static_cast<std::uint32_t>(pages.start);
    if (std::ranges::find(pages.names, start) == pages.names.end()) pages.names.push_back(start);
}

void FieldValues::Track(const VisitPageList& pages) {
    room_.clear();
    if (pages.start != VisitPageList::kNoStart) room_.append(Start(pages)).append(kTrackBreak);
    for (const std::uint32_t name : pages.names) room_.append(shown_.Name(name)).append(kTrackBreak);
    found_.values.push_back(room_.empty() ? kOnlySkipped : std::string_view(room_));
}

void FieldValues::Pages(const VisitPageList& pages) {
    if (pages.start == VisitPageList::kNoStart) return;
    const auto start = static_cast<std::uint32_t>(pages.start);
    found_.values.push_back(shown_.Name(start));
    for (const std::uint32_t name : pages.names)
        if (name != start) found_.values.push_back(shown_.Name(name));
}

void FieldValues::Dirs(const VisitPageList& pages) {
    if (pages.start == VisitPageList::kNoStart) return;
    seen_.Clear();
    const auto add = [&](std::uint32_t name) {
        const std::uint32_t dir = shown_.DirOf(name);
        if (seen_.Insert(dir)) found_.values.push_back(shown_.Dir(dir));
    };
    add(static_cast<std::uint32_t>(pages.start));
    std::ranges::for_each(pages.names, add);
}

void FieldValues::Words(const sitedb::AnalysisRow& visit) {
    if (visit.StzdSearchTerm.empty() || visit.StzdSearchTerm == names::kNotSearchEngine) return;
    const std::vector<std::string>* cut = cuts_.Find(visit.StzdSearchTerm);
    if (cut == nullptr) cut = &cuts_.Put(visit.StzdSearchTerm, pCutTerm(visit.StzdSearchTerm, field_));
    found_.values.assign(cut->begin(), cut->end());
}

}  // namespace analysis
