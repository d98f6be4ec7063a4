#include "analysis/run.h"

#include <optional>

#include "analysis/counting.h"
#include "analysis/fields.h"
#include "analysis/threshold.h"
#include "analysis/visitpass.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "dialogs/report.h"
#include "sitedb/analysisrows.h"
#include "sitedb/site.h"
#include "visits/labels.h"

namespace analysis {
namespace {

constexpr std::int64_t kStampsOfDay = 1000000;
constexpr std::int64_t kLastStampOfDay = 235959;
constexpr std::int32_t kSecondsOfDay = 86400;
constexpr std::int64_t kStepEvery = 1024;

constexpr std::string_view kNoClickThru =
    "Show column with surf-to-pages not allowed for report on \"visited pages\".\rOption has been set off.";
constexpr std::string_view kNoVisits =
    "No log data in date range selected. Specify Date range to analyse on Analysis menu.";

std::int32_t DayOf(std::int64_t stamp) { return core::TS_Date(static_cast<double>(stamp)); }

DaysList DaysOf(const DayRange& dates, const sitedb::VisitSpan& span) {
    DaysList days;
    days.first = core::fMaxL(DayOf(span.firstStart), dates.first.value_or(core::kFirstDay));
    const std::int32_t last = core::fMinL(DayOf(span.lastEnd), dates.last.value_or(core::kLastDay));
    days.count = core::fMaxL(last - days.first + 1, 1);
    return days;
}

// Days of stamps, remembered: visits come in order of time.
class DayIndex {
public:
    explicit DayIndex(const DaysList& days) : days_(days) {}
    std::int32_t Of(std::int64_t stamp) {
        const std::int64_t date = stamp / kStampsOfDay;
        if (date != date_) {
            date_ = date;
            day_ = DayOf(stamp);
            index_ = days_.IndexOf(day_);
        }
        if (stamp % kStampsOfDay <= kLastStampOfDay) return index_;
        // A time of 24:00:00 and later lies in the days that follow.
        return days_.IndexOf(day_ + core::TS_Time(static_cast<double>(stamp)) / kSecondsOfDay);
    }

private:
    const DaysList& days_;
    std::int64_t date_ = -1;
    std::int32_t day_ = 0;
    std::int32_t index_ = -1;
};

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

// What a visit adds to each of its values.
struct VisitFacts {
    VisitCounts counts{};
    const VisitValues& found;
    const VisitPageList& pages;
};

class Run {
public:
    Run(core::Env& env, sitedb::Site& site, const AnalysisRequest& request)
        : env_(env), site_(site), request_(request), results_(std::make_unique<SrchTrmData>()) {}

    void Execute(AnalysisOutcome& outcome);

private:
    void Say(std::string id, std::string text) {
        outcome_->messages.push_back(text);
        env_.user.Tell(std::move(id), std::move(text));
    }
    void TakeOptions();
    void Analyse_Prepare();
    void ReadVisits();
    void Visit(const sitedb::AnalysisRow& visit);
    void Expect(const VisitValues& found) const;
    void AddValues(const VisitFacts& facts);
    void AddTerm(TermNote& note, const VisitFacts& facts);
    template <typename MakeText>
    void AddKept(const ThresholdHash::Kept& kept, MakeText text, const VisitFacts& facts);
    template <typename MakeText>
    std::uint32_t RowOf(const ThresholdHash::Kept& kept, MakeText text);
    void Count(std::uint32_t number, VisitCounts counts, const VisitFacts& facts);
    void AddTo(Axis axis, const KnownText& label, std::uint32_t number, std::int32_t count);
    void AddFurther(std::uint32_t number, const VisitPageList& pages, std::int32_t count);
    void AddWords(std::string_view term, TermNote& note);
    void Release(dialogs::Report& report);

    core::Env& env_;
    sitedb::Site& site_;
    AnalysisRequest request_;
    AnalysisOutcome* outcome_ = nullptr;
    std::unique_ptr<SrchTrmData> results_;
    sitedb::VisitSpan span_{};
    std::optional<ThresholdHash> hash_{};
    std::optional<DayIndex> dayIndex_{};
    std::optional<TargetPages> targets_{};
    std::optional<Counting> counting_{};
    std::optional<VisitPass> pass_{};
    std::int32_t day_ = -1;  // of the visit at hand
    std::string word_{};
    struct Credit {
        std::uint32_t row;
        std::int32_t visitors;
    };
    std::vector<Credit> credits_{};         // rows that came up in the visit at hand, and the sightings before it
    std::vector<std::uint32_t> further_{};  // numbers in the click-through by name, so that no text is looked up again
    std::vector<std::uint32_t> clickThru_{};  // of the further names of the visit at hand; empty until it adds a value
};

void Run::Execute(AnalysisOutcome& outcome) {
    outcome_ = &outcome;
    TakeOptions();
    const sitedb::StampRange range = RangeOf(request_.options.dates);
    span_ = sitedb::SpanOf(site_.Db(), range);
    if (span_.count == 0) {
        Say("analysis.nodata", std::string(kNoVisits));
        return;
    }
    results_->visits = static_cast<double>(span_.count);
    results_->days = DaysOf(request_.options.dates, span_);
    Analyse_Prepare();
    results_->Targets = Tgt_Load(env_.ini, site_, request_.AnalTgt);
    SkipTypes skip = SkipTypes_Check(NormaliseTypes(request_.CDSNoCntSurfToFileTypes), results_->Targets);
    if (!skip.message.empty()) Say("analysis.skiptypes", skip.message);
    results_->CDSNoCntSurfToFileTypes = std::move(skip.list);
    results_->CDSCntAsPageForAvgPages = NormaliseTypes(request_.CDSCntAsPageForAvgPages);
    ReadVisits();
    outcome.results = std::move(results_);
}

void Run::TakeOptions() {
    if (request_.field == kPage && request_.options.ShowClickThru) {
        request_.options.ShowClickThru = false;
        Say("analysis.noclickthru", std::string(kNoClickThru));
    }
    SrchTrmData& results = *results_;
    results.siteName = site_.Options().name;
    results.iniPath = site_.Paths().dbdef;
    results.ShowNotSEitem = request_.ShowNotSEitem;
    results.options = request_.options;
    results.siteArea = request_.siteArea.value_or("");
    results.Analyzed_Field = request_.field;
    results.WordListsOn = request_.WordListsOn;
    results.CntTopVals = request_.CntTopVals;
}

void Run::Analyse_Prepare() {
    dialogs::Report report(env_.progress, "Initialising", "steps", 5);
    report.Step(1, "Now: Counting search terms");
    report.Step(2, "Now: Counting start files");
    report.Step(3, "Now: Loading list of pages");
    if (!site_.ReadOnly()) StoreThresholdDefaults(env_.ini);
    results_->threshold = ThresholdOfRun(env_.ini, request_);
    report.Step(4, "Now: Allocating space for results");
    hash_.emplace(results_->threshold);
    dayIndex_.emplace(results_->days);
}

void Run::ReadVisits() {
    const OptionRecord& options = results_->options;
    targets_.emplace(results_->Targets, site_.Pages());
    counting_.emplace(*results_);
    pass_.emplace(env_, site_, *results_, request_.siteArea,
                  VisitPass::Wants{.names = options.ShowClickThru,
                                   .bytes = targets_->NeedsBytes(),
                                   .use = ValueUse::Counted,
                                   .notes = options.ShowDist1 || options.ShowDist2 || request_.WordListsOn});

    const DaysList& days = results_->days;
    const std::string label =
        "Dates: " + core::fDateText(days.first, "dd mmm yy") + " to " + core::fDateText(days.Last(), "dd mmm yy");
    dialogs::Report report(env_.progress, "Read visits for selected date range. Check targets && compile statistics.",
                           "visits", results_->visits);
    const sitedb::Heartbeat heart(site_.Db(), env_.progress, sitedb::MayStop::Yes);
    sitedb::AnalysisRows rows = pass_->Rows();
    sitedb::AnalysisRow visit;
    for (std::int64_t count = 1; rows.Next(visit); ++count) {
        Visit(visit);
        if (count % kStepEvery == 1)
            report.Step(static_cast<double>(count),
                        label + ". Vals: " + std::to_string(core::fMaxL(results_->table.UpperBound(), 0)));
    }
    Release(report);
}

void Run::Release(dialogs::Report& report) {
    report.Step(results_->visits, "Complete. Releasing Memory 1/2");
    counting_->Finish();
    report.Step(results_->visits, "Complete. Releasing Memory 2/2");
    counting_.reset();
    hash_.reset();
}

void Run::Visit(const sitedb::AnalysisRow& visit) {
    if (!pass_->Counts(visit)) return;
    pass_->Expect(visit);
    VisitPageList* const touched = pass_->Pages(visit);
    if (touched == nullptr) return;
    VisitPageList& pages = *touched;
    day_ = dayIndex_->Of(visit.StartTimeStamp);
    const VisitValues& found = pass_->Values(visit, pages);
    Expect(found);
    VisitFacts facts{.found = found, .pages = pages};
    facts.counts.pages = pages.further;
    facts.counts.stayed = pages.further > 0 ? 1 : 0;
    const TargetBits met = targets_->Tgt_Met(pages.pageIds, pages.bytes);
    for (std::size_t t = 0; t < kMaxTargets; ++t) facts.counts.targets[t] = static_cast<std::int32_t>(met >> t & 1U);
    clickThru_.clear();
    if (IsWordField(request_.field)) {
        if (found.term != nullptr) AddTerm(*found.term, facts);
    } else {
        AddValues(facts);
    }
    if (request_.WordListsOn && found.term != nullptr) AddWords(visit.StzdSearchTerm, *found.term);
}

void Run::Expect(const VisitValues& found) const {
    if (found.termStart) hash_->Expect(*found.termStart);
    if (!found.values.empty()) hash_->Expect(found.values.front());
}

void Run::AddValues(const VisitFacts& facts) {
    const VisitValues& found = facts.found;
    if (found.termStart)
        AddKept(
            hash_->Hash_Keep(*found.termStart), [&] { return pass_->Text(*found.termStart); }, facts);
    for (const KnownText& value : found.values)
        AddKept(
            hash_->Hash_Keep(value), [&] { return value.text; }, facts);
}

template <typename MakeText>
void Run::AddKept(const ThresholdHash::Kept& kept, MakeText text, const VisitFacts& facts) {
    if (!kept.keep) return;
    // Only visitors are credited with the sightings before; what the visits did on the site is counted from here on.
    VisitCounts counts = facts.counts;
    counts.visitors = kept.count;
    Count(RowOf(kept, text), counts, facts);
}

template <typename MakeText>
std::uint32_t Run::RowOf(const ThresholdHash::Kept& kept, MakeText text) {
    if (kept.row >= 0) return static_cast<std::uint32_t>(kept.row);
    const std::uint32_t row = counting_->NewRow(text());
    hash_->SetRow(kept, row);
    return row;
}

// The values of a term that have rows always come together, so they are counted as one.
void Run::AddTerm(TermNote& note, const VisitFacts& facts) {
    credits_.clear();
    const std::size_t before = note.rows.size();
    std::erase_if(note.open, [&](std::uint32_t place) {
        const ThresholdHash::Kept kept = hash_->Hash_Keep({note.cut[place], &note.numbers[place]});
        if (!kept.keep) return false;
        note.rows.push_back(RowOf(kept, [&] { return std::string_view(note.cut[place]); }));
        if (kept.count > 1) credits_.push_back({note.rows.back(), kept.count - 1});
        return true;
    });
    if (note.rows.empty()) return;
    if (note.rows.size() > before) note.bundle = counting_->NewBundle(note.rows);
    Count(note.bundle, facts.counts, facts);
    for (const Credit& credit : credits_)
        Count(counting_->NewBundle({&credit.row, 1}), {.visitors = credit.visitors}, facts);
}

void Run::Count(std::uint32_t number, VisitCounts counts, const VisitFacts& facts) {
    counting_->Result_Add(number, day_, counts);
    const OptionRecord& options = results_->options;
    const VisitValues& found = facts.found;
    if (options.ShowDist1) AddTo(kDistSE, found.firstDistribution, number, counts.visitors);
    if (options.ShowDist2 && !found.alternate.text.empty())
        AddTo(kDistAlternate, found.alternate, number, counts.visitors);
    if (options.ShowClickThru) AddFurther(number, facts.pages, counts.visitors);
}

void Run::AddTo(Axis axis, const KnownText& label, std::uint32_t number, std::int32_t count) {
    TextTable& labels = counting_->TableOf(axis).second;
    const auto look = [&labels](std::string_view text) { return labels.FindOrAdd(text); };
    counting_->Cross_Add(axis, number, label.Number(look), count);
}

void Run::AddFurther(std::uint32_t number, const VisitPageList& pages, std::int32_t count) {
    if (clickThru_.empty()) {
        TextTable& labels = counting_->TableOf(kDistClickThru).second;
        for (const std::uint32_t name : pages.names) {
            if (name >= further_.size()) further_.resize(name + 1, KnownText::kNew);
            if (further_[name] == KnownText::kNew) further_[name] = labels.FindOrAdd(pass_->Name(name));
            clickThru_.push_back(further_[name]);
        }
    }
    for (const std::uint32_t label : clickThru_) counting_->Cross_Add(kDistClickThru, number, label, count);
}

void Run::AddWords(std::string_view term, TermNote& note) {
    CountedTexts& words = results_->words;
    if (!note.isSplit) {
        note.isSplit = true;
        ForEachWord(term, word_, [&](const std::string& word) { note.words.push_back(words.NumberOf(word)); });
    }
    for (const std::uint32_t word : note.words) ++words.Visitors[word];
}

}  // namespace

AnalysisOutcome CVNA_VisitsAnalyse(core::Env& env, sitedb::Site& site, const AnalysisRequest& request) {
    AnalysisOutcome outcome;
    if (!HasField(request.field)) return outcome;
    try {
        Run(env, site, request).Execute(outcome);
    } catch (const core::Stopped&) {
        outcome.stopped = true;
        outcome.results.reset();
    }
    return outcome;
}

}  // namespace analysis
