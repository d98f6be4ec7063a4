#include "adddata/addrun.h"

#include <algorithm>
#include <optional>

#include "adddata/checkscreens.h"
#include "adddata/filterform.h"
#include "adddata/recordscreens.h"
#include "adddata/robotscreens.h"
#include "core/dates.h"
#include "core/env.h"
#include "core/numbers.h"
#include "core/ports.h"
#include "dialogs/valuelist.h"

namespace adddata {
namespace {

constexpr std::size_t kShownErrors = 8;
constexpr std::string_view kCancelled = "Add log to database cancelled ";
constexpr std::string_view kPreprocessed = "Preprocessing [check robots] - Done. ";
constexpr std::string_view kNotBuilt =
    "\r\rThe visits of these lines are not built yet. Corvane offers to complete them at the next start, and the next "
    "add completes them.";

logdefs::FilterFiles FilesOf(const AddDesk& at) { return FilterFilesOf(at.program, at.site.Paths()); }

void TakeOptions(const AddDesk& at, AddRequest& request) {
    const ReadOptions& options = at.memory.options;
    request.NoPromptInvalid = options.NoPromptInvalid;
    request.NoPromptOverlap = options.NoPromptOverlap;
    request.Keep404List = options.Keep404List;
}

logdefs::FilterSwitches SwitchesOf(const AddRequest& request) {
    return {request.mainFilter.value_or(logdefs::MainFilter::All), request.skipRobots.value_or(false),
            request.skipComponents.value_or(false)};
}

void TakeSwitches(const logdefs::FilterSwitches& switches, AddRequest& request) {
    request.mainFilter = switches.main;
    request.skipRobots = switches.skipRobots;
    request.skipComponents = switches.skipComponents;
}

std::string Statement(const AddDesk& at, const AddRequest& request) {
    return logdefs::FltrDescribe(at.env.ini, FilesOf(at), SwitchesOf(request));
}

// False: cancelled.
bool EditFilters(const AddDesk& at, AddRequest& request) {
    for (;;) {
        FilterForm form(at);
        dialogs::Controls controls;
        form.Add(controls);
        dialogs::Box box;
        box.message = "Confirm selection of filters for main processing and press OK to continue.";
        box.buttons = "OK|Cancel";
        box.title = "Confirm Filters for main processing. Add to Site DB: " + at.site.Options().name;
        box.helpId = "AddLog";
        box.live = [&](dialogs::Controls& entered) { form.Live(entered); };
        const dialogs::Pressed pressed = dialogs::ShowMB(at.desk, box, controls);
        if (pressed.Cancelled()) return false;
        const logdefs::FilterSwitches switches = form.Switches(controls);
        StoreSwitches(at, switches);
        TakeSwitches(switches, request);
        if (!form.Edit(pressed.button)) return true;
    }
}

// Between the search for robots and the add. False: cancelled.
bool Confirm(const AddDesk& at, AddRequest& request) {
    enum Button { kOk = 1, kCancel, kEdit, kPages };
    for (;;) {
        dialogs::Box box;
        box.message = std::string(kPreprocessed) + "\r----------\rMain Processing [add lines]. - To Do Next.\r\r" +
                      AddOptionsText({request.files, SwitchesOf(request), Statement(at, request)}) +
                      "\r\rConfirm selections and press OK to add data now.\rTo preread and list PageNames that do not "
                      "yet exist on the site DB, press \"List PageName\" [same as: Check vs Log File]";
        box.buttons = "&OK|&Cancel|Edi&t Filters|List &PageNames";
        box.title = "Confirm Filters for main processing. Add to Site DB: " + at.site.Options().name;
        box.name = "ConfirmFilters";
        box.helpId = "AddLog";
        switch (dialogs::ShowMB(at.desk, box).button) {
            case kOk:
                return true;
            case kEdit:
                if (!EditFilters(at, request)) return false;
                break;
            case kPages:
                CheckPagesOnScreen(at);
                break;
            default:
                return false;
        }
    }
}

std::string Errors(const AddOutcome& outcome) {
    std::vector<std::string> errors = outcome.read.errors;
    if (!outcome.visits.error.empty()) errors.push_back(outcome.visits.error);
    std::string text;
    for (std::size_t i = 0; i < std::min(errors.size(), kShownErrors); ++i) text += "\r" + errors[i];
    if (errors.size() > kShownErrors) text += "\r... and " + std::to_string(errors.size() - kShownErrors) + " more";
    return text.empty() ? text : "\r\rNot everything could be added:" + text;
}

void ShowErrorPages(const AddDesk& at, const logread::CountedList& pages) {
    dialogs::ValueList list;
    list.title = "Filenames of log lines with HTTP status 4xx or 5xx";
    list.headers = {"File Name", "LogLines"};
    list.gridSpec = "12000|5000||||||||1|0|{9800|1600}|{0|7}";
    list.name = "List404";
    list.helpId = "AddLog";
    dialogs::Rows rows;
    for (std::size_t i = 0; i < pages.Texts().size(); ++i)
        rows.push_back({pages.Texts()[i], core::CountText(static_cast<double>(pages.Counts()[i]))});
    int selected = -1;
    dialogs::ShowValueList(at.desk, list, rows, selected);
}

// The lists come over the totals, which stay until OK.
void ShowTotals(const AddDesk& at, const AddTotals& totals) {
    const AddOutcome& outcome = totals.outcome;
    const logread::CountedList& pages = outcome.read.check.StatusFiles;
    dialogs::Box box;
    box.message = (outcome.read.ok ? "" : std::string(kReadFailed) + "\r\r") +
                  "Read Log Data Complete. Site DB: " + at.site.Options().name + "\r\r" + AddTotalsText(totals) +
                  Errors(outcome) +
                  (outcome.read.problems.Files().empty()
                       ? ""
                       : "\r\rThere were problems with log files: List Problem Files for last read tells them.") +
                  "\r\rPress Done and select a report from the Reports menu to analyse data.";
    box.buttons = pages.Texts().empty() ? "&OK|Show SE Summar&y" : "&OK|Show SE Summar&y|List &404 filenames";
    box.options = dialogs::option::Esc(1) + dialogs::option::NoHide("2|3", false, false) +
                  std::to_string(static_cast<int>(dialogs::Icon::Information));
    box.title = "Add Log Data to Site DB: " + at.site.Options().name;
    box.name = "AddTotals";
    box.helpId = "AddLog";
    dialogs::Controls none;
    dialogs::ShowMBStay(at.desk, box, none, [&](dialogs::DialogModel&, int button) {
        if (button == 2) SEsummaryShow(at.desk, outcome.visits.foundTerms);
        if (button == 3) ShowErrorPages(at, pages);
    });
}

void ShowUnfinished(const AddDesk& at, const AddTotals& totals) {
    const bool waits = !at.site.UnfinishedAdd(at.env).empty();
    dialogs::ShowMsg(at.desk,
                     std::string(kReadFailed) + "\r\r" + AddTotalsText(totals) + (waits ? std::string(kNotBuilt) : "") +
                         Errors(totals.outcome),
                     "Add Log Data to Site DB: " + at.site.Options().name,
                     std::to_string(static_cast<int>(dialogs::Icon::Exclamation)));
}

void Remember(const AddDesk& at, const AddOutcome& outcome) {
    at.memory.options.NoPromptInvalid = outcome.read.NoPromptInvalid;
    at.memory.options.NoPromptOverlap = outcome.read.NoPromptOverlap;
    at.memory.lastAdd = {true, outcome.visits.foundTerms, outcome.read.problems.Files()};
}

std::string StatusOf(const AddOutcome& outcome) {
    if (!outcome.read.ok || !outcome.visits.done) return std::string(kReadFailed);
    if (outcome.Status() != 0) return "Not everything could be added.";
    return outcome.read.totals.AllLinesAdded > 0 ? "Data added." : "No new line was added.";
}

}  // namespace

std::string RunAdd(const AddDesk& at, AddRequest request, AddSteps steps) {
    at.memory.lastAdd = {};
    const double begun = at.env.clock.Now();
    if (steps.preprocess) {
        const PreprocessShown shown = PreprocessBotsOnScreen(at, request);
        if (!shown.ok) return std::string(kReadFailed);
        request.preprocessSeconds = shown.seconds;
    }
    if (!steps.add) return std::string(kPreprocessed);
    if (steps.preprocess && !Confirm(at, request)) return std::string(kCancelled);
    TakeOptions(at, request);
    const AddOutcome outcome = AddLogData(at.env, at.site, at.program, request);
    Remember(at, outcome);
    const AddTotals totals{outcome, core::fElapsedText(begun, at.env.clock.Now()), Statement(at, request)};
    if (outcome.visits.done)
        ShowTotals(at, totals);
    else
        ShowUnfinished(at, totals);
    return StatusOf(outcome);
}

}  // namespace adddata
