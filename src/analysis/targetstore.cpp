#include "analysis/targetstore.h"

#include <algorithm>
#include <array>

#include "core/cds.h"
#include "core/inidraft.h"
#include "core/inistore.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "sitedb/site.h"

namespace analysis {
namespace {

constexpr std::string_view kMain = "Main";
constexpr std::string_view kList = "LstTgts";
constexpr std::string_view kNameEnd = " : ";
constexpr std::size_t kLongestName = 200;

struct KindRow {
    int kind;
    std::string_view words;
    std::string_view joint;
};
constexpr std::array kKinds{
    KindRow{kSize, "at least # bytes of a page with ", " / "},
    KindRow{kAny, "any page with ", " / "},
    KindRow{kAll, "all pages with ", " & "},
    KindRow{kFirstOnly, "any page with ", " / "},
};

std::string SectionOf(std::size_t number) { return "Target " + std::to_string(number); }

void EraseFilters(core::IniStore& ini, const std::string& section, const std::string& file) {
    const core::StrArray names = core::CDSSplitPlain(ini.IniGet(section, "FltrLst", file));
    for (const std::string& name : names.Items())
        if (!name.empty()) ini.IniEraseSection(name, file, core::OnFail::Ignore);
}

void EraseOld(core::IniStore& ini, const std::string& file) {
    for (std::size_t number = 1; ini.IniHas(SectionOf(number), "Typ", file); ++number) {
        EraseFilters(ini, SectionOf(number), file);
        ini.IniEraseSection(SectionOf(number), file, core::OnFail::Ignore);
    }
}

}  // namespace

std::vector<Target> Tgt_ReadList(core::IniStore& ini, const sitedb::SitePaths& site) {
    std::vector<Target> targets;
    const std::string list = ini.IniGet(kMain, kList, site.lastVals);
    if (list.empty()) return targets;
    const core::StrArray items = core::CDSSplitPlain(list);
    for (const std::string& item : items.Items()) {
        targets.push_back(Tgt_ReadSection(ini, SectionOf(targets.size() + 1), site.targets));
        targets.back().name = core::fBefore(item, kNameEnd);
    }
    return targets;
}

core::Result Tgt_WriteList(core::IniStore& ini, const sitedb::SitePaths& site, const std::vector<Target>& targets) {
    core::IniDraft draft(ini, {site.lastVals, site.targets});
    EraseOld(ini, site.targets);
    std::vector<std::string> items;
    bool written = true;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        items.push_back(Tgt_Item(targets[i]));
        written = Tgt_WriteSection(ini, SectionOf(i + 1), targets[i], site.targets) && written;
    }
    written = ini.IniPutWhole(kMain, kList, items.empty() ? "" : core::CDSOf(items), site.lastVals) && written;
    const core::IniDraft::Outcome outcome = draft.Save(true);
    if (written && outcome.saved == core::IniDraft::Saved::Done) return {};
    return {false, "The targets could not be written: " + (outcome.file.empty() ? site.targets : outcome.file)};
}

std::string Tgt_Describe(const Target& target) {
    const auto* row = std::ranges::find(kKinds, target.kind, &KindRow::kind);
    if (row == kKinds.end()) return {};
    std::string text = core::fReplace(row->words, "#", core::CountText(target.bytes)), joint;
    for (const logdefs::FltrRule& filter : target.filters) {
        if (filter.Val.empty()) continue;
        text.append(joint).append(filter.Val);
        joint = row->joint;
    }
    return text;
}

// "|" parts the items of the list, and the name ends at " : ".
std::string Tgt_Item(const Target& target) {
    return target.name + std::string(kNameEnd) + core::fReplace(Tgt_Describe(target), "|", "/");
}

std::string Tgt_Problem(const Target& target, const std::vector<Target>& others) {
    if (core::fTrim(target.name).empty()) return "Give the target a name.";
    if (target.name.find('|') != std::string::npos) return "The name of a target cannot hold \"|\".";
    if (target.name.find(kNameEnd) != std::string::npos) return "The name of a target cannot hold \" : \".";
    if (target.name.size() > kLongestName) return "The name of a target is too long.";
    const auto same = [&](const Target& other) { return core::fEquals(other.name, target.name, core::Case::Ignore); };
    if (std::ranges::any_of(others, same)) return "There is a target \"" + target.name + "\" already.";
    const auto filled = [](const logdefs::FltrRule& filter) { return !filter.Val.empty(); };
    if (std::ranges::none_of(target.filters, filled)) return "Name at least one page, or a part of its name.";
    if (target.kind == kSize && target.bytes < 1) return "Enter the least number of bytes of the page.";
    return {};
}

}  // namespace analysis
