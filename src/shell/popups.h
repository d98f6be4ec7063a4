#pragma once

#include <optional>

#include "shell/menu.h"

namespace reports {
class ReportModel;
}

// The menus of a report window as a table, like the main menu: one on the lines of the report, one on its trend.
namespace shell {

enum class Popup { Line, Chart };
// Reports in which an entry stands: all; those on search terms; those on other values that can be grouped; those by
// group.
enum class Offered { Always, Terms, OtherGroups, Grouped };

struct PopupRow {
    Popup menu;
    MenuRow entry;
    Offered offered = Offered::Always;
};

namespace menutable {
consteval auto Popups() {
    using enum Command;
    return std::array{
        PopupRow{Popup::Line, Row("fMnu_BV", "Visits &behind this Line", VisitsBehind)},
        PopupRow{Popup::Line, Row("fMnu_L", "Search Terms for G&roup of selected line", Members), Offered::Grouped},
        PopupRow{Popup::Line, Group("fMnu_W", "Show &Word Frequencies", Frequencies), Offered::Terms},
        PopupRow{Popup::Line, Row("fMnu_S", "&Select Terms to be Grouped", SelectTerms), Offered::Terms},
        PopupRow{Popup::Line, Row("fMnu_BG", "&Select Values to be Grouped", SelectTerms), Offered::OtherGroups},
        PopupRow{Popup::Line, Row("fMnu_BM", "Su&mmary", Summary)},
        PopupRow{Popup::Line, Group("fMnu_BK", "Thic&k Lines", ThickLines)},
        PopupRow{Popup::Line, Row("fMnu_BN", "Thi&n Lines", ThinLines)},
        PopupRow{Popup::Line, Group("fMnu_BC", "Sa&ve Grid as CSV", SaveGrid)},
        PopupRow{Popup::Line, Row("fMnu_BP", "Save Report as Web &Page", SavePage)},
        PopupRow{Popup::Chart, Row("fMnu_CE", "R&emove first line", RemoveSeries)},
        PopupRow{Popup::Chart, Row("fMnu_CS", "Re&store all lines", RestoreSeries)},
        PopupRow{Popup::Chart, Row("fMnu_CX", "S&how Dates and Exact Counts for Columns", ExactCounts)},
        PopupRow{Popup::Chart, Group("fMnu_CP", "Save Chart as &Picture", SavePicture)},
        PopupRow{Popup::Chart, Row("fMnu_CD", "Save Chart &Data as CSV", SaveChartData)},
    };
}
}  // namespace menutable
inline constexpr std::array kPopupRows = menutable::Popups();

// Of the menu bar or of a popup menu; nullptr for a control that is no entry.
constexpr const MenuRow* FindEntry(std::string_view control) {
    if (const MenuRow* row = FindMenuRow(control)) return row;
    const auto* popup = std::ranges::find(kPopupRows, control, [](const PopupRow& row) { return row.entry.control; });
    return popup != kPopupRows.end() ? &popup->entry : nullptr;
}

bool IsOffered(const PopupRow& row, const reports::ReportModel& report);
// Entries of a state that holds or does not: "Thick Lines" is marked while they are. Nothing for all others.
std::optional<bool> IsMarked(const PopupRow& row, const reports::ReportModel& report);

}  // namespace shell
