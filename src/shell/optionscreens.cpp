#include "shell/optionscreens.h"

#include <optional>
#include <string>

#include "core/dates.h"
#include "core/inistore.h"
#include "core/text.h"
#include "dialogs/named.h"
#include "shell/namedscreens.h"

namespace shell {
namespace {

constexpr std::string_view kDates = "AnalStartEnd";

// "[Data available: 2024-03-01 to 2024-04-30]"
std::string DatesOf(sitedb::Site& site) {
    const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(site);
    if (facts.firstStamp == 0) return "[No data yet]";
    const auto day = [](std::int64_t stamp) {
        return core::fDateText(core::TS_Date(static_cast<double>(stamp)), "yyyy-mm-dd");
    };
    return "[Data available: " + day(facts.firstStamp) + " to " + day(facts.lastStamp) + "]";
}

// The box of the last day is the next one behind that of the first.
int NextTextBox(const dialogs::Controls& controls, int number) {
    if (number == 0) return 0;
    for (int next = number + 1; next <= controls.Count(); ++next)
        if (controls[next].Is(dialogs::ControlType::TextBox)) return next;
    return 0;
}

std::string DatesProblem(const dialogs::Controls& controls, int first, int last) {
    std::optional<std::int32_t> days[2];
    const int boxes[2] = {first, last};
    for (int i = 0; i < 2; ++i) {
        if (boxes[i] == 0) return {};
        const std::string text(core::fTrim(controls[boxes[i]].value));
        if (text.empty()) continue;
        days[i] = core::ParseIsoDate(text);
        if (!days[i]) return "\"" + text + "\" is no day. Write it as 2024-03-01 (year, month, day).";
    }
    return days[0] && days[1] && *days[0] > *days[1] ? "The first day lies behind the last one." : std::string();
}

void Grey(dialogs::NamedDialog& dialog, std::string_view entry, bool grey) {
    if (const int number = dialog.NumberOf(entry); number != 0 && grey) dialog.Ctls()[number].enabled = false;
}

}  // namespace

bool ShowAnalysisOptions(const dialogs::Desk& desk, sitedb::Site& site) {
    desk.ini.IniPut("AnalOpsScreens", "DataDates", DatesOf(site), desk.screens, core::OnFail::Ignore);
    dialogs::NamedDialog dialog(desk, {.dialog = "AnalOpsScreens", .title = "- Analysis Options."});
    if (TellDamaged(desk, dialog, "AnalOpsScreens")) return false;
    Grey(dialog, "ShowNotSEitem", site.Options().EraseNonSE);
    const int first = dialog.NumberOf(kDates), last = NextTextBox(dialog.Ctls(), first);
    return !dialog.Show([=](dialogs::Controls& entered, int) { return DatesProblem(entered, first, last); })
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
