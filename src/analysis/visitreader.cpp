#include "analysis/visitreader.h"

#include <algorithm>
#include <charconv>

#include "core/numbers.h"

namespace analysis {
namespace {

template <typename Number>
Number ReadNumber(std::string_view text) {
    std::int64_t value = 0;
    const std::from_chars_result read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec == std::errc() && read.ptr == text.data() + text.size()) return static_cast<Number>(value);
    return static_cast<Number>(core::fNum(text));
}

constexpr std::ptrdiff_t kShortNumber = 9;  // digits that fit without a look at overflow

template <typename Number>
void ReadList(std::string_view list, std::vector<Number>& numbers) {
    numbers.clear();
    const char* const end = list.data() + list.size();
    for (const char* at = list.data(); at != end;) {
        const char* const start = at;
        std::uint32_t value = 0;
        for (; at != end && *at >= '0' && *at <= '9' && at - start < kShortNumber; ++at)
            value = value * 10 + static_cast<std::uint32_t>(*at - '0');
        if (at != start && (at == end || *at == '|')) {
            numbers.push_back(static_cast<Number>(value));
        } else {
            at = std::find(start, end, '|');
            numbers.push_back(ReadNumber<Number>(std::string_view(start, at)));
        }
        if (at != end) ++at;
    }
}

}  // namespace

void VisitReader::Split(std::string_view pages, std::string_view bytes) {
    ReadList(pages, list_.pageIds);
    if (wants_.bytes) ReadList(bytes, list_.bytes);
}

void VisitReader::Further(const PageFact& fact) {
    if (wants_.names && seen_.Insert(fact.name)) list_.names.push_back(fact.name);
    if (fact.forAverage) ++list_.further;
}

VisitPageList& VisitReader::Visit_Pages(const sitedb::AnalysisRow& visit) {
    list_.further = 0;
    list_.names.clear();
    seen_.Clear();
    const PageFact start = shown_.Of(visit.StartPageID);
    list_.start = start.counts ? std::int64_t{start.name} : VisitPageList::kNoStart;
    if (visit.CDSClickFurtherPageIDs == sitedb::kOverflowMark) {
        if (!overflow_) overflow_.emplace(db_);
        const std::optional<sitedb::Clicks> clicks = overflow_->VisitPg_Read(visit.VisitID);
        Split(clicks ? clicks->pages : std::string_view(), clicks ? clicks->bytes : std::string_view());
    } else {
        Split(visit.CDSClickFurtherPageIDs, visit.CDSBytesClickFurtherPageIDs);
    }
    for (const std::int32_t id : list_.pageIds) {
        if (id == visit.StartPageID) continue;
        const PageFact& fact = shown_.Of(id);
        if (!fact.counts) continue;
        if (list_.start == VisitPageList::kNoStart) {
            list_.start = fact.name;
        } else {
            Further(fact);
        }
    }
    return list_;
}

}  // namespace analysis
