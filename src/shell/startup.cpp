#include "shell/startup.h"

#include <algorithm>

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
enum RecoveryButton { kSelect = 1, kCreate = 2, kExit = 3 };

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
    front_.ShowMain();
    return true;
}

bool Startup::PrepareHome() {
    const core::Result prepared = session_.Prepare();
    if (prepared) return true;
    dialogs::ShowMsg(desk_, "Corvane cannot start: its data folder cannot be prepared.\r\r" + prepared.error);
    return false;
}

// Sites that the command line made count: somebody who has one is asked for no first one.
bool Startup::FirstRun() {
    const std::string file = session_.Sites().ListFile();
    if (desk_.ini.IniGet("Main", kFirstSiteKey, file, core::Missing::Marker) != core::kNotFound) return true;
    if (const std::vector<std::string> names = session_.Sites().Names(); !names.empty()) {
        desk_.ini.IniPut("Main", kFirstSiteKey, names.front(), file, core::OnFail::Ignore);
        return true;
    }
    actions_.SetHelpID("FW");
    front_.ShowMain();
    madeFirst_ = screens_.FirstSite();
    return madeFirst_;
}

bool Startup::CheckAndRecover() {
    for (std::string why = current_.Check(); !why.empty(); why = current_.Check()) {
        switch (AskRecovery(why)) {
            case kSelect:
                screens_.SelectSite();
                break;
            case kCreate:
                CreateForRecovery();
                break;
            default:
                current_.Close();
                return false;
        }
    }
    return true;
}

int Startup::AskRecovery(const std::string& why) {
    dialogs::Box box;
    box.message = std::string(kCannotBeRead) + "\r\rProblem Details:\r" + why;
    box.buttons = "&Select Database|Create Ne&w Database|E&xit " + desk_.product;
    box.options = std::to_string(static_cast<int>(dialogs::Icon::Stop));
    box.escNo = kExit;
    box.helpId = "Recovery";
    return dialogs::ShowMB(desk_, box).button;
}

void Startup::CreateForRecovery() {
    if (const core::Result made = screens_.RecoverSite(); !made) dialogs::ShowMsg(desk_, made.error);
    screens_.NewSite();
}

}  // namespace shell
