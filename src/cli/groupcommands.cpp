#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "analysis/areas.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/inistore.h"
#include "core/text.h"
#include "core/utf8.h"
#include "reports/fieldtable.h"
#include "reports/groups.h"

namespace cli {
namespace {

using dialogs::Group;
using dialogs::GroupLists;
using nlohmann::ordered_json;

struct GroupArguments {
    std::string field = "terms", name{};
    std::vector<std::string> members{};
    bool json = false, none = false;
};

int FieldCode(const std::string& word) {
    std::vector<std::string> words;
    for (const reports::GroupRow& row : reports::kGroupTable) words.emplace_back(reports::FindField(row.field)->word);
    Choice("--field", word, words);
    return reports::FieldOfWord(word)->code;
}

std::size_t Known(const GroupLists& groups, const std::string& name) {
    if (const auto at = groups.Find(name)) return *at;
    std::vector<std::string> names;
    for (const Group& group : groups.All()) names.push_back(group.name);
    throw UsageError("There is no group \"" + name + "\". " +
                     (names.empty() ? "There is none yet; add one with: corvane-cli group set NAME MEMBER..."
                                    : ValidAre(name, names)));
}

// Words of a named list: values of a group, pages of an area.
void PrintMembers(const std::string& name, const std::vector<std::string>& members, std::string_view word, bool json) {
    if (json) return PrintJson({{"name", name}, {std::string(word), members}});
    for (const std::string& member : members) PrintData(member + "\n");
}

struct Named {
    std::string name{};
    std::vector<std::string> members{};
};
void PrintLists(const std::vector<Named>& lists, std::string_view word, const std::string& nothing, bool json) {
    ordered_json all = ordered_json::array();
    TextTable table{{{"Name"}, {std::string(word), true}}, {}};
    for (const Named& list : lists) {
        all.push_back({{"name", list.name}, {std::string(word), list.members}});
        table.rows.push_back({list.name, std::to_string(list.members.size())});
    }
    if (json)
        PrintJson(all);
    else if (lists.empty())
        PrintError(nothing);
    else
        PrintTable(table);
}

void CheckMembers(const std::vector<std::string>& members, std::string_view what) {
    for (const std::string& member : members) {
        if (member.empty() || member.find('|') != std::string::npos || !core::IsUtf8(member))
            throw UsageError(std::string(what) + " cannot be \"" + Safe(member) +
                             "\": it must be UTF-8 text without \"|\".");
    }
}

int ListGroups(Program& program, const GroupArguments& arguments) {
    const int field = FieldCode(arguments.field);
    program.SiteFiles();
    const GroupLists groups(program.Ini(), reports::GroupPlaceOf(field));
    std::vector<Named> lists;
    for (const Group& group : groups.All()) lists.push_back({group.name, group.members});
    PrintLists(lists, "members", "There is no group yet.", arguments.json);
    return 0;
}

int ShowGroup(Program& program, const GroupArguments& arguments) {
    const int field = FieldCode(arguments.field);
    program.SiteFiles();
    const GroupLists groups(program.Ini(), reports::GroupPlaceOf(field));
    const Group& group = groups.All()[Known(groups, arguments.name)];
    PrintMembers(group.name, group.members, "members", arguments.json);
    return 0;
}

void Save(GroupLists& groups) {
    if (!groups.Save())
        throw Failure("The groups could not be written. Make room, or give yourself the right to write.");
}

int SetGroup(Program& program, const GroupArguments& arguments) {
    const int field = FieldCode(arguments.field);
    CheckMembers(arguments.members, "A member");
    core::FileLock lock;
    program.LockSite(lock);
    GroupLists groups(program.Ini(), reports::GroupPlaceOf(field));
    auto at = groups.Find(arguments.name);
    if (!at) {
        if (const std::string problem = groups.NameProblem(arguments.name); !problem.empty()) throw UsageError(problem);
        at = groups.Add(arguments.name);
    }
    groups.SetMembers(*at, arguments.members);
    Save(groups);
    return 0;
}

int RemoveGroup(Program& program, const GroupArguments& arguments) {
    const int field = FieldCode(arguments.field);
    core::FileLock lock;
    program.LockSite(lock);
    GroupLists groups(program.Ini(), reports::GroupPlaceOf(field));
    groups.Remove(Known(groups, arguments.name));
    Save(groups);
    return 0;
}

std::vector<analysis::SiteArea> Areas(Program& program, const sitedb::SitePaths& site) {
    return analysis::Area_List(program.Ini(), site);
}

const analysis::SiteArea& KnownArea(const std::vector<analysis::SiteArea>& areas, const std::string& name) {
    if (const auto at = analysis::Area_Find(areas, name)) return areas[*at];
    std::vector<std::string> names;
    for (const analysis::SiteArea& area : areas) names.push_back(area.name);
    throw UsageError(
        "There is no site area \"" + name + "\". " +
        (names.empty() ? "There is none yet; add one with: corvane-cli area set NAME PAGE..." : ValidAre(name, names)));
}

int ListAreas(Program& program, const GroupArguments& arguments) {
    const sitedb::SitePaths site = program.SiteFiles();
    std::vector<Named> lists;
    for (const analysis::SiteArea& area : Areas(program, site)) lists.push_back({area.name, area.pages});
    PrintLists(lists, "pages", "There is no site area yet.", arguments.json);
    if (const auto limit = analysis::Area_Limit(program.Ini(), site))
        PrintError("Reports are limited to the area " + Safe(*limit) + ".");
    return 0;
}

int ShowArea(Program& program, const GroupArguments& arguments) {
    const std::vector<analysis::SiteArea> areas = Areas(program, program.SiteFiles());
    const analysis::SiteArea& area = KnownArea(areas, arguments.name);
    PrintMembers(area.name, area.pages, "pages", arguments.json);
    return 0;
}

void Check(bool written, const std::string& file) {
    if (!written) throw Failure("This file could not be written: " + file);
}

int SetArea(Program& program, const GroupArguments& arguments) {
    if (const std::string problem = analysis::Area_NameProblem(arguments.name); !problem.empty())
        throw UsageError(problem);
    CheckMembers(arguments.members, "A page");
    core::FileLock lock;
    const sitedb::SitePaths site = program.LockSite(lock);
    Check(analysis::Area_Put(program.Ini(), site, {arguments.name, arguments.members}), site.siteAreas);
    return 0;
}

int RemoveArea(Program& program, const GroupArguments& arguments) {
    core::FileLock lock;
    const sitedb::SitePaths site = program.LockSite(lock);
    const std::string name = KnownArea(Areas(program, site), arguments.name).name;
    Check(analysis::Area_Remove(program.Ini(), site, name), site.siteAreas);
    return 0;
}

int SelectArea(Program& program, const GroupArguments& arguments) {
    if (arguments.none != arguments.name.empty()) throw UsageError("Name one area, or --none for the whole site.");
    core::FileLock lock;
    const sitedb::SitePaths site = program.LockSite(lock);
    std::optional<std::string> limit;
    if (!arguments.none) limit = KnownArea(Areas(program, site), arguments.name).name;
    Check(analysis::Area_SetLimit(program.Ini(), site, limit), site.lastVals);
    return 0;
}

using Arguments = std::shared_ptr<GroupArguments>;

class Family {
public:
    Family(CLI::App& family, Program& program, Arguments arguments)
        : family_(family), program_(program), arguments_(std::move(arguments)) {}

    CLI::App& Add(const std::string& name, const std::string& help, const std::string& example,
                  int (*run)(Program&, const GroupArguments&)) {
        CLI::App* command = NewCommand(family_, name, help, example);
        command->callback([run, arguments = arguments_, &program = program_] {
            program.run = [run, arguments, &program] { return run(program, *arguments); };
        });
        return *command;
    }

private:
    CLI::App& family_;
    Program& program_;
    Arguments arguments_;
};

void AddGroups(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<GroupArguments>();
    Family family(*NewFamily(root, "group", "Named lists of values for reports by group"), program, arguments);
    const auto field = [&](CLI::App& command) -> CLI::App& {
        AddText(command, "--field", arguments->field, "terms (default), pages, dirs or referrers");
        return command;
    };
    const auto json = [&](CLI::App& command) { command.add_flag("--json", arguments->json, "As JSON"); };
    const auto name = [&](CLI::App& command) -> CLI::App& {
        AddText(command, "NAME", arguments->name, "Its name")->required();
        return command;
    };
    json(field(family.Add("list", "All groups of a field", "group list --field pages", ListGroups)));
    json(field(name(family.Add("show", "The members of a group", "group show Hotels", ShowGroup))));
    CLI::App& set =
        field(name(family.Add("set", "Store a group", "group set Hotels \"cheap hotel\" \"hotel paris\"", SetGroup)));
    AddTexts(set, "MEMBER", arguments->members, "Values as reports show them")->required();
    field(name(family.Add("remove", "Remove a group", "group remove Hotels", RemoveGroup)));
}

void AddAreas(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<GroupArguments>();
    Family family(*NewFamily(root, "area", "Parts of the site that can be analysed alone"), program, arguments);
    const auto json = [&](CLI::App& command) { command.add_flag("--json", arguments->json, "As JSON"); };
    const auto name = [&](CLI::App& command) -> CLI::App& {
        AddText(command, "NAME", arguments->name, "Its name")->required();
        return command;
    };
    json(family.Add("list", "All site areas", "area list", ListAreas));
    json(name(family.Add("show", "The pages of an area", "area show Shop", ShowArea)));
    CLI::App& set = name(family.Add("set", "Store an area", "area set Shop /shop/index.htm /shop/cart.htm", SetArea));
    AddTexts(set, "PAGE", arguments->members, "Names of pages as reports show them")->required();
    name(family.Add("remove", "Remove an area", "area remove Shop", RemoveArea));
    CLI::App& select = family.Add("select", "Limit reports to an area", "area select Shop", SelectArea);
    AddText(select, "NAME", arguments->name, "Its name");
    select.add_flag("--none", arguments->none, "The whole site again");
}

}  // namespace

void AddGroupCommands(CLI::App& root, Program& program) {
    AddGroups(root, program);
    AddAreas(root, program);
}

}  // namespace cli
