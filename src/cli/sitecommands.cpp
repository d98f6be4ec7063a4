#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/numbers.h"
#include "core/text.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

struct CreateOptions {
    std::string name{};
    std::optional<bool> keepExtra{}, skip404{}, removeQuery{}, removeFragment{}, eraseNonSearch{};
};

struct RemoveOptions {
    std::string name{};
    bool recycle = false, yes = false;
};
constexpr int kStopped = 3;

// "20150517100503" as "2015-05-17 10:05:03"; "" for no data.
std::string StampText(std::int64_t stamp) {
    return stamp == 0 ? std::string() : core::fFormatText(std::to_string(stamp), "@@@@-@@-@@ @@:@@:@@");
}

ordered_json TextOrNull(const std::string& text) { return text.empty() ? ordered_json(nullptr) : ordered_json(text); }

int List(Program& program, bool json) {
    sitedb::Sites& sites = program.Session().Sites();
    const std::string current = sites.CurrentFolder();
    ordered_json list = ordered_json::array();
    TextTable table{{{""}, {"Site"}, {"Folder"}}, {}};
    for (const std::string& name : sites.Names()) {
        const std::string folder = sites.Folder(name);
        list.push_back({{"name", name}, {"folder", folder}, {"current", folder == current}});
        table.rows.push_back({folder == current ? "*" : "", name, folder});
    }
    if (json)
        PrintJson(list);
    else if (table.rows.empty())
        PrintError("There is no site yet. Make one with: corvane-cli site create NAME");
    else
        PrintTable(table);
    return 0;
}

ordered_json SiteJson(sitedb::Site& site, const sitedb::SiteFacts& facts, const std::string& unfinished) {
    const sitedb::SiteOptions& options = site.Options();
    const std::string first = StampText(facts.firstStamp);
    const std::string last = StampText(facts.lastStamp);
    return {{"name", options.name},
            {"folder", site.Paths().folder},
            {"database", site.Paths().database},
            {"options",
             {{"LastKeepVal", options.LastKeepVal},
              {"Skip404", options.Skip404},
              {"RemQuery", options.RemQuery},
              {"RemFrag", options.RemFrag},
              {"EraseNonSE", options.EraseNonSE},
              {"LmtVisitLines", options.LmtVisitLines},
              {"domain", options.domain}}},
            {"dates",
             {{"first", TextOrNull(first.substr(0, 10))},
              {"last", TextOrNull(last.substr(0, 10))},
              {"firstTime", TextOrNull(first)},
              {"lastTime", TextOrNull(last)}}},
            {"counts", {{"lines", facts.lines}, {"visits", facts.visits}, {"pages", facts.pages}}},
            {"unfinished", TextOrNull(unfinished)}};
}

TextTable SiteTable(sitedb::Site& site, const sitedb::SiteFacts& facts, const std::string& unfinished) {
    const sitedb::SiteOptions& options = site.Options();
    const auto yes = [](bool on) { return std::string(on ? "yes" : "no"); };
    const auto count = [](std::int64_t n) { return core::CountText(static_cast<double>(n)); };
    TextTable table{{{"Site"}, {options.name}}, {}};
    table.rows = {{"Folder", site.Paths().folder},
                  {"Database", site.Paths().database},
                  {"First visit", StampText(facts.firstStamp)},
                  {"Last visit", StampText(facts.lastStamp)},
                  {"Lines", count(facts.lines)},
                  {"Visits", count(facts.visits)},
                  {"Pages", count(facts.pages)},
                  {"Keeps extra data", yes(options.LastKeepVal)},
                  {"Skips status 400 to 599", yes(options.Skip404)},
                  {"Removes queries", yes(options.RemQuery)},
                  {"Removes fragments", yes(options.RemFrag)},
                  {"Erases visits without a term", yes(options.EraseNonSE)},
                  {"Most lines of a visitor", std::to_string(options.LmtVisitLines)}};
    if (!options.domain.empty()) table.rows.push_back({"Domain", options.domain});
    if (!unfinished.empty()) table.rows.push_back({"Unfinished add", unfinished});
    return table;
}

int Show(Program& program, const std::string& name, bool json) {
    if (!name.empty()) program.site = name;
    const auto site = program.OpenSite();
    const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(*site);
    const std::string unfinished = site->UnfinishedAdd(program.Env());
    if (json)
        PrintJson(SiteJson(*site, facts, unfinished));
    else
        PrintTable(SiteTable(*site, facts, unfinished));
    return 0;
}

int Create(Program& program, const CreateOptions& chosen) {
    sitedb::SiteOptions options;
    options.name = chosen.name;
    options.LastKeepVal = chosen.keepExtra.value_or(true);
    options.Skip404 = chosen.skip404.value_or(true);
    options.RemQuery = chosen.removeQuery.value_or(false);
    options.RemFrag = chosen.removeFragment.value_or(false);
    options.EraseNonSE = chosen.eraseNonSearch.value_or(false);
    const sitedb::Sites::Created created = program.Session().Sites().Site_Create(options);
    if (!created.result) throw Failure(created.result.error);
    Print("Site \"" + Safe(chosen.name) + "\" is made and is the current one: " + Safe(created.folder) + "\n");
    return 0;
}

int Select(Program& program, const std::string& name) {
    sitedb::Sites& sites = program.Session().Sites();
    if (sites.Folder(name).empty())
        throw UsageError("There is no site of that name: " + name + ". " + ValidAre(name, sites.Names()));
    if (const core::Result selected = sites.Site_Select(name); !selected) throw Failure(selected.error);
    Print("The current site is \"" + Safe(sites.Site_Name()) + "\".\n");
    program.site.clear();
    program.SiteFiles();  // says so when its last add did not finish
    return 0;
}

// The person is asked for the folder, or has said what to do with it; nothing may be half done without an answer.
void MustBeAnswerable(const Program& program, bool yes) {
    if (!yes && !program.CanAsk())
        throw UsageError("This needs an answer and nobody can be asked. Give it with --yes.");
}

int Remove(Program& program, const RemoveOptions& chosen) {
    sitedb::Sites& sites = program.Session().Sites();
    const std::vector<std::string> names = sites.Names();
    const auto known = std::ranges::find_if(
        names, [&](const std::string& item) { return core::fEquals(item, chosen.name, core::Case::Ignore); });
    if (known == names.end())
        throw UsageError("There is no site of that name: " + chosen.name + ". " + ValidAre(chosen.name, names));
    CommandUser::Answers answers;
    if (!chosen.recycle)
        answers.recycle = false;
    else if (chosen.yes)
        answers.recycle = true;
    else
        MustBeAnswerable(program, false);
    program.User().SetAnswers(answers);
    const std::string name = *known;
    const sitedb::Sites::Removed removed = sites.Site_Remove(name);
    if (!removed.result) throw Failure(removed.result.error);
    Print("Site \"" + Safe(name) + "\" is off the list.\n");
    if (!removed.movedTo.empty())
        Print("Its folder is moved to " + Safe(removed.movedTo) + "\n");
    else if (!removed.folder.empty() && removed.kept.empty())
        Print("Its folder stays: " + Safe(removed.folder) + "\n");
    return chosen.recycle && !removed.kept.empty() ? 1 : 0;
}

int RecycleAll(Program& program, bool yes) {
    sitedb::Sites& sites = program.Session().Sites();
    if (sites.Names().empty()) {
        PrintError("There is no site.");
        return 0;
    }
    MustBeAnswerable(program, yes);
    if (!yes && program.User().Ask(sitedb::Sites::DeleteAllQuestion()).Cancelled()) return kStopped;
    const sitedb::Sites::Recycled recycled = sites.Sites_Recycle();
    Print(SafeMessage(recycled.message) + "\n");
    return recycled.all ? 0 : 1;
}

void AddRemove(CLI::App& family, Program& program) {
    auto chosen = std::make_shared<RemoveOptions>();
    CLI::App* remove = NewCommand(family, "remove", "Take a site off the list; with --recycle its folder moves too",
                                  "site remove \"My shop\" --recycle --yes");
    AddText(*remove, "NAME", chosen->name, "Name of the site; not the current one")->required();
    remove->add_flag("--recycle", chosen->recycle, "Move its folder to the folder recycled of the data home");
    remove->add_flag("--yes", chosen->yes, "Do not ask");
    remove->callback([chosen, &program] { program.run = [chosen, &program] { return Remove(program, *chosen); }; });

    auto yes = std::make_shared<bool>(false);
    CLI::App* recycle =
        NewCommand(family, "recycle", "Move the folders of all sites to the folder recycled", "site recycle --yes");
    recycle->add_flag("--yes", *yes, "Do not ask");
    recycle->callback([yes, &program] { program.run = [yes, &program] { return RecycleAll(program, *yes); }; });
}

void AddCreate(CLI::App& family, Program& program) {
    auto chosen = std::make_shared<CreateOptions>();
    CLI::App* create = NewCommand(family, "create", "Make a site and make it the current one",
                                  "site create \"My shop\" --no-skip-404 --remove-fragment");
    AddText(*create, "NAME", chosen->name, "Name of the site")->required();
    AddSwitch(*create, "keep-extra", chosen->keepExtra,
              "Store agents, referrers and more of each line; cannot change later (default: yes)");
    AddSwitch(*create, "skip-404", chosen->skip404, "Leave out lines with status 400 to 599 (default: yes)");
    AddSwitch(*create, "remove-query", chosen->removeQuery, "Cut the query off page names (default: no)");
    AddSwitch(*create, "remove-fragment", chosen->removeFragment, "Cut the fragment off page names (default: no)");
    AddSwitch(*create, "erase-non-search", chosen->eraseNonSearch, "Keep only visits with a search term (default: no)");
    create->callback([chosen, &program] { program.run = [chosen, &program] { return Create(program, *chosen); }; });
}

}  // namespace

void AddSiteCommands(CLI::App& root, Program& program) {
    CLI::App* family = NewFamily(root, "site", "Sites: list, show, create, select, remove, recycle");
    auto json = std::make_shared<bool>(false);
    auto name = std::make_shared<std::string>();

    CLI::App* list = NewCommand(*family, "list", "All sites; * marks the current one", "site list");
    list->add_flag("--json", *json, "As JSON");
    list->callback([json, &program] { program.run = [json, &program] { return List(program, *json); }; });

    CLI::App* show = NewCommand(*family, "show", "What a site holds, and its options", "site show --json");
    AddText(*show, "NAME", *name, "Name of the site (default: the current one)");
    show->add_flag("--json", *json, "As JSON");
    show->callback([=, &program] { program.run = [=, &program] { return Show(program, *name, *json); }; });

    AddCreate(*family, program);

    CLI::App* select = NewCommand(*family, "select", "Make a site the current one", "site select \"My shop\"");
    AddText(*select, "NAME", *name, "Name of the site")->required();
    select->callback([=, &program] { program.run = [=, &program] { return Select(program, *name); }; });
    AddRemove(*family, program);
}

}  // namespace cli
