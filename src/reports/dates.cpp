#include "reports/dates.h"

#include <algorithm>
#include <array>

#include "core/dates.h"
#include "core/text.h"
#include "sitedb/site.h"

namespace reports {
namespace {

constexpr std::string_view kIso = "yyyy-mm-dd";
constexpr std::string_view kLabelEntry = "DataDates";
constexpr std::string_view kButtonSpec = "1680";

constexpr std::string_view kFirstNoDate = "First value is not a date .";
constexpr std::string_view kSecondNoDate = "Second value is not a date .";
constexpr std::string_view kWrongOrder = "Second date must be later than first date.";

// What the buttons choose from.
struct Calendar {
    std::optional<DataDays> data{};
    core::Periods now{};
};

using Range = std::optional<DataDays>;

Range LatestMonth(const Calendar& at) {
    if (!at.data) return std::nullopt;
    const core::Ymd last = core::YmdOf(at.data->last);
    // A day that the month before does not have becomes its last one.
    const auto monthEnd = core::DateSerial(last.year, last.month, 0);
    if (!monthEnd) return std::nullopt;
    const std::int32_t monthStart = *monthEnd - core::YmdOf(*monthEnd).day;
    return DataDays{std::min(monthStart + last.day, *monthEnd), at.data->last};
}

struct QuickButton {
    std::string_view caption;
    bool needsData;
    Range (*range)(const Calendar& at);
};
constexpr std::array kQuickButtons{
    QuickButton{"A&ll Dates", true, [](const Calendar& at) { return at.data; }},
    QuickButton{"This &Year", false,
                [](const Calendar& at) {
                    return Range({at.now.yearStart, at.now.yearEnd});
                }},
    QuickButton{"Last Yea&r", false,
                [](const Calendar& at) {
                    return Range({at.now.lastYearStart, at.now.lastYearEnd});
                }},
    QuickButton{"This &Month", false,
                [](const Calendar& at) {
                    return Range({at.now.monthStart, at.now.monthEnd});
                }},
    QuickButton{"Last Mo&nth", false,
                [](const Calendar& at) {
                    return Range({at.now.lastMonthStart, at.now.lastMonthEnd});
                }},
    QuickButton{"La&test Month", true, LatestMonth},
};

dialogs::Controls QuickButtons(bool hasData) {
    dialogs::Controls controls;
    for (const QuickButton& quick : kQuickButtons) {
        const std::string_view type = controls.Count() == 0 ? "CommandButton" : "CommandButton_";
        const int number = dialogs::MBAddCtl(type, quick.caption, dialogs::MBSpec(kButtonSpec), controls);
        controls[number].enabled = hasData || !quick.needsData;
    }
    return controls;
}

// The days of the data behind the text of the dialog's label.
void TellData(dialogs::NamedDialog& dialog, const std::optional<DataDays>& data) {
    const int number = dialog.NumberOf(kLabelEntry);
    if (number == 0) return;
    std::string& text = dialog.Ctls()[number].value;
    text.resize(std::min(text.find('['), text.size()));
    if (!text.empty() && !text.ends_with(' ')) text += ' ';
    text += data ? DataAvailable(data) : "[No data yet]";
}

// An empty box is no limit.
std::string DatesProblem(const std::string& first, const std::string& last) {
    std::string problem;
    const auto add = [&](std::string_view text) { problem.append(problem.empty() ? "" : "\r").append(text); };
    const auto from = core::ParseDate(first), to = core::ParseDate(last);
    if (!from && !core::fTrim(first).empty()) add(kFirstNoDate);
    if (!to && !core::fTrim(last).empty()) add(kSecondNoDate);
    if (from && to && *to < *from) add(kWrongOrder);
    return problem;
}

}  // namespace

std::optional<DataDays> DataDaysOf(sitedb::Site& site) {
    const sitedb::SiteFacts facts = sitedb::ReadSiteFacts(site);
    if (facts.firstStamp == 0) return std::nullopt;
    return DataDays{core::TS_Date(static_cast<double>(facts.firstStamp)),
                    core::TS_Date(static_cast<double>(facts.lastStamp))};
}

std::string DataAvailable(const std::optional<DataDays>& days) {
    if (!days) return {};
    return "[Data available: " + core::fDateText(days->first, kIso) + " to " + core::fDateText(days->last, kIso) + "]";
}

DateBoxes DateBoxesOf(const dialogs::NamedDialog& dialog, std::string_view entry) {
    DateBoxes boxes{dialog.NumberOf(entry), 0};
    for (int next = boxes.first + 1; boxes.first > 0 && boxes.last == 0 && next <= dialog.Ctls().Count(); ++next)
        if (dialog.Ctls()[next].Is(dialogs::ControlType::TextBox)) boxes.last = next;
    return boxes;
}

std::string DatesTitle(std::string_view word) { return "- Enter date range " + std::string(word); }

dialogs::Pressed Dates_Ask(const dialogs::Desk&, dialogs::NamedDialog& dialog, const DatesPart& dates,
                           const dialogs::EntryCheck& more) {
    TellData(dialog, dates.data);
    const DateBoxes boxes = DateBoxesOf(dialog, dates.entry);
    if (boxes.last == 0) return dialog.Show(more);
    const int before = static_cast<int>(std::ranges::count_if(
        dialog.Ctls().All(), [](const auto& control) { return control.Is(dialogs::ControlType::CommandButton); }));
    constexpr int kQuick = static_cast<int>(kQuickButtons.size());
    dialog.PutBehind(boxes.last, QuickButtons(dates.data.has_value()));
    const std::int32_t today = dates.today != 0 ? dates.today : core::SplitMoment(core::SystemClock().Now()).day;
    const Calendar calendar{dates.data, core::fPeriods(today)};
    const auto check = [&](dialogs::Controls& entered, int button) {
        const std::string problem = DatesProblem(entered[boxes.first].value, entered[boxes.last].value);
        return problem.empty() && more ? more(entered, button - kQuick) : problem;
    };
    const auto fill = [&](dialogs::Controls& entered, int button) {
        const int quick = button - before - 1;
        if (quick < 0 || quick >= kQuick) return false;
        if (const Range range = kQuickButtons[static_cast<std::size_t>(quick)].range(calendar)) {
            entered[boxes.first].value = core::fDateText(range->first, kIso);
            entered[boxes.last].value = core::fDateText(range->last, kIso);
        }
        return true;
    };
    dialogs::Pressed pressed = dialog.Show(check, fill);
    if (pressed.button > kQuick) pressed.button -= kQuick;
    if (pressed.MBCancelNo > kQuick && !pressed.Suppressed()) pressed.MBCancelNo -= kQuick;
    return pressed;
}

}  // namespace reports
