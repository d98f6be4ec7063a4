#include "shell/startup.h"

#include <algorithm>
#include <array>

#include "core/inistore.h"

namespace shell {
namespace {

constexpr std::string_view kUninstall = "/1UNINST";
constexpr std::string_view kFirstSiteKey = "NmFirstSite";
constexpr std::string_view kCannotBeRead =
    "Startup/Database error.\r\rSite database cannot be read.\r\rPossible reasons include:\rYou have deleted site "
    "database folders or files\rYou have deleted site parameter folders or files\rCorrupt installation.\rCorrupt "
    "database.\r\rTo Recover, first try to select a another database.\rIf that does not work Exit the program and "
    "reinstall.";

std::string UnreadableList(const std::string& file) {
    const core::Result opened = core::FileOpenCheck(file);
    return "Corvane cannot start: the list of sites cannot be read.\r\r" +
           (opened ? "It is no UTF-8 text: " + file : opened.error) +
           "\r\rMend this file. Or rename it: a new list then begins with the current site. Nothing was changed.";
}

}  // namespace

bool Startup::MDIForm_Load(const std::vector<std::string>& arguments) {
    if (std::ranges::find(arguments, kUninstall) != arguments.end()) {
        session_.Sites().Sites_DeleteAll();  // a page of advice in the browser would follow; it has no address yet
        return false;
    }
    if (!PrepareHome()) return false;
    if (!FirstRun()) return false;
    current_.pOpenCurSite();
    if (!CheckAndRecover()) return false;
    EndFirstRun();
    front_.ShowMain();
    return true;
}

bool Startup::PrepareHome() {
    const core::Result prepared = session_.Prepare();
    if (prepared) return true;
    dialogs::ShowMsg(desk_, "Corvane cannot start: its data folder cannot be prepared.\r\r" + prepared.error);
    return false;
}

// Sites that the command line made count: somebody who has one is asked for no first one. Nor is somebody whose list
// was lost, as long as the current site is there, or whose first start ended before its site was the current one.
bool Startup::FirstRun() {
    sitedb::Sites& sites = session_.Sites();
    const std::string file = sites.ListFile();
    if (!desk_.ini.IniFlush(file, core::OnFail::Ignore)) {
        dialogs::ShowMsg(desk_, UnreadableList(file));
        return false;
    }
    if (sites.Names().empty()) sites.ListCurrent();
    if (desk_.ini.IniGet("Main", kFirstSiteKey, file, core::Missing::Marker) != core::kNotFound) return true;
    if (const std::vector<std::string> names = sites.Names(); !names.empty()) {
        if (sites.CurrentFolder().empty()) sites.Site_Select(names.front());  // else recovery tells it
        return true;
    }
    actions_.SetHelpID("FW");
    front_.ShowMain();
    madeFirst_ = screens_.FirstSite();
    return madeFirst_;
}

// Only once a site was opened: a second program writes nothing.
void Startup::EndFirstRun() {
    const std::string file = session_.Sites().ListFile();
    if (desk_.ini.IniGet("Main", kFirstSiteKey, file, core::Missing::Marker) != core::kNotFound) return;
    if (const std::vector<std::string> names = session_.Sites().Names(); !names.empty())
        desk_.ini.IniPut("Main", kFirstSiteKey, names.front(), file, core::OnFail::Ignore);
}

bool Startup::CheckAndRecover() {
    for (std::string why = current_.Check(); !why.empty(); why = current_.Check()) {
        switch (current_.Failure().taken ? AskTaken(why) : AskRecovery(why)) {
            case Way::Retry:
                current_.pOpenCurSite();
                break;
            case Way::Select:
                screens_.SelectSite();
                break;
            case Way::Create:
                CreateForRecovery();
                break;
            case Way::Exit:
                current_.Close();
                return false;
        }
    }
    return true;
}

Startup::Way Startup::AskRecovery(const std::string& why) {
    dialogs::Box box;
    box.message = std::string(kCannotBeRead) + "\r\rProblem Details:\r" + why;
    box.buttons = "&Select Database|Create Ne&w Database|E&xit " + desk_.product;
    box.options = std::to_string(static_cast<int>(dialogs::Icon::Stop));
    constexpr std::array kWays{Way::Select, Way::Create, Way::Exit};
    box.escNo = static_cast<int>(kWays.size());
    box.helpId = "Recovery";
    return kWays.at(static_cast<std::size_t>(dialogs::ShowMB(desk_, box).button - 1));
}

// Nothing is wrong with the site: another copy of the program works on it.
Startup::Way Startup::AskTaken(const std::string& why) {
    dialogs::Box box;
    box.message = why;
    box.buttons = "&Retry|&Select Database|E&xit " + desk_.product;
    box.options = std::to_string(static_cast<int>(dialogs::Icon::Exclamation));
    constexpr std::array kWays{Way::Retry, Way::Select, Way::Exit};
    box.escNo = static_cast<int>(kWays.size());
    box.helpId = "Recovery";
    return kWays.at(static_cast<std::size_t>(dialogs::ShowMB(desk_, box).button - 1));
}

void Startup::CreateForRecovery() {
    if (const core::Result made = screens_.RecoverSite(); !made) dialogs::ShowMsg(desk_, made.error);
    screens_.NewSite();
}

}  // namespace shell
