#include "analysis/fieldvalues.h"

#include <algorithm>
#include <numeric>

#include "analysis/cutterm.h"
#include "analysis/fields.h"
#include "names/searchterm.h"
#include "visits/labels.h"

namespace analysis {
namespace {

// The entry of a number that was given in order of first sightings.
std::uint32_t* EntryOf(std::deque<std::uint32_t>& entries, std::uint32_t number) {
    if (number >= entries.size()) entries.resize(std::size_t{number} + 1, KnownText::kNew);
    return &entries[number];
}

}  // namespace

FieldValues::FieldValues(int field, ShownPages& shown, sitedb::VisitReferrers* referrers, ValueUse use, bool notes)
    : field_(field),
      shown_(shown),
      referrers_(referrers),
      use_(use),
      notesWanted_(notes || IsWordField(field) || (use == ValueUse::Counted && field == kTermAndStart)),
      termStarts_(shown) {}

KnownText FieldValues::Name(std::uint32_t name) { return {shown_.Name(name), EntryOf(names_, name)}; }

KnownText FieldValues::Start(const VisitPageList& pages) {
    if (pages.start == VisitPageList::kNoStart) return {kNoPages, &noPages_};
    return Name(static_cast<std::uint32_t>(pages.start));
}

KnownText FieldValues::Term(const sitedb::AnalysisRow& visit) {
    if (visit.StzdSearchTerm.empty()) return {names::kNotSearchEngine, &noTerm_};
    if (found_.term != nullptr) return {visit.StzdSearchTerm, &found_.term->label};
    term_ = KnownText::kNew;
    return {visit.StzdSearchTerm, &term_};
}

KnownText FieldValues::Engine(const sitedb::AnalysisRow& visit) {
    engine_ = KnownText::kNew;
    return {visits::Visit_SELabel(visit), &engine_};
}

KnownText FieldValues::Made(std::string_view text) {
    made_ = KnownText::kNew;
    return {text, &made_};
}

const VisitValues& FieldValues::pValuesForField(const sitedb::AnalysisRow& visit, VisitPageList& pages) {
    found_.values.clear();
    found_.termStart.reset();
    found_.term = notesWanted_ && !visit.StzdSearchTerm.empty() ? &notes_.Of(visit.StzdSearchTerm) : nullptr;
    const bool ofTerms = field_ >= kEngine;
    found_.firstDistribution = ofTerms ? Term(visit) : Engine(visit);
    if (ofTerms || field_ == kTerm) {
        found_.alternate = Start(pages);
    } else {
        found_.alternate = field_ == kTermAndStart || field_ == kReferrer ? KnownText{} : Term(visit);
    }
    ListValues(visit, pages);
    return found_;
}

void FieldValues::ListValues(const sitedb::AnalysisRow& visit, VisitPageList& pages) {
    switch (field_) {
        case kTerm:
            found_.values.push_back(Term(visit));
            break;
        case kStartPage:
            found_.values.push_back(Start(pages));
            break;
        case kTermAndStart:
            TermAndStart(visit, pages);
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
            found_.values.push_back(Made(room_));
            break;
        case kEngine:
            found_.values.push_back(Engine(visit));
            break;
        default:
            Words(visit);
    }
}

void FieldValues::TermAndStart(const sitedb::AnalysisRow& visit, const VisitPageList& pages) {
    const std::string_view term = visits::Visit_STLabel(visit);
    if (use_ == ValueUse::Counted && pages.start != VisitPageList::kNoStart) {
        std::uint32_t& number = found_.term != nullptr ? found_.term->ofStarts : noTermStart_;
        found_.termStart = termStarts_.Of(term, number, static_cast<std::uint32_t>(pages.start));
        if (found_.termStart) return;
    }
    room_.assign(term).append(kTermStartJoint).append(Start(pages).text);
    found_.values.push_back(Made(room_));
}

// The click-through of an exit page shows what led to it: the start comes in, the exit page goes out.
void FieldValues::ExitPage(VisitPageList& pages) {
    if (pages.names.empty()) {
        found_.values.push_back(Start(pages));
        return;
    }
    found_.values.push_back(Name(pages.names.back()));
    pages.names.pop_back();
    const auto start = static_cast<std::uint32_t>(pages.start);
    if (std::ranges::find(pages.names, start) == pages.names.end()) pages.names.push_back(start);
}

void FieldValues::Track(const VisitPageList& pages) {
    room_.clear();
    if (pages.start != VisitPageList::kNoStart) room_.append(Start(pages).text).append(kTrackBreak);
    for (const std::uint32_t name : pages.names) room_.append(shown_.Name(name)).append(kTrackBreak);
    found_.values.push_back(Made(room_.empty() ? kOnlySkipped : std::string_view(room_)));
}

void FieldValues::Pages(const VisitPageList& pages) {
    if (pages.start == VisitPageList::kNoStart) return;
    const auto start = static_cast<std::uint32_t>(pages.start);
    found_.values.push_back(Name(start));
    for (const std::uint32_t name : pages.names)
        if (name != start) found_.values.push_back(Name(name));
}

void FieldValues::Dirs(const VisitPageList& pages) {
    if (pages.start == VisitPageList::kNoStart) return;
    seen_.Clear();
    const auto add = [&](std::uint32_t name) {
        const std::uint32_t dir = shown_.DirOf(name);
        if (!seen_.Insert(dir)) return;
        found_.values.push_back({shown_.Dir(dir), EntryOf(dirs_, dir)});
    };
    add(static_cast<std::uint32_t>(pages.start));
    std::ranges::for_each(pages.names, add);
}

void FieldValues::Words(const sitedb::AnalysisRow& visit) {
    TermNote* const note = found_.term;
    if (note == nullptr || visit.StzdSearchTerm == names::kNotSearchEngine) return;
    if (!note->isCut) {
        note->isCut = true;
        note->cut = pCutTerm(visit.StzdSearchTerm, field_);
        note->numbers.assign(note->cut.size(), KnownText::kNew);
        note->open.resize(note->cut.size());
        std::iota(note->open.begin(), note->open.end(), 0U);
        notes_.Grew(*note);
    }
    if (use_ == ValueUse::Counted) return;
    for (std::size_t i = 0; i < note->cut.size(); ++i) found_.values.push_back({note->cut[i], &note->numbers[i]});
}

}  // namespace analysis
