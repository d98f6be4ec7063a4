#include "desktop/mainwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <algorithm>

#include "core/cds.h"
#include "core/inistore.h"
#include "desktop/arrange.h"
#include "desktop/helpwindow.h"
#include "desktop/reportwindow.h"
#include "desktop/startpanel.h"
#include "desktop/text.h"
#include "shell/activeresults.h"
#include "shell/shell.h"
#include "shell/sitefacts.h"

namespace desktop {
namespace {

constexpr std::string_view kSection = "Mainfrm";  // of screens.ini
constexpr std::string_view kPlace = "MBPlace";    // "left|top|width|height|filled"
constexpr const char* kWindowId = "windowId";     // property of a window in the frame
constexpr int kExposeMs = 500;
constexpr int kWidthLetters = 120, kHeightLines = 40;

QStringList LocalFiles(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile()) files.push_back(url.toLocalFile());
    return files;
}

}  // namespace

MainWindow::MainWindow(const std::string& shared, QWidget* parent)
    : QMainWindow(parent),
      shared_(shared),
      menus_(
          *this, [this](std::string_view control) { Chosen(control); },
          [this](std::string_view control) {
              if (shell_ != nullptr) shell_->MenuOpened(control);
          }),
      pages_(new QStackedWidget),
      start_(new StartPanel({menus_.Entry("fMnu_FW"), menus_.Entry("fMnu_RT"), menus_.Entry("fMnu_RS"),
                             menus_.Entry("fMnu_FS"), menus_.Entry("fMnu_FD"), menus_.Entry("fMnu_HG")})),
      area_(new QMdiArea) {
    setObjectName(QStringLiteral("Mainfrm"));
    setWindowTitle(QStringLiteral("Welcome - Corvane"));
    setAcceptDrops(true);
    area_->setAccessibleName(tr("Windows"));
    area_->setTabsClosable(true);
    area_->setTabsMovable(true);
    pages_->addWidget(start_);
    pages_->addWidget(area_);
    setCentralWidget(pages_);
    statusBar()->setSizeGripEnabled(true);
    connect(area_, &QMdiArea::subWindowActivated, this, [this] { ShowStartOrWindows(); });
    resize(fontMetrics().averageCharWidth() * kWidthLetters, fontMetrics().height() * kHeightLines);
}

MainWindow::~MainWindow() = default;

void MainWindow::Chosen(std::string_view control) {
    if (shell_ == nullptr || shell_->dBusy()) return;
    shell_->Run(control);
    Done();
}

void MainWindow::Done() {
    if (ending_) {
        close();
        return;
    }
    ShowStartOrWindows();
}

void MainWindow::LookForWork(const std::vector<std::string>& files) {
    ready_ = true;
    ShowStartOrWindows();
    shell_->MDIForm_Activate();
    if (!ending_) shell_->AddFiles(files);
    Done();
}

void MainWindow::ShowMain() {
    if (isVisible()) return;
    ShowStartOrWindows();
    RestorePlace();
    // A dialog is placed over the window where it is in the end, not where it began.
    QElapsedTimer waited;
    for (waited.start(); !windowHandle()->isExposed() && waited.elapsed() < kExposeMs;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::ExcludeUserInputEvents, kExposeMs);
}

void MainWindow::SetCaption(std::string_view caption) { setWindowTitle(TitleText(caption)); }

void MainWindow::OpenReport(std::unique_ptr<reports::ReportModel> report) {
    auto* window = new ReportWindow(
        std::move(report),
        {.run = [this](std::string_view control) { Chosen(control); },
         .trap = [this](std::string_view event, const std::function<void()>& body) { shell_->Trap(event, body); }});
    QMdiSubWindow* frame = area_->addSubWindow(window);
    frame->setAttribute(Qt::WA_DeleteOnClose);
    frame->setWindowIcon(windowIcon());
    const QString id = QString::number(QDateTime::currentMSecsSinceEpoch());
    frame->setProperty(kWindowId, id + QLatin1Char('|') + ToQt(shell::kReportWindow));
    connect(frame, &QObject::destroyed, this,
            [this] { QTimer::singleShot(0, this, [this] { ShowStartOrWindows(); }); });
    pages_->setCurrentWidget(area_);
    frame->showMaximized();
    area_->setActiveSubWindow(frame);
    PutTabTitles();
    window->setFocus(Qt::OtherFocusReason);
}

// The area itself knows of no active window while a menu or a dialog has the keyboard.
QMdiSubWindow* MainWindow::InFront() const {
    const QList<QMdiSubWindow*> windows = area_->subWindowList(QMdiArea::ActivationHistoryOrder);
    return windows.isEmpty() ? nullptr : windows.back();
}

shell::ReportWindow* MainWindow::ActiveReport() {
    const QMdiSubWindow* active = InFront();
    return active == nullptr ? nullptr : dynamic_cast<ReportWindow*>(active->widget());
}

void MainWindow::CloseReports() { area_->closeAllSubWindows(); }

std::string MainWindow::ActiveWindowId() const {
    const QMdiSubWindow* active = InFront();
    return active == nullptr ? std::string() : FromQt(active->property(kWindowId).toString());
}

void MainWindow::ArrangeWindows(shell::Arrange how) { ArrangeIn(*area_, how); }

// A dialog bars all windows but its own, so the help belongs to it as long as it is up.
bool MainWindow::ShowHelp(const std::string& page, const std::string& anchor) {
    if (help_ == nullptr) help_ = new HelpWindow(shared_ + "/help", this);
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog != nullptr && help_->parentWidget() != dialog) {
        help_->setParent(dialog, Qt::Window);
        dialog->installEventFilter(this);
    }
    return help_->ShowPage(page, anchor);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (help_ != nullptr && help_->parent() == watched && event->type() == QEvent::Hide) {
        const bool stays = help_->isVisible();
        help_->setParent(this, Qt::Window);
        help_->setVisible(stays);
    }
    return QMainWindow::eventFilter(watched, event);
}

bool MainWindow::OpenDocument(const std::string& pathOrAddress) {
    const QString text = ToQt(pathOrAddress);
    return QDesktopServices::openUrl(text.startsWith(QLatin1Char('/')) ? QUrl::fromLocalFile(text) : QUrl(text));
}

void MainWindow::OptionsChanged() {
    const bool tabs =
        shell_->Desk().ini.IniGetBool("Parm", "ShowTabs", shell_->Desk().screens, core::Missing::Default, true);
    area_->setViewMode(tabs ? QMdiArea::TabbedView : QMdiArea::SubWindowView);
    if (auto* bar = area_->findChild<QTabBar*>(); bar != nullptr) {
        bar->setExpanding(false);
        bar->setElideMode(Qt::ElideRight);
    }
    for (QMdiSubWindow* frame : area_->subWindowList()) frame->showMaximized();
    PutTabTitles();
}

// A tab would take "&" of a title as the mark of its hot key.
void MainWindow::PutTabTitles() {
    auto* bar = area_->findChild<QTabBar*>();
    const QList<QMdiSubWindow*> windows = area_->subWindowList();
    if (bar == nullptr || bar->count() != windows.size()) return;
    for (int tab = 0; tab < bar->count(); ++tab) bar->setTabText(tab, WithoutMarks(windows[tab]->windowTitle()));
}

void MainWindow::Quit() { ending_ = true; }

void MainWindow::EndSoon() {
    ending_ = true;
    if (shell_ == nullptr || !shell_->dBusy()) {
        close();
        return;
    }
    shell_->Progress().StopNow();
    QCoreApplication::exit(0);  // open dialogs end as if Escape had been pressed
}

void MainWindow::ShowStartOrWindows() {
    if (shell_ == nullptr) return;
    const bool empty = area_->subWindowList().isEmpty();
    sitedb::Site* site = shell_->OpenSite();
    if (empty) start_->Show(site != nullptr ? ToQt(site->Options().name) : tr("Welcome to Corvane"), SiteFacts());
    pages_->setCurrentWidget(empty ? static_cast<QWidget*>(start_) : area_);
    start_->setEnabled(site != nullptr);
}

QString MainWindow::SiteFacts() {
    sitedb::Site* site = shell_->OpenSite();
    if (site == nullptr) return tr("A site is opened first.");
    QString facts;
    shell_->Trap("SiteFacts", [&] { facts = ToQt(shell::SiteFactsText(*site)); });
    return facts;
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && ready_ && shell_ != nullptr) shell_->MDIForm_Activate();
    return QMainWindow::event(event);
}

// While a job runs the close is a wish to stop it; the window goes once the job has ended.
void MainWindow::closeEvent(QCloseEvent* event) {
    if (shell_ != nullptr && shell_->dBusy()) {
        event->ignore();
        shell_->Progress().Cancel();
        ending_ = ending_ || shell_->Progress().Stopping();
        return;
    }
    if (shell_ != nullptr && isVisible()) KeepPlace();
    if (help_ != nullptr) help_->close();
    event->accept();
    if (shell_ != nullptr) shell_->MDIForm_Unload();
    QCoreApplication::exit(0);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const bool free = shell_ != nullptr && !shell_->dBusy();
    if (free && event->mimeData()->hasUrls() && !LocalFiles(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

// Asked only after the drop is over: the sender waits for its end.
void MainWindow::dropEvent(QDropEvent* event) {
    std::vector<std::string> paths;
    for (const QString& file : LocalFiles(*event->mimeData())) paths.push_back(FromQt(file));
    event->acceptProposedAction();
    QTimer::singleShot(0, this, [this, paths] {
        if (shell_->dBusy()) return;
        shell_->AddFiles(paths);
        Done();
    });
}

void MainWindow::RestorePlace() {
    const std::string place = shell_->Desk().ini.IniGet(kSection, kPlace, shell_->Desk().screens);
    if (place.empty() || core::CDSItem(5, place) == "True") {
        showMaximized();
        return;
    }
    const auto number = [&](long n) { return static_cast<int>(core::CDSItemNum(n, place)); };
    const QRect wanted(number(1), number(2), number(3), number(4));
    const QList<QScreen*> screens = QGuiApplication::screens();
    const bool seen = std::ranges::any_of(screens, [&](const QScreen* screen) {
        return screen->availableGeometry().intersects(wanted.adjusted(50, 0, -50, -50));
    });
    if (seen && wanted.width() > 0 && wanted.height() > 0) setGeometry(wanted);
    show();
}

void MainWindow::KeepPlace() {
    const QRect place = normalGeometry();
    std::string text;
    for (const int number : {place.left(), place.top(), place.width(), place.height()})
        text += std::to_string(number) + "|";
    text += isMaximized() ? "True" : "False";
    core::IniStore& ini = shell_->Desk().ini;
    const std::string& file = shell_->Desk().screens;
    if (ini.IniGet(kSection, kPlace, file) != text) ini.IniPut(kSection, kPlace, text, file, core::OnFail::Ignore);
}

}  // namespace desktop
