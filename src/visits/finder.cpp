#include "visits/finder.h"

#include <algorithm>
#include <functional>

namespace visits {
namespace {

// Every visit stands in kAll and in its own class.
constexpr std::uint64_t kAll = 0;
constexpr std::uint64_t kNoTerm = 1;

std::uint64_t TermClass(std::string_view term, std::string_view engine) {
    constexpr std::hash<std::string_view> kHash;
    return (31 * kHash(term) + kHash(engine)) | 2U;  // neither of the two above
}

std::uint64_t ClassOf(const sitedb::VisitRow& row) {
    if (!row.StzdSearchTerm || row.StzdSearchTerm->empty()) return kNoTerm;
    return TermClass(*row.StzdSearchTerm, row.SearchEngine ? std::string_view(*row.SearchEngine) : std::string_view());
}

std::int64_t BucketOf(std::int64_t seconds) {
    return seconds >= 0 ? seconds / kTimeOut : -((-seconds + kTimeOut - 1) / kTimeOut);
}

bool CanJoin(const OpenVisit& visit, std::int64_t seconds) {
    return visit.startSeconds >= seconds - kTimeOut && visit.endSeconds < seconds + kWindowForward &&
           Visit_TimeOK(visit, seconds).ok;
}

}  // namespace

TimeTest Visit_TimeOK(const OpenVisit& visit, std::int64_t lineSeconds) {
    TimeTest test;
    std::int64_t distance = lineSeconds - visit.endSeconds;
    if (distance < 0) {
        distance = lineSeconds - visit.startSeconds;
        test.earlier = distance < 0;
        if (test.earlier) distance = -distance;
    }
    test.ok = distance <= kTimeOut;
    return test;
}

bool Visit_TermOK(const sitedb::VisitRow& visit, std::string_view term, std::string_view engine) {
    if (term.empty() || !visit.StzdSearchTerm || visit.StzdSearchTerm->empty()) return true;
    return *visit.StzdSearchTerm == term && visit.SearchEngine.value_or("") == engine;
}

void VisitFinder::Put(OpenVisit& visit, std::size_t index) {
    const std::int64_t bucket = BucketOf(visit.startSeconds);
    const std::uint64_t termClass = ClassOf(visit.row);
    if (visit.indexed && bucket == visit.indexBucket && termClass == visit.indexClass) return;
    if (visit.indexed) {
        entries_.erase({kAll, visit.indexBucket, index});
        entries_.erase({visit.indexClass, visit.indexBucket, index});
    }
    entries_.insert({kAll, bucket, index});
    entries_.insert({termClass, bucket, index});
    visit.indexed = true;
    visit.indexBucket = bucket;
    visit.indexClass = termClass;
}

std::size_t VisitFinder::Find(const std::vector<std::unique_ptr<OpenVisit>>& visits, std::string_view term,
                              std::string_view engine, std::int64_t lineSeconds) const {
    std::size_t best = npos;
    const auto look = [&](std::uint64_t termClass) {
        for (std::int64_t bucket = BucketOf(lineSeconds - kTimeOut); bucket <= BucketOf(lineSeconds + kTimeOut);
             ++bucket) {
            for (auto at = entries_.lower_bound({termClass, bucket, 0}); at != entries_.end(); ++at) {
                const auto& [entryClass, entryBucket, index] = *at;
                if (entryClass != termClass || entryBucket != bucket || index >= best) break;
                const OpenVisit& visit = *visits[index];
                if (!CanJoin(visit, lineSeconds) || !Visit_TermOK(visit.row, term, engine)) continue;
                best = index;
                break;
            }
        }
    };
    if (term.empty()) {
        look(kAll);
    } else {
        look(kNoTerm);
        look(TermClass(term, engine));
    }
    return best;
}

}  // namespace visits
