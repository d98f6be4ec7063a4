#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "analysis/targetstore.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/text.h"
#include "core/utf8.h"
#include "sitedb/site.h"

namespace cli {
namespace {

using analysis::Target;
using nlohmann::ordered_json;

struct KindWord {
    int kind;
    std::string_view word;
};
constexpr std::array kKinds{KindWord{analysis::kSize, "size"}, KindWord{analysis::kAny, "any"},
                            KindWord{analysis::kAll, "all"}, KindWord{analysis::kFirstOnly, "first"}};
constexpr std::size_t kMostPages = 4;

struct TargetArguments {
    std::string name{};
    std::vector<std::string> pages{};
    std::string kind = "any", op = "contains";
    double bytes = 0;
    bool matchCase = false, json = false;
};

std::string_view WordOf(int kind) {
    const auto* row = std::ranges::find(kKinds, kind, &KindWord::kind);
    return row == kKinds.end() ? std::string_view("none") : row->word;
}

std::vector<Target> ReadList(Program& program) { return analysis::Tgt_ReadList(program.Ini(), program.SiteFiles()); }

std::vector<Target>::iterator Find(std::vector<Target>& targets, const std::string& name) {
    const auto same = [&](const Target& target) { return core::fEquals(target.name, name, core::Case::Ignore); };
    return std::ranges::find_if(targets, same);
}

std::vector<Target>::iterator Known(std::vector<Target>& targets, const std::string& name) {
    const auto found = Find(targets, name);
    if (found != targets.end()) return found;
    std::vector<std::string> names;
    for (const Target& target : targets) names.push_back(target.name);
    throw UsageError("There is no target \"" + name + "\". " +
                     (names.empty() ? "This site has none; add one with: corvane-cli target set NAME --page TEXT"
                                    : ValidAre(name, names)));
}

ordered_json Json(const Target& target) {
    ordered_json pages = ordered_json::array();
    for (const logdefs::FltrRule& filter : target.filters) {
        const auto op = std::ranges::find(logdefs::kOperators, filter.Typ, &logdefs::OperatorRow::type);
        pages.push_back({{"text", filter.Val},
                         {"op", op == logdefs::kOperators.end() ? "" : std::string(op->word)},
                         {"matchCase", filter.MC}});
    }
    return {{"name", target.name}, {"kind", WordOf(target.kind)}, {"bytes", target.bytes}, {"pages", std::move(pages)}};
}

int List(Program& program, const TargetArguments& arguments) {
    const std::vector<Target> targets = ReadList(program);
    ordered_json list = ordered_json::array();
    TextTable table{{{"No.", true}, {"Name"}, {"Met by"}}, {}};
    for (const Target& target : targets) {
        list.push_back(Json(target));
        table.rows.push_back({std::to_string(table.rows.size() + 1), target.name, analysis::Tgt_Describe(target)});
    }
    if (arguments.json)
        PrintJson(list);
    else if (targets.empty())
        PrintError("There is no target yet.");
    else
        PrintTable(table);
    return 0;
}

int Show(Program& program, const TargetArguments& arguments) {
    std::vector<Target> targets = ReadList(program);
    const Target& target = *Known(targets, arguments.name);
    if (arguments.json)
        PrintJson(Json(target));
    else
        Print(Safe(target.name) + ": " + Safe(analysis::Tgt_Describe(target)) + "\n");
    return 0;
}

Target Entered(const TargetArguments& arguments) {
    Choice("--kind", arguments.kind, {"size", "any", "all"});
    Choice("--op", arguments.op, {"contains", "equals"});
    if (arguments.pages.size() > kMostPages) throw UsageError("A target has at most 4 pages.");
    Target target;
    target.name = core::fTrim(arguments.name);
    target.kind = std::ranges::find(kKinds, arguments.kind, &KindWord::word)->kind;
    target.bytes = arguments.bytes;
    for (const std::string& page : arguments.pages) {
        if (!core::IsUtf8(page)) throw UsageError("--page must be UTF-8 text.");
        target.filters.push_back({arguments.op == "equals" ? logdefs::kEquals : logdefs::kContains,
                                  arguments.matchCase ? page : core::LowerUtf8(page), arguments.matchCase});
    }
    return target;
}

void Store(Program& program, const sitedb::SitePaths& site, const std::vector<Target>& targets) {
    if (const core::Result written = analysis::Tgt_WriteList(program.Ini(), site, targets); !written)
        throw Failure(written.error);
}

int Set(Program& program, const TargetArguments& arguments) {
    const Target target = Entered(arguments);
    core::FileLock lock;
    const sitedb::SitePaths site = program.LockSite(lock);
    std::vector<Target> targets = analysis::Tgt_ReadList(program.Ini(), site);
    const auto at = Find(targets, target.name);
    std::vector<Target> others = targets;
    if (at != targets.end()) others.erase(others.begin() + (at - targets.begin()));
    if (const std::string problem = analysis::Tgt_Problem(target, others); !problem.empty()) throw UsageError(problem);
    if (at != targets.end())
        *at = target;
    else
        targets.push_back(target);
    Store(program, site, targets);
    Print(Safe(target.name) + ": " + Safe(analysis::Tgt_Describe(target)) + "\n");
    if (target.kind == analysis::kAll)
        PrintError("A target of the kind \"all\" is never met: its columns stay at 0. Use --kind any.");
    if (targets.size() > analysis::kMaxTargets) PrintError("A report counts the first 4 targets of the list only.");
    return 0;
}

int Remove(Program& program, const TargetArguments& arguments) {
    core::FileLock lock;
    const sitedb::SitePaths site = program.LockSite(lock);
    std::vector<Target> targets = analysis::Tgt_ReadList(program.Ini(), site);
    targets.erase(Known(targets, arguments.name));
    Store(program, site, targets);
    return 0;
}

}  // namespace

void AddTargetCommands(CLI::App& root, Program& program) {
    auto arguments = std::make_shared<TargetArguments>();
    CLI::App* family = NewFamily(root, "target", "Pages that a visit should reach");
    const auto bind = [&program, arguments](CLI::App* command, int (*run)(Program&, const TargetArguments&)) {
        command->callback([=, &program] { program.run = [=, &program] { return run(program, *arguments); }; });
    };
    CLI::App* list =
        NewCommand(*family, "list", "The targets of the site; a report counts the first four", "target list --json");
    list->add_flag("--json", arguments->json, "As JSON");
    bind(list, List);
    CLI::App* show = NewCommand(*family, "show", "One target", "target show Orders");
    AddText(*show, "NAME", arguments->name, "Its name")->required();
    show->add_flag("--json", arguments->json, "As JSON");
    bind(show, Show);
    CLI::App* set = NewCommand(*family, "set", "Store a target; a report counts it with --targets",
                               "target set Orders --page /order/done --page /thanks");
    AddText(*set, "NAME", arguments->name, "Its name")->required();
    AddTexts(*set, "--page", arguments->pages, "Part of a page's name; up to four times")->required();
    AddText(*set, "--kind", arguments->kind, "any page (default), all pages, or size: bytes of the first page");
    set->add_option("--bytes", arguments->bytes, "Least bytes, for --kind size")
        ->check(CLI::NonNegativeNumber.description(""))
        ->type_name("N");
    AddText(*set, "--op", arguments->op, "contains (default) or equals");
    set->add_flag("--match-case", arguments->matchCase, "Tell upper from lower case");
    bind(set, Set);
    CLI::App* remove = NewCommand(*family, "remove", "Remove a target", "target remove Orders");
    AddText(*remove, "NAME", arguments->name, "Its name")->required();
    bind(remove, Remove);
}

}  // namespace cli
