#include "logdefs/filter.h"

#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "core/utf8.h"

namespace logdefs {
namespace {

constexpr std::size_t kManyRules = 16;

// Each value is lower-cased once for all the rules that want it so.
class LoweredFields {
public:
    explicit LoweredFields(const LogLnFields& fields) : fields_(fields) {}

    std::string_view Value(int field, bool matchCase) {
        if (matchCase) return fields_[field];
        if (field != field_) {
            lowered_ = core::LowerUtf8(fields_[field]);
            field_ = field;
        }
        return lowered_;
    }

private:
    const LogLnFields& fields_;
    int field_ = -1;
    std::string lowered_{};
};

FltrRuleSet::Verdict Judge(const LogLnFields& fields, const FltrRuleSet& set) {
    LoweredFields lowered(fields);
    for (std::size_t i = 0; i < set.Rules.size(); ++i) {
        const FltrRule& rule = set.Rules[i];
        // The value is in the case that the rule compares in, so no second lowering is needed.
        const std::string_view value = lowered.Value(set.FieldIdx[i], rule.MC);
        if (FltrTestPrepared(value, rule) == set.AnyRule) return {set.AnyRule != set.Invert, i};
    }
    return {!set.AnyRule != set.Invert, set.Rules.size()};
}

// The same for a filter of one field; among many rules the one that settles it is found in one pass.
FltrRuleSet::Verdict JudgeText(const LogLnFields& fields, FltrRuleSet& set) {
    if (!set.AnyRule || set.Rules.size() < kManyRules) return Judge(fields, set);
    if (!set.matcher) set.matcher = std::make_shared<const RuleMatcher>(set.Rules);
    const std::string_view text = fields[set.FieldIdx.front()];
    const std::size_t index = set.matcher->FirstSatisfied(text, core::LowerUtf8(text));
    return {(index < set.Rules.size()) != set.Invert, index};
}

bool OneField(const FltrRuleSet& set) {
    return !set.FieldIdx.empty() &&
           std::ranges::all_of(set.FieldIdx, [&](int field) { return field == set.FieldIdx.front(); });
}

}  // namespace

LineVerdict FltrTestLine(const LogLnFields& fields, FltrRuleSet& set) {
    if (!set.Active) return {};
    FltrRuleSet::Verdict verdict;
    if (set.oneField) {
        const std::string_view text = fields[set.FieldIdx.front()];
        const FltrRuleSet::Verdict* known = set.seen.Find(text);
        verdict = known != nullptr ? *known : set.seen.Put(text, JudgeText(fields, set));
    } else {
        verdict = Judge(fields, set);
    }
    if (verdict.skip) ++set.HitCount;
    const bool settled = verdict.index < set.FieldIdx.size();
    return {verdict.skip, settled ? fields[set.FieldIdx[verdict.index]] : std::string_view(), verdict.index};
}

FilterSwitches FltrReadSwitches(core::IniStore& ini, const FilterFiles& files) {
    FilterSwitches switches;
    if (!ini.IniGetBool("Main", "All", files.switches)) {
        switches.main = ini.IniGetBool("Main", "Filter", files.switches) ? MainFilter::Only : MainFilter::Except;
    }
    switches.skipRobots = ini.IniGetBool("Main", "nobots", files.switches);
    switches.skipComponents = ini.IniGetBool("Main", "nocomp", files.switches);
    return switches;
}

FltrRuleSet FltrLoad(core::IniStore& ini, std::string_view file, std::string_view key, bool active, bool invert) {
    FltrRuleSet set;
    set.Active = active;
    set.Invert = invert;
    if (!active) return set;
    const std::string selected = ini.IniGet("Filters", key, file);
    if (selected.empty()) return set;
    const Condition condition = FltrCndnRead(ini, selected, file);
    set.AnyRule = condition.any;
    const core::StrArray names = core::CDSSplitPlain(condition.list);
    for (const std::string& name : names.Items()) {
        StoredRule stored = FltrRuleRead(ini, name, file);
        set.Rules.push_back(std::move(stored.rule));
        set.FieldIdx.push_back(FieldOfColType(stored.colType));
    }
    set.oneField = OneField(set);
    return set;
}

AddFilters FltrLoadAddFilters(core::IniStore& ini, const FilterFiles& files, const FilterSwitches& switches) {
    AddFilters filters;
    filters.main =
        FltrLoad(ini, files.main, "Fltr Sel", switches.main != MainFilter::All, switches.main == MainFilter::Only);
    filters.components = FltrLoad(ini, files.components, "Fltr Sel", switches.skipComponents, false);
    filters.robots = FltrLoad(ini, files.robots, "SkipRobotUserAgents", switches.skipRobots, false);
    filters.robots.AnyRule = true;  // one robot rule is enough, whatever the list says
    const struct {
        const FltrRuleSet& set;
        std::string_view name;
        std::string_view effect;
    } families[] = {
        {filters.main, "main filter", filters.main.Invert ? "it skips no line" : "it skips every line"},
        {filters.components, "page component filter", "it skips every line"},
        {filters.robots, "robot filter", "it skips no line"},
    };
    for (const auto& family : families) {
        if (!family.set.Active || !family.set.Rules.empty()) continue;
        filters.warnings.push_back("The " + std::string(family.name) + " is on and has no rule selected, so " +
                                   std::string(family.effect) + ".");
    }
    return filters;
}

AddFilters FltrLoadPreprocess(core::IniStore& ini, std::string_view preprocessFile) {
    AddFilters filters;
    filters.main = FltrLoad(ini, preprocessFile, "Fltr Sel", true, true);
    return filters;
}

std::string FltrDescribe(core::IniStore& ini, const FilterFiles& files, const FilterSwitches& switches) {
    if (switches.main == MainFilter::All) return "No";
    const std::string selected = ini.IniGet("Filters", "Fltr Sel", files.main);
    const bool any = !selected.empty() && FltrCndnRead(ini, selected, files.main).any;
    return std::string("Yes - Log line ") + (switches.main == MainFilter::Only ? "loaded" : "skipped") +
           " when satisfy " + (any ? "any" : "all") + " filters. " +
           (selected.empty() ? std::string() : FltrCndnText(ini, selected, files.main)) + ".";
}

}  // namespace logdefs
