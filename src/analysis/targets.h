#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "logdefs/rule.h"

namespace core {
class IniStore;
}
namespace sitedb {
class PageList;
class Site;
}  // namespace sitedb

// Pages that a visit should reach. A run knows at most four.
namespace analysis {

inline constexpr std::size_t kMaxTargets = 4;

enum TargetKind : int { kSize = 1, kAny = 2, kAll = 3, kFirstOnly = 4 };

struct Target {
    std::string name{};
    int kind = kAny;
    double bytes = 0;  // kSize: as much of the page must have been sent
    std::vector<logdefs::FltrRule> filters{};
};

std::vector<Target> Tgt_Load(core::IniStore& ini, const sitedb::Site& site, bool AnalTgt);
// Kind, bytes and filters of a section; the name stands in the list of targets.
Target Tgt_ReadSection(core::IniStore& ini, std::string_view section, const std::string& file);
bool Tgt_WriteSection(core::IniStore& ini, std::string_view section, const Target& target, const std::string& file);

// Remembers which pages satisfy a filter. Lives for a run; filters are told apart by where they stand.
class PageMatches {
public:
    explicit PageMatches(const sitedb::PageList& pages) : pages_(pages) {}
    bool Test(const logdefs::FltrRule& filter, std::int32_t pageId);

private:
    struct OfFilter {
        const logdefs::FltrRule* filter = nullptr;
        std::vector<signed char> known{};  // by PageID: -1 unknown, 0 no, 1 yes
    };
    std::vector<signed char>& KnownOf(const logdefs::FltrRule& filter);

    const sitedb::PageList& pages_;
    std::vector<OfFilter> filters_{};  // a run has few
    std::size_t last_ = 0;             // asked for one page after the other
};

// `bytes` goes along with `pages`; what is missing counts 0.
bool Tgt_Met(const Target& target, std::span<const std::int32_t> pages, std::span<const double> bytes,
             PageMatches& matches);

struct SkipTypes {
    std::string list{};     // less the types of target pages
    std::string message{};  // for the user, "" when nothing was taken out
};
// Holds for one run: the stored list stays as it is.
SkipTypes SkipTypes_Check(std::string normalisedList, const std::vector<Target>& targets);

}  // namespace analysis
