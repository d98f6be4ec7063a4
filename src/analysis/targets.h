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

// Bit t: of the run's target t.
using TargetBits = unsigned;

// Tells which targets a visit met. What a page matches is worked out at its first sighting. Lives for a run.
class TargetPages {
public:
    TargetPages(std::span<const Target> targets, const sitedb::PageList& pages);

    // Without it no bytes need be read.
    bool NeedsBytes() const { return sized_ != 0; }
    // `bytes` goes along with `pages`; what is missing counts 0.
    TargetBits Tgt_Met(std::span<const std::int32_t> pages, std::span<const double> bytes);

private:
    static constexpr std::uint8_t kUnknown = 0xff;

    TargetBits Matches(std::int32_t pageId) {
        const auto at = static_cast<std::uint32_t>(pageId);
        return at < known_.size() && known_[at] != kUnknown ? known_[at] : WorkOut(pageId);
    }
    TargetBits WorkOut(std::int32_t pageId);
    TargetBits MeetSize(TargetBits matched, double bytes) const;

    std::span<const Target> targets_;
    const sitedb::PageList& pages_;
    TargetBits sized_ = 0;               // targets that ask for bytes
    std::vector<std::uint8_t> known_{};  // by PageID
};

struct SkipTypes {
    std::string list{};     // less the types of target pages
    std::string message{};  // for the user, "" when nothing was taken out
};
// Holds for one run: the stored list stays as it is.
SkipTypes SkipTypes_Check(std::string normalisedList, const std::vector<Target>& targets);

}  // namespace analysis
