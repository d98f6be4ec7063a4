#include "shell/commands.h"

#include <array>
#include <ranges>

#include "adddata/addscreens.h"
#include "adddata/checkscreens.h"
#include "adddata/recordscreens.h"
#include "analysis/targetscreens.h"
#include "core/errlog.h"
#include "core/inistore.h"
#include "core/text.h"
#include "dialogs/named.h"
#include "logdefs/enginescreens.h"
#include "logdefs/formatscreens.h"
#include "shell/namedscreens.h"
#include "shell/optionscreens.h"
#include "shell/popups.h"
#include "shell/reportcommands.h"

namespace shell {
namespace {

constexpr std::string_view kParm = "Parm";
constexpr std::string_view kSuppressed = "Suppressed";  // section of screens.ini with the messages that were put off

// The newest first, each as it was shown; an owner sends them to whoever can help.
std::string RecordedFailures(const core::EventLog& events) {
    const std::string tail = events.Tail();
    const std::vector<core::EventRecord> records = core::ReadEventRecords(tail);
    if (records.empty()) return core::fReplace(tail, "\r\n", "\r");
    std::string text;
    for (const core::EventRecord& record : std::views::reverse(records))
        text += record.caption + "\r" + record.message + "\r\r";
    return text;
}

}  // namespace

Commands::Commands(Workplace& at) : at_(at), reports_(std::make_unique<ReportCommands>(at)) {}

Commands::~Commands() = default;

Commands::Step Commands::StepOf(Command command) {
    struct Row {
        Command command;
        Step step;
    };
    constexpr std::array kSteps{
        Row{Command::AddLogData, &Commands::AddLogData},
        Row{Command::ListAdded, &Commands::ListAdded},
        Row{Command::DefineFormats, &Commands::DefineFormats},
        Row{Command::DefineEngines, &Commands::DefineEngines},
        Row{Command::SelectSite, &Commands::SelectSite},
        Row{Command::NewSite, &Commands::NewSite},
        Row{Command::Exit, &Commands::Exit},
        Row{Command::ReportOptions, &Commands::ReportOptions},
        Row{Command::ProgramOptions, &Commands::ProgramOptions},
        Row{Command::AnalysisOptions, &Commands::AnalysisOptions},
        Row{Command::AdvancedOptions, &Commands::AdvancedOptions},
        Row{Command::Targets, &Commands::Targets},
        Row{Command::Cascade, &Commands::Cascade},
        Row{Command::TileHorizontal, &Commands::TileHorizontal},
        Row{Command::TileVertical, &Commands::TileVertical},
        Row{Command::FillScreen, &Commands::FillScreen},
        Row{Command::HelpContents, &Commands::HelpContents},
        Row{Command::HelpStart, &Commands::HelpStart},
        Row{Command::HelpLast, &Commands::HelpLast},
        Row{Command::HelpAgain, &Commands::HelpAgain},
        Row{Command::About, &Commands::About},
    };
    const auto* row = std::ranges::find(kSteps, command, &Row::command);
    return row != kSteps.end() ? row->step : nullptr;
}

bool Commands::Guarded(const std::function<NextStep()>& action) {
    if (action() != NextStep::EndProgram) return true;
    at_.front.Quit();
    return false;
}

std::function<void()> Commands::BodyOf(const MenuRow& entry) {
    if (const Step step = StepOf(entry.command)) return [this, step] { (this->*step)(); };
    const std::function<void()> body = reports_->BodyOf(entry);
    if (!body) return {};
    return [this, body] {
        if (SiteOrRecover()) body();
    };
}

void Commands::Run(std::string_view control) {
    const MenuRow* row = FindEntry(control);
    if (row == nullptr) return;
    const std::function<void()> body = BodyOf(*row);
    if (!body) return;
    // Help on the last command must not find itself.
    Guarded([&] { return row->Menu() == 'H' ? at_.actions.RunHelp(control, body) : at_.actions.Run(control, body); });
}

bool Commands::SiteOrRecover() {
    if (at_.current.Get() != nullptr || at_.startup.CheckAndRecover()) return true;
    at_.front.Quit();
    return false;
}

void Commands::AddFiles(const std::vector<std::string>& paths) {
    if (paths.empty()) return;
    Guarded([&] {
        const auto add = [&](const adddata::AddDesk& at) { adddata::AddLogDataOnScreen(at, paths); };
        return at_.actions.Run("fMnu_FW", [&] { WithAddDesk(add); });
    });
}

void Commands::WithAddDesk(const std::function<void(const adddata::AddDesk& at)>& screen) {
    if (!SiteOrRecover()) return;
    sitedb::Site& site = *at_.current.Get();
    at_.memory.BelongTo(site.Paths().folder);
    screen({.env = at_.session.Env(),
            .desk = at_.desk,
            .site = site,
            .paths = at_.session.Paths(),
            .memory = at_.memory,
            .program = at_.session.ProgramFiles()});
}

void Commands::AddLogData() {
    WithAddDesk([](const adddata::AddDesk& at) { adddata::AddLogDataOnScreen(at, {}); });
}

void Commands::ListAdded() { WithAddDesk(adddata::AddLogShowList); }

void Commands::DefineFormats() {
    WithAddDesk([](const adddata::AddDesk& at) { logdefs::LogFmtEdit(at.Editing()); });
}

void Commands::DefineEngines() {
    WithAddDesk([](const adddata::AddDesk& at) {
        logdefs::SEDefsEdit(at.Editing(), [&at] { adddata::CheckReferrersOnScreen(at, adddata::OpenedFrom::Editor); });
    });
}

void Commands::SelectSite() {
    const bool changed = at_.screens.SelectSite();
    if (!SiteOrRecover() || !changed) return;
    Resume();
    reports_->SiteChanged();
}

void Commands::NewSite() {
    const std::string made = at_.screens.NewSite();
    if (SiteOrRecover() && !made.empty()) OfferAddNow(made);
}

void Commands::OfferAdd(const std::string& siteName) {
    Guarded([&] { return at_.actions.Trap("MDIForm_Activate", [&] { OfferAddNow(siteName); }); });
}

void Commands::OfferAddNow(const std::string& siteName) {
    dialogs::Box box;
    box.message = "Site DB >>" + siteName + "<<created.\r\rUse " +
                  dialogs::PlainCaption(FindMenuRow("fMnu_FW")->caption) +
                  " to read raw log data and add it to the database.\r\rDo you want to add data now?";
    box.buttons = "&Yes|&No";
    box.options = std::to_string(static_cast<int>(dialogs::Icon::Question));
    box.escNo = 2;
    if (dialogs::ShowMB(at_.desk, box).button == 1) AddLogData();
}

void Commands::CompleteUnfinished() {
    Guarded([&] { return at_.actions.Trap("MDIForm_Activate", [&] { Resume(); }); });
}

void Commands::Resume() {
    sitedb::Site* site = at_.current.Get();
    if (site == nullptr || site->ReadOnly()) return;
    const auto visits = adddata::VisitsAdd_Resume(at_.session.Env(), *site, at_.session.ProgramFiles());
    if (visits && !visits->error.empty()) dialogs::ShowMsg(at_.desk, visits->error);
}

void Commands::Exit() { at_.front.Quit(); }

void Commands::ReportOptions() {
    ShowOptionDialog(
        at_.desk,
        {.dialog = "RepFmt", .valueSection = std::string(kParm), .title = "- Enter Report Options.", .width = 12400});
}

void Commands::ProgramOptions() {
    const bool stored = ShowOptionDialog(
        at_.desk,
        {.dialog = "EnterOps", .valueSection = std::string(kParm), .title = "- Enter Options.", .width = 9000});
    if (!stored) return;
    ShowMessagesAgain();
    ApplyOptions();
    at_.front.OptionsChanged();
}

void Commands::ApplyOptions() {
    at_.progress.SetConfirmStop(
        at_.desk.ini.IniGetBool(kParm, "ConfirmStop", at_.desk.screens, core::Missing::Default, true));
}

// Not a setting: it is done once and the box is empty the next time.
void Commands::ShowMessagesAgain() {
    core::IniStore& ini = at_.desk.ini;
    if (!ini.IniGetBool(kParm, "ShowAllMsgs", at_.desk.screens)) return;
    ini.IniEraseSection(kSuppressed, at_.desk.screens);
    ini.IniErase("Main", "NoAskDeleteAll", at_.session.Sites().ListFile());
    ini.IniPutBool(kParm, "ShowAllMsgs", false, at_.desk.screens);
}

void Commands::AnalysisOptions() {
    if (SiteOrRecover() && ShowAnalysisOptions(at_.desk, *at_.current.Get()))
        reports_->AfterChange("date range and options entered");
}

void Commands::AdvancedOptions() {
    if (SiteOrRecover()) ShowAdvancedOptions(at_.desk, *at_.current.Get());
}

void Commands::Targets() {
    if (SiteOrRecover() && analysis::ShowTargets(at_.desk, at_.current.Get()->Paths()))
        reports_->AfterChange("changed targets");
}

void Commands::Cascade() { at_.front.ArrangeWindows(Arrange::Cascade); }
void Commands::TileHorizontal() { at_.front.ArrangeWindows(Arrange::TileHorizontal); }
void Commands::TileVertical() { at_.front.ArrangeWindows(Arrange::TileVertical); }
void Commands::FillScreen() { at_.front.ArrangeWindows(Arrange::Fill); }

void Commands::Help(const HelpPlace& place) {
    lastHelp_ = place;
    if (at_.front.ShowHelp(place.page, place.anchor)) return;
    dialogs::ShowMsg(at_.desk, "This page of the help cannot be shown: " + at_.session.Paths().Shared() + "/help/" +
                                   place.page + "\r\rInstall Corvane again to get it back.");
}

void Commands::ShowHelpOn(std::string_view id) { Help(HelpPlaceOf(at_.session.Paths().Shared(), id)); }
void Commands::HelpContents() { Help({std::string(kHelpStart), {}}); }
void Commands::HelpStart() { Help({std::string(kHelpStart), "start"}); }
void Commands::HelpLast() { ShowHelpOn(at_.actions.dHelpID()); }
void Commands::HelpAgain() { Help(lastHelp_.page.empty() ? HelpPlace{std::string(kHelpStart), {}} : lastHelp_); }

void Commands::About() {
    const core::Paths& paths = at_.session.Paths();
    const std::string program = at_.desk.product + " " + at_.version;
    dialogs::Box box;
    box.message = program +
                  "\rReads the logs of your web server and reports what visitors searched for and looked at."
                  "\r\rShared Parameters from Directory: " +
                  paths.Home() + "/param\rDelivered files: " + paths.Shared() + "\rSite databases: " + paths.Home() +
                  "/sites\r\rFree software under the GNU General Public License, version 3 or later. It comes "
                  "without any warranty.";
    box.title = "- About";
    box.options = dialogs::option::Esc(1);
    box.details = program + "\rRecorded failures:\r\r" + RecordedFailures(at_.session.Env().events);
    dialogs::ShowMB(at_.desk, box);
}

}  // namespace shell
