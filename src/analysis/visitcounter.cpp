#include "analysis/visitcounter.h"

#include "analysis/fields.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

// Calls `see` for each word of a term; quotes are dropped, "+" parts words as a blank does.
template <typename See>
void ForEachWord(std::string_view term, std::string& room, See see) {
    room.clear();
    for (const char c : term) {
        if (c == '"') continue;
        if (c != ' ' && c != '+') {
            room.push_back(c);
            continue;
        }
        if (!room.empty()) see(room);
        room.clear();
    }
    if (!room.empty()) see(room);
}

VisitPass::Wants WantsOf(const SrchTrmData& results, const TargetPages& targets) {
    const OptionRecord& options = results.options;
    return {.names = options.ShowClickThru,
            .bytes = targets.NeedsBytes(),
            .use = ValueUse::Counted,
            .notes = options.ShowDist1 || options.ShowDist2 || results.WordListsOn};
}

}  // namespace

VisitCounter::VisitCounter(core::Env& env, sitedb::Site& site, const std::optional<std::string>& area,
                           SrchTrmData& results)
    : results_(results),
      hash_(results.threshold),
      dayIndex_(results.days),
      targets_(results.Targets, site.Pages()),
      counting_(results),
      pass_(env, site, results, area, WantsOf(results, targets_)) {}

void VisitCounter::Count(const sitedb::AnalysisRow& visit) {
    if (!pass_.Counts(visit)) return;
    pass_.Expect(visit);
    VisitPageList* const pages = pass_.Pages(visit);
    if (pages == nullptr) return;
    day_ = dayIndex_.Of(visit.StartTimeStamp);
    const VisitValues& found = pass_.Values(visit, *pages);
    Expect(found);
    const VisitFacts facts{CountsOf(*pages), found, *pages};
    clickThru_.clear();
    if (IsWordField(results_.Analyzed_Field)) {
        if (found.term != nullptr) AddTerm(*found.term, facts);
    } else {
        AddValues(facts);
    }
    if (results_.WordListsOn && found.term != nullptr) AddWords(visit.StzdSearchTerm, *found.term);
}

VisitCounts VisitCounter::CountsOf(const VisitPageList& pages) {
    VisitCounts counts{.pages = pages.further, .stayed = pages.further > 0 ? 1 : 0};
    const TargetBits met = targets_.Tgt_Met(pages.pageIds, pages.bytes);
    for (std::size_t t = 0; t < kMaxTargets; ++t) counts.targets[t] = static_cast<std::int32_t>(met >> t & 1U);
    return counts;
}

void VisitCounter::Expect(const VisitValues& found) const {
    if (found.termStart) hash_.Expect(*found.termStart);
    if (!found.values.empty()) hash_.Expect(found.values.front());
}

void VisitCounter::AddValues(const VisitFacts& facts) {
    const VisitValues& found = facts.found;
    if (found.termStart)
        AddKept(
            hash_.Hash_Keep(*found.termStart), [&] { return pass_.Text(*found.termStart); }, facts);
    for (const KnownText& value : found.values)
        AddKept(
            hash_.Hash_Keep(value), [&] { return value.text; }, facts);
}

template <typename MakeText>
void VisitCounter::AddKept(const ThresholdHash::Kept& kept, MakeText text, const VisitFacts& facts) {
    if (!kept.keep) return;
    // Only visitors are credited with the sightings before; what the visits did on the site is counted from here on.
    VisitCounts counts = facts.counts;
    counts.visitors = kept.count;
    AddTo(RowOf(kept, text), counts, facts);
}

template <typename MakeText>
std::uint32_t VisitCounter::RowOf(const ThresholdHash::Kept& kept, MakeText text) {
    if (kept.row >= 0) return static_cast<std::uint32_t>(kept.row);
    const std::uint32_t row = counting_.NewRow(text());
    hash_.SetRow(kept, row);
    return row;
}

// The values of a term that have rows always come together, so they are counted as one.
void VisitCounter::AddTerm(TermNote& note, const VisitFacts& facts) {
    credits_.clear();
    const std::size_t before = note.rows.size();
    std::erase_if(note.open, [&](std::uint32_t place) {
        const ThresholdHash::Kept kept = hash_.Hash_Keep({note.cut[place], &note.numbers[place]});
        if (!kept.keep) return false;
        note.rows.push_back(RowOf(kept, [&] { return std::string_view(note.cut[place]); }));
        if (kept.count > 1) credits_.push_back({note.rows.back(), kept.count - 1});
        return true;
    });
    if (note.rows.empty()) return;
    if (note.rows.size() > before) note.bundle = counting_.NewBundle(note.rows);
    AddTo(note.bundle, facts.counts, facts);
    for (const Credit& credit : credits_)
        AddTo(counting_.NewBundle({&credit.row, 1}), {.visitors = credit.visitors}, facts);
}

void VisitCounter::AddTo(std::uint32_t number, const VisitCounts& counts, const VisitFacts& facts) {
    counting_.Result_Add(number, day_, counts);
    const OptionRecord& options = results_.options;
    const VisitValues& found = facts.found;
    if (options.ShowDist1) AddLabel(kDistSE, found.firstDistribution, number, counts.visitors);
    if (options.ShowDist2 && !found.alternate.text.empty())
        AddLabel(kDistAlternate, found.alternate, number, counts.visitors);
    if (options.ShowClickThru) AddFurther(number, facts.pages, counts.visitors);
}

void VisitCounter::AddLabel(Axis axis, const KnownText& label, std::uint32_t number, std::int32_t count) {
    TextTable& labels = counting_.TableOf(axis).second;
    const auto look = [&labels](std::string_view text) { return labels.FindOrAdd(text); };
    counting_.Cross_Add(axis, number, label.Number(look), count);
}

void VisitCounter::AddFurther(std::uint32_t number, const VisitPageList& pages, std::int32_t count) {
    if (clickThru_.empty()) {
        TextTable& labels = counting_.TableOf(kDistClickThru).second;
        for (const std::uint32_t name : pages.names) {
            if (name >= further_.size()) further_.resize(name + 1, KnownText::kNew);
            if (further_[name] == KnownText::kNew) further_[name] = labels.FindOrAdd(pass_.Name(name));
            clickThru_.push_back(further_[name]);
        }
    }
    for (const std::uint32_t label : clickThru_) counting_.Cross_Add(kDistClickThru, number, label, count);
}

void VisitCounter::AddWords(std::string_view term, TermNote& note) {
    CountedTexts& words = results_.words;
    if (!note.isSplit) {
        note.isSplit = true;
        ForEachWord(term, word_, [&](const std::string& word) { note.words.push_back(words.NumberOf(word)); });
    }
    for (const std::uint32_t word : note.words) ++words.Visitors[word];
}

}  // namespace analysis
