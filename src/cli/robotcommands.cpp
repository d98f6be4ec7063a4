#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "adddata/robots.h"
#include "cli/commands.h"
#include "cli/filearguments.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/cds.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/rulebrowsers.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

constexpr std::string_view kSection = "Filters";
constexpr std::string_view kListKey = "SkipRobotUserAgents";
constexpr std::string_view kGenericNames =
    "Do NOT add generic user agent names such as Mozilla/5.0 (Windows NT 10.0; Win64; x64): every visitor's browser "
    "that starts so would be taken for a robot.";

struct RobotArguments {
    std::string name{};
    std::string field = "agent", op = "starts-with", value{};
    std::vector<std::string> agents{};
    FileArguments files{};
    bool matchCase = false, json = false, add = false, skipRest = false, hasValue = false;
};

adddata::RobotFiles Files(Program& program) { return adddata::RobotFilesOf(program.Session().ProgramFiles()); }

std::vector<std::string> Names(Program& program) {
    const std::string list = program.Ini().IniGet(kSection, kListKey, Files(program).robots);
    std::vector<std::string> names = core::CDSSplitPlain(list).Items();
    std::erase(names, "");
    return names;
}

std::string Known(Program& program, const std::string& name) {
    const std::vector<std::string> names = Names(program);
    const auto same = [&](const std::string& known) { return core::fEquals(known, name, core::Case::Ignore); };
    const auto known = std::ranges::find_if(names, same);
    if (known != names.end()) return *known;
    throw UsageError("There is no robot filter \"" + name + "\". " + ValidAre(name, names, 6));
}

ordered_json RuleJson(const std::string& name, const logdefs::StoredRule& stored) {
    const auto field = std::ranges::find(logdefs::kColTypes, stored.colType, &logdefs::ColTypeRow::colType);
    const auto op = std::ranges::find(logdefs::kOperators, stored.rule.Typ, &logdefs::OperatorRow::type);
    return {{"name", name},
            {"field", field == logdefs::kColTypes.end() ? "" : std::string(field->word)},
            {"op", op == logdefs::kOperators.end() ? "" : std::string(op->word)},
            {"value", stored.rule.Val},
            {"matchCase", stored.rule.MC}};
}

int PrintRules(Program& program, const std::vector<std::string>& names, bool json, bool one) {
    ordered_json list = ordered_json::array();
    TextTable table{{{"Name"}, {"Rule"}}, {}};
    for (const std::string& name : names) {
        const logdefs::StoredRule stored = logdefs::FltrRuleRead(program.Ini(), name, Files(program).robots);
        list.push_back(RuleJson(name, stored));
        table.rows.push_back({name, logdefs::FltrRuleText(stored)});
    }
    if (json)
        PrintJson(one ? list[0] : list);
    else if (table.rows.empty())
        PrintError("There is no robot filter yet.");
    else
        PrintTable(table);
    return 0;
}

int List(Program& program, const RobotArguments& arguments) {
    return PrintRules(program, Names(program), arguments.json, false);
}

int Show(Program& program, const RobotArguments& arguments) {
    return PrintRules(program, {Known(program, arguments.name)}, arguments.json, true);
}

logdefs::StoredRule RuleOf(const RobotArguments& arguments) {
    std::vector<std::string> fields, operators;
    for (const logdefs::ColTypeRow& row : logdefs::kColTypes) fields.emplace_back(row.word);
    for (const logdefs::OperatorRow& row : logdefs::kOperators) operators.emplace_back(row.word);
    Choice("--field", arguments.field, fields);
    Choice("--op", arguments.op, operators);
    logdefs::StoredRule stored;
    stored.colType = std::ranges::find(logdefs::kColTypes, arguments.field, &logdefs::ColTypeRow::word)->colType;
    stored.rule = {std::ranges::find(logdefs::kOperators, arguments.op, &logdefs::OperatorRow::word)->type,
                   arguments.value, arguments.matchCase};
    const bool matchesAll = arguments.value.empty() && arguments.op != "is-number" && arguments.op != "equals";
    if (!arguments.hasValue && arguments.op != "is-number")
        throw UsageError("--op " + arguments.op + " needs --value.");
    if (matchesAll) throw UsageError("An empty --value takes every visitor for a robot.");
    if (!core::IsUtf8(arguments.value)) throw UsageError("--value must be UTF-8 text.");
    return stored;
}

int Set(Program& program, const RobotArguments& arguments) {
    CheckSectionName("a robot filter", arguments.name);
    core::IniStore& ini = program.Ini();
    const std::string file = Files(program).robots;
    const logdefs::StoredRule stored = RuleOf(arguments);
    ini.IniEraseSection(arguments.name, file, core::OnFail::Ignore);
    const core::CDSAdded added = core::CDSAdd(ini.IniGet(kSection, kListKey, file), arguments.name, {}, 2);
    if (!logdefs::FltrRuleWrite(ini, arguments.name, file, stored) ||
        (added.added && !ini.IniPutWhole(kSection, kListKey, added.list, file)))
        throw Failure("The filter could not be written to " + file);
    const logdefs::StoredRule written = logdefs::FltrRuleRead(ini, arguments.name, file);
    if (arguments.json)
        PrintJson(RuleJson(arguments.name, written));
    else
        Print(Safe(arguments.name) + ": " + Safe(logdefs::FltrCndnText(ini, arguments.name, file)) + "\n");
    if (const auto browser = logdefs::BrowserTaken(written))
        PrintError("Note: browsers of people satisfy this filter, such as: " + *browser);
    return 0;
}

int Remove(Program& program, const RobotArguments& arguments) {
    core::IniStore& ini = program.Ini();
    const std::string file = Files(program).robots;
    const std::string name = Known(program, arguments.name);
    const std::string list = ini.IniGet(kSection, kListKey, file);
    if (!ini.IniPutWhole(kSection, kListKey, core::CDSRemove(list, name, {}, core::Case::Ignore).list, file) ||
        !ini.IniEraseSection(name, file))
        throw Failure("The filter could not be written to " + file);
    if (arguments.json)
        PrintJson({{"removed", name}});
    else
        Print("Removed: " + Safe(name) + "\n");
    return 0;
}

int Try(Program& program, const RobotArguments& arguments) {
    const std::string list = program.Ini().IniGet(kSection, kListKey, Files(program).robots);
    const core::StrArray names = core::CDSSplitPlain(list, 0);  // as the filter numbers its rules
    logdefs::FltrRuleSet set = logdefs::FltrLoad(program.Ini(), Files(program).robots, kListKey, true, false);
    set.AnyRule = true;
    const bool other = adddata::KeepRulesOn(logdefs::kAgent, set);
    ordered_json json = ordered_json::array();
    TextTable table{{{"Filter"}, {"User agent"}}, {}};
    for (const std::string& given : arguments.agents) {
        const std::string agent = core::ToUtf8(given);
        logdefs::LogLnFields fields;
        fields.Set(logdefs::kAgent, agent);
        const logdefs::LineVerdict verdict = logdefs::FltrTestLine(fields, set);
        const std::string name = verdict.skip ? names[static_cast<long>(verdict.index)] : std::string();
        json.push_back({{"agent", agent},
                        {"robot", verdict.skip},
                        {"filter", verdict.skip ? ordered_json(name) : ordered_json(nullptr)}});
        table.rows.push_back({verdict.skip ? name : "(none)", agent});
    }
    if (arguments.json)
        PrintJson(json);
    else
        PrintTable(table);
    if (other) PrintError("Filters on other fields than the user agent are not tried.");
    return 0;
}

bool Has(const std::vector<std::string>& list, const std::string& text) {
    return std::ranges::find(list, text) != list.end();
}

// The user agents that become rules.
std::vector<std::string> Chosen(const RobotArguments& arguments, const std::vector<adddata::CountedText>& offered) {
    std::vector<std::string> all, chosen;
    for (const adddata::CountedText& agent : offered) all.push_back(agent.text);
    for (const std::string& given : arguments.agents) {
        if (!Has(all, core::ToUtf8(given)))
            throw UsageError("This user agent is not among those found: " + given + ". " + ValidAre(given, all, 4));
        chosen.push_back(core::ToUtf8(given));
    }
    if (!arguments.add) return {};
    return arguments.agents.empty() ? all : chosen;
}

struct Found {
    adddata::Preprocessed read{};
    adddata::RulesAdded added{};
    std::vector<std::string> skipped{};
};

void PrintFoundJson(const Found& found, int status) {
    ordered_json candidates = ordered_json::array(), added = ordered_json::array();
    for (const adddata::CountedText& agent : found.read.offered)
        candidates.push_back({{"agent", agent.text}, {"lines", agent.lines}});
    for (std::size_t i = 0; i < found.added.names.size(); ++i)
        added.push_back({{"name", found.added.names[i]}, {"agent", found.added.agents[i]}});
    PrintJson({{"status", status},
               {"linesRead", found.read.read.totals.AllLinesRead},
               {"linesFound", found.read.read.totals.AllLinesAdded},
               {"candidates", std::move(candidates)},
               {"otherRules", found.read.found.otherRules},
               {"added", std::move(added)},
               {"skipped", found.skipped}});
}

void PrintFoundText(const Found& found) {
    TextTable table{{{"Lines", true}, {"User agent"}, {"New filter"}}, {}};
    for (const adddata::CountedText& agent : found.read.offered) {
        const auto at = std::ranges::find(found.added.agents, agent.text);
        const auto place = static_cast<std::size_t>(at - found.added.agents.begin());
        table.rows.push_back(
            {std::to_string(agent.lines), agent.text, at == found.added.agents.end() ? "" : found.added.names[place]});
    }
    if (!table.rows.empty()) PrintTable(table);
    if (!found.added.names.empty())
        PrintError("New filters for robot and crawler user agents created successfully.");
    else
        PrintError(std::string(adddata::kNoNewFilters));
    if (!found.skipped.empty()) PrintError(std::to_string(found.skipped.size()) + " went to the skip list.");
    if (!table.rows.empty() && found.added.names.empty()) PrintError(kGenericNames);
}

// What is left over goes to the skip list.
void SkipRest(Program& program, const std::vector<std::string>& chosen, Found& found) {
    for (const adddata::CountedText& agent : found.read.offered)
        if (!Has(chosen, agent.text)) found.skipped.push_back(agent.text);
    if (found.skipped.empty()) return;
    std::vector<std::string> list = adddata::BotsSkipList(program.Ini(), Files(program));
    list.insert(list.end(), found.skipped.begin(), found.skipped.end());
    if (!adddata::BotsSkipListWrite(program.Ini(), Files(program), list))
        throw Failure("The skip list could not be written to " + Files(program).skip);
}

int Find(Program& program, const RobotArguments& arguments) {
    if (!arguments.agents.empty() && !arguments.add) throw UsageError("--agent goes with --add.");
    const adddata::AddRequest request = RequestOf(program, arguments.files);
    const auto site = SiteToRead(program, arguments.files);
    Found found;
    found.read = adddata::PreprocessBots(program.Env(), *site, program.Session().ProgramFiles(), request);
    const int status = ReadStatus(program, found.read.read);
    if (found.read.read.ok) {
        const std::vector<std::string> chosen = Chosen(arguments, found.read.offered);
        found.added = adddata::BotsAddRules(program.Env(), Files(program), chosen);
        if (!found.added.ok) throw Failure("The filters could not be written to " + Files(program).robots);
        if (arguments.skipRest) SkipRest(program, chosen, found);
    }
    if (arguments.files.json)
        PrintFoundJson(found, status);
    else if (found.read.read.ok && found.read.read.anyRead)
        PrintFoundText(found);
    return status;
}

using Command = int (*)(Program&, const RobotArguments&);

}  // namespace

void AddRobotCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "robot", "Robot filters: list, show, set, remove, try; find new robots");
    auto arguments = std::make_shared<RobotArguments>();
    const auto add = [&](const char* word, const char* help, const char* example, Command command) {
        CLI::App* app = NewCommand(*family, word, help, example);
        app->callback([=, &program] { program.run = [=, &program] { return command(program, *arguments); }; });
        return app;
    };
    const auto name = [&](CLI::App* app) { AddText(*app, "NAME", arguments->name, "Name of the filter")->required(); };
    const auto json = [&](CLI::App* app) { app->add_flag("--json", arguments->json, "As JSON"); };

    json(add("list", "All robot filters; each of them applies", "robot list", List));
    CLI::App* show = add("show", "One robot filter", "robot show Googlebot", Show);
    name(show);
    json(show);
    CLI::App* set = add("set", "Store a robot filter", "robot set Examplebot --value examplebot/", Set);
    name(set);
    AddText(*set, "--value", arguments->value, "Text to compare with")->each([arguments](const std::string&) {
        arguments->hasValue = true;
    });
    AddText(*set, "--op", arguments->op, "starts-with (default), contains, equals, greater-than, less-than, is-number");
    AddText(*set, "--field", arguments->field, "agent (default), referrer, file or status");
    set->add_flag("--match-case", arguments->matchCase, "Capital and small letters differ");
    json(set);
    CLI::App* remove = add("remove", "Remove a robot filter", "robot remove Examplebot", Remove);
    name(remove);
    json(remove);
    CLI::App* trial = add("try", "The filter that takes a user agent", "robot try 'Examplebot/1.0'", Try);
    AddTexts(*trial, "AGENT", arguments->agents, "User agents as the log has them")->required();
    json(trial);

    CLI::App* find = add("find", "User agents that asked for robots.txt and that no robot filter takes",
                         "robot find access.log --add --agent 'Examplebot/1.0'", Find);
    AddFileArguments(*find, arguments->files);
    find->add_flag("--add", arguments->add, "Make filters of all that are listed, or of those named");
    AddTexts(*find, "--agent", arguments->agents, "A user agent to make a filter of (repeat it)")
        ->expected(1)
        ->take_all();
    find->add_flag("--skip-rest", arguments->skipRest, "Do not list the others again");
}

}  // namespace cli
