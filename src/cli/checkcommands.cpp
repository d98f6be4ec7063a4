#include <memory>
#include <nlohmann/json.hpp>

#include "adddata/checks.h"
#include "cli/commands.h"
#include "cli/filearguments.h"
#include "cli/output.h"
#include "core/ports.h"
#include "core/text.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

struct CheckArguments {
    FileArguments files{};
    int atLeast = 1;
    std::string show = "all";
    bool all = false;
};

ordered_json TextsJson(const std::vector<adddata::CountedText>& texts, const char* word) {
    ordered_json list = ordered_json::array();
    for (const adddata::CountedText& text : texts) list.push_back({{word, text.text}, {"lines", text.lines}});
    return list;
}

ordered_json GroupsJson(const std::vector<adddata::CheckGroup>& groups, const char* head, const char* word) {
    ordered_json list = ordered_json::array();
    for (const adddata::CheckGroup& group : groups) {
        ordered_json row{{head, group.name}};
        if (!group.description.empty()) row["description"] = group.description;
        row["lines"] = group.lines;
        row[std::string(word) + "s"] = TextsJson(group.texts, word);
        list.push_back(std::move(row));
    }
    return list;
}

// A table of texts under their groups, with a heading; the heading alone where there is nothing.
void PrintGroups(const std::string& heading, const TextTable& empty, const std::vector<adddata::CheckGroup>& groups) {
    Print(heading + "\n");
    TextTable table = empty;
    for (const adddata::CheckGroup& group : groups)
        for (const adddata::CountedText& text : group.texts)
            table.rows.push_back({group.name, text.text, std::to_string(text.lines)});
    if (!table.rows.empty()) PrintTable(table);
}

std::vector<adddata::CheckGroup> WithAtLeast(std::vector<adddata::CheckGroup> groups, std::size_t texts) {
    std::erase_if(groups, [&](const adddata::CheckGroup& group) { return group.texts.size() < texts; });
    return groups;
}

std::string LinesOf(const logread::ReadOutcome& read) { return std::to_string(read.totals.AllLinesAdded); }

int Referrers(Program& program, const CheckArguments& arguments) {
    const adddata::AddRequest request = RequestOf(program, arguments.files);
    const auto site = SiteToRead(program, arguments.files);
    const adddata::ReferrerCheck check =
        adddata::CheckReferrers(program.Env(), *site, program.Session().ProgramFiles(), request);
    const int status = ReadStatus(program, check.read);
    const auto unknown = WithAtLeast(check.unknown, static_cast<std::size_t>(arguments.atLeast));
    if (arguments.files.json) {
        PrintJson({{"status", status},
                   {"lines", check.read.totals.AllLinesAdded},
                   {"referrers", TextsJson(check.all, "referrer")},
                   {"undefined", GroupsJson(check.noTerm, "engine", "referrer")},
                   {"unknown", GroupsJson(unknown, "site", "referrer")}});
        return status;
    }
    if (!check.read.ok) return status;
    Print("Last Read Found " + std::to_string(check.all.size()) + " referrers in " + LinesOf(check.read) +
          " log lines.\n\n");
    if (check.noTerm.empty())
        Print("No lines found for which could not determine search term.\n");
    else
        PrintGroups("Search term not found in referrer for known engine",
                    {{{"Engine"}, {"Referrer"}, {"Lines", true}}, {}}, check.noTerm);
    PrintGroups("\nNo engine is defined for these sites. Showing only sites with at least " +
                    std::to_string(arguments.atLeast) + " unique referrers",
                {{{"Site"}, {"Referrer"}, {"Lines", true}}, {}}, unknown);
    return status;
}

bool Wanted(const adddata::PageRow& row, const std::string& show) {
    if (show == "skipped") return row.skipped;
    if (show == "accepted") return !row.skipped;
    return show == "new" ? row.isNew : true;
}

void PrintPages(const adddata::PageCheck& check, const std::string& show) {
    Print("Found: " + std::to_string(check.rows.size()) + " pages and component filenames in " + LinesOf(check.read) +
          " log lines.\nFilter: " +
          (check.filter.empty() ? "none selected, so every page is skipped"
                                : Safe(core::fLeft(check.filter, 450, " ...").text)) +
          "\n");
    if (check.queryRemoved) Print("Query removed. Query is part of url for page or component after ?\n");
    if (check.fragmentRemoved) Print("Fragment removed. Fragment is part of url for page or component after #\n");
    if (check.errorsSkipped)
        Print("All file requests that caused server or client errors are skipped [404, 403, etc.]\n");
    TextTable table{{{"Page"}, {"File"}, {"Lines", true}, {"Type"}, {"Verdict"}}, {}};
    for (const adddata::PageRow& row : check.rows)
        if (Wanted(row, show))
            table.rows.push_back({row.page, row.file, std::to_string(row.lines), row.type,
                                  row.skipped ? "skipped"
                                  : row.isNew ? "new"
                                              : "accepted"});
    if (!table.rows.empty()) PrintTable(table);
}

int Pages(Program& program, const CheckArguments& arguments) {
    Choice("--show", arguments.show, {"all", "skipped", "accepted", "new"});
    const adddata::AddRequest request = RequestOf(program, arguments.files);
    const auto site = SiteToRead(program, arguments.files);
    const adddata::PageCheck check =
        adddata::CheckPages(program.Env(), *site, program.Session().ProgramFiles(), request);
    const int status = ReadStatus(program, check.read);
    if (check.otherRules) program.User().Tell("PageFilterOtherFields", std::string(adddata::kOtherPageRules));
    if (!arguments.files.json) {
        if (check.read.ok) PrintPages(check, arguments.show);
        return status;
    }
    ordered_json pages = ordered_json::array();
    for (const adddata::PageRow& row : check.rows)
        if (Wanted(row, arguments.show))
            pages.push_back({{"page", row.page},
                             {"file", row.file},
                             {"lines", row.lines},
                             {"type", row.type},
                             {"skipped", row.skipped},
                             {"new", row.isNew}});
    PrintJson({{"status", status},
               {"lines", check.read.totals.AllLinesAdded},
               {"filter", check.filter},
               {"otherRules", check.otherRules},
               {"queryRemoved", check.queryRemoved},
               {"fragmentRemoved", check.fragmentRemoved},
               {"errorsSkipped", check.errorsSkipped},
               {"pages", std::move(pages)}});
    return status;
}

int Robots(Program& program, const CheckArguments& arguments) {
    const adddata::AddRequest request = RequestOf(program, arguments.files);
    const auto site = SiteToRead(program, arguments.files);
    adddata::RobotCheck check = adddata::CheckRobots(program.Env(), *site, program.Session().ProgramFiles(), request);
    const int status = ReadStatus(program, check.read);
    const std::size_t filters = check.rejected.size();
    if (!arguments.all) check.rejected = WithAtLeast(std::move(check.rejected), 1);
    if (arguments.files.json) {
        PrintJson({{"status", status},
                   {"agents", TextsJson(check.agents, "agent")},
                   {"filters", filters},
                   {"rejected", GroupsJson(check.rejected, "filter", "value")}});
        return status;
    }
    if (!check.read.ok) return status;
    if (filters == 0) {
        Print("No filters used\n");
        return status;
    }
    TextTable table{{{"Filter"}, {"User agent values"}, {"Lines", true}}, {}};
    for (const adddata::CheckGroup& group : check.rejected) {
        if (group.texts.empty()) table.rows.push_back({group.name, "", "0"});
        for (const adddata::CountedText& text : group.texts)
            table.rows.push_back({group.name, text.text, std::to_string(text.lines)});
    }
    Print("Found " + std::to_string(check.agents.size()) + " user agents.\n");
    if (!table.rows.empty()) PrintTable(table);
    PrintError(
        "Check each robot filter to make sure it is not skipping lines for real visitors (user agent strings for "
        "commonly used browsers).");
    return status;
}

using Command = int (*)(Program&, const CheckArguments&);

}  // namespace

void AddCheckCommands(CLI::App& root, Program& program) {
    CLI::App* family =
        NewFamily(root, "check", "What definitions find in log files and what they miss; stores nothing");
    auto arguments = std::make_shared<CheckArguments>();
    const auto add = [&](const char* word, const char* help, const char* example, Command command) {
        CLI::App* app = NewCommand(*family, word, help, example);
        AddFileArguments(*app, arguments->files);
        app->callback([=, &program] { program.run = [=, &program] { return command(program, *arguments); }; });
        return app;
    };
    CLI::App* referrers = add("referrers", "Referrers of engines without a term, and of no engine",
                              "check referrers access.log --at-least 5", Referrers);
    referrers->add_option("--at-least", arguments->atLeast, "Unique referrers that a site of no engine must have")
        ->check(CLI::Range(1, 1000000));
    CLI::App* pages = add("pages", "Pages, and what the page component filter does with them",
                          "check pages access.log --show new", Pages);
    AddText(*pages, "--show", arguments->show, "all (default), skipped, accepted or new");
    CLI::App* robots = add("robots", "User agents that each robot filter rejects", "check robots access.log", Robots);
    robots->add_flag("--all", arguments->all, "Filters that reject nothing, too");
}

}  // namespace cli
