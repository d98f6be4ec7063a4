#include <algorithm>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "adddata/adddata.h"
#include "cli/commands.h"
#include "cli/filtertry.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/cds.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "logdefs/rule.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

constexpr std::string_view kSection = kFilterSection;
constexpr std::string_view kSelected = kFilterSelected;

struct FilterArguments {
    std::string family{}, name{};
    std::string field{}, op{}, value{}, format{};
    std::vector<std::string> rules{};
    bool matchCase = false, any = false, all = false, json = false, hasValue = false;
};

// `lock` is taken where the family belongs to a site and is written.
FilterFamily FamilyOf(Program& program, const std::string& word, core::FileLock* lock = nullptr) {
    Choice("FAMILY", word, {"main", "components", "robots"});
    if (word == "robots") return {word, program.Session().ProgramFiles().robots, "SkipRobotUserAgents", true};
    const sitedb::SitePaths site = lock != nullptr ? program.LockSite(*lock) : program.SiteFiles();
    return {word, word == "main" ? site.mainFilter : site.componentFilter, "SelLst", false};
}

std::vector<std::string> Items(std::string_view list) {
    std::vector<std::string> items;
    const core::StrArray split = core::CDSSplitPlain(list);
    for (const std::string& item : split.Items())
        if (!item.empty()) items.push_back(item);
    return items;
}

std::vector<std::string> Names(Program& program, const FilterFamily& family) {
    return Items(program.Ini().IniGet(kSection, family.listKey, family.file));
}

std::string Selected(Program& program, const FilterFamily& family) {
    return family.allApply ? std::string() : program.Ini().IniGet(kSection, kSelected, family.file);
}

// The name as it is listed.
std::string Known(Program& program, const FilterFamily& family, const std::string& name) {
    const std::vector<std::string> names = Names(program, family);
    for (const std::string& known : names)
        if (core::fEquals(known, name, core::Case::Ignore)) return known;
    throw UsageError("There is no condition \"" + name + "\" in the family " + family.word + ". " +
                     (names.empty() ? "It has none yet." : ValidAre(name, names)));
}

int List(Program& program, const FilterArguments& arguments) {
    const FilterFamily family = FamilyOf(program, arguments.family);
    const std::string selected = Selected(program, family);
    ordered_json list = ordered_json::array();
    TextTable table{{{""}, {"Name"}, {"Condition"}}, {}};
    for (const std::string& name : Names(program, family)) {
        const bool inUse = family.allApply || core::fEquals(name, selected, core::Case::Ignore);
        const std::string text = logdefs::FltrCndnText(program.Ini(), name, family.file);
        list.push_back({{"name", name}, {"inUse", inUse}, {"description", text}});
        table.rows.push_back({inUse ? "*" : "", name, text});
    }
    if (arguments.json)
        PrintJson(list);
    else if (table.rows.empty())
        PrintError("The family " + family.word + " has no condition yet.");
    else
        PrintTable(table);
    return 0;
}

std::string FieldWord(int colType) {
    const auto row = std::ranges::find(logdefs::kColTypes, colType, &logdefs::ColTypeRow::colType);
    return row == logdefs::kColTypes.end() ? std::string() : std::string(row->word);
}

std::string OperatorWord(int type) {
    const auto row = std::ranges::find(logdefs::kOperators, type, &logdefs::OperatorRow::type);
    return row == logdefs::kOperators.end() ? std::string() : std::string(row->word);
}

ordered_json ConditionJson(Program& program, const FilterFamily& family, const std::string& name) {
    const logdefs::Condition condition = logdefs::FltrCndnRead(program.Ini(), name, family.file);
    ordered_json rules = ordered_json::array();
    for (const std::string& rule : Items(condition.list)) {
        const logdefs::StoredRule stored = logdefs::FltrRuleRead(program.Ini(), rule, family.file);
        rules.push_back({{"name", rule},
                         {"field", FieldWord(stored.colType)},
                         {"op", OperatorWord(stored.rule.Typ)},
                         {"value", stored.rule.Val},
                         {"matchCase", stored.rule.MC}});
    }
    return {{"name", name}, {"multiple", condition.multiple}, {"any", condition.any}, {"rules", std::move(rules)}};
}

int Show(Program& program, const FilterArguments& arguments) {
    const FilterFamily family = FamilyOf(program, arguments.family);
    const ordered_json json = ConditionJson(program, family, Known(program, family, arguments.name));
    if (arguments.json) {
        PrintJson(json);
        return 0;
    }
    TextTable table{{{"Rule"}, {"Field"}, {"Operator"}, {"Value"}, {"Match case"}}, {}};
    for (const ordered_json& rule : json["rules"])
        table.rows.push_back(
            {rule["name"], rule["field"], rule["op"], rule["value"], rule["matchCase"].get<bool>() ? "yes" : "no"});
    if (json["multiple"].get<bool>())
        Print(json["any"].get<bool>() ? "Any of these rules is enough:\n" : "All of these rules must hold:\n");
    PrintTable(table);
    return 0;
}

logdefs::StoredRule RuleOf(const FilterArguments& arguments) {
    std::vector<std::string> fields, operators;
    for (const logdefs::ColTypeRow& row : logdefs::kColTypes) fields.emplace_back(row.word);
    for (const logdefs::OperatorRow& row : logdefs::kOperators) operators.emplace_back(row.word);
    if (arguments.field.empty() || arguments.op.empty())
        throw UsageError("A rule needs --field and --op. " +
                         ValidAre("", arguments.field.empty() ? fields : operators));
    Choice("--field", arguments.field, fields);
    Choice("--op", arguments.op, operators);
    logdefs::StoredRule stored;
    stored.colType = std::ranges::find(logdefs::kColTypes, arguments.field, &logdefs::ColTypeRow::word)->colType;
    stored.rule.Typ = std::ranges::find(logdefs::kOperators, arguments.op, &logdefs::OperatorRow::word)->type;
    stored.rule.Val = arguments.value;
    stored.rule.MC = arguments.matchCase;
    if (!arguments.hasValue && stored.rule.Typ != logdefs::kIsNumber)
        throw UsageError("--op " + arguments.op + " needs --value.");
    if (!core::IsUtf8(arguments.value)) throw UsageError("--value must be UTF-8 text.");
    if (stored.rule.Typ == logdefs::kLess) PrintError("Note: less-than is stored, and is never true.");
    return stored;
}

// Names of single rules, as they are listed.
std::string RuleList(Program& program, const FilterFamily& family, const FilterArguments& arguments) {
    if (family.allApply)
        throw UsageError(
            "Conditions of robots are single rules, each of which applies: --rule goes with main and components.");
    if (arguments.any == arguments.all) throw UsageError("A condition of several rules needs either --any or --all.");
    std::vector<std::string> names;
    for (const std::string& given : arguments.rules) {
        const std::string name = Known(program, family, given);
        if (logdefs::FltrCndnRead(program.Ini(), name, family.file).multiple)
            throw UsageError("\"" + name +
                             "\" is itself a condition of several rules; only single rules can be put together.");
        if (core::fEquals(name, arguments.name, core::Case::Ignore))
            throw UsageError("A condition cannot hold itself: " + name);
        names.push_back(name);
    }
    return core::CDSOf(names);
}

// Multiple conditions that hold the rule.
std::string UsedBy(Program& program, const FilterFamily& family, const std::string& rule) {
    for (const std::string& name : Names(program, family)) {
        const logdefs::Condition condition = logdefs::FltrCndnRead(program.Ini(), name, family.file);
        if (condition.multiple && core::CDSHas(rule, condition.list, {}, core::Case::Ignore).found) return name;
    }
    return {};
}

void Written(bool ok, const FilterFamily& family) {
    if (!ok) throw Failure("The filter could not be written to " + family.file);
}

int Set(Program& program, const FilterArguments& arguments) {
    core::FileLock lock;
    const FilterFamily family = FamilyOf(program, arguments.family, &lock);
    CheckSectionName("a condition", arguments.name);
    core::IniStore& ini = program.Ini();
    if (arguments.rules.empty()) {
        const logdefs::StoredRule stored = RuleOf(arguments);
        ini.IniEraseSection(arguments.name, family.file, core::OnFail::Ignore);
        Written(logdefs::FltrRuleWrite(ini, arguments.name, family.file, stored), family);
    } else {
        const std::string list = RuleList(program, family, arguments);
        if (const std::string user = UsedBy(program, family, arguments.name); !user.empty())
            throw UsageError("\"" + arguments.name + "\" is a rule of \"" + user + "\" and must stay a single rule.");
        ini.IniEraseSection(arguments.name, family.file, core::OnFail::Ignore);
        Written(ini.IniPutWhole(arguments.name, "CDSCndns", list, family.file) &&
                    ini.IniPutBool(arguments.name, "Any", arguments.any, family.file),
                family);
    }
    const std::string names = ini.IniGet(kSection, family.listKey, family.file);
    const core::CDSAdded added = core::CDSAdd(names, arguments.name, {}, 2);
    if (added.added) Written(ini.IniPutWhole(kSection, family.listKey, added.list, family.file), family);
    if (arguments.json)
        PrintJson(ConditionJson(program, family, arguments.name));
    else
        Print(Safe(arguments.name) + ": " + Safe(logdefs::FltrCndnText(ini, arguments.name, family.file)) + "\n");
    if (!family.allApply && Selected(program, family).empty())
        PrintError("No condition is in use yet. Choose one with: corvane-cli filter select " + family.word + " NAME");
    return 0;
}

int Select(Program& program, const FilterArguments& arguments) {
    core::FileLock lock;
    const FilterFamily family = FamilyOf(program, arguments.family, &lock);
    if (family.allApply)
        throw UsageError(
            "All conditions of robots apply; none is selected. Take one off with: corvane-cli filter remove robots "
            "NAME");
    const std::string name = Known(program, family, arguments.name);
    Written(program.Ini().IniPut(kSection, kSelected, name, family.file), family);
    if (arguments.json)
        PrintJson(ConditionJson(program, family, name));
    else
        Print("In use now: " + Safe(name) + ": " + Safe(logdefs::FltrCndnText(program.Ini(), name, family.file)) +
              "\n");
    return 0;
}

int Remove(Program& program, const FilterArguments& arguments) {
    core::FileLock lock;
    const FilterFamily family = FamilyOf(program, arguments.family, &lock);
    const std::string name = Known(program, family, arguments.name);
    if (const std::string user = UsedBy(program, family, name); !user.empty())
        throw UsageError("\"" + name + "\" is a rule of \"" + user +
                         "\". Set that one anew without it, or remove it first.");
    core::IniStore& ini = program.Ini();
    const std::string names = ini.IniGet(kSection, family.listKey, family.file);
    const bool selected = core::fEquals(Selected(program, family), name, core::Case::Ignore);
    if (selected) Written(ini.IniPut(kSection, kSelected, "", family.file), family);
    Written(ini.IniPutWhole(kSection, family.listKey, core::CDSRemove(names, name, {}, core::Case::Ignore).list,
                            family.file) &&
                ini.IniEraseSection(name, family.file),
            family);
    if (arguments.json)
        PrintJson({{"removed", name}, {"wasInUse", selected}});
    else
        Print("Removed: " + Safe(name) + "\n");
    if (selected)
        PrintError("It was the one in use; none is now. Choose one with: corvane-cli filter select " + family.word +
                   " NAME");
    return 0;
}

int Try(Program& program, const FilterArguments& arguments) {
    if (arguments.hasValue == !arguments.name.empty()) throw UsageError("Give either a log FILE or --value TEXT.");
    const FilterFamily family = FamilyOf(program, arguments.family);
    return arguments.hasValue ? TryFilterOnValue(program, family, arguments.value, arguments.json)
                              : TryFilterOnLog(program, family, arguments.name, arguments.format, arguments.json);
}

using Command = int (*)(Program&, const FilterArguments&);

CLI::App* AddOne(CLI::App& family, Program& program, const std::shared_ptr<FilterArguments>& arguments,
                 const char* name, const char* help, const char* example, Command command) {
    CLI::App* app = NewCommand(family, name, help, example);
    AddText(*app, "FAMILY", arguments->family, "main, components or robots")->required();
    app->callback([=, &program] { program.run = [=, &program] { return command(program, *arguments); }; });
    return app;
}

}  // namespace

void AddFilterCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "filter", "Filters of an add: list, show, set, select, remove, try");
    auto arguments = std::make_shared<FilterArguments>();
    const auto name = [&](CLI::App* app) {
        AddText(*app, "NAME", arguments->name, "Name of the condition")->required();
    };

    CLI::App* list = AddOne(*family, program, arguments, "list", "Conditions of a family; * marks those in use",
                            "filter list robots", List);
    list->add_flag("--json", arguments->json, "As JSON");
    CLI::App* show = AddOne(*family, program, arguments, "show", "The rules of a condition",
                            "filter show components 20260901.1", Show);
    name(show);
    show->add_flag("--json", arguments->json, "As JSON");

    CLI::App* set = AddOne(*family, program, arguments, "set", "Store a rule, or a condition of several rules",
                           "filter set main \"Shop pages\" --field file --op starts-with --value /shop/\n"
                           "  corvane-cli filter set main Both --rule \"Shop pages\" --rule German --all",
                           Set);
    name(set);
    AddText(*set, "--field", arguments->field, "referrer, file, agent or status");
    AddText(*set, "--op", arguments->op, "starts-with, contains, equals, greater-than, less-than or is-number");
    AddText(*set, "--value", arguments->value, "Text to compare with")->each([arguments](const std::string&) {
        arguments->hasValue = true;
    });
    set->add_flag("--match-case", arguments->matchCase, "Capital and small letters differ");
    AddTexts(*set, "--rule", arguments->rules, "Name of a rule of the condition (repeat it)")->expected(1)->take_all();
    set->add_flag("--any", arguments->any, "One satisfied rule is enough");
    set->add_flag("--all", arguments->all, "All rules must hold");

    set->add_flag("--json", arguments->json, "As JSON");

    CLI::App* select = AddOne(*family, program, arguments, "select", "Choose the condition that an add uses",
                              "filter select main \"Shop pages\"", Select);
    name(select);
    select->add_flag("--json", arguments->json, "As JSON");
    CLI::App* remove =
        AddOne(*family, program, arguments, "remove", "Remove a condition", "filter remove robots examplebot", Remove);
    name(remove);
    remove->add_flag("--json", arguments->json, "As JSON");

    CLI::App* trial = AddOne(*family, program, arguments, "try",
                             "How many of the first lines of a log, or whether a value, satisfy the filter in use",
                             "filter try main access.log", Try);
    AddText(*trial, "FILE", arguments->name, "A log; its first 1000 lines are tried");
    AddText(*trial, "--value", arguments->value, "A text to try instead of a log")
        ->each([arguments](const std::string&) { arguments->hasValue = true; });
    AddText(*trial, "--format", arguments->format, "Name of the log format (default: the site's LFmtDflt)");
    trial->add_flag("--json", arguments->json, "As JSON");
}

}  // namespace cli
