#include "analysis/targets.h"

#include <algorithm>

#include "analysis/options.h"
#include "core/cds.h"
#include "core/files.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "sitedb/pagelist.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

std::span<const logdefs::FltrRule> FiltersToTest(const Target& target) {
    const std::span<const logdefs::FltrRule> all(target.filters);
    switch (target.kind) {
        case kAny:
            return all;
        case kSize:
        case kFirstOnly:
            return all.first(std::min<std::size_t>(all.size(), 1));
        default:
            return {};  // "all" can be chosen and stored and is never met
    }
}

constexpr TargetBits BitOf(std::size_t target) { return 1U << target; }

bool MatchesAny(std::span<const logdefs::FltrRule> filters, std::string_view name) {
    return std::ranges::any_of(filters, [name](const logdefs::FltrRule& filter) {
        return !filter.Val.empty() && logdefs::FltrRuleTest(name, filter);
    });
}

std::int32_t CountOfTargets(core::IniStore& ini) {
    const std::int32_t count = core::ToLong(core::fNum(ini.IniGet("Main", "CntTgt", core::kBySection)));
    return std::clamp(count == 0 ? 4 : count, 0, static_cast<std::int32_t>(kMaxTargets));
}

// The first section TFltr1, TFltr2 ... that nobody has and that is not among `taken`.
std::string FreeFilterSection(core::IniStore& ini, const std::vector<std::string>& taken, const std::string& file) {
    for (int number = 1;; ++number) {
        std::string name = "TFltr" + std::to_string(number);
        if (std::ranges::find(taken, name) == taken.end() && !ini.IniHas(name, "Typ", file)) return name;
    }
}

}  // namespace

std::vector<Target> Tgt_Load(core::IniStore& ini, const sitedb::Site& site, bool AnalTgt) {
    std::vector<Target> targets;
    const std::string list = AnalTgt ? ini.IniGet("Main", "LstTgts", core::kBySection) : std::string();
    if (list.empty()) return targets;
    const std::int32_t count = CountOfTargets(ini);
    const core::StrArray items = core::CDSSplitPlain(list);
    for (const std::string& item : items.Items()) {
        if (std::ssize(targets) >= count) break;
        targets.push_back(Tgt_ReadSection(ini, "Target " + std::to_string(targets.size() + 1), site.Paths().targets));
        targets.back().name = core::fBefore(item, " : ");
    }
    return targets;
}

Target Tgt_ReadSection(core::IniStore& ini, std::string_view section, const std::string& file) {
    Target target;
    target.kind = core::ToLong(core::fNum(ini.IniGet(section, "Typ", file)));
    target.bytes = core::fNum(ini.IniGet(section, "TagOpBytes", file));
    const std::string list = ini.IniGet(section, "FltrLst", file);
    if (list.empty()) return target;
    const core::StrArray names = core::CDSSplitPlain(list);
    for (const std::string& name : names.Items()) target.filters.push_back(logdefs::FltrRuleRead(ini, name, file).rule);
    return target;
}

bool Tgt_WriteSection(core::IniStore& ini, std::string_view section, const Target& target, const std::string& file) {
    const std::string old = ini.IniGet(section, "FltrLst", file);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < target.filters.size(); ++i) {
        std::string name = core::CDSItem(static_cast<long>(i) + 1, old);
        if (name.empty()) name = FreeFilterSection(ini, names, file);
        names.push_back(std::move(name));
        if (!logdefs::FltrRuleWrite(ini, names.back(), file, {target.filters[i], 1})) return false;
    }
    return ini.IniPut(section, "Typ", std::to_string(target.kind), file) &&
           ini.IniPut(section, "TagOpBytes", core::NumText(target.bytes), file) &&
           ini.IniPutWhole(section, "FltrLst", core::CDSOf(names), file);
}

TargetPages::TargetPages(std::span<const Target> targets, const sitedb::PageList& pages)
    : targets_(targets),
      pages_(pages),
      known_(targets.empty() ? 0 : static_cast<std::size_t>(pages.UpperBound()) + 1, kUnknown) {
    for (std::size_t t = 0; t < targets_.size(); ++t)
        if (targets_[t].kind == kSize) sized_ |= BitOf(t);
}

TargetBits TargetPages::WorkOut(std::int32_t pageId) {
    const bool listed = pageId >= 0 && pageId <= pages_.UpperBound();
    const std::string_view name = listed ? pages_.Page_Name(pageId) : std::string_view();
    TargetBits matched = 0;
    for (std::size_t t = 0; t < targets_.size(); ++t)
        if (MatchesAny(FiltersToTest(targets_[t]), name)) matched |= BitOf(t);
    if (listed) known_[static_cast<std::size_t>(pageId)] = static_cast<std::uint8_t>(matched);
    return matched;
}

TargetBits TargetPages::MeetSize(TargetBits matched, double bytes) const {
    TargetBits met = 0;
    for (std::size_t t = 0; t < targets_.size(); ++t)
        if ((matched & BitOf(t)) != 0 && bytes >= targets_[t].bytes) met |= BitOf(t);
    return met;
}

TargetBits TargetPages::Tgt_Met(std::span<const std::int32_t> pages, std::span<const double> bytes) {
    TargetBits met = 0;
    if (targets_.empty()) return met;
    TargetBits sized = sized_;  // only the first page that matches can meet a size
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const TargetBits matched = Matches(pages[i]);
        met |= matched & ~sized_;
        const TargetBits decided = matched & sized;
        if (decided == 0) continue;
        met |= MeetSize(decided, i < bytes.size() ? bytes[i] : 0);
        sized &= ~decided;
    }
    return met;
}

SkipTypes SkipTypes_Check(std::string normalisedList, const std::vector<Target>& targets) {
    SkipTypes result{std::move(normalisedList), {}};
    std::string removed;
    for (const Target& target : targets) {
        for (const logdefs::FltrRule& filter : target.filters) {
            const std::string type = core::fTypeOf(filter.Val);
            if (filter.Val.empty() || !HasType(result.list, type)) continue;
            result.list = core::fReplace(result.list, "|" + type + "|", "|", core::Case::Ignore);
            removed += (removed.empty() ? "" : ", ") + type;
        }
    }
    if (removed.empty()) return result;
    result.message =
        "The following File Types to skip when counting (specified on Options - Edit menu) include file types of pages "
        "defined as target.\rFor this analysis the following file types will not be analysed. Use Options from the "
        "edit menu to remove the file types always and avoid this warning screen\rFile types that will not be "
        "analysed:\r" +
        removed;
    return result;
}

}  // namespace analysis
