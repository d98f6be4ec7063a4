#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/counting.h"
#include "analysis/dayindex.h"
#include "analysis/targets.h"
#include "analysis/threshold.h"
#include "analysis/visitpass.h"

namespace core {
struct Env;
}
namespace sitedb {
class Site;
}

namespace analysis {

// Counts the visits of a run into its results, one after the other.
class VisitCounter {
public:
    // `results` holds the options, days and targets of the run. An area limits it to visits that touched it.
    VisitCounter(core::Env& env, sitedb::Site& site, const std::optional<std::string>& area, SrchTrmData& results);

    sitedb::AnalysisRows Rows() const { return pass_.Rows(); }
    void Count(const sitedb::AnalysisRow& visit);
    // Nothing is counted afterwards.
    void Finish() { counting_.Finish(); }

private:
    // What a visit adds to each of its values.
    struct VisitFacts {
        VisitCounts counts{};
        const VisitValues& found;
        const VisitPageList& pages;
    };
    struct Credit {
        std::uint32_t row;
        std::int32_t visitors;
    };

    void Expect(const VisitValues& found) const;
    VisitCounts CountsOf(const VisitPageList& pages);
    void AddValues(const VisitFacts& facts);
    void AddTerm(TermNote& note, const VisitFacts& facts);
    template <typename MakeText>
    void AddKept(const ThresholdHash::Kept& kept, MakeText text, const VisitFacts& facts);
    template <typename MakeText>
    std::uint32_t RowOf(const ThresholdHash::Kept& kept, MakeText text);
    void AddTo(std::uint32_t number, const VisitCounts& counts, const VisitFacts& facts);
    void AddLabel(Axis axis, const KnownText& label, std::uint32_t number, std::int32_t count);
    void AddFurther(std::uint32_t number, const VisitPageList& pages, std::int32_t count);
    void AddWords(std::string_view term, TermNote& note);

    SrchTrmData& results_;
    ThresholdHash hash_;
    DayIndex dayIndex_;
    TargetPages targets_;
    Counting counting_;
    VisitPass pass_;
    std::int32_t day_ = -1;  // of the visit at hand
    std::string word_{};
    std::vector<Credit> credits_{};         // rows that came up in the visit at hand, and the sightings before it
    std::vector<std::uint32_t> further_{};  // numbers in the click-through by name, so that no text is looked up again
    std::vector<std::uint32_t> clickThru_{};  // of the further names of the visit at hand; empty until it adds a value
};

}  // namespace analysis
