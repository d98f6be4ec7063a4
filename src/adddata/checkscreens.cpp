#include "adddata/checkscreens.h"

#include <functional>
#include <utility>
#include <vector>

#include "adddata/checkscreenslists.h"
#include "adddata/checkscreensread.h"
#include "adddata/readscreens.h"
#include "core/env.h"
#include "core/numbers.h"
#include "dialogs/gridops.h"
#include "logdefs/enginescreens.h"
#include "logdefs/filterscreens.h"

namespace adddata {
namespace {

constexpr std::string_view kFiltersOfAdd =
    "The selected log file[s] will be read using the same filters you have specified for add log lines.";
constexpr std::string_view kNewRead = "Ne&w Read - Chk another log or Read Again with Other Filters";
constexpr std::size_t kMostOfFile = 500;  // bytes of the names of the files that were read

template <typename Check>
struct ListButton {
    std::string caption{};
    std::function<void(const Check& found)> show{};
};

// One of the checks: its read, what it says of the result, the lists, the editor of the definitions.
template <typename Check>
struct Plan {
    CheckReadText text{};
    std::string resultTitle{};
    LastCheck<Check>& last;
    std::function<Check(const AddRequest& request)> read{};
    std::function<void(Check& found)> judge{};  // by the definitions as they are now
    std::function<std::string(const Check& found)> result{};
    std::vector<ListButton<Check>> lists{};
    std::function<void()> edit{};  // empty: the editor is below, and the check ends
};

std::string Count(std::size_t count) { return core::CountText(static_cast<double>(count)); }
std::string Lines(const logread::ReadOutcome& read) {
    return core::CountText(static_cast<double>(read.totals.AllLinesAdded));
}

// False: left without a result.
template <typename Check>
bool Read(const AddDesk& at, const Plan<Check>& plan) {
    for (;;) {
        const std::optional<AddRequest> request = AskCheckRead(at, plan.text);
        if (!request) return false;
        const std::string file = ChosenText(at);
        auto found = std::make_unique<Check>(plan.read(*request));
        if (!CheckReadDone(at, found->read, plan.text.title)) continue;
        plan.last.file = file;
        plan.last.found = std::move(found);
        return true;
    }
}

// Shows the result once and does what was pressed. False: the check is over.
template <typename Check>
bool ShowResult(const AddDesk& at, const Plan<Check>& plan) {
    dialogs::Box box;
    box.title = plan.resultTitle;
    box.name = plan.text.name + "Result";
    box.helpId = plan.text.helpId;
    box.message = "Last read: " + dialogs::GridCellText(plan.last.file, kMostOfFile) +
                  ChangedFileNote(at, plan.last.file) + "\r" + plan.result(*plan.last.found);
    box.buttons.clear();
    for (const ListButton<Check>& list : plan.lists) box.buttons.append(list.caption).append("|");
    box.buttons.append(kNewRead).append("|&Back to Definitions|Don&e");
    box.options = dialogs::option::MaxBpl(1);
    const int newRead = static_cast<int>(plan.lists.size()) + 1, back = newRead + 1;
    box.escNo = back + 1;
    const int button = dialogs::ShowMB(at.desk, box).button;
    if (button < newRead) {
        plan.lists[static_cast<std::size_t>(button - 1)].show(*plan.last.found);
    } else if (button == newRead) {
        plan.last.found.reset();
    } else if (button == back && plan.edit) {
        plan.edit();
        plan.judge(*plan.last.found);
    } else {
        return false;
    }
    return true;
}

template <typename Check>
void Run(const AddDesk& at, const Plan<Check>& plan) {
    if (plan.last.found) plan.judge(*plan.last.found);
    do {
        if (!plan.last.found && !Read(at, plan)) return;
    } while (ShowResult(at, plan));
}

CheckReadText ReferrerText() {
    return {.title = "Check SE referrers",
            .heading = "Check SE referrer definitions against log file. Filter lines to check.",
            .explanations =
                "Read Log file to find search engine referrer strings that cannot be interpreted.\rAll referrer "
                "strings identified as search engines will be checked for a search term.\rWhen read of log file is "
                "complete you will be shown a list of referrers that could not be interpreted. You can use this list "
                "to improve the definitions for search engine referrer strings.",
            .filters = std::string(kFiltersOfAdd),
            .name = "CheckReferrers",
            .helpId = "CheckReferrers"};
}

CheckReadText PageText() {
    return {.title = "Check Page Component File Filters VS log file",
            .heading = "Check Page Component File Filters VS log file",
            .explanations =
                "Read Log file to list the pages and component files that visitors requested.\rWhen read "
                "of log file is complete you can list those that the selected file filter skips, those "
                "that it accepts, and those that the site database does not hold yet.",
            .filters = "The selected log file[s] will be read using the page component file filter alone.",
            .name = "CheckPages",
            .helpId = "CheckPages"};
}

CheckReadText RobotText() {
    return {.title = "Check User Agents skipped by each robot filter",
            .heading = "Check User Agents skipped by each robot filter",
            .explanations =
                "Read Log file to list user agent [browser] strings that cause log lines to be skipped by each robots "
                "filter.\rAll user agent strings will be checked by each robot filter.\rWhen read of log file is "
                "complete you will be shown a list of user agents that were skipped for each filter. You can use this "
                "list to improve the filters.",
            .filters = std::string(kFiltersOfAdd),
            .name = "CheckRobots",
            .helpId = "CheckRobots"};
}

std::string ReferrersFound(const ReferrerCheck& found) {
    std::size_t noTerm = 0, unknown = 0;
    for (const CheckGroup& group : found.noTerm) noTerm += group.texts.size();
    for (const CheckGroup& group : found.unknown) unknown += group.texts.size();
    return "Last Read Found " + Count(found.all.size()) + " referrers in " + Lines(found.read) + " log lines.\r" +
           Count(noTerm) + " of a known SE have no search term; " + Count(unknown) +
           " are of a site that is not defined as an SE.";
}

}  // namespace

void CheckReferrersOnScreen(const AddDesk& at, OpenedFrom from) {
    Plan<ReferrerCheck> plan{.last = at.memory.referrers};
    plan.text = ReferrerText();
    plan.resultTitle = "Check Definitions of SE Referrer Strings VS. Log File";
    plan.read = [&](const AddRequest& request) { return CheckReferrers(at.env, at.site, at.program, request); };
    plan.judge = [&](ReferrerCheck& found) { JudgeReferrers(at.env.ini, at.program, found); };
    plan.result = ReferrersFound;
    plan.lists = {
        {"Lis&t All Referrer strings", [&](const ReferrerCheck& found) { ListReferrers(at.desk, found); }},
        {"Undefined &ST - ST not found in referrer for known SE domain",
         [&](const ReferrerCheck& found) { ListUndefined(at.desk, found); }},
        {"Unknown S&E.s  - domain in referrer string not defined",
         [&](const ReferrerCheck& found) { ListUnknown(at.desk, found); }},
    };
    if (from == OpenedFrom::Menu) plan.edit = [&] { logdefs::SEDefsEdit(at.Editing()); };
    Run(at, plan);
}

void CheckPagesOnScreen(const AddDesk& at, OpenedFrom from) {
    Plan<PageCheck> plan{.last = at.memory.pages};
    plan.text = PageText();
    plan.resultTitle = plan.text.title;
    plan.read = [&](const AddRequest& request) { return CheckPages(at.env, at.site, at.program, request); };
    plan.judge = [&](PageCheck& found) { JudgePages(at.env, at.site, at.program, found); };
    plan.result = [](const PageCheck& found) {
        return "Found: " + Count(found.rows.size()) + " pages and component filenames in " + Lines(found.read) +
               " log lines.";
    };
    const auto list = [&](PageChoice choice) {
        return [&at, choice](const PageCheck& found) { ListPages(at.desk, found, choice); };
    };
    plan.lists = {{"Lis&t All PageNames", list(PageChoice::All)},
                  {"List PageNames S&KIPPED using selected filter", list(PageChoice::Skipped)},
                  {"List PageNames &ACCEPTED using selected filter", list(PageChoice::Accepted)},
                  {"List PageNames that do not already e&xist", list(PageChoice::New)}};
    if (from == OpenedFrom::Menu)
        plan.edit = [&] { logdefs::FltrSelectMain(at.Editing(), logdefs::FilterFamily::Components); };
    Run(at, plan);
}

void CheckRobotsOnScreen(const AddDesk& at, OpenedFrom from) {
    Plan<RobotCheck> plan{.last = at.memory.robots};
    plan.text = RobotText();
    plan.resultTitle = plan.text.title;
    plan.read = [&](const AddRequest& request) { return CheckRobots(at.env, at.site, at.program, request); };
    plan.judge = [](RobotCheck&) {};  // only another read shows what changed filters do
    plan.result = [](const RobotCheck& found) {
        std::int64_t rejected = 0;
        for (const CheckGroup& group : found.rejected) rejected += group.lines;
        return "Last Read Found " + Count(found.agents.size()) + " user agents in " + Lines(found.read) +
               " log lines that no filter skips and " + core::CountText(static_cast<double>(rejected)) +
               " that robot filters skip.\rAfter a change of the filters press New Read to see what they skip.";
    };
    plan.lists = {
        {"Lis&t All User Agent [Browser] strings", [&](const RobotCheck& found) { ListAgents(at.desk, found); }},
        {"User Agents Re&jected by each Robot Filter", [&](const RobotCheck& found) { ListRejected(at.desk, found); }}};
    if (from == OpenedFrom::Menu)
        plan.edit = [&] { logdefs::FltrSelectMain(at.Editing(), logdefs::FilterFamily::Robots); };
    Run(at, plan);
}

}  // namespace adddata
