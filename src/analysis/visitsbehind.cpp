#include "analysis/visitsbehind.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "analysis/visitpass.h"
#include "core/env.h"
#include "core/error.h"
#include "dialogs/report.h"
#include "sitedb/site.h"
#include "sitedb/visitlines.h"

namespace analysis {
namespace {

constexpr std::int64_t kStepEvery = 1024;

using Texts = std::unordered_set<std::string_view>;

// Values are told by their text, as lines that sum them do. Element 0 is no value.
Texts WantedTexts(const SrchTrmData& results, std::span<const std::int32_t> indexes) {
    Texts texts;
    for (const std::int32_t index : indexes)
        if (index > 0 && index <= results.table.UpperBound())
            texts.insert(results.table.STs[static_cast<std::size_t>(index)]);
    return texts;
}

class Search {
public:
    Search(core::Env& env, sitedb::Site& site, const SrchTrmData& results, Texts wanted, std::size_t most)
        : env_(env), site_(site), results_(results), wanted_(std::move(wanted)), most_(most), texts_(site.Db()) {}

    void Run(VisitsBehind& found) {
        std::optional<std::string> area;
        if (!results_.siteArea.empty()) area = results_.siteArea;
        VisitPass pass(env_, site_, results_, area, {});
        dialogs::Report report(env_.progress, "Looking for visits", "visits", results_.visits);
        const sitedb::Heartbeat heart(site_.Db(), env_.progress, sitedb::MayStop::Yes);
        sitedb::AnalysisRows rows = pass.Rows();
        sitedb::AnalysisRow visit;
        for (std::int64_t count = 1; rows.Next(visit); ++count) {
            Look(pass, visit, found);
            if (count % kStepEvery == 1)
                report.Step(static_cast<double>(count), "Found: " + std::to_string(found.count));
        }
    }

private:
    void Look(VisitPass& pass, const sitedb::AnalysisRow& visit, VisitsBehind& found) {
        if (!pass.Counts(visit)) return;
        VisitPageList* const pages = pass.Pages(visit);
        if (pages == nullptr) return;
        const auto wanted = [this](const KnownText& value) { return wanted_.contains(value.text); };
        if (std::ranges::none_of(pass.Values(visit, *pages).values, wanted)) return;
        ++found.count;
        if (found.visits.size() >= most_) return;
        sitedb::VisitTexts texts = texts_.Read(visit.VisitID);
        found.visits.push_back({.VisitID = visit.VisitID,
                                .StartTimeStamp = visit.StartTimeStamp,
                                .EndTimeStamp = texts.EndTimeStamp,
                                .address = std::move(texts.FirstIP),
                                .term = std::move(texts.SearchTerm),
                                .engine = std::move(texts.SearchEngine),
                                .startPage = std::string(pass.StartName(*pages)),
                                .further = pages->further});
    }

    core::Env& env_;
    sitedb::Site& site_;
    const SrchTrmData& results_;
    Texts wanted_;
    std::size_t most_;
    sitedb::VisitTextReader texts_;
};

}  // namespace

VisitsBehind FindVisitsBehind(core::Env& env, sitedb::Site& site, const SrchTrmData& results,
                              std::span<const std::int32_t> indexes, std::size_t most) {
    VisitsBehind found;
    Texts wanted = WantedTexts(results, indexes);
    if (wanted.empty()) return found;
    try {
        Search(env, site, results, std::move(wanted), most).Run(found);
    } catch (const core::Stopped&) {
        found.stopped = true;
    }
    return found;
}

std::vector<LineFacts> LinesOfVisit(sitedb::Site& site, std::int32_t visitId) {
    std::vector<LineFacts> lines;
    for (sitedb::StoredLine& stored : sitedb::ReadLinesOfVisit(site.Db(), visitId, site.Options().LastKeepVal))
        lines.push_back({.Timestamp = stored.Timestamp,
                         .address = std::move(stored.IP),
                         .page = std::string(site.Pages().Page_Name(stored.PageID)),
                         .bytes = stored.Bytes,
                         .repeated = stored.CntDupes,
                         .referrer = std::move(stored.Referrer),
                         .userAgent = std::move(stored.Browser),
                         .status = std::move(stored.HTTPStatus),
                         .method = std::move(stored.CodeWordsHTTP)});
    return lines;
}

}  // namespace analysis
