#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/shownpages.h"
#include "analysis/termnotes.h"
#include "analysis/termstarts.h"
#include "analysis/visitreader.h"
#include "sitedb/analysisrows.h"

namespace analysis {

inline constexpr std::string_view kOnlySkipped = "Only Skipped File Types";
inline constexpr std::string_view kTrackBreak = "\r\n";

// What a visit contributes to the field of a run. All of it lives until the next visit; numbers that are put into the
// texts are remembered where that pays. A text is in one place only for the whole run: value, alternate or
// distribution.
struct VisitValues {
    // Where they are counted, those of a word field are left to its term's note, and that of a term and its start
    // may come as numbers.
    std::vector<KnownText> values{};
    std::optional<TermStart> termStart{};
    KnownText alternate{};  // "" where the field has none
    KnownText firstDistribution{};
    TermNote* term = nullptr;  // none: no term, or notes were not asked for
};

enum class ValueUse { Listed, Counted };

class FieldValues {
public:
    // `referrers` only for the field of referrers, and only with extra data. `notes`: terms are looked at for more than
    // the field.
    FieldValues(int field, ShownPages& shown, sitedb::VisitReferrers* referrers, ValueUse use, bool notes);
    FieldValues(const FieldValues&) = delete;
    FieldValues& operator=(const FieldValues&) = delete;

    // Fetches what the values of the visit soon will need.
    void Expect(const sitedb::AnalysisRow& visit) const {
        if (notesWanted_) notes_.Expect(visit.StzdSearchTerm);
    }
    std::string Text(const TermStart& value) const { return termStarts_.Text(value); }
    // Of an exit page also puts what led to it into the list of further names.
    const VisitValues& pValuesForField(const sitedb::AnalysisRow& visit, VisitPageList& pages);

private:
    void ExitPage(VisitPageList& pages);
    void Track(const VisitPageList& pages);
    void Pages(const VisitPageList& pages);
    void Dirs(const VisitPageList& pages);
    void Words(const sitedb::AnalysisRow& visit);
    void ListValues(const sitedb::AnalysisRow& visit, VisitPageList& pages);
    void TermAndStart(const sitedb::AnalysisRow& visit, const VisitPageList& pages);
    KnownText Term(const sitedb::AnalysisRow& visit);
    KnownText Engine(const sitedb::AnalysisRow& visit);
    KnownText Name(std::uint32_t name);
    KnownText Start(const VisitPageList& pages);
    KnownText Made(std::string_view text);

    int field_;
    ShownPages& shown_;
    sitedb::VisitReferrers* referrers_;
    ValueUse use_;
    bool notesWanted_;
    VisitValues found_{};
    std::string room_{};
    IdSet seen_{};
    TermNotes notes_{};
    TermStarts termStarts_;
    // Numbers, by number of the shown name and of its folder. They never move.
    std::deque<std::uint32_t> names_{}, dirs_{};
    std::uint32_t noPages_ = KnownText::kNew, noTerm_ = KnownText::kNew;
    std::uint32_t noTermStart_ = TermStarts::kUnknown;
    std::uint32_t term_ = 0, engine_ = 0, made_ = 0;  // of the visit at hand: not remembered
};

}  // namespace analysis
