#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "reports/openanalyses.h"
#include "reports/reportscreens.h"
#include "shell/commands.h"

namespace shell {

// The commands on analyses and reports, of the main menu and of a report window. They run inside those of Commands.
class ReportCommands {
public:
    explicit ReportCommands(Workplace& at) : at_(at) {}

    // What an entry does; empty for one that is no command of this kind.
    std::function<void()> BodyOf(const MenuRow& entry);
    // What was changed shows in a new analysis only: offers one. Nothing happens on a site without data.
    void AfterChange(std::string_view subject);
    // Another site is open, which is worth telling its owner when it can be analysed.
    void SiteChanged();

private:
    using Step = void (ReportCommands::*)();
    using WindowStep = void (ReportCommands::*)(ReportWindow& window);
    static Step StepOf(Command command);
    static WindowStep WindowStepOf(Command command);

    void OpenOfMenu(std::string_view control);
    void MoreReports();
    void NewAnalysis();
    void AnalysedData();
    void SiteArea();
    void EditGroups();

    void Members(ReportWindow& window);
    void SortByValue(ReportWindow& window);
    void SortByVisitors(ReportWindow& window);
    void SortByStayed(ReportWindow& window);
    void SortBySelected(ReportWindow& window);
    void PlotDates(ReportWindow& window);
    void RemoveSeries(ReportWindow& window);
    void RestoreSeries(ReportWindow& window);
    void SelectTerms(ReportWindow& window);
    void Frequencies(ReportWindow& window);
    void VisitsBehind(ReportWindow& window);
    void ThickLines(ReportWindow& window);
    void ThinLines(ReportWindow& window);
    void Summary(ReportWindow& window);
    void SaveGrid(ReportWindow& window);
    void SavePage(ReportWindow& window);
    void ExactCounts(ReportWindow& window);
    void SavePicture(ReportWindow& window);
    void SaveChartData(ReportWindow& window);

    void OnWindow(WindowStep step);
    // Over the open site; nothing happens without one.
    void WithScreens(const std::function<void(reports::ReportScreens& screens)>& body);
    void Show(const reports::ReportScreens::Chosen& chosen);
    void ShowIf(const std::optional<reports::ReportScreens::Chosen>& chosen);
    void Open(std::unique_ptr<reports::ReportModel> report);
    void SaveRows(const dialogs::Rows& rows, std::string currentCell, std::string_view title);
    // A file to be written, its native path; tells how it went. `save` is asked until it works or is given up.
    void SaveFile(std::string_view title, std::string_view message, std::string_view suffix,
                  const std::function<core::Result(const std::string& path)>& save);

    Workplace& at_;
    reports::OpenAnalyses analyses_{};
    std::string site_{};  // folder of the site that the analyses belong to
};

}  // namespace shell
