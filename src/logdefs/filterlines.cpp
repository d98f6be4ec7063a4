#include "logdefs/filterlines.h"

#include <algorithm>
#include <utility>

#include "core/cds.h"
#include "core/dates.h"
#include "core/inistore.h"
#include "core/utf8.h"
#include "dialogs/gridops.h"

namespace logdefs {
namespace {

constexpr std::string_view kFilters = "Filters";

std::vector<std::string> Names(std::string_view list) {
    std::vector<std::string> names = core::CDSSplitPlain(list).Items();
    std::erase(names, "");
    return names;
}

std::string ListOf(const std::vector<std::string>& names) {
    return names.empty() ? std::string() : core::CDSJoinPlain({1, names});
}

bool SameRule(const StoredRule& a, const StoredRule& b) {
    return a.colType == b.colType && a.rule.Typ == b.rule.Typ && a.rule.MC == b.rule.MC && a.rule.Val == b.rule.Val;
}

}  // namespace

FilterLines::FilterLines(core::IniStore& ini, std::string file, std::string key)
    : ini_(ini), file_(std::move(file)), key_(std::move(key)) {
    Read();
}

void FilterLines::Read() {
    lines_.clear();
    places_.clear();
    namesChanged_ = false;
    for (std::string& name : Names(ini_.IniGet(kFilters, key_, file_))) {
        // A name that stands twice is one condition.
        if (!places_.try_emplace(core::LowerUtf8(name), lines_.size()).second) continue;
        Line line;
        const Condition condition = FltrCndnRead(ini_, name, file_);
        line.multiple = condition.multiple;
        line.any = condition.any;
        if (condition.multiple)
            line.rules = Names(condition.list);
        else
            line.stored = FltrRuleRead(ini_, name, file_);
        line.name = std::move(name);
        lines_.push_back(std::move(line));
    }
}

bool FilterLines::WriteNames() {
    if (!namesChanged_) return true;
    std::vector<std::string> names;
    for (const Line& line : lines_) names.push_back(line.name);
    if (!ini_.IniPutWhole(kFilters, key_, ListOf(names), file_)) return false;
    namesChanged_ = false;
    return true;
}

void FilterLines::Index() {
    places_.clear();
    for (std::size_t i = 0; i < lines_.size(); ++i) places_.try_emplace(core::LowerUtf8(lines_[i].name), i);
    namesChanged_ = true;
}

std::optional<std::size_t> FilterLines::Find(std::string_view name) const {
    const auto found = places_.find(core::LowerUtf8(name));
    if (found == places_.end()) return std::nullopt;
    return found->second;
}

StoredRule FilterLines::RuleNamed(const std::string& name) const {
    const std::optional<std::size_t> at = Find(name);
    if (at && !lines_[*at].multiple) return lines_[*at].stored;
    return FltrRuleRead(ini_, name, file_);
}

std::vector<StoredRule> FilterLines::RulesOf(const Line& line) const {
    if (!line.multiple) return {line.stored};
    std::vector<StoredRule> rules;
    for (const std::string& name : line.rules) rules.push_back(RuleNamed(name));
    return rules;
}

std::string FilterLines::Text(const Line& line, std::size_t most) const {
    if (!line.multiple) return FltrRuleText(line.stored);
    std::string text;
    for (const std::string& name : line.rules) {
        if (text.size() > most) break;
        if (!text.empty()) text += line.any ? " / " : " & ";
        text += "<" + FltrRuleText(RuleNamed(name)) + ">";
    }
    return text;
}

bool FilterLines::SameAsAnother(const Line& line, std::optional<std::size_t> without) const {
    const auto same = [&](const Line& other) {
        if (other.multiple != line.multiple) return false;
        if (!line.multiple) return SameRule(line.stored, other.stored);
        return line.any == other.any && line.rules == other.rules;
    };
    for (std::size_t i = 0; i < lines_.size(); ++i)
        if (i != without && same(lines_[i])) return true;
    return false;
}

std::optional<std::size_t> FilterLines::UserOf(std::string_view name) const {
    const auto holds = [&](const std::string& rule) { return core::fEquals(rule, name, core::Case::Ignore); };
    for (std::size_t i = 0; i < lines_.size(); ++i)
        if (std::ranges::any_of(lines_[i].rules, holds)) return i;
    return std::nullopt;
}

std::string FilterLines::FreeName(double now) const { return CopyName(core::FormatDate(now, "yyyymmdd")); }

std::string FilterLines::CopyName(std::string_view name) const {
    for (std::size_t n = 1;; ++n) {
        std::string free = std::string(name) + "." + std::to_string(n);
        if (!Find(free)) return free;
    }
}

bool FilterLines::Write(const Line& line) {
    // Whatever stands under the name is of no line, or of this one.
    (void)ini_.IniEraseSection(line.name, file_, core::OnFail::Ignore);
    if (!line.multiple) return FltrRuleWrite(ini_, line.name, file_, line.stored);
    return ini_.IniPutWhole(line.name, "CDSCndns", ListOf(line.rules), file_) &&
           ini_.IniPutBool(line.name, "Any", line.any, file_);
}

bool FilterLines::Rename(const std::string& from, const std::string& to) {
    (void)ini_.IniEraseSection(from, file_, core::OnFail::Ignore);
    for (Line& line : lines_) {
        bool holds = false;
        for (std::string& rule : line.rules) {
            if (!core::fEquals(rule, from, core::Case::Ignore)) continue;
            rule = to;
            holds = true;
        }
        if (holds && !ini_.IniPutWhole(line.name, "CDSCndns", ListOf(line.rules), file_)) return false;
    }
    return true;
}

bool FilterLines::Put(std::optional<std::size_t> at, Line line) {
    if (!at) return Insert(lines_.size(), std::move(line));
    if (!line.multiple && !line.stored.rule.MC) line.stored.rule.Val = core::LowerUtf8(line.stored.rule.Val);
    const std::string before = std::exchange(lines_[*at], line).name;
    if (before != line.name) {
        Index();
        if (!Rename(before, line.name)) return false;
    }
    return Write(line);
}

bool FilterLines::Insert(std::size_t at, Line line) {
    if (!line.multiple && !line.stored.rule.MC) line.stored.rule.Val = core::LowerUtf8(line.stored.rule.Val);
    const bool written = Write(line);
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
    Index();
    return written;
}

bool FilterLines::Remove(std::size_t at) {
    const bool erased = ini_.IniEraseSection(lines_[at].name, file_, core::OnFail::Ignore);
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
    Index();
    return erased;
}

void FilterLines::MoveToEnd(std::size_t at) {
    const auto line = lines_.begin() + static_cast<std::ptrdiff_t>(at);
    std::rotate(line, line + 1, lines_.end());
    Index();
}

void FilterLines::Move(std::vector<int>& selected, bool up) {
    dialogs::MoveSelected(lines_, selected, up ? dialogs::Direction::Up : dialogs::Direction::Down);
    Index();
}

}  // namespace logdefs
