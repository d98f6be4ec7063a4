#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "sitedb/visitrows.h"

namespace visits {

inline constexpr std::int64_t kTimeOut = 7200;         // seconds
inline constexpr std::int64_t kWindowForward = 14400;  // an earlier visit ends before the line's time plus this

// A visit that lines can still join. Times in seconds of the day scale.
struct OpenVisit {
    sitedb::VisitRow row{};
    std::int64_t startSeconds = 0;
    std::int64_t endSeconds = 0;
    bool isNew = true;
    bool touched = false;
    std::vector<sitedb::ClickLine> lines{};  // of this run, without those over the limit

    // Where the finder has it.
    bool indexed = false;
    std::uint64_t indexClass = 0;
    std::int64_t indexBucket = 0;
};

struct TimeTest {
    bool ok = false;
    bool earlier = false;  // the line is before the visit's start
};
// A line between start and end is measured from the start: one in the third hour of a long visit fails. Kept.
TimeTest Visit_TimeOK(const OpenVisit& visit, std::int64_t lineSeconds);

// The line's term is the text as extracted, the visit's is standardised: a term that standardising changes never
// equals it and opens a new visit.
bool Visit_TermOK(const sitedb::VisitRow& visit, std::string_view term, std::string_view engine);

// Finds the visit with the lowest number that a line can join. Visits are kept by term and by the hours they start in,
// so that neither an address with years of visits nor a flood of terms makes a search long.
class VisitFinder {
public:
    void Put(OpenVisit& visit, std::size_t index);
    // The index, or npos.
    std::size_t Find(const std::vector<std::unique_ptr<OpenVisit>>& visits, std::string_view term,
                     std::string_view engine, std::int64_t lineSeconds) const;
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

private:
    // Class, hours of the start, index. A class is the hash of term and engine: a visit that only shares it is told
    // apart when it is looked at.
    using Entry = std::tuple<std::uint64_t, std::int64_t, std::size_t>;

    std::set<Entry> entries_{};
};

}  // namespace visits
