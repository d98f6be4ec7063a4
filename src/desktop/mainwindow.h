#pragma once

#include <QMainWindow>
#include <memory>
#include <string>
#include <vector>

#include "desktop/menus.h"
#include "shell/front.h"

class QMdiArea;
class QMdiSubWindow;
class QStackedWidget;

namespace shell {
class Shell;
}

namespace desktop {

class HelpWindow;
class StartPanel;

// The frame: menus, the windows in it (side by side or as tabs), and a panel that says what to do next while there are
// none. Everything that is done is done by the shell.
class MainWindow final : public QMainWindow, public shell::Front {
    Q_OBJECT
public:
    // `shared`: native path of the delivered files.
    explicit MainWindow(const std::string& shared, QWidget* parent = nullptr);
    ~MainWindow() override;

    void Attach(shell::Shell& shell) { shell_ = &shell; }
    // The start is over: an add that did not finish is looked for; `files` are offered for adding.
    void LookForWork(const std::vector<std::string>& files);
    // The program is to end: at once, or as soon as the work at hand has stopped. Asks nothing.
    void EndSoon();
    bool Ending() const { return ending_; }
    bool Ready() const { return ready_; }  // start-up is over

    void ShowMain() override;
    void SetCaption(std::string_view caption) override;
    void OpenReport(std::unique_ptr<reports::ReportModel> report) override;
    void CloseReports() override;
    std::string ActiveWindowId() const override;
    shell::ReportWindow* ActiveReport() override;
    void ArrangeWindows(shell::Arrange how) override;
    bool ShowHelp(const std::string& page, const std::string& anchor) override;
    bool OpenDocument(const std::string& pathOrAddress) override;
    void OptionsChanged() override;
    void Quit() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void Chosen(std::string_view control);
    void Done();  // an action has ended
    QMdiSubWindow* InFront() const;
    void PutTabTitles();
    void ShowStartOrWindows();
    QString SiteFacts();
    void RestorePlace();
    void KeepPlace();

    std::string shared_;
    shell::Shell* shell_ = nullptr;
    Menus menus_;
    QStackedWidget* pages_;
    StartPanel* start_;
    QMdiArea* area_;
    HelpWindow* help_ = nullptr;
    bool ready_ = false, ending_ = false;
};

}  // namespace desktop
