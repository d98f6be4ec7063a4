#include "shell/reportcommands.h"

#include <array>
#include <cstdlib>

#include "core/inistore.h"
#include "core/text.h"
#include "dialogs/gridsave.h"
#include "dialogs/options.h"
#include "reports/areascreens.h"
#include "reports/behind.h"
#include "reports/dates.h"
#include "reports/exports.h"
#include "reports/groupscreens.h"
#include "reports/reportmodel.h"
#include "reports/wordscreen.h"
#include "shell/activeresults.h"
#include "shell/optionscreens.h"

namespace shell {
namespace {

using reports::ReportModel;

constexpr std::string_view kSelectRow = "First select row.";
constexpr std::string_view kNoMembers = "There are no values behind this line.";

std::string TargetsEntry() { return dialogs::PlainCaption(FindMenuRow("fMnu_ST")->caption); }

std::string HomeFolder() {
    const char* home = std::getenv("HOME");
    return home == nullptr ? std::string() : home;
}

// The current cell's whole text.
std::string CellAt(ReportWindow& window) {
    const auto line = window.SelectedLine();
    const reports::ReportGrid& grid = window.Report().Grid();
    const int column = window.SelectedColumn();
    const bool there = line && *line < grid.rows.size() && column < static_cast<int>(grid.columns.size());
    return there ? grid.Cell(*line, column) : std::string();
}

}  // namespace

ReportCommands::Step ReportCommands::StepOf(Command command) {
    struct Row {
        Command command;
        Step step;
    };
    constexpr std::array kSteps{
        Row{Command::MoreReports, &ReportCommands::MoreReports},
        Row{Command::NewAnalysis, &ReportCommands::NewAnalysis},
        Row{Command::AnalysedData, &ReportCommands::AnalysedData},
        Row{Command::SiteArea, &ReportCommands::SiteArea},
        Row{Command::EditGroups, &ReportCommands::EditGroups},
    };
    const auto* row = std::ranges::find(kSteps, command, &Row::command);
    return row != kSteps.end() ? row->step : nullptr;
}

ReportCommands::WindowStep ReportCommands::WindowStepOf(Command command) {
    struct Row {
        Command command;
        WindowStep step;
    };
    constexpr std::array kSteps{
        Row{Command::Members, &ReportCommands::Members},
        Row{Command::SortByValue, &ReportCommands::SortByValue},
        Row{Command::SortByVisitors, &ReportCommands::SortByVisitors},
        Row{Command::SortByStayed, &ReportCommands::SortByStayed},
        Row{Command::SortBySelected, &ReportCommands::SortBySelected},
        Row{Command::PlotDates, &ReportCommands::PlotDates},
        Row{Command::RemoveSeries, &ReportCommands::RemoveSeries},
        Row{Command::RestoreSeries, &ReportCommands::RestoreSeries},
        Row{Command::SelectTerms, &ReportCommands::SelectTerms},
        Row{Command::Frequencies, &ReportCommands::Frequencies},
        Row{Command::VisitsBehind, &ReportCommands::VisitsBehind},
        Row{Command::ThickLines, &ReportCommands::ThickLines},
        Row{Command::ThinLines, &ReportCommands::ThinLines},
        Row{Command::Summary, &ReportCommands::Summary},
        Row{Command::SaveGrid, &ReportCommands::SaveGrid},
        Row{Command::SavePage, &ReportCommands::SavePage},
        Row{Command::ExactCounts, &ReportCommands::ExactCounts},
        Row{Command::SavePicture, &ReportCommands::SavePicture},
        Row{Command::SaveChartData, &ReportCommands::SaveChartData},
    };
    const auto* row = std::ranges::find(kSteps, command, &Row::command);
    return row != kSteps.end() ? row->step : nullptr;
}

std::function<void()> ReportCommands::BodyOf(const MenuRow& entry) {
    if (entry.command == Command::Report) return [this, control = entry.control] { OpenOfMenu(control); };
    if (const Step step = StepOf(entry.command)) return [this, step] { (this->*step)(); };
    if (const WindowStep step = WindowStepOf(entry.command)) return [this, step] { OnWindow(step); };
    return {};
}

void ReportCommands::WithScreens(const std::function<void(reports::ReportScreens& screens)>& body) {
    sitedb::Site* site = at_.current.Get();
    if (site == nullptr) return;
    if (site_ != site->Paths().folder) analyses_.Clear();
    site_ = site->Paths().folder;
    reports::ReportScreens screens(at_.session.Env(), at_.desk, *site, analyses_);
    body(screens);
}

void ReportCommands::Open(std::unique_ptr<ReportModel> report) {
    const std::vector<std::string> messages = report->Grid().messages;
    at_.front.OpenReport(std::move(report));
    for (const std::string& message : messages) dialogs::ShowMsg(at_.desk, message);
}

void ReportCommands::Show(const reports::ReportScreens::Chosen& chosen) {
    Open(std::make_unique<ReportModel>(at_.session.Env(), chosen.analysis, chosen.report.kind, TargetsEntry()));
}

void ReportCommands::ShowIf(const std::optional<reports::ReportScreens::Chosen>& chosen) {
    if (chosen) Show(*chosen);
}

void ReportCommands::OpenOfMenu(std::string_view control) {
    const auto report = reports::ReportOfMenu(control);
    if (!report) return;
    WithScreens([&](reports::ReportScreens& screens) { ShowIf(screens.OpenReport(*report)); });
}

void ReportCommands::MoreReports() {
    WithScreens([this](reports::ReportScreens& screens) {
        ShowIf(screens.pReportAfterChange({}, reports::ReportList::Words));
    });
}

void ReportCommands::NewAnalysis() {
    WithScreens(
        [this](reports::ReportScreens& screens) { ShowIf(screens.pReportAfterChange({}, reports::ReportList::All)); });
}

void ReportCommands::AnalysedData() {
    WithScreens([this](reports::ReportScreens& screens) { ShowIf(screens.pNewReportFromAnalysis()); });
}

void ReportCommands::AfterChange(std::string_view subject) {
    sitedb::Site* site = at_.current.Get();
    if (site == nullptr || !reports::DataDaysOf(*site)) return;
    WithScreens([&](reports::ReportScreens& screens) {
        ShowIf(screens.pReportAfterChange(subject, reports::ReportList::All));
    });
}

void ReportCommands::SiteChanged() {
    analyses_.Clear();
    AfterChange("site database " + at_.current.Name());
}

void ReportCommands::SiteArea() {
    sitedb::Site* site = at_.current.Get();
    if (site != nullptr && reports::ShowSiteAreas(at_.session.Env(), at_.desk, *site))
        AfterChange("site area selected");
}

void ReportCommands::EditGroups() {
    const bool sole = at_.desk.ini.IniGetBool("Main", "ConfirmRepOps", core::kBySection);
    WithScreens([&](reports::ReportScreens& screens) {
        const reports::AnalysisPtr analysis = screens.pChooseAnalysis(analysis::kTerm, sole);
        if (!analysis || !reports::pEditGroups(at_.session.Env(), at_.desk, analysis->GetSrchTrmData())) return;
        Show({analysis, {analysis::kTerm, reports::ReportKind::Grouped}});
    });
}

void ReportCommands::OnWindow(WindowStep step) {
    if (!pActiveResults(at_.desk, at_.front, true).ok) return;
    if (ReportWindow* window = at_.front.ActiveReport()) (this->*step)(*window);
}

void ReportCommands::Members(ReportWindow& window) {
    const auto line = window.SelectedLine();
    if (!line) {
        dialogs::ShowMsg(at_.desk, kSelectRow);
        return;
    }
    const std::string leftCell = window.Report().Grid().Cell(*line, reports::kColValue);
    auto members = std::make_unique<ReportModel>(at_.session.Env(), ReportModel::Members{window.Report(), leftCell});
    if (members->HasMembers())
        Open(std::move(members));
    else
        dialogs::ShowMsg(at_.desk, kNoMembers);
}

void ReportCommands::SortByValue(ReportWindow& window) {
    window.Report().SortBy(ReportModel::ViewSort::Value);
    window.GridChanged();
}

void ReportCommands::SortByVisitors(ReportWindow& window) {
    window.Report().SortBy(ReportModel::ViewSort::Visitors);
    window.GridChanged();
}

void ReportCommands::SortByStayed(ReportWindow& window) {
    window.Report().SortBy(ReportModel::ViewSort::Stayed);
    window.GridChanged();
}

void ReportCommands::SortBySelected(ReportWindow& window) {
    window.Report().SortBy(ReportModel::ViewSort::Selected, window.SelectedColumn());
    window.GridChanged();
}

void ReportCommands::PlotDates(ReportWindow& window) {
    const analysis::DaysList& days = window.Report().Results().days;
    const auto dates = AskPlotDates(at_.desk, days.first, days.Last(), window.Report().PlotDates());
    if (!dates) return;
    window.Report().SetPlotDates(*dates);
    window.ChartChanged();
}

void ReportCommands::RemoveSeries(ReportWindow& window) {
    window.Report().RemoveFirstSeries();
    window.ChartChanged();
}

void ReportCommands::RestoreSeries(ReportWindow& window) {
    window.Report().RestoreSeries();
    window.ChartChanged();
}

void ReportCommands::SelectTerms(ReportWindow& window) {
    reports::pEditGroups(at_.session.Env(), at_.desk, window.Report().Results());
}

void ReportCommands::Frequencies(ReportWindow& window) {
    reports::pShowWordFrequencies(at_.desk, window.Report().Grid());
}

void ReportCommands::VisitsBehind(ReportWindow& window) {
    const auto line = window.SelectedLine();
    sitedb::Site* site = at_.current.Get();
    if (!line || site == nullptr) {
        dialogs::ShowMsg(at_.desk, kSelectRow);
        return;
    }
    const reports::ReportGrid& grid = window.Report().Grid();
    const std::string leftCell = grid.Cell(*line, reports::kColValue);
    reports::ShowVisitsBehind(at_.session.Env(), at_.desk, *site,
                              {.results = window.Report().Results(),
                               .indexes = reports::PlotIndexes(grid, leftCell),
                               .leftCell = leftCell,
                               .paths = &at_.session.Paths()});
}

void ReportCommands::ThickLines(ReportWindow& window) {
    window.Report().SetLineHeight(true);
    window.GridChanged();
}

void ReportCommands::ThinLines(ReportWindow& window) {
    window.Report().SetLineHeight(false);
    window.GridChanged();
}

void ReportCommands::Summary(ReportWindow& window) {
    dialogs::ShowMsg(at_.desk, window.Report().Summary(), "- Summary");
}

void ReportCommands::SaveRows(const dialogs::Rows& rows, std::string currentCell, std::string_view title) {
    const dialogs::FileDesk files{at_.session.Env().user, at_.progress, at_.session.Paths()};
    dialogs::GridSaveDialog(
        at_.desk, files,
        {.rows = rows, .currentCell = std::move(currentCell), .folder = HomeFolder(), .title = std::string(title)});
}

void ReportCommands::SaveGrid(ReportWindow& window) {
    const dialogs::Rows rows = reports::GridTable(window.Report().Grid());
    SaveRows(rows, CellAt(window), "Save contents of grid.");
}

void ReportCommands::SaveChartData(ReportWindow& window) {
    SaveRows(reports::ChartTable(window.Report().Chart()), {}, "Save data of chart.");
}

void ReportCommands::SaveFile(std::string_view title, std::string_view message, std::string_view suffix,
                              const std::function<core::Result(const std::string& path)>& save) {
    dialogs::Controls controls;
    const int box =
        dialogs::MBAddCtl("TextBox", HomeFolder() + "/report" + std::string(suffix), dialogs::MBSpec("9000"), controls);
    controls[box].caption = "File to write";
    controls[box].pick = dialogs::Pick::SaveFile;
    std::string saved;
    const dialogs::Box ask{.message = std::string(message), .buttons = "1", .title = std::string(title)};
    const auto check = [&](dialogs::Controls& entered, int) -> std::string {
        saved = std::string(core::fTrim(entered[box].value));
        if (!saved.starts_with('/')) return "Enter the whole path of the file, from the first \"/\" on.";
        return save(saved).error;
    };
    if (dialogs::ShowMBRepeat(at_.desk, ask, controls, check).Cancelled()) return;
    dialogs::ShowMsg(at_.desk, "Data written successfully to file: " + saved, title);
}

void ReportCommands::SavePage(ReportWindow& window) {
    const ReportModel& report = window.Report();
    SaveFile("Save report as web page.",
             "The page holds the grid as it stands and the trend of its total. It needs no other file, so it can be "
             "sent to somebody as it is.",
             ".html", [&](const std::string& path) {
                 return core::WriteWhole(path, reports::ReportPage(at_.session.Env(), report.Results(), report.Grid()));
             });
}

void ReportCommands::SavePicture(ReportWindow& window) {
    SaveFile("Save picture of chart.", "The end of the name says what kind of picture it is: .png, .svg or .pdf.",
             ".png", [&](const std::string& path) { return window.SavePicture(path); });
}

void ReportCommands::ExactCounts(ReportWindow& window) {
    dialogs::Rows rows;
    for (const std::string& label : window.Report().Chart().dPlotColLabelsCDS) rows.push_back({label});
    dialogs::Controls controls;
    const int list = dialogs::MBAddCtl("ListBox", "-1", dialogs::MBSpec("4800|3600"), controls, std::move(rows));
    controls[list].caption = "Dates and exact counts";
    controls[list].emptyText = "Nothing is plotted.";
    dialogs::ShowMB(at_.desk, {.title = "- Dates and Exact Counts"}, controls);
}

}  // namespace shell
