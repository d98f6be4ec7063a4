#include "analysis/run.h"

#include <optional>

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

void AddTo(CrossTable& table, KnownText& value, std::uint32_t mainRow, std::int32_t count) {
    const std::uint32_t number = value.Number([&table](std::string_view text) { return table.second.NumberOf(text); });
    table.Cross_AddKnown(mainRow, number, count);
}

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
    void AddValue(KnownText& value, VisitCounts counts, const VisitValues& found, const VisitPageList& pages);
    void AddFurther(std::uint32_t mainRow, const VisitPageList& pages, std::int32_t count);
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
    std::optional<PageMatches> matches_{};
    std::optional<VisitPass> pass_{};
    std::int32_t day_ = -1;  // of the visit at hand
    std::string word_{};
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
    matches_.emplace(site_.Pages());
    pass_.emplace(env_, site_, *results_, request_.siteArea,
                  VisitPass::Wants{.names = options.ShowClickThru,
                                   .bytes = !results_->Targets.empty(),
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
    for (CrossTable* table : {&results_->DistSE, &results_->DistAlternate, &results_->DistClickThru})
        table->cross.Finish();
    report.Step(results_->visits, "Complete. Releasing Memory 2/2");
    hash_.reset();
}

void Run::Visit(const sitedb::AnalysisRow& visit) {
    if (!pass_->Counts(visit)) return;
    pass_->Expect(visit);
    if (request_.field == kTerm) hash_->Expect(visits::Visit_STLabel(visit));
    VisitPageList* const touched = pass_->Pages(visit);
    if (touched == nullptr) return;
    VisitPageList& pages = *touched;
    day_ = dayIndex_->Of(visit.StartTimeStamp);
    VisitCounts counts;
    counts.pages = pages.further;
    counts.stayed = pages.further > 0 ? 1 : 0;
    for (std::size_t t = 0; t < results_->Targets.size(); ++t)
        counts.targets[t] = Tgt_Met(results_->Targets[t], pages.pageIds, pages.bytes, *matches_) ? 1 : 0;
    const VisitValues& found = pass_->Values(visit, pages);
    clickThru_.clear();
    for (KnownText* const value : found.values) AddValue(*value, counts, found, pages);
    if (request_.WordListsOn && found.term != nullptr) AddWords(visit.StzdSearchTerm, *found.term);
}

void Run::AddValue(KnownText& value, VisitCounts counts, const VisitValues& found, const VisitPageList& pages) {
    const ThresholdHash::Kept kept = hash_->Hash_Keep(value);
    if (!kept.keep) return;
    // Only visitors are credited with the sightings before; what the visits did on the site is counted from here on.
    counts.visitors = kept.count;
    const std::int32_t row = results_->table.Result_Add(day_, value.text, counts, results_->Targets.size(), kept.row);
    if (kept.row < 0) hash_->SetRow(kept.id, row);
    const auto mainRow = static_cast<std::uint32_t>(row);
    const OptionRecord& options = results_->options;
    if (options.ShowDist1) AddTo(results_->DistSE, *found.firstDistribution, mainRow, kept.count);
    if (options.ShowDist2 && found.alternate != nullptr && !found.alternate->text.empty())
        AddTo(results_->DistAlternate, *found.alternate, mainRow, kept.count);
    if (options.ShowClickThru) AddFurther(mainRow, pages, kept.count);
}

void Run::AddFurther(std::uint32_t mainRow, const VisitPageList& pages, std::int32_t count) {
    if (clickThru_.empty()) {
        for (const std::uint32_t name : pages.names) {
            if (name >= further_.size()) further_.resize(name + 1, KnownText::kNew);
            if (further_[name] == KnownText::kNew)
                further_[name] = results_->DistClickThru.second.NumberOf(pass_->Name(name));
            clickThru_.push_back(further_[name]);
        }
    }
    for (const std::uint32_t number : clickThru_) results_->DistClickThru.Cross_AddKnown(mainRow, number, count);
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
