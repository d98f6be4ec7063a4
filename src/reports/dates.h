#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/clock.h"
#include "dialogs/named.h"

namespace sitedb {
class Site;
}

// The two dates of an analysis or a plot, in a dialog with other options.
namespace reports {

struct DataDays {
    std::int32_t first = 0, last = 0;  // day numbers
};
// The days for which the site has data; nothing when there are none.
std::optional<DataDays> DataDaysOf(sitedb::Site& site);
std::string DataAvailable(const std::optional<DataDays>& days);  // "[Data available: 2024-03-01 to 2024-04-30]", ""

struct DatesPart {
    std::string_view entry = "AnalStartEnd";  // under which the named dialog keeps the dates
    std::string_view word = "to analyse";     // behind "Enter date range "
    std::optional<DataDays> data{};
    std::int32_t today = 0;  // day number, 0: by the system's clock
};
// The two text boxes of the dates, 0 for those that the dialog does not have.
struct DateBoxes {
    int first = 0, last = 0;
};
DateBoxes DateBoxesOf(const dialogs::NamedDialog& dialog, std::string_view entry);
// "- Enter date range to analyse", for dialogs without a better title.
std::string DatesTitle(std::string_view word);
// Shows a named dialog in which two text boxes hold dates; buttons below them fill them ("A&ll Dates" ...). `more` is
// asked after the dates. Entries are stored unless it was cancelled; button numbers are those of the dialog's own
// buttons.
dialogs::Pressed Dates_Ask(const dialogs::Desk& desk, dialogs::NamedDialog& dialog, const DatesPart& dates,
                           const dialogs::EntryCheck& more = {});

}  // namespace reports
