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
    ListAdded,
    DefineFormats,
    DefineEngines,
    SelectSite,
    NewSite,
    Exit,
    ReportOptions,
    ProgramOptions,
    AnalysisOptions,
    AdvancedOptions,
    Targets,
    Report,  // one of the catalogue
    MoreReports,
    NewAnalysis,
    AnalysedData,
    SiteArea,
    EditGroups,
    Members,
    SortByValue,
    SortByVisitors,
    SortByStayed,
    SortBySelected,
    PlotDates,
    RemoveSeries,
    RestoreSeries,
    SelectTerms,
    Frequencies,
    VisitsBehind,
    ThickLines,
    ThinLines,
    Summary,
    SaveGrid,
    SavePage,
    ExactCounts,
    SavePicture,
    SaveChartData,
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

struct MenuRow {
    std::string_view control;
    std::string_view caption;
    Command command = Command::None;
    bool lineAbove = false;
    std::string_view shortcut = "";  // as people write it: "Ctrl+O"

    constexpr std::string_view HelpId() const { return control.substr(control.find('_') + 1); }
    constexpr char Menu() const { return HelpId().front(); }
};
// A row of the table; Group stands below a line.
namespace menutable {
consteval MenuRow Row(std::string_view control, std::string_view caption, Command command,
                      std::string_view shortcut = "") {
    return {.control = control, .caption = caption, .command = command, .shortcut = shortcut};
}
template <class... Rest>
consteval MenuRow Group(Rest... rest) {
    MenuRow row = Row(rest...);
    row.lineAbove = true;
    return row;
}

consteval auto Rows() {
    using enum Command;
    return std::array{
        Row("fMnu_FW", "Add ne&w raw log data", AddLogData, "Ctrl+L"),
        Row("fMnu_FL", "&List raw log data added", ListAdded),
        Group("fMnu_FM", "Define Log For&mats", DefineFormats),
        Row("fMnu_FG", "Define Search En&gine Referrer strings", DefineEngines),
        Group("fMnu_FS", "&Select site database", SelectSite, "Ctrl+O"),
        Row("fMnu_FD", "Add new site &database", NewSite, "Ctrl+N"),
        Group("fMnu_FX", "E&xit", Exit, "Ctrl+Q"),
        Row("fMnu_ER", "&Report Options - Deviation Columns, Top Values.", ReportOptions, "Ctrl+R"),
        Row("fMnu_EG", "Report Options - Search Terms to include in each &Group [Report by Group ONLY]", EditGroups),
        Group("fMnu_EO", "Program &Options", ProgramOptions, "Ctrl+,"),
        Row("fMnu_SW", "Ne&w Analysis for Targets, Dates, Options, Groups Selected ", NewAnalysis),
        Row("fMnu_SN", "Select A&nalysed data (results for targets over date range)", AnalysedData),
        Group("fMnu_SD", "Analysis Options - &Date range, Distribution Cols, Min Visitors", AnalysisOptions, "Ctrl+D"),
        Row("fMnu_ST", "Analysis Options - &Targets to Analyse [Optional]", Targets),
        Row("fMnu_SC", "Analysis Options - Advan&ced. Define Page, Memory Use", AdvancedOptions),
        Group("fMnu_SE", "Select Site Ar&ea [Optional]", SiteArea),
        Row("fMnu_RN", "Top Search E&ngine", Report),
        Row("fMnu_RC", "All Sear&ch Engines", Report),
        Group("fMnu_RT", "Top Search &Terms [KeyWords]", Report),
        Row("fMnu_RG", "&Grouped Search Terms [KeyWords]", Report),
        Row("fMnu_RA", "&All Search Terms [KeyWords]", Report),
        Group("fMnu_RH", "Top P&hrases - 2 or more words - from Search Terms  [KeyWords]", Report),
        Row("fMnU_RW", "Top &Words n Phrases - up to 7 words - from Search Terms [KeyWords]", Report),
        Row("fMnu_RD", "Top Single Wor&ds contained in Search Terms [single words from all KeyWords]", Report),
        Row("fMnu_R2", "Top &2-word Phrases from Search Terms [KeyWords]", Report),
        Row("fMnu_R3", "Top &3-word Phrases from Search Terms [KeyWords]", Report),
        Row("fMnu_RM", "... &More Reports on Words n Phrases from Search Terms / KeyWords [Select Report]",
            MoreReports),
        Group("fMnu_RS", "Top &Start Pages", Report),
        Row("fMnu_RP", "All Start &Pages", Report),
        Row("fMnu_RE", "Top &Exit Pages", Report),
        Row("fMnu_RX", "All E&xit Pages", Report),
        Row("fMnu_RV", "Top Pages &Visited", Report),
        Row("fMnu_RI", "All Pages V&isited", Report),
        Group("fMnu_RQ", "Popular Tracks - Top Page Se&quences visited", Report),
        Row("fMnu_RU", "All Tracks - All Page Seq&uences visited", Report),
        Group("fMnu_RO", "T&op Search Term + Start Page", Report),
        Row("fMnu_RL", "A&ll Search Term + Start Page", Report),
        Group("fMnu_RR", "Search Terms for G&roup of selected line", Members),
        Row("fMnu_VF", "Sort Results By Le&ft Column (data for selected report)", SortByValue),
        Row("fMnu_VV", "Sort Results By Total &Visitors", SortByVisitors),
        Row("fMnu_VY", "Sort Results By Count of Visitors who Sta&yed", SortByStayed),
        Row("fMnu_VX", "Sort Results by Selected column [&x]", SortBySelected),
        Group("fMnu_VP", "Date range to &Plot && Plot Options", PlotDates),
        Row("fMnu_VE", "R&emove left column from plot", RemoveSeries),
        Row("fMnu_VS", "Re&store All plotted columns", RestoreSeries),
        Row("fMnu_WC", "&Cascade", Cascade),
        Row("fMnu_WH", "Tile &Horizontal", TileHorizontal),
        Row("fMnu_WV", "Tile &Vertical", TileVertical),
        Group("fMnu_WF", "&Fill Screen", FillScreen),
        Row("fMnu_HC", "&Contents", HelpContents, "F1"),
        Row("fMnu_HG", "&Getting Started", HelpStart),
        Row("fMnu_HL", "Help for &Last function", HelpLast, "Shift+F1"),
        Row("fMnu_HM", "Show Sa&me Help again", HelpAgain),
        Group("fMnu_HA", "&About", About),
    };
}
}  // namespace menutable
inline constexpr std::array kMenuRows = menutable::Rows();

// nullptr: a control that is no entry.
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
static_assert(std::ranges::none_of(kMenuRows, [](const MenuRow& row) { return row.command == Command::None; }),
              "an entry has no command");
}  // namespace menucheck

}  // namespace shell
