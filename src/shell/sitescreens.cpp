#include "shell/sitescreens.h"

#include <utility>

#include "core/inistore.h"
#include "core/text.h"
#include "shell/namedscreens.h"

namespace shell {
namespace {

constexpr std::string_view kNameRequired = "Name is required.";
constexpr std::string_view kRecoverName = "Site Created for Recover";
constexpr std::string_view kFirstText =
    "\r\rEnter your name for first site which you want to analyse.\r\rA site is one web site whose logs you have. Its "
    "name is for you alone, such as \"My shop\"; it can hold any letters. All options are on: only visitors that a "
    "search engine sent are kept, errors are left out, and page names lose their queries. For other options add "
    "another site later (File menu).\r\rThen add the raw logs of your web server, and read the reports.";

// Buttons of the list; the number is the position.
constexpr std::string_view kListButtons = "&OK|&Cancel|R&emove |Show Op&tions for Site DB";
enum ListButton { kListOk = 1, kListCancel = 2, kListRemove = 3, kListOptions = 4 };
constexpr int kListControl = 2;
constexpr int kListWidth = 10800;  // twips: its buttons stand in one row

std::string NameProblem(const sitedb::Sites& sites, const std::string& name) {
    if (name.empty()) return std::string(kNameRequired);
    return sites.CheckNewName(name).error;
}

std::string Trimmed(const std::string& text) { return std::string(core::fTrim(text)); }

}  // namespace

sitedb::SiteOptions AllOptionsOn(std::string name) {
    sitedb::SiteOptions options;
    options.name = std::move(name);
    options.LastKeepVal = options.Skip404 = options.EraseNonSE = options.RemQuery = options.RemFrag = true;
    return options;
}

bool SiteScreens::FirstSite() {
    dialogs::Controls controls;
    const int box = dialogs::MBAddCtl("TextBox", "", dialogs::MBSpec("6000"), controls);
    controls[box].caption = "Name of the first site";
    controls[box].hint = "My shop";
    const auto check = [&](dialogs::Controls& entered, int button) -> std::string {
        if (button != 1) return {};
        const std::string name = Trimmed(entered[box].value);
        if (std::string problem = NameProblem(session_.Sites(), name); !problem.empty()) return problem;
        if (core::Result made = session_.Sites().Site_Create(AllOptionsOn(name)).result; !made) return made.error;
        desk_.ini.IniPut("Main", "NmFirstSite", name, session_.Sites().ListFile());
        return {};
    };
    dialogs::Box first;
    first.message = kFirstText;
    first.buttons = "&OK|E&xit";
    first.title = "Enter Site Name";
    first.name = "FirstSite";
    first.helpId = "FirstSite";
    first.escNo = 2;
    return dialogs::ShowMBRepeat(desk_, first, controls, check).button == 1;
}

core::Result SiteScreens::RecoverSite() {
    for (const std::string& name : session_.Sites().Names())
        if (core::fEquals(name, kRecoverName, core::Case::Ignore)) return current_.Change(name);
    return current_.Create(AllOptionsOn(std::string(kRecoverName)));
}

void SiteScreens::FillList(dialogs::DialogModel& model) const {
    dialogs::Control& list = model.controls[kListControl];
    const std::string current = session_.Sites().Site_Name();
    list.rows.clear();
    list.value = "-1";
    for (const std::string& name : session_.Sites().Names()) {
        if (core::fEquals(name, current, core::Case::Ignore)) list.value = std::to_string(list.rows.size());
        list.rows.push_back({name});
    }
}

bool SiteScreens::SelectSite() {
    dialogs::Controls controls;
    dialogs::MBAddCtl("Label", "Site DB", dialogs::MBSpec("7800"), controls);
    dialogs::MBAddCtl("ListBox", "-1", dialogs::MBSpec("7800|3500"), controls);
    controls[kListControl].caption = "site database to be used for all reports";
    controls[kListControl].emptyText = "There is no site. Add one: File, Add new site database.";
    dialogs::Box box;
    box.message = "Current Site DB is: " + current_.Name() +
                  "\rSelect a new one and press OK to confirm change.\r\rsite database to be used for all reports";
    box.buttons = kListButtons;
    box.options = dialogs::option::MinWidth(kListWidth) + dialogs::option::NoHide("1|3|4", false, false);
    box.title = "- Select site database";
    box.name = "SelectSite";
    box.helpId = "SiteList";
    dialogs::DialogModel model = dialogs::BuildModel(desk_, box, std::move(controls));
    FillList(model);
    const std::unique_ptr<dialogs::DialogWindow> window = desk_.host.Open(model);
    for (;;) {
        const int button = window->Run();
        model.problem.clear();
        const Step step = Pressed(button, model);
        if (step != Step::Again) return step == Step::Changed;
        window->Update();
    }
}

SiteScreens::Step SiteScreens::Pressed(int button, dialogs::DialogModel& model) {
    if (button == kListCancel) return Step::End;
    const std::vector<int> selected = model.controls[kListControl].Selected();
    if (selected.empty()) {
        model.problem = "Select a site database first.";
        return Step::Again;
    }
    const std::string name = model.controls[kListControl].rows.at(static_cast<std::size_t>(selected.front())).at(0);
    switch (button) {
        case kListOk:
            return Choose(name);
        case kListRemove:
            Remove(name, model);
            break;
        case kListOptions:
            dialogs::ShowMsg(desk_, session_.Sites().Site_ShowOptions(name), "- Options for Site DB");
            break;
        default:
            break;
    }
    return Step::Again;
}

SiteScreens::Step SiteScreens::Choose(const std::string& name) {
    const bool same = core::fEquals(name, current_.Name(), core::Case::Ignore);
    if (same && current_.Get() != nullptr) return Step::End;
    const core::Result changed = current_.Change(name);
    if (changed) return Step::Changed;
    dialogs::ShowMsg(desk_, changed.error);
    return Step::Again;
}

void SiteScreens::Remove(const std::string& name, dialogs::DialogModel& model) {
    const sitedb::Sites::Removed removed = session_.Sites().Site_Remove(name);
    if (!removed.result) model.problem = removed.result.error;
    FillList(model);
}

// What was entered counts, stored or not: some of it cannot change later.
sitedb::SiteOptions SiteScreens::EnteredOptions(const std::string& name, dialogs::NamedDialog& dialog) {
    const auto on = [&](std::string_view key) {
        const int box = dialog.NumberOf(key);
        return box != 0 ? dialog.Ctls()[box].Ticked() : desk_.ini.IniGetBool("NewDB", key, desk_.screens);
    };
    sitedb::SiteOptions options;
    options.name = name;
    options.LastKeepVal = on("LastKeepVal");
    options.Skip404 = on("Last404");
    options.RemQuery = on("Lastquery");
    options.RemFrag = on("LastFrag");
    options.EraseNonSE = on("EraseNonSE");
    return options;
}

std::string SiteScreens::NewSite() {
    desk_.ini.IniPut("NewDB", "CurrDB", current_.Name(), desk_.screens, core::OnFail::Ignore);
    dialogs::NamedDialog dialog(desk_, {.dialog = "NewDB", .title = "- Enter Database Name."});
    const int nameBox = dialog.NumberOf("SiteName");
    if (TellDamaged(desk_, dialog, "NewDB", nameBox != 0)) return {};
    dialog.Ctls()[nameBox].value.clear();
    const dialogs::Pressed pressed = dialog.Show([&](dialogs::Controls& entered, int) {
        return NameProblem(session_.Sites(), Trimmed(entered[nameBox].value));
    });
    if (pressed.Cancelled()) return {};
    const std::string name = Trimmed(dialog.Ctls()[nameBox].value);
    const core::Result made = current_.Create(EnteredOptions(name, dialog));
    if (made) return name;
    dialogs::ShowMsg(desk_, made.error);
    return {};
}

}  // namespace shell
