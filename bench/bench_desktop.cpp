// bench_desktop [--home DIR]: CPU time until the window can be used, beside a bare window; a dialog with a long list,
// beside the toolkit's own list of the same texts and beside sorting them; a report of many lines until it is painted,
// and another line of it until its trend is. Shown on no screen unless QT_QPA_PLATFORM says so.
#include <sys/resource.h>

#include <QApplication>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "analysis/counting.h"
#include "analysis/fields.h"
#include "bench/support.h"
#include "desktop/application.h"
#include "desktop/chartview.h"
#include "desktop/reportwindow.h"
#include "dialogs/showmb.h"

namespace {

constexpr int kItems = 100000;
constexpr int kCancel = 2;

double CpuSeconds() {
    struct rusage use = {};
    if (::getrusage(RUSAGE_SELF, &use) != 0) return 0;
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(use.ru_utime) + seconds(use.ru_stime);
}

double Took(const std::function<void()>& work) {
    const double begin = CpuSeconds();
    work();
    return CpuSeconds() - begin;
}

void Line(const char* what, double seconds, const char* yardstick, double beside) {
    std::printf("%-44s %7.3f s   %-36s %7.3f s   ratio %5.2f\n", what, seconds, yardstick, beside,
                beside > 0 ? seconds / beside : 0);
}

// A window with a menu, shown and drawn once.
double BareWindow() {
    return Took([] {
        QMainWindow window;
        window.menuBar()->addMenu(QStringLiteral("&File"));
        window.show();
        QCoreApplication::processEvents();
    });
}

double Start(const std::string& home) {
    return Took([&] {
        desktop::Application application({home, shell::SharedFolder("", CORVANE_SOURCE_SHARE)}, "bench");
        QTimer::singleShot(0, [] { QTimer::singleShot(0, [] { QCoreApplication::exit(0); }); });
        application.Run({});
    });
}

dialogs::Rows Items() {
    dialogs::Rows rows;
    for (int i = 0; i < kItems; ++i) rows.push_back({"term " + std::to_string(i * 7919 % kItems) + " of a visitor"});
    return rows;
}

// From the call to the drawn dialog; it is closed as soon as it stands.
double ListDialog(const dialogs::Rows& rows) {
    desktop::QtDialogHost host;
    dialogs::DialogModel model;
    dialogs::MBAddCtl("ListBox", "-1", dialogs::MBSpec("8000|6000"), model.controls, rows);
    model.buttons = {{"&OK"}, {"&Cancel"}};
    model.escButton = kCancel;
    double drawn = 0;
    QTimer::singleShot(0, [&drawn] {
        QTimer::singleShot(0, [&drawn] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (dialog != nullptr) dialog->grab();  // all of it is painted now
            drawn = CpuSeconds();
            if (dialog != nullptr) dialog->close();
        });
    });
    const double begin = CpuSeconds();
    host.Open(model)->Run();
    if (drawn <= 0) std::abort();  // it was never shown
    return drawn - begin;
}

double OwnList(const dialogs::Rows& rows) {
    return Took([&] {
        QListWidget list;
        for (const auto& row : rows) list.addItem(QString::fromStdString(row.front()));
        list.show();
        list.grab();
    });
}

double Sorting(dialogs::Rows rows) {
    return Took([&] { std::ranges::sort(rows); });
}

reports::AnalysisPtr ManyTerms() {
    auto results = std::make_unique<analysis::SrchTrmData>();
    results->Analyzed_Field = analysis::kTerm;
    results->days = {46000, 90};
    analysis::Counting counting(*results);
    for (int i = 0; i < kItems; ++i)
        counting.Result_Add(counting.NewRow("term " + std::to_string(i * 7919 % kItems)), i % 90,
                            {.visitors = 1 + i % 13});
    counting.Finish();
    return std::make_shared<reports::OpenAnalysis>(std::move(results));
}

void Reports(double sorting) {
    sitedb::SiteOptions options;
    options.name = "Bench";
    bench::BenchSite site(CORVANE_SOURCE_SHARE, options);
    const reports::AnalysisPtr terms = ManyTerms();
    const desktop::ReportWindow::Links links{
        .run = [](std::string_view) {}, .trap = [](std::string_view, const std::function<void()>& body) { body(); }};
    std::unique_ptr<desktop::ReportWindow> window;
    const double opened = Took([&] {
        auto model = std::make_unique<reports::ReportModel>(site.Session().Env(), terms, reports::ReportKind::All, "");
        window = std::make_unique<desktop::ReportWindow>(std::move(model), links);
        window->resize(1280, 860);
        window->show();
        QCoreApplication::processEvents();
        window->grab();
    });
    Line("a report of 100,000 lines, painted", opened, "sorting the items", sorting);
    constexpr int kLines = 20;
    const double lines = Took([&] {
        for (std::size_t line = 0; line < kLines; ++line) {
            window->Grid().SelectLine(line);
            window->Grid().onLine(line);
            QCoreApplication::processEvents();
            window->Chart().grab();
        }
    });
    const double painting = Took([&] { window->Chart().grab(); });
    Line("another line of it, its trend painted", lines / kLines, "painting the chart again", painting);
}

}  // namespace

int main(int count, char** arguments) {
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const std::string home = count == 3 && std::string(arguments[1]) == "--home" ? arguments[2] : "";
    const QApplication toolkit(count, arguments);
    std::printf("CPU time of the process before anything of ours: %.3f s\n", CpuSeconds());
    const double bare = BareWindow();
    const dialogs::Rows rows = Items();
    const double list = ListDialog(rows);
    Line("a dialog with a list of 100,000 items", list, "the toolkit's list, item by item", OwnList(rows));
    Line("a dialog with a list of 100,000 items", list, "sorting the items", Sorting(rows));
    Reports(Sorting(rows));
    if (!home.empty()) Line("start to a usable window", Start(home), "a bare window", bare);  // last: it ends all loops
    return 0;
}
