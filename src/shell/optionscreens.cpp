#include "shell/optionscreens.h"

#include "core/cds.h"
#include "core/dates.h"
#include "core/numbers.h"
#include "dialogs/named.h"
#include "reports/dates.h"
#include "shell/namedscreens.h"

namespace shell {
namespace {

constexpr std::string_view kPlotDates = "PlotStartEnd";
constexpr std::string_view kPlotNote =
    "NB if dates are included that are outside range of dates to analyse, they will only be plotted after data has "
    "been read and analysed again.\rUse Read and Analyse from the File menu.";

void Grey(dialogs::NamedDialog& dialog, std::string_view entry, bool grey) {
    if (const int number = dialog.NumberOf(entry); number != 0 && grey) dialog.Ctls()[number].enabled = false;
}

// Of the three ways to label a point one is on.
void SetLabelWay(dialogs::NamedDialog& dialog) {
    const int both = dialog.NumberOf("ColTitBoth"), date = dialog.NumberOf("ColTitDt"),
              number = dialog.NumberOf("ColTitNum");
    if (both == 0 || date == 0 || number == 0) return;
    dialogs::Controls& controls = dialog.Ctls();
    if (controls[date].Ticked()) controls[number].value = core::fBoolWord(false);
    controls[both].value = core::fBoolWord(!controls[date].Ticked() && !controls[number].Ticked());
}

}  // namespace

bool ShowAnalysisOptions(const dialogs::Desk& desk, sitedb::Site& site) {
    reports::DatesPart dates;
    dates.data = reports::DataDaysOf(site);
    dialogs::NamedDialog dialog(desk, {.dialog = "AnalOpsScreens", .title = reports::DatesTitle(dates.word)});
    if (TellDamaged(desk, dialog, "AnalOpsScreens")) return false;
    Grey(dialog, "ShowNotSEitem", site.Options().EraseNonSE);
    return !reports::Dates_Ask(desk, dialog, dates).Cancelled();
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

std::optional<std::string> AskPlotDates(const dialogs::Desk& desk, std::int32_t firstDay, std::int32_t lastDay,
                                        const std::string& current) {
    const reports::DatesPart dates{
        .entry = kPlotDates, .word = "to plot", .data = reports::DataDays{firstDay, lastDay}};
    dialogs::NamedDialog dialog(desk, {.dialog = "PlotOpt",
                                       .valueSection = "Main",
                                       .title = reports::DatesTitle(dates.word),
                                       .message = std::string(kPlotNote)});
    if (TellDamaged(desk, dialog, "PlotOpt")) return std::nullopt;
    const reports::DateBoxes boxes = reports::DateBoxesOf(dialog, kPlotDates);
    if (boxes.last == 0) return std::nullopt;
    const auto day = [&](int item, std::int32_t otherwise) {
        return core::ParseDate(core::CDSItem(item, current)).value_or(otherwise);
    };
    dialog.Ctls()[boxes.first].value = core::fDateText(day(1, firstDay), "yyyy-mm-dd");
    dialog.Ctls()[boxes.last].value = core::fDateText(day(2, lastDay), "yyyy-mm-dd");
    SetLabelWay(dialog);
    if (reports::Dates_Ask(desk, dialog, dates).Cancelled()) return std::nullopt;
    const auto entered = [&](int number, std::int32_t otherwise) {
        return core::fDateText(core::ParseDate(dialog.Ctls()[number].value).value_or(otherwise));
    };
    // Buttons of the dates stand behind the boxes, so these keep their numbers.
    return entered(boxes.first, firstDay) + "|" + entered(boxes.last, lastDay);
}

}  // namespace shell
