#include "adddata/robots.h"

#include <algorithm>
#include <unordered_set>

#include "core/cds.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/fileops.h"
#include "core/inicodec.h"
#include "core/inifile.h"
#include "core/inilong.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "core/utf8.h"

namespace adddata {
namespace {

constexpr std::string_view kFilters = "Filters";
constexpr std::string_view kListKey = "SkipRobotUserAgents";
constexpr std::string_view kSelectedKey = "FltrBotsUASel";
constexpr std::string_view kRobotsTxt = "robots.txt";

std::vector<std::string> FilledItems(std::string_view list) {
    std::vector<std::string> items = core::CDSSplitPlain(list).Items();
    std::erase_if(items, [](const std::string& item) { return core::fTrim(item).empty(); });
    return items;
}

std::string ListOf(std::vector<std::string> items) {
    return items.empty() ? std::string() : core::CDSJoinPlain({1, std::move(items)});
}

// Where no filter is chosen every browser would be taken for a robot.
logdefs::AddFilters FinderFilters(core::IniStore& ini, const std::string& finder) {
    logdefs::AddFilters filters = logdefs::FltrLoadPreprocess(ini, finder);
    logdefs::FltrRuleSet& set = filters.main;
    if (!set.Rules.empty()) return filters;
    set.Rules.push_back({logdefs::kContains, std::string(kRobotsTxt), false});
    set.FieldIdx.push_back(logdefs::kFile);
    set.oneField = true;
    return filters;
}

void PutEntry(core::IniFile& file, const std::string& section, std::string_view entry, std::string_view value) {
    for (const auto& [name, text] : core::IniChangesFor(entry, value, core::LastChar::Kept, -1).puts)
        file.Put(section, name, text);
}

// A section that stands there from before is of no condition in the list.
void PutRule(core::IniFile& file, const std::string& name, const std::string& agent) {
    const std::string section = core::IniEncodeSection(name);
    file.EraseSection(section);
    PutEntry(file, section, "Typ", std::to_string(logdefs::kStartsWith));
    PutEntry(file, section, "Val", agent);
    PutEntry(file, section, "MC", core::fBoolWord(false));
    PutEntry(file, section, "ColType", "2");
}

// Names of conditions of several rules, too: today and the first free number.
class ConditionNames {
public:
    ConditionNames(const std::vector<std::string>& taken, double now) : day_(core::FormatDate(now, "yyyymmdd")) {
        for (const std::string& name : taken) taken_.insert(core::LowerUtf8(name));
    }
    std::string Next() {
        std::string name;
        do name = day_ + "." + std::to_string(++number_);
        while (taken_.contains(name));
        return name;
    }

private:
    std::string day_;
    std::unordered_set<std::string> taken_{};
    long number_ = 0;
};

}  // namespace

RobotFiles RobotFilesOf(const ProgramFiles& program) {
    const std::string folder = core::fPathOf(program.robots);
    return {program.robots, folder + "ppfindbots.ini", folder + "ppfindbotsskipuas.ini"};
}

std::vector<CountedText> CountedTexts(const logread::CountedList& list) {
    std::vector<CountedText> texts;
    texts.reserve(list.Texts().size());
    for (std::size_t i = 0; i < list.Texts().size(); ++i) texts.push_back({list.Texts()[i], list.Counts()[i]});
    return texts;
}

bool KeepRulesOn(logdefs::Field field, logdefs::FltrRuleSet& set) {
    bool other = false;
    for (std::size_t i = 0; i < set.Rules.size(); ++i) {
        if (set.FieldIdx[i] == field) continue;
        set.Rules[i].Typ = logdefs::kLess;  // never true
        set.FieldIdx[i] = field;
        other = true;
    }
    return other;
}

NewRobots BotsFindNew(core::IniStore& ini, const RobotFiles& files, const std::vector<CountedText>& agents) {
    NewRobots found;
    logdefs::FltrRuleSet set = logdefs::FltrLoad(ini, files.robots, kListKey, true, false);
    set.AnyRule = true;
    found.otherRules = KeepRulesOn(logdefs::kAgent, set);
    for (const CountedText& agent : agents) {
        logdefs::LogLnFields fields;
        fields.Set(logdefs::kAgent, agent.text);
        if (!logdefs::FltrTestLine(fields, set).skip) found.agents.push_back(agent);
    }
    std::ranges::sort(found.agents, {}, &CountedText::text);
    return found;
}

std::vector<CountedText> BotsNotFiltered(core::IniStore& ini, const RobotFiles& files,
                                         std::vector<CountedText> agents) {
    const logdefs::FltrRuleSet filters = logdefs::FltrLoad(ini, files.skip, "skipFtrs", true, false);
    std::erase_if(agents, [&](const CountedText& agent) {
        return core::fTrim(agent.text).empty() || logdefs::FltrTestValue(agent.text, filters.Rules, true);
    });
    return agents;
}

std::vector<CountedText> BotsOffered(core::IniStore& ini, const RobotFiles& files, std::vector<CountedText> agents) {
    const std::vector<std::string> list = BotsSkipList(ini, files);
    const std::unordered_set<std::string> skipped(list.begin(), list.end());
    std::erase_if(agents, [&](const CountedText& agent) { return skipped.contains(agent.text); });
    return BotsNotFiltered(ini, files, std::move(agents));
}

Preprocessed PreprocessBots(core::Env& env, sitedb::Site& site, const ProgramFiles& program,
                            const AddRequest& request) {
    const RobotFiles files = RobotFilesOf(program);
    logread::ReadRequest read;
    read.files = request.files;
    read.formatFile = program.formats;
    read.defaultFormat =
        request.format.empty() ? env.ini.IniGet("Main", "LFmtDflt", site.Paths().lastVals) : request.format;
    read.filters = FinderFilters(env.ini, files.finder);
    read.NoPromptInvalid = request.NoPromptInvalid;
    read.progressPrefix = "Preprocessing. ";
    read.check.Title = "Preprocessing - Check for new robots.";
    read.check.Active = true;
    read.check.CollectUA = true;
    read.check.Status4xxContinue = true;  // who asks for robots.txt is a robot, whether the site has one or not
    Preprocessed result;
    result.read = logread::RawLog_AddData_ReadLogFiles(env, site, std::move(read));
    if (!result.read.ok) return result;
    result.found = BotsFindNew(env.ini, files, CountedTexts(result.read.check.UAs));
    if (result.found.otherRules) env.user.Tell("RobotFiltersNotOnAgent", std::string(kOtherRobotRules));
    result.offered = BotsOffered(env.ini, files, result.found.agents);
    return result;
}

RulesAdded BotsAddRules(core::Env& env, const RobotFiles& files, const std::vector<std::string>& agents) {
    RulesAdded added;
    std::vector<std::string> names = FilledItems(env.ini.IniGet(kFilters, kListKey, files.robots));
    ConditionNames free(names, env.clock.Now());
    core::IniFile file = core::IniFile::Load(files.robots);
    std::unordered_set<std::string> values;
    for (const std::string& agent : agents) {
        const std::string value = core::LowerUtf8(core::fTrim(agent));
        if (value.empty() || !values.insert(value).second) continue;
        added.names.push_back(free.Next());
        added.agents.push_back(agent);
        PutRule(file, added.names.back(), value);
    }
    if (added.names.empty()) return added;
    names.insert(names.end(), added.names.begin(), added.names.end());
    // Rules first: a list never names one that is not there.
    added.ok = file.Save(files.robots) && env.ini.IniPutWhole(kFilters, kListKey, ListOf(names), files.robots) &&
               env.ini.IniPut(kFilters, kSelectedKey, added.names.back(), files.robots);
    return added;
}

std::vector<std::string> BotsSkipList(core::IniStore& ini, const RobotFiles& files) {
    return FilledItems(ini.IniGet("Main", "SkipUA", files.skip));
}

bool BotsSkipListWrite(core::IniStore& ini, const RobotFiles& files, const std::vector<std::string>& agents) {
    std::vector<std::string> list;
    std::unordered_set<std::string_view> seen;
    for (const std::string& agent : agents)
        if (!core::fTrim(agent).empty() && seen.insert(agent).second) list.push_back(agent);
    return ini.IniPutWhole("Main", "SkipUA", ListOf(std::move(list)), files.skip);
}

}  // namespace adddata
