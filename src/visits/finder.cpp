#include "visits/finder.h"

#include <algorithm>

namespace visits {
namespace {

// Keys of the classes: every visit stands in kAll and in its own.
const char* const kAll = "*";
const char* const kNoTerm = "-";

std::string TermClass(std::string_view term, std::string_view engine) {
    return "t" + std::string(engine) + '\n' + std::string(term);
}

std::string ClassOf(const sitedb::VisitRow& row) {
    const std::string& term = row.StzdSearchTerm ? *row.StzdSearchTerm : std::string();
    return term.empty() ? kNoTerm : TermClass(term, row.SearchEngine.value_or(""));
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

void VisitFinder::Insert(const std::string& key, std::int64_t bucket, std::size_t index) {
    std::vector<std::size_t>& list = classes_[key][bucket];
    list.insert(std::ranges::lower_bound(list, index), index);
}

void VisitFinder::Remove(const std::string& key, std::int64_t bucket, std::size_t index) {
    std::vector<std::size_t>& list = classes_[key][bucket];
    const auto at = std::ranges::lower_bound(list, index);
    if (at != list.end() && *at == index) list.erase(at);
}

void VisitFinder::Put(OpenVisit& visit, std::size_t index) {
    const std::int64_t bucket = BucketOf(visit.startSeconds);
    std::string termClass = ClassOf(visit.row);
    if (visit.indexed && bucket == visit.indexBucket && termClass == visit.indexClass) return;
    if (visit.indexed) {
        Remove(kAll, visit.indexBucket, index);
        Remove(visit.indexClass, visit.indexBucket, index);
    }
    Insert(kAll, bucket, index);
    Insert(termClass, bucket, index);
    visit.indexed = true;
    visit.indexBucket = bucket;
    visit.indexClass = std::move(termClass);
}

std::size_t VisitFinder::Find(const std::vector<std::unique_ptr<OpenVisit>>& visits, std::string_view term,
                              std::string_view engine, std::int64_t lineSeconds) const {
    std::size_t best = npos;
    const auto look = [&](const std::string& key) {
        const auto buckets = classes_.find(key);
        if (buckets == classes_.end()) return;
        const std::int64_t last = BucketOf(lineSeconds + kTimeOut);
        for (auto at = buckets->second.lower_bound(BucketOf(lineSeconds - kTimeOut));
             at != buckets->second.end() && at->first <= last; ++at) {
            for (const std::size_t index : at->second) {
                if (index >= best) break;
                if (!CanJoin(*visits[index], lineSeconds)) continue;
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
