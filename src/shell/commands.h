#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "adddata/adddesk.h"
#include "dialogs/progress.h"
#include "shell/actions.h"
#include "shell/helpindex.h"
#include "shell/menu.h"
#include "shell/startup.h"

namespace shell {

// What the shell's objects work with; one for the whole program.
struct Workplace {
    Session& session;
    const dialogs::Desk& desk;
    Front& front;
    dialogs::ProgressReports& progress;
    Actions& actions;
    CurrentSite& current;
    SiteScreens& screens;
    Startup& startup;
    adddata::ReadMemory& memory;
    std::string version{};
};

class ReportCommands;

// Each command of the menus, dispatched by its row. Everything runs under the trap of Actions.
class Commands {
public:
    explicit Commands(Workplace& at);
    ~Commands();

    // An entry of a menu was chosen, of the menu bar or of a report window.
    void Run(std::string_view control);
    // Files were dropped on the window.
    void AddFiles(const std::vector<std::string>& paths);
    // After start-up: offers to complete an add that did not finish.
    void CompleteUnfinished();
    // A site was just made: does its owner want to add data now?
    void OfferAdd(const std::string& siteName);
    // Help by a command's or dialog's id.
    void ShowHelpOn(std::string_view id);
    // Program options that other objects follow.
    void ApplyOptions();

private:
    using Step = void (Commands::*)();
    static Step StepOf(Command command);
    std::function<void()> BodyOf(const MenuRow& entry);
    bool Guarded(const std::function<NextStep()>& action);

    void AddLogData();
    void ListAdded();
    void DefineFormats();
    void DefineEngines();
    void SelectSite();
    void NewSite();
    void Exit();
    void ReportOptions();
    void ProgramOptions();
    void AnalysisOptions();
    void AdvancedOptions();
    void Targets();
    void Cascade();
    void TileHorizontal();
    void TileVertical();
    void FillScreen();
    void HelpContents();
    void HelpStart();
    void HelpLast();
    void HelpAgain();
    void About();

    void OfferAddNow(const std::string& siteName);
    void Resume();
    bool SiteOrRecover();
    // Over the open site.
    void WithAddDesk(const std::function<void(const adddata::AddDesk& at)>& screen);
    void Help(const HelpPlace& place);
    void ShowMessagesAgain();

    Workplace& at_;
    std::unique_ptr<ReportCommands> reports_;
    HelpPlace lastHelp_{};
};

}  // namespace shell
