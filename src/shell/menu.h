#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

// The main menu as a table: whoever shows the program builds its menu from it, and nothing else knows a caption.
namespace shell {

enum class Command {
    None,
    AddLogData,
    SelectSite,
    NewSite,
    Exit,
    ReportOptions,
    ProgramOptions,
    AnalysisOptions,
    AdvancedOptions,
    Cascade,
    TileHorizontal,
    TileVertical,
    FillScreen,
    HelpContents,
    HelpStart,
    HelpLast,
    HelpAgain,
    About,
};

// A menu of the menu bar. Entries belong to it by the letter behind the "_" of their control.
struct MenuHead {
    std::string_view control;
    std::string_view caption;
};
inline constexpr std::array kMenus{
    MenuHead{"fMnu_F", "&File"},    MenuHead{"fMnu_E", "&Options"}, MenuHead{"fMnu_S", "&Analysis"},
    MenuHead{"fMnu_R", "&Reports"}, MenuHead{"fMnu_V", "&View"},    MenuHead{"fMnu_W", "&Window"},
    MenuHead{"fMnu_H", "&Help"},
};

// Why an entry is greyed; shown beside the pointer.
inline constexpr std::string_view kNoReports =
    "Reports on the desktop are not built yet; use corvane-cli report in a terminal.";
inline constexpr std::string_view kNoGroups = "Reports by group are not built yet.";
inline constexpr std::string_view kNoPlots = "Plots are not built yet.";
inline constexpr std::string_view kNeedsReport =
    "Sorts a report window; reports on the desktop are not built yet. Use corvane-cli report in a terminal.";
inline constexpr std::string_view kNoAddLog =
    "What was added is not listed yet; corvane-cli site show tells the totals.";
inline constexpr std::string_view kNoFormats =
    "Log formats cannot be edited on the desktop yet; use corvane-cli format in a terminal.";
inline constexpr std::string_view kNoEngines =
    "Search engines cannot be edited on the desktop yet; use corvane-cli engine in a terminal.";
inline constexpr std::string_view kNoTargets =
    "Targets cannot be chosen on the desktop yet; they stand in targets.ini in the site's param folder.";
inline constexpr std::string_view kNoAreas =
    "A site area cannot be chosen on the desktop yet; use corvane-cli report --area in a terminal.";

struct MenuRow {
    std::string_view control;
    std::string_view caption;
    Command command = Command::None;
    std::string_view lack = "";
    bool lineAbove = false;
    std::string_view shortcut = "";  // as people write it: "Ctrl+O"

    constexpr std::string_view HelpId() const { return control.substr(control.find('_') + 1); }
    constexpr char Menu() const { return HelpId().front(); }
    constexpr bool Works() const { return lack.empty(); }
};
// clang-format off
inline constexpr std::array kMenuRows{
    MenuRow{.control = "fMnu_FW", .caption = "Add ne&w raw log data", .command = Command::AddLogData, .shortcut = "Ctrl+L"},
    MenuRow{.control = "fMnu_FL", .caption = "&List raw log data added", .lack = kNoAddLog},
    MenuRow{.control = "fMnu_FM", .caption = "Define Log For&mats", .lack = kNoFormats, .lineAbove = true},
    MenuRow{.control = "fMnu_FG", .caption = "Define Search En&gine Referrer strings", .lack = kNoEngines},
    MenuRow{.control = "fMnu_FS", .caption = "&Select site database", .command = Command::SelectSite, .lineAbove = true, .shortcut = "Ctrl+O"},
    MenuRow{.control = "fMnu_FD", .caption = "Add new site &database", .command = Command::NewSite, .shortcut = "Ctrl+N"},
    MenuRow{.control = "fMnu_FX", .caption = "E&xit", .command = Command::Exit, .lineAbove = true, .shortcut = "Ctrl+Q"},
    MenuRow{.control = "fMnu_ER", .caption = "&Report Options - Deviation Columns, Top Values.", .command = Command::ReportOptions, .shortcut = "Ctrl+R"},
    MenuRow{.control = "fMnu_EG", .caption = "Report Options - Search Terms to include in each &Group [Report by Group ONLY]", .lack = kNoGroups},
    MenuRow{.control = "fMnu_EO", .caption = "Program &Options", .command = Command::ProgramOptions, .lineAbove = true, .shortcut = "Ctrl+,"},
    MenuRow{.control = "fMnu_SW", .caption = "Ne&w Analysis for Targets, Dates, Options, Groups Selected ", .lack = kNoReports},
    MenuRow{.control = "fMnu_SN", .caption = "Select A&nalysed data (results for targets over date range)", .lack = kNoReports},
    MenuRow{.control = "fMnu_SD", .caption = "Analysis Options - &Date range, Distribution Cols, Min Visitors", .command = Command::AnalysisOptions, .lineAbove = true, .shortcut = "Ctrl+D"},
    MenuRow{.control = "fMnu_ST", .caption = "Analysis Options - &Targets to Analyse [Optional]", .lack = kNoTargets},
    MenuRow{.control = "fMnu_SC", .caption = "Analysis Options - Advan&ced. Define Page, Memory Use", .command = Command::AdvancedOptions},
    MenuRow{.control = "fMnu_SE", .caption = "Select Site Ar&ea [Optional]", .lack = kNoAreas, .lineAbove = true},
    MenuRow{.control = "fMnu_RN", .caption = "Top Search E&ngine", .lack = kNoReports},
    MenuRow{.control = "fMnu_RC", .caption = "All Sear&ch Engines", .lack = kNoReports},
    MenuRow{.control = "fMnu_RT", .caption = "Top Search &Terms [KeyWords]", .lack = kNoReports, .lineAbove = true},
    MenuRow{.control = "fMnu_RG", .caption = "&Grouped Search Terms [KeyWords]", .lack = kNoGroups},
    MenuRow{.control = "fMnu_RA", .caption = "&All Search Terms [KeyWords]", .lack = kNoReports},
    MenuRow{.control = "fMnu_RH", .caption = "Top P&hrases - 2 or more words - from Search Terms  [KeyWords]", .lack = kNoReports, .lineAbove = true},
    MenuRow{.control = "fMnU_RW", .caption = "Top &Words n Phrases - up to 7 words - from Search Terms [KeyWords]", .lack = kNoReports},
    MenuRow{.control = "fMnu_RD", .caption = "Top Single Wor&ds contained in Search Terms [single words from all KeyWords]", .lack = kNoReports},
    MenuRow{.control = "fMnu_R2", .caption = "Top &2-word Phrases from Search Terms [KeyWords]", .lack = kNoReports},
    MenuRow{.control = "fMnu_R3", .caption = "Top &3-word Phrases from Search Terms [KeyWords]", .lack = kNoReports},
    MenuRow{.control = "fMnu_RM", .caption = "... &More Reports on Words n Phrases from Search Terms / KeyWords [Select Report]", .lack = kNoReports},
    MenuRow{.control = "fMnu_RS", .caption = "Top &Start Pages", .lack = kNoReports, .lineAbove = true},
    MenuRow{.control = "fMnu_RP", .caption = "All Start &Pages", .lack = kNoReports},
    MenuRow{.control = "fMnu_RE", .caption = "Top &Exit Pages", .lack = kNoReports},
    MenuRow{.control = "fMnu_RX", .caption = "All E&xit Pages", .lack = kNoReports},
    MenuRow{.control = "fMnu_RV", .caption = "Top Pages &Visited", .lack = kNoReports},
    MenuRow{.control = "fMnu_RI", .caption = "All Pages V&isited", .lack = kNoReports},
    MenuRow{.control = "fMnu_RQ", .caption = "Popular Tracks - Top Page Se&quences visited", .lack = kNoReports, .lineAbove = true},
    MenuRow{.control = "fMnu_RU", .caption = "All Tracks - All Page Seq&uences visited", .lack = kNoReports},
    MenuRow{.control = "fMnu_RO", .caption = "T&op Search Term + Start Page", .lack = kNoReports, .lineAbove = true},
    MenuRow{.control = "fMnu_RL", .caption = "A&ll Search Term + Start Page", .lack = kNoReports},
    MenuRow{.control = "fMnu_RR", .caption = "Search Terms for G&roup of selected line", .lack = kNoGroups, .lineAbove = true},
    MenuRow{.control = "fMnu_VF", .caption = "Sort Results By Le&ft Column (data for selected report)", .lack = kNeedsReport},
    MenuRow{.control = "fMnu_VV", .caption = "Sort Results By Total &Visitors", .lack = kNeedsReport},
    MenuRow{.control = "fMnu_VY", .caption = "Sort Results By Count of Visitors who Sta&yed", .lack = kNeedsReport},
    MenuRow{.control = "fMnu_VX", .caption = "Sort Results by Selected column [&x]", .lack = kNeedsReport},
    MenuRow{.control = "fMnu_VP", .caption = "Date range to &Plot && Plot Options", .lack = kNoPlots, .lineAbove = true},
    MenuRow{.control = "fMnu_VE", .caption = "R&emove left column from plot", .lack = kNoPlots},
    MenuRow{.control = "fMnu_VS", .caption = "Re&store All plotted columns", .lack = kNoPlots},
    MenuRow{.control = "fMnu_WC", .caption = "&Cascade", .command = Command::Cascade},
    MenuRow{.control = "fMnu_WH", .caption = "Tile &Horizontal", .command = Command::TileHorizontal},
    MenuRow{.control = "fMnu_WV", .caption = "Tile &Vertical", .command = Command::TileVertical},
    MenuRow{.control = "fMnu_WF", .caption = "&Fill Screen", .command = Command::FillScreen, .lineAbove = true},
    MenuRow{.control = "fMnu_HC", .caption = "&Contents", .command = Command::HelpContents, .shortcut = "F1"},
    MenuRow{.control = "fMnu_HG", .caption = "&Getting Started", .command = Command::HelpStart},
    MenuRow{.control = "fMnu_HL", .caption = "Help for &Last function", .command = Command::HelpLast, .shortcut = "Shift+F1"},
    MenuRow{.control = "fMnu_HM", .caption = "Show Sa&me Help again", .command = Command::HelpAgain},
    MenuRow{.control = "fMnu_HA", .caption = "&About", .command = Command::About, .lineAbove = true},
};
// clang-format on

constexpr const MenuRow* FindMenuRow(std::string_view control) {
    const auto* row = std::ranges::find(kMenuRows, control, &MenuRow::control);
    return row != kMenuRows.end() ? row : nullptr;
}

namespace menucheck {
consteval bool ControlsDiffer() {
    for (std::size_t i = 0; i < kMenuRows.size(); ++i)
        for (std::size_t j = i + 1; j < kMenuRows.size(); ++j)
            if (kMenuRows[i].HelpId() == kMenuRows[j].HelpId()) return false;
    return true;
}
consteval bool ShortcutsDiffer() {
    for (std::size_t i = 0; i < kMenuRows.size(); ++i)
        for (std::size_t j = i + 1; j < kMenuRows.size(); ++j)
            if (!kMenuRows[i].shortcut.empty() && kMenuRows[i].shortcut == kMenuRows[j].shortcut) return false;
    return true;
}
constexpr bool HasMenu(const MenuRow& row) {
    return std::ranges::any_of(kMenus, [&](const MenuHead& head) { return head.control.back() == row.Menu(); });
}
static_assert(ControlsDiffer(), "two entries share a control");
static_assert(ShortcutsDiffer(), "two entries share a shortcut");
static_assert(std::ranges::all_of(kMenuRows, [](const MenuRow& row) { return HasMenu(row); }), "an entry has no menu");
static_assert(std::ranges::all_of(kMenuRows,
                                  [](const MenuRow& row) { return row.Works() == (row.command != Command::None); }),
              "an entry works when it has a command, and tells why when it does not");
}  // namespace menucheck

}  // namespace shell
