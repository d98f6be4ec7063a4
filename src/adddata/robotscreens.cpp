#include "adddata/robotscreens.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "adddata/robots.h"
#include "core/env.h"
#include "core/ports.h"
#include "dialogs/gridops.h"
#include "dialogs/twolist.h"
#include "logdefs/filterscreens.h"
#include "logdefs/rulebrowsers.h"

namespace adddata {
namespace {

using dialogs::ListSide;

constexpr std::string_view kTitle = "- Preprocessing - Check for new robots.";
constexpr std::string_view kListName = "user agent string from HTTP request";
constexpr std::string_view kSteps =
    "The following user agents were found for log lines with selected filter [usually file robots.txt].\r"
    "1. Select user agents to exclude from list on the left.\r"
    "2. Click Add to move items to the list on the right.\r"
    "3. Press OK to create filters for items selected on the right. \r"
    "4. After User-Agent-Robot-Filters have been created, you can edit the complete filter list.\r"
    "Do NOT select generic type user agent names such as Mozilla/5.0 (Windows NT 10.0; Win64; x64): every visitor's "
    "browser that starts so would be taken for a robot.\r"
    "For convenience, user agent names can be added to a skip list or filtered here.\r"
    "Items removed from (ONLY) this list when EITHER in the skip list OR satisfy a skip filter.\r"
    "Press OK to create filters for items selected on the right\rPress Cancel to skip filter creation.";
constexpr std::string_view kSkipText =
    "Define Skip Filter.\r"
    "This gives a shorter list of user agents to potentially add as robot-identifiers.\r"
    "NB Both Skip Filter and Skip List are used only in preprocessing. They suppress standard user agents usually used "
    "as browsers but which were also used to request robots.txt.\r"
    "Do not show Items that satisfy a Skip Filter:";
constexpr std::string_view kSkipListText =
    "Skip List. Return to List of user agents found to edit Skip List. Change Skip Filters here";
constexpr std::string_view kAgentLabel = "User agent [Browser]";
constexpr std::string_view kCreated = "New filters for robot and crawler user agents created successfully.";
constexpr int kAgentColType = 2;
constexpr std::size_t kShownBytes = 300;

class Preprocessing {
public:
    Preprocessing(const AddDesk& at, const AddRequest& request)
        : at_(at), request_(request), files_(RobotFilesOf(at.program)) {}

    PreprocessShown Run();

private:
    bool Read();
    bool StoppedByPerson() const;
    bool WantsLists() const;
    void Choose();
    void MakeRules(const std::vector<std::string>& agents);
    dialogs::TwoListPlan Plan() const;
    bool ChangeFilters(dialogs::TwoListState& state) const;
    bool MayEnd(const ListSide& right) const;
    ListSide SideOf(const std::vector<CountedText>& agents) const;
    void Tell(std::string_view message) const { dialogs::ShowMsg(at_.desk, message, kTitle); }

    const AddDesk& at_;
    const AddRequest& request_;
    const RobotFiles files_;
    Preprocessed found_{};
    PreprocessShown shown_{};
};

// A stopped file that no error explains was stopped by the person.
bool Preprocessing::StoppedByPerson() const {
    const auto stopped = std::ranges::count_if(found_.read.files, &logread::FileRecord::stopped);
    return !found_.read.ok &&
           (found_.read.errors.empty() || static_cast<std::size_t>(stopped) > found_.read.errors.size());
}

// False: the preprocessing is at its end.
bool Preprocessing::Read() {
    const double start = at_.env.clock.Seconds();
    found_ = PreprocessBots(at_.env, at_.site, at_.program, request_);
    shown_.seconds = at_.env.clock.Seconds() - start;
    shown_.ok = found_.read.anyRead && !StoppedByPerson();
    if (found_.read.ok && found_.read.anyRead) return true;
    std::string text(kReadFailed);
    for (const std::string& error : found_.read.errors) text.append("\r").append(error);
    Tell(text);
    return false;
}

// Without a user agent to offer the lists are of use only to whoever wants to offer one again.
bool Preprocessing::WantsLists() const {
    if (!found_.offered.empty()) return true;
    dialogs::Box box;
    box.title = kTitle;
    box.message = std::string(kNoNewFilters);
    if (found_.found.agents.empty()) {
        dialogs::ShowMsg(at_.desk, box.message, box.title);
        return false;
    }
    constexpr int kOk = 1, kShow = 2;
    box.message += "\rAll user agents that were found are in the skip list or satisfy a skip filter.";
    box.buttons = "&OK|&Show the lists";
    box.escNo = kOk;
    return dialogs::ShowMB(at_.desk, box).button == kShow;
}

ListSide Preprocessing::SideOf(const std::vector<CountedText>& agents) const {
    ListSide side;
    for (const CountedText& agent : agents) {
        side.texts.push_back(agent.text);
        side.keys.push_back(std::to_string(agent.lines) + (agent.lines == 1 ? " line" : " lines"));
    }
    return side;
}

// The skip editor; what its filters take then is not offered any longer, and the other way round.
bool Preprocessing::ChangeFilters(dialogs::TwoListState& state) const {
    logdefs::FilterList list;
    list.file = files_.skip;
    list.key = "skipFtrs";
    list.multiple = false;
    list.onlyColType = kAgentColType;
    list.onlyLabel = kAgentLabel;
    list.title = "- Define Skip Filter.";
    list.message = kSkipText;
    list.item = "Skip Filter";
    list.name = "SkipFilters";
    list.helpId = "NewRobots";
    list.endText = kSkipListText;
    list.endRows = {{std::string(kAgentLabel), "not used"}};
    const std::vector<std::string>& agents = found_.read.check.UAs.Texts();
    const std::unordered_set<std::string_view> used(agents.begin(), agents.end());
    for (const std::string& skipped : state.skip)
        list.endRows.push_back({dialogs::GridCellText(skipped), used.contains(skipped) ? "" : "not used"});
    if (!logdefs::FltrListEdit(at_.Editing(), list)) return false;
    const std::unordered_set<std::string_view> right(state.right.texts.begin(), state.right.texts.end());
    std::vector<CountedText> offered = BotsNotFiltered(at_.env.ini, files_, found_.found.agents);
    std::erase_if(offered, [&](const CountedText& agent) { return right.contains(agent.text); });
    state.left = SideOf(offered);
    return true;
}

bool Preprocessing::MayEnd(const ListSide& right) const {
    const auto browser = std::ranges::find_if(right.texts, logdefs::LooksLikeBrowser);
    if (browser == right.texts.end()) return true;
    constexpr int kCreate = 1, kBack = 2;
    dialogs::Box box;
    box.title = kTitle;
    box.message = "Some of the selected user agents look like browsers of people, such as:\r" +
                  dialogs::GridCellText(*browser, kShownBytes) +
                  "\rEvery visitor whose browser's name begins so would be taken for a robot. Create filters of them "
                  "all the same?";
    box.buttons = "&Create filters|&Back to the lists";
    box.options = std::to_string(static_cast<int>(dialogs::Icon::Exclamation));
    box.escNo = box.defaultNo = kBack;
    return dialogs::ShowMB(at_.desk, box).button == kCreate;
}

dialogs::TwoListPlan Preprocessing::Plan() const {
    dialogs::TwoListPlan plan;
    plan.title = kTitle;
    plan.item = "user agent";
    plan.listName = kListName;
    plan.message = kSteps;
    plan.name = "NewRobots";
    plan.helpId = "NewRobots";
    plan.emptyLeft = "No user agent is left to select.";
    plan.sequence = plan.manualAdd = false;
    plan.skipList = {"Main", "SkipUA", files_.skip};
    plan.showKeys = true;
    plan.buttons = {{"Change Ski&p Filters", [this](dialogs::TwoListState& state) { return ChangeFilters(state); }}};
    plan.mayEnd = [this](const ListSide& right, int) { return MayEnd(right); };
    return plan;
}

void Preprocessing::MakeRules(const std::vector<std::string>& agents) {
    const RulesAdded added = BotsAddRules(at_.env, files_, agents);
    if (!added.ok) return Tell("The filters could not be written to " + files_.robots);
    shown_.rulesMade = added.names.size();
    if (added.names.empty()) return Tell(kNoNewFilters);
    Tell(kCreated);
    logdefs::FltrSelectMain(at_.Editing(), logdefs::FilterFamily::Robots);
}

void Preprocessing::Choose() {
    const ListSide left = SideOf(BotsNotFiltered(at_.env.ini, files_, found_.found.agents));
    const dialogs::TwoListPlan plan = Plan();
    const dialogs::TwoListResult result = dialogs::TwoListSelect(at_.desk, at_.env.progress, plan, left, {});
    if (result.ok) MakeRules(result.right.texts);
}

PreprocessShown Preprocessing::Run() {
    if (Read() && WantsLists()) Choose();
    return shown_;
}

}  // namespace

PreprocessShown PreprocessBotsOnScreen(const AddDesk& at, const AddRequest& request) {
    return Preprocessing(at, request).Run();
}

bool BotsFinderEdit(const AddDesk& at) {
    logdefs::FilterList list;
    list.file = RobotFilesOf(at.program).finder;
    list.selectedKey = "Fltr Sel";
    list.choose = true;
    list.title = "- filter used to identify user agent strings that are bots [All Site DBs]";
    list.message =
        "Select a single filter in this list\rUse new filter & choose \"multiple conditions\" to use more than one "
        "rule.";
    list.name = "FinderFilters";
    list.helpId = "NewRobots";
    return logdefs::FltrListEdit(at.Editing(), list);
}

}  // namespace adddata
