#include "analysis/run.h"

#include "analysis/dayindex.h"
#include "analysis/fields.h"
#include "analysis/visitcounter.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "dialogs/report.h"
#include "sitedb/analysisrows.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

constexpr std::int64_t kStepEvery = 1024;

constexpr std::string_view kNoClickThru =
    "Show column with surf-to-pages not allowed for report on \"visited pages\".\rOption has been set off.";
constexpr std::string_view kNoVisits =
    "No log data in date range selected. Specify Date range to analyse on Analysis menu.";

DaysList DaysOf(const DayRange& dates, const sitedb::VisitSpan& span) {
    DaysList days;
    days.first = core::fMaxL(DayOf(span.firstStart), dates.first.value_or(core::kFirstDay));
    const std::int32_t last = core::fMinL(DayOf(span.lastEnd), dates.last.value_or(core::kLastDay));
    days.count = core::fMaxL(last - days.first + 1, 1);
    return days;
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

    core::Env& env_;
    sitedb::Site& site_;
    AnalysisRequest request_;
    AnalysisOutcome* outcome_ = nullptr;
    std::unique_ptr<SrchTrmData> results_;
    sitedb::VisitSpan span_{};
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
}

void Run::ReadVisits() {
    VisitCounter counter(env_, site_, request_.siteArea, *results_);
    const DaysList& days = results_->days;
    const std::string label =
        "Dates: " + core::fDateText(days.first, "dd mmm yy") + " to " + core::fDateText(days.Last(), "dd mmm yy");
    dialogs::Report report(env_.progress, "Read visits for selected date range. Check targets && compile statistics.",
                           "visits", results_->visits);
    const sitedb::Heartbeat heart(site_.Db(), env_.progress, sitedb::MayStop::Yes);
    sitedb::AnalysisRows rows = counter.Rows();
    sitedb::AnalysisRow visit;
    for (std::int64_t count = 1; rows.Next(visit); ++count) {
        counter.Count(visit);
        if (count % kStepEvery == 1)
            report.Step(static_cast<double>(count),
                        label + ". Vals: " + std::to_string(core::fMaxL(results_->table.UpperBound(), 0)));
    }
    report.Step(results_->visits, "Complete. Releasing Memory 1/2");
    counter.Finish();
    report.Step(results_->visits, "Complete. Releasing Memory 2/2");
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
