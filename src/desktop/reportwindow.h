#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "desktop/reportgrid.h"
#include "dialogs/controls.h"
#include "reports/reportmodel.h"
#include "shell/front.h"
#include "shell/popups.h"

class QLabel;
class QSplitter;

namespace desktop {

class ChartView;

// A report: its grid above, the trend of the selected line below, beside them what was analysed, what is plotted and
// the words of the terms.
class ReportWindow final : public QWidget, public shell::ReportWindow {
public:
    struct Links {
        std::function<void(std::string_view control)> run{};  // a command of a popup menu
        // Any other event that works on the report, under the program's trap.
        std::function<void(std::string_view event, const std::function<void()>& body)> trap{};
    };
    ReportWindow(std::unique_ptr<reports::ReportModel> report, Links links, QWidget* parent = nullptr);
    ~ReportWindow() override;

    reports::ReportModel& Report() override { return *report_; }
    std::optional<std::size_t> SelectedLine() const override { return grid_->SelectedLine(); }
    int SelectedColumn() const override { return grid_->SelectedColumn(); }
    void GridChanged() override { grid_->Reload(); }
    void ChartChanged() override;
    core::Result SavePicture(const std::string& path) override;

    ReportGridView& Grid() { return *grid_; }
    ChartView& Chart() { return *chart_; }

private:
    QWidget* BuildSide();
    QWidget* BuildWords();
    void LineSelected(std::size_t line);
    void ShowPopup(shell::Popup popup, const QPoint& global);

    std::unique_ptr<reports::ReportModel> report_;
    Links links_;
    dialogs::Rows words_{};
    ReportGridView* grid_;
    ChartView* chart_;
    QLabel* plotted_ = nullptr;
};

}  // namespace desktop
