#include "analysis/fieldvalues.h"

#include <algorithm>

#include "analysis/cutterm.h"
#include "analysis/fields.h"
#include "names/searchterm.h"
#include "visits/labels.h"

namespace analysis {

namespace {

// The entry of a number that was given in order of first sightings. Entries never move.
KnownText* EntryOf(std::deque<KnownText>& entries, std::uint32_t number) {
    if (number >= entries.size()) entries.resize(number + 1);
    return &entries[number];
}

}  // namespace

FieldValues::FieldValues(int field, ShownPages& shown, sitedb::VisitReferrers* referrers, bool notes)
    : field_(field),
      shown_(shown),
      referrers_(referrers),
      notesWanted_(notes || IsWordField(field)),
      noTerm_{names::kNotSearchEngine} {}

KnownText* FieldValues::Name(std::uint32_t name) {
    KnownText* const known = EntryOf(names_, name);
    known->text = shown_.Name(name);
    return known;
}

KnownText* FieldValues::Start(const VisitPageList& pages) {
    return pages.start == VisitPageList::kNoStart ? &noPages_ : Name(static_cast<std::uint32_t>(pages.start));
}

KnownText* FieldValues::Term(const sitedb::AnalysisRow& visit) {
    if (visit.StzdSearchTerm.empty()) return &noTerm_;
    KnownText* const label = found_.term != nullptr ? &found_.term->label : &(term_ = {});
    label->text = visit.StzdSearchTerm;
    return label;
}

KnownText* FieldValues::Engine(const sitedb::AnalysisRow& visit) {
    engine_ = {visits::Visit_SELabel(visit)};
    return &engine_;
}

void FieldValues::AddMade(std::string_view text) {
    made_ = {text};
    found_.values.push_back(&made_);
}

const VisitValues& FieldValues::pValuesForField(const sitedb::AnalysisRow& visit, VisitPageList& pages) {
    found_.values.clear();
    found_.term = notesWanted_ && !visit.StzdSearchTerm.empty() ? &notes_.Of(visit.StzdSearchTerm) : nullptr;
    const bool ofTerms = field_ >= kEngine;
    found_.firstDistribution = ofTerms ? Term(visit) : Engine(visit);
    if (ofTerms || field_ == kTerm) {
        found_.alternate = Start(pages);
    } else {
        found_.alternate = field_ == kTermAndStart || field_ == kReferrer ? nullptr : Term(visit);
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
            room_.assign(visits::Visit_STLabel(visit)).append(" - ").append(Start(pages)->text);
            AddMade(room_);
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
            AddMade(room_);
            break;
        case kEngine:
            found_.values.push_back(Engine(visit));
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
    found_.values.push_back(Name(pages.names.back()));
    pages.names.pop_back();
    const auto start = static_cast<std::uint32_t>(pages.start);
    if (std::ranges::find(pages.names, start) == pages.names.end()) pages.names.push_back(start);
}

void FieldValues::Track(const VisitPageList& pages) {
    room_.clear();
    if (pages.start != VisitPageList::kNoStart) room_.append(Start(pages)->text).append(kTrackBreak);
    for (const std::uint32_t name : pages.names) room_.append(shown_.Name(name)).append(kTrackBreak);
    AddMade(room_.empty() ? kOnlySkipped : std::string_view(room_));
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
        KnownText* const known = EntryOf(dirs_, dir);
        known->text = shown_.Dir(dir);
        found_.values.push_back(known);
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
        for (const std::string& value : note->cut) {
            note->open.push_back(static_cast<std::uint32_t>(note->values.size()));
            note->values.push_back({value});
        }
    }
    for (KnownText& value : note->values) found_.values.push_back(&value);
}

}  // namespace analysis
