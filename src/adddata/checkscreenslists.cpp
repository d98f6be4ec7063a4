#include "adddata/checkscreenslists.h"

#include <algorithm>
#include <array>

#include "core/numbers.h"
#include "core/text.h"
#include "core/utf8.h"
#include "dialogs/checks.h"
#include "dialogs/valuelist.h"

namespace adddata {
namespace {

using dialogs::Rows;
using dialogs::ValueList;

constexpr std::size_t kMostJoined = 1000;  // bytes of a group's values in one cell
constexpr std::string_view kChecks = "N|+|<1000000";

std::string Count(std::size_t count) { return core::CountText(static_cast<double>(count)); }
std::string Count(std::int64_t count) { return core::CountText(static_cast<double>(count)); }

Rows RowsOf(const std::vector<CountedText>& texts) {
    Rows rows;
    rows.reserve(texts.size());
    for (const CountedText& text : texts) rows.push_back({text.text, Count(text.lines)});
    return rows;
}

void ListTexts(const dialogs::Desk& desk, const ValueList& list, const std::vector<CountedText>& texts) {
    int selected = -1;
    dialogs::ShowValueList(desk, list, RowsOf(texts), selected);
}

// The first values of a group.
std::string Joined(const CheckGroup& group) {
    std::string text;
    for (const CountedText& value : group.texts) {
        if (text.size() + value.text.size() > kMostJoined) {
            if (text.empty()) text = core::CutUtf8(value.text, kMostJoined);
            return text.append(" ...");
        }
        text.append(text.empty() ? "" : " | ").append(value.text);
    }
    return text;
}

// Groups in a grid; a button lists the values of the selected one.
struct GroupList {
    ValueList list{};
    std::string item{};       // what is selected
    std::string valueName{};  // header of its values
};

void ListGroup(const dialogs::Desk& desk, const GroupList& groups, const CheckGroup& group) {
    ValueList list;
    list.title = groups.list.title;
    list.message = groups.item + ": " + core::fLeft(group.name, 200, " ...").text;
    if (!group.description.empty()) list.message += "\r" + core::fLeft(group.description, 400, " ...").text;
    list.headers = {groups.valueName, "LogLines"};
    list.emptyText = "None were found.";
    ListTexts(desk, list, group.texts);
}

void ListSelected(const dialogs::Desk& desk, const GroupList& groups, const std::vector<const CheckGroup*>& shown,
                  int selected) {
    if (selected < 0 || static_cast<std::size_t>(selected) >= shown.size()) {
        dialogs::ShowMsg(desk, "Select a line of the list first.", groups.list.title);
    } else {
        ListGroup(desk, groups, *shown[static_cast<std::size_t>(selected)]);
    }
}

// Empty: cancelled.
std::string AskAtLeast(const dialogs::Desk& desk, std::size_t now) {
    const auto check = [](const std::string& text) { return dialogs::CheckEntry(kChecks, text); };
    return dialogs::AskLine(desk, "Count of unique referrers required to Appear on this list", std::to_string(now), {},
                            check)
        .value_or("");
}

bool Wanted(const PageRow& row, PageChoice choice) {
    switch (choice) {
        case PageChoice::Skipped:
            return row.skipped;
        case PageChoice::Accepted:
            return !row.skipped;
        case PageChoice::New:
            return row.isNew;
        default:
            return true;
    }
}

struct PageTitle {
    PageChoice choice;
    std::string_view text;
};
constexpr std::array kPageTitles{
    PageTitle{PageChoice::All, "All PageName-URLs found on log file."},
    PageTitle{PageChoice::Accepted, "PageName-URLs that will be **ADDED** due to selected file filter."},
    PageTitle{PageChoice::Skipped, "PageName-URLs that will be **SKIPPED** due to selected file filter."},
    PageTitle{PageChoice::New,
              "**NEW** [not yet added to site DB] PageName-URLs that will be **ADDED** after apply selected file "
              "filter."},
};

std::string PageMessage(const PageCheck& check, PageChoice choice) {
    std::string text(std::ranges::find(kPageTitles, choice, &PageTitle::choice)->text);
    text += "\rFilter: " + (check.filter.empty() ? "none is selected, so every page is skipped"
                                                 : core::fLeft(check.filter, 450, " ...").text);
    if (check.queryRemoved) text += "\rQuery removed. Query is part of url for page or component after ?";
    if (check.fragmentRemoved) text += "\rFragment removed. Fragment is part of url for page or component after #";
    if (check.errorsSkipped)
        text += "\rAll file requests that caused server or client errors are skipped [404, 403, etc.]";
    if (check.otherRules) text.append("\r").append(kOtherPageRules);
    return text;
}

}  // namespace

void ListReferrers(const dialogs::Desk& desk, const ReferrerCheck& check) {
    ValueList list;
    list.title = "All Referrer strings";
    list.name = "CheckAllReferrers";
    list.headers = {"referrer string", "LogLines"};
    list.emptyText = "The log lines have no referrers.";
    ListTexts(desk, list, check.all);
}

void ListUndefined(const dialogs::Desk& desk, const ReferrerCheck& check) {
    GroupList groups;
    groups.item = "SE selected using";
    groups.valueName = "Referrers for which  could not find search term";
    groups.list.title = "Undefined ST - ST not found in referrer for known SE domain";
    groups.list.name = "CheckUndefined";
    groups.list.headers = {groups.item, groups.valueName, "Referrers", "LogLines"};
    groups.list.emptyText = "No lines found for which could not determine search term.";
    groups.list.extraButtons = "Lis&t Referrers [selected SE]";
    std::vector<const CheckGroup*> shown;
    Rows rows;
    for (const CheckGroup& group : check.noTerm) {
        shown.push_back(&group);
        rows.push_back({group.name, Joined(group), Count(group.texts.size()), Count(group.lines)});
    }
    int selected = -1;
    while (dialogs::ShowValueList(desk, groups.list, rows, selected) != 0) ListSelected(desk, groups, shown, selected);
}

void ListUnknown(const dialogs::Desk& desk, const ReferrerCheck& check) {
    constexpr int kList = 1, kDone = 0;
    GroupList groups;
    groups.item = "Site";
    groups.valueName = "referrer string";
    groups.list.title = "Unknown SE.s  - domain in referrer string not defined";
    groups.list.name = "CheckUnknown";
    groups.list.headers = {groups.item, groups.valueName, "Referrers", "LogLines"};
    groups.list.emptyText = "No site has that many unique referrers.";
    groups.list.extraButtons = "Lis&t Referrers [selected Site]|Chan&ge # referrers reqd to list";
    std::size_t atLeast = 1;
    int selected = -1;
    for (int button = -1; button != kDone;) {
        std::vector<const CheckGroup*> shown;
        Rows rows;
        for (const CheckGroup& group : check.unknown) {
            if (group.texts.size() < atLeast) continue;
            shown.push_back(&group);
            rows.push_back({group.name.empty() ? "(no address of the web)" : group.name, Joined(group),
                            Count(group.texts.size()), Count(group.lines)});
        }
        groups.list.message = "Showing Only Items with at least " + Count(atLeast) + " unique referrers";
        button = dialogs::ShowValueList(desk, groups.list, rows, selected);
        if (button == kList) {
            ListSelected(desk, groups, shown, selected);
        } else if (button != kDone) {
            if (const std::string asked = AskAtLeast(desk, atLeast); !asked.empty())
                atLeast = static_cast<std::size_t>(std::max(1.0, core::fNum(dialogs::KeptEntry(kChecks, asked))));
            selected = -1;
        }
    }
}

void ListPages(const dialogs::Desk& desk, const PageCheck& check, PageChoice choice) {
    ValueList list;
    list.title = "Check Page Component File Filters VS log file";
    list.message = PageMessage(check, choice);
    list.name = "CheckPageList";
    list.headers = {"PageName [as used on reports]", "Full FileName from log file", "LogLines", "FileType"};
    list.emptyText = "There are no such pages.";
    Rows rows;
    for (const PageRow& row : check.rows)
        if (Wanted(row, choice)) rows.push_back({row.page, row.file, Count(row.lines), row.type});
    int selected = -1;
    dialogs::ShowValueList(desk, list, rows, selected);
}

void ListAgents(const dialogs::Desk& desk, const RobotCheck& check) {
    ValueList list;
    list.title = "All User Agent [Browser] strings";
    list.name = "CheckAllAgents";
    list.headers = {"User Agent Values", "# Found"};
    list.emptyText = "The log lines have no user agents.";
    ListTexts(desk, list, check.agents);
}

void ListRejected(const dialogs::Desk& desk, const RobotCheck& check) {
    GroupList groups;
    groups.item = "Filter";
    groups.valueName = "User Agent Values";
    groups.list.title = "User Agents Rejected by each Robot Filter";
    groups.list.message =
        "Check each robot filter to make sure it is not skipping lines for real visitors (user agent strings for "
        "commonly used browsers).";
    groups.list.name = "CheckRejected";
    groups.list.headers = {groups.item, groups.valueName, "# Found"};
    groups.list.emptyText = "No filters used";
    groups.list.extraButtons = "Lis&t User Agents [for selected filter]";
    std::vector<const CheckGroup*> shown;
    for (const CheckGroup& group : check.rejected) shown.push_back(&group);
    // Filters that reject something stand in front of the many that do not.
    std::ranges::stable_partition(shown, [](const CheckGroup* group) { return !group->texts.empty(); });
    Rows rows;
    for (const CheckGroup* group : shown) {
        std::string filter = group->description.empty() ? group->name : group->name + ": " + group->description;
        rows.push_back({std::move(filter), Joined(*group), Count(group->lines)});
    }
    int selected = -1;
    while (dialogs::ShowValueList(desk, groups.list, rows, selected) != 0) ListSelected(desk, groups, shown, selected);
}

}  // namespace adddata
