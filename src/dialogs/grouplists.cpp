#include "dialogs/grouplists.h"

#include <algorithm>
#include <utility>

#include "core/cdsini.h"
#include "core/inilong.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/editlist.h"

namespace dialogs {
namespace {

// They part lists, names and values in parameter files.
constexpr std::string_view kNotInNames = "|{}[]=;\"\\";
constexpr std::string_view kAltPrefix = "AltNo.";

std::vector<std::string> ReadList(core::IniStore& ini, const core::IniKey& key) {
    std::vector<std::string> items;
    const core::StrArray list = core::CDSReadIni(ini, key);
    for (const std::string& item : list.Items())
        if (!item.empty()) items.push_back(item);
    return items;
}

bool WriteList(core::IniStore& ini, const core::IniKey& key, const std::vector<std::string>& items) {
    return core::CDSWriteIni(ini, key, core::StrArray(1, items));
}

// The characters that may not stand in a name, each once; control characters as "?".
std::string BadCharacters(std::string_view name) {
    std::string bad;
    for (const char c : name) {
        const bool control = static_cast<unsigned char>(c) < 32 || c == 127;
        const char shown = control ? '?' : c;
        if ((control || kNotInNames.find(c) != std::string_view::npos) && bad.find(shown) == std::string::npos)
            bad += shown;
    }
    return bad;
}

}  // namespace

GroupLists::GroupLists(core::IniStore& ini, GroupPlace place) : ini_(ini), place_(std::move(place)) {
    if (!place_.Given()) return;
    for (std::string& name : ReadList(ini_, {place_.section, place_.listKey, place_.file})) {
        if (Find(name)) continue;
        std::vector<std::string> members = ReadList(ini_, {place_.section, name, place_.file});
        groups_.push_back({std::move(name), std::move(members), false});
    }
}

std::optional<std::size_t> GroupLists::Find(std::string_view name) const {
    for (std::size_t i = 0; i < groups_.size(); ++i)
        if (core::fEquals(groups_[i].name, name, core::Case::Ignore)) return i;
    return std::nullopt;
}

std::vector<std::size_t> GroupLists::Holding(const std::string& member, std::optional<std::size_t> except) const {
    if (holders_.empty())
        for (std::size_t i = 0; i < groups_.size(); ++i)
            for (const std::string& text : groups_[i].members) {
                std::vector<std::size_t>& holders = holders_[text];
                if (holders.empty() || holders.back() != i) holders.push_back(i);
            }
    const auto found = holders_.find(member);
    if (found == holders_.end()) return {};
    std::vector<std::size_t> holders = found->second;
    if (except) std::erase(holders, *except);
    return holders;
}

std::string GroupLists::NameProblem(std::string_view name) const {
    name = core::fTrim(name);
    if (name.empty()) return "Enter a name.";
    const std::string bad = BadCharacters(name);
    if (!bad.empty()) return "The following characters are not allowed: " + bad;
    if (!core::IsLetterOrDigit(core::LetterBefore(name, name.size()).code))
        return "The Last character must by a-z or 0-9";
    for (const std::string_view prefix : {kAltPrefix, core::kSplitEntry})
        if (core::fStartsWith(name, prefix, core::Case::Ignore))
            return "Name cannot be prefixed with \"AltNo.\" or \"SplitEntry.\".";
    // Another entry of the section is not overwritten by a group.
    if (Find(name) || core::fEquals(name, place_.listKey, core::Case::Ignore) ||
        ini_.IniHas(place_.section, name, place_.file))
        return "Name already exists. You must enter a unique name.";
    return {};
}

std::size_t GroupLists::Add(std::string_view name) {
    groups_.push_back({std::string(core::fTrim(name)), {}, true});
    namesChanged_ = true;
    return groups_.size() - 1;
}

void GroupLists::Remove(std::size_t group) {
    removed_.push_back(groups_[group].name);
    groups_.erase(groups_.begin() + static_cast<std::ptrdiff_t>(group));
    namesChanged_ = true;
    holders_.clear();
}

void GroupLists::Keep(const std::vector<std::string>& names) {
    std::vector<Group> kept;
    for (const std::string& name : names) {
        const auto at = Find(name);
        if (!at) continue;
        kept.push_back(groups_[*at]);
        groups_.erase(groups_.begin() + static_cast<std::ptrdiff_t>(*at));
    }
    for (const Group& group : groups_) removed_.push_back(group.name);
    groups_ = std::move(kept);
    namesChanged_ = true;
    holders_.clear();
}

void GroupLists::Changed(std::size_t group) {
    groups_[group].changed = true;
    holders_.clear();
}

void GroupLists::SetMembers(std::size_t group, std::vector<std::string> members) {
    if (groups_[group].members == members) return;
    groups_[group].members = std::move(members);
    Changed(group);
}

void GroupLists::AddMembers(std::size_t group, const std::vector<std::string>& members) {
    std::vector<std::string>& list = groups_[group].members;
    std::unordered_set<std::string> known(list.begin(), list.end());
    for (const std::string& member : members)
        if (known.insert(member).second) list.push_back(member);
    Changed(group);
}

void GroupLists::RemoveMembers(std::size_t group, const std::unordered_set<std::string>& members) {
    if (std::erase_if(groups_[group].members, [&](const std::string& text) { return members.contains(text); }) > 0)
        Changed(group);
}

// Names come behind new members and before removed ones go: a name never stands without its members.
bool GroupLists::Save() {
    for (Group& group : groups_) {
        if (!group.changed) continue;
        if (!WriteList(ini_, {place_.section, group.name, place_.file}, group.members)) return false;
        group.changed = false;
    }
    if (!namesChanged_) return true;
    std::vector<std::string> names;
    for (const Group& group : groups_) names.push_back(group.name);
    if (!WriteList(ini_, {place_.section, place_.listKey, place_.file}, names)) return false;
    namesChanged_ = false;
    while (!removed_.empty() && (Find(removed_.back()) || ini_.IniErase(place_.section, removed_.back(), place_.file)))
        removed_.pop_back();
    return removed_.empty();
}

std::optional<std::string> AskGroupName(const Desk& desk, const GroupLists& groups, std::string_view item,
                                        std::string_view title) {
    const auto check = [&](const std::string& name) { return groups.NameProblem(name); };
    auto name = AskLine(desk, std::string("Enter name for new group of ").append(item), "", title, check);
    if (name) *name = core::fTrim(*name);
    return name;
}

}  // namespace dialogs
