#include "adddata/checks.h"

#include <map>
#include <unordered_map>

#include "core/cds.h"
#include "core/env.h"
#include "core/inistore.h"
#include "core/ports.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/enginedefs.h"
#include "names/pagename.h"
#include "names/url.h"

namespace adddata {
namespace {

logread::ReadRequest CheckRead(core::Env& env, const sitedb::Site& site, const ProgramFiles& program,
                               const AddRequest& request, std::string title) {
    logread::ReadRequest read;
    read.files = request.files;
    read.formatFile = program.formats;
    read.defaultFormat =
        request.format.empty() ? env.ini.IniGet("Main", "LFmtDflt", site.Paths().lastVals) : request.format;
    read.NoPromptInvalid = request.NoPromptInvalid;
    read.check.Title = std::move(title);
    read.check.Active = true;
    read.progressPrefix = read.check.Title + ". ";
    return read;
}

logdefs::AddFilters FiltersOfAdd(core::Env& env, const sitedb::Site& site, const ProgramFiles& program,
                                 const AddRequest& request) {
    const logdefs::FilterFiles files = FilterFilesOf(program, site.Paths());
    logdefs::FilterSwitches switches = logdefs::FltrReadSwitches(env.ini, files);
    switches.main = request.mainFilter.value_or(switches.main);
    switches.skipRobots = request.skipRobots.value_or(switches.skipRobots);
    switches.skipComponents = request.skipComponents.value_or(switches.skipComponents);
    logdefs::AddFilters filters = logdefs::FltrLoadAddFilters(env.ini, files, switches);
    for (const std::string& warning : filters.warnings) env.user.Tell("FilterWithoutRule", warning);
    return filters;
}

void AddTo(CheckGroup& group, const CountedText& text) {
    group.texts.push_back(text);
    group.lines += text.lines;
}

std::string FileType(std::string_view page) {
    const std::string_view name = core::fAfterR(core::fBefore(core::fBefore(page, "#"), "?"), "/");
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::string() : core::LowerUtf8(name.substr(point + 1));
}

// A referrer can fall to several definitions of engines, all of which miss its term.
void TakeNoTerm(const CountedText& referrer, const std::vector<std::string>& undefined,
                std::map<std::size_t, CheckGroup>& groups) {
    for (std::size_t i = 0; i < undefined.size(); ++i)
        if (!undefined[i].empty()) AddTo(groups[i], referrer);
}

}  // namespace

std::string ReferrerSite(std::string_view referrer) {
    if (referrer.starts_with('"')) referrer.remove_prefix(1);
    if (!core::fStartsWith(referrer, "http", core::Case::Ignore)) return {};
    const std::string site = core::LowerUtf8(names::URL_Parse(referrer).net);
    return site.starts_with("www.") ? site.substr(4) : site;
}

ReferrerCheck CheckReferrers(core::Env& env, sitedb::Site& site, const ProgramFiles& program,
                             const AddRequest& request) {
    logread::ReadRequest read = CheckRead(env, site, program, request, "Check SE referrers");
    read.filters = FiltersOfAdd(env, site, program, request);
    read.check.CollectReferrer = true;
    ReferrerCheck result;
    result.read = logread::RawLog_AddData_ReadLogFiles(env, site, std::move(read));
    result.all = CountedTexts(result.read.check.Referrers);
    JudgeReferrers(env.ini, program, result);
    return result;
}

void JudgeReferrers(core::IniStore& ini, const ProgramFiles& program, ReferrerCheck& check) {
    std::string now = logdefs::SEDefsRead(ini, program.Engines());
    if (now == check.definitions) return;
    check.definitions = std::move(now);
    check.noTerm.clear();
    check.unknown.clear();
    const std::vector<std::string> definitions = logdefs::SEDefsList(ini, program.Engines());
    const logdefs::SearchEngines engines(definitions);
    std::map<std::size_t, CheckGroup> noTerm;
    std::map<std::string, CheckGroup> unknown;
    for (const CountedText& referrer : check.all) {
        std::vector<std::string> undefined;
        const logdefs::FoundTerm term = engines.STFromReferrer(referrer.text, undefined);
        TakeNoTerm(referrer, undefined, noTerm);
        if (!term.isEngine) AddTo(unknown[ReferrerSite(referrer.text)], referrer);
    }
    for (auto& [number, group] : noTerm) {
        group.name = logdefs::SEDefSplit(definitions[number]).url;
        check.noTerm.push_back(std::move(group));
    }
    for (auto& [name, group] : unknown) {
        group.name = name;
        check.unknown.push_back(std::move(group));
    }
}

PageCheck CheckPages(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request) {
    logread::ReadRequest read = CheckRead(env, site, program, request, "Check page names");
    read.check.CollectCol = true;
    read.check.ColIndex = logdefs::kFile;
    PageCheck result;
    result.read = logread::RawLog_AddData_ReadLogFiles(env, site, std::move(read));
    result.errorsSkipped = site.Options().Skip404;
    JudgePages(env, site, program, result);
    return result;
}

void JudgePages(core::Env& env, sitedb::Site& site, const ProgramFiles& program, PageCheck& check) {
    const std::string file = FilterFilesOf(program, site.Paths()).components;
    check.queryRemoved = site.Options().RemQuery;
    check.fragmentRemoved = site.Options().RemFrag;
    logdefs::FltrRuleSet set = logdefs::FltrLoad(env.ini, file, "Fltr Sel", true, false);
    check.otherRules = KeepRulesOn(logdefs::kFile, set);
    const std::string selected = env.ini.IniGet("Filters", "Fltr Sel", file);
    check.filter = selected.empty() ? std::string() : logdefs::FltrCndnText(env.ini, selected, file);
    check.rows.clear();
    const names::StripParts strip{check.fragmentRemoved, check.queryRemoved};
    std::unordered_map<std::string, std::size_t> places;
    for (const CountedText& raw : CountedTexts(check.read.check.ColValues)) {
        std::string name = names::Page_StripParts(raw.text, strip);
        const auto [at, added] = places.try_emplace(name, check.rows.size());
        if (added) {
            logdefs::LogLnFields fields;
            fields.Set(logdefs::kFile, name);
            const bool skipped = logdefs::FltrTestLine(fields, set).skip;
            const std::string page = names::Page_NameStd(name);
            const bool known = site.Pages().FindRaw(raw.text, strip, sitedb::Add::No, site.Db()) >= 0;
            check.rows.push_back({page.empty() ? std::string(names::kRootName) : page, raw.text, FileType(name), 0,
                                  skipped, !skipped && !known});
        }
        check.rows[at->second].lines += raw.lines;
    }
}

RobotCheck CheckRobots(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request) {
    AddRequest robotsOn = request;
    robotsOn.skipRobots = true;
    logread::ReadRequest read = CheckRead(env, site, program, request, "Check user agents");
    read.filters = FiltersOfAdd(env, site, program, robotsOn);
    const std::vector<int> fieldOf = read.filters.robots.FieldIdx;
    read.check.CollectUA = true;
    read.check.CollectRejected = true;
    RobotCheck result;
    result.read = logread::RawLog_AddData_ReadLogFiles(env, site, std::move(read));
    const core::StrArray names =
        core::CDSSplitPlain(env.ini.IniGet("Filters", "SkipRobotUserAgents", program.robots), 0);
    const std::vector<logread::CountedList>& rejected = result.read.check.RejectedValues;
    logread::CountedList agents = result.read.check.UAs;
    for (std::size_t i = 0; i < fieldOf.size(); ++i) {
        CheckGroup group;
        group.name = names[static_cast<long>(i)];
        group.description = logdefs::FltrCndnText(env.ini, group.name, program.robots);
        for (const CountedText& value : i < rejected.size() ? CountedTexts(rejected[i]) : std::vector<CountedText>()) {
            AddTo(group, value);
            if (fieldOf[i] == logdefs::kAgent) agents.Add(value.text, value.lines);
        }
        result.rejected.push_back(std::move(group));
    }
    result.agents = CountedTexts(agents);
    return result;
}

}  // namespace adddata
