#include "shell/optionscreens.h"

#include <string>

#include "core/inistore.h"
#include "dialogs/named.h"
#include "reports/reportscreens.h"
#include "shell/namedscreens.h"

namespace shell {
namespace {

constexpr std::string_view kDates = "AnalStartEnd";

void Grey(dialogs::NamedDialog& dialog, std::string_view entry, bool grey) {
    if (const int number = dialog.NumberOf(entry); number != 0 && grey) dialog.Ctls()[number].enabled = false;
}

}  // namespace

bool ShowAnalysisOptions(const dialogs::Desk& desk, sitedb::Site& site) {
    const std::string days = reports::DataAvailable(site);
    desk.ini.IniPut("AnalOpsScreens", "DataDates", days.empty() ? "[No data yet]" : days, desk.screens,
                    core::OnFail::Ignore);
    dialogs::NamedDialog dialog(desk, {.dialog = "AnalOpsScreens", .title = "- Analysis Options."});
    if (TellDamaged(desk, dialog, "AnalOpsScreens")) return false;
    Grey(dialog, "ShowNotSEitem", site.Options().EraseNonSE);
    const int first = dialog.NumberOf(kDates), last = reports::NextTextBox(dialog.Ctls(), first);
    return !dialog.Show([=](dialogs::Controls& entered, int) { return reports::DatesProblem(entered, first, last); })
                .Cancelled();
}

bool ShowAdvancedOptions(const dialogs::Desk& desk, sitedb::Site& site) {
    dialogs::NamedDialog dialog(
        desk,
        {.dialog = "analopsadvnc", .valueSection = "Parm", .title = "- Advanced Analysis Options.", .width = 12400});
    if (TellDamaged(desk, dialog, "analopsadvnc")) return false;
    Grey(dialog, "SepFrag", site.Options().RemFrag);
    Grey(dialog, "SepQuery", site.Options().RemQuery);
    return !dialog.Show().Cancelled();
}

}  // namespace shell
