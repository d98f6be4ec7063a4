#include <QAbstractButton>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTextBrowser>
#include <QUrl>

#include "analysis/counting.h"
#include "core/inistore.h"
#include "desktop/application.h"
#include "desktop/arrange.h"
#include "desktop/helpwindow.h"
#include "desktop/menus.h"
#include "reports/reportmodel.h"
#include "shell/menu.h"
#include "tests/desktop/modal.h"
#include "tests/support/fakes.h"
#include "tests/support/tempfolder.h"

namespace desktop {
namespace {

constexpr const char* kHostileName = "a & <b>shop<i> %1 {x}";

// A data home with one site, and the program on it.
class MainWindowTest : public ::testing::Test {
protected:
    MainWindowTest() {
        testsupport::ScriptedUser user;
        testsupport::FakeProgress progress;
        shell::Session session(Places(), user, progress);
        EXPECT_TRUE(session.Prepare());
        sitedb::SiteOptions options;
        options.name = kHostileName;
        EXPECT_TRUE(session.Sites().Site_Create(options).result);
    }

    shell::Places Places() const { return {home_.Path(), PARAMS_DIR}; }

    // Runs the program; the steps are taken one by one, each in an event of its own, once the window stands there. What
    // is left open afterwards is closed.
    using Step = std::function<void(MainWindow&)>;
    void Run(std::vector<Step> steps) {
        Application program(Places(), "test");
        std::size_t next = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* window = Window();
            if (window == nullptr || !window->isVisible() || !window->Ready()) return;
            if (next < steps.size()) return steps[next++](*window);
            timer.stop();
            window->EndSoon();
        });
        timer.start(20);
        EXPECT_EQ(program.Run({}), 0);
        EXPECT_EQ(next, steps.size());
    }

    static MainWindow* Window() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* window = qobject_cast<MainWindow*>(widget)) return window;
        return nullptr;
    }
    static QWidget& Dialog() {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) throw std::runtime_error("no dialog is open");
        return *dialog;
    }
    static void Trigger(MainWindow& window, const char* control) {
        auto* entry = window.findChild<QAction*>(QLatin1String(control));
        ASSERT_NE(entry, nullptr) << control;
        entry->trigger();
    }

    testsupport::TempFolder home_{};
};

TEST(Menus, HoldEveryEntry) {
    QMainWindow window;
    std::vector<std::string> chosen;
    const Menus menus(
        window, [&](std::string_view control) { chosen.emplace_back(control); }, [](std::string_view) {});
    EXPECT_EQ(window.menuBar()->actions().size(), static_cast<qsizetype>(shell::kMenus.size()));
    for (const shell::MenuRow& row : shell::kMenuRows) {
        SCOPED_TRACE(std::string(row.control));
        QAction* entry = menus.Entry(row.control);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->text(), ToQt(row.caption).trimmed());
        entry->trigger();
        EXPECT_TRUE(!chosen.empty() && chosen.back() == row.control);
    }
}

TEST_F(MainWindowTest, ShowsTheSiteAndWhatToDoNext) {
    Run({[](MainWindow& window) {
        EXPECT_EQ(window.windowTitle(), ToQt(std::string(kHostileName) + " - Current Site DB: Corvane"));
        bool named = false;
        for (QLabel* label : window.findChildren<QLabel*>()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << FromQt(label->text());
            named = named || label->text() == QLatin1String(kHostileName);
        }
        EXPECT_TRUE(named);
        int buttons = 0;
        for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
            if (!button->isVisible()) continue;
            ++buttons;
            EXPECT_TRUE(!button->text().isEmpty() || !button->accessibleName().isEmpty());
        }
        EXPECT_GE(buttons, 4);
    }});
}

TEST_F(MainWindowTest, KeepsItsPlace) {
    Run({[](MainWindow& window) {
        window.showNormal();
        window.setGeometry(40, 50, 700, 500);
    }});
    QRect place;
    Run({[&place](MainWindow& window) { place = window.geometry(); }});
    EXPECT_EQ(place, QRect(40, 50, 700, 500));
}

// A menu or a dialog has the keyboard while a command asks for the report in front.
TEST_F(MainWindowTest, TheReportInFrontIsFoundAndAllGoWithTheSite) {
    testsupport::ScriptedUser user;
    testsupport::FakeProgress progress;
    core::IniStore ini{user};
    testsupport::FixedClock clock;
    core::EventLog events{clock, home_.File("events.log")};
    core::Env env{ini, user, progress, events, clock};
    reports::OpenAnalyses analyses;
    const auto open = [&](MainWindow& window, const char* value) {
        auto results = std::make_unique<analysis::SrchTrmData>();
        results->Analyzed_Field = analysis::kTerm;
        results->siteName = "a & b";
        results->days = {46000, 3};
        analysis::Counting counting(*results);
        counting.Result_Add(counting.NewRow(value), 0, {});
        counting.Finish();
        window.OpenReport(std::make_unique<reports::ReportModel>(env, analyses.Analysis_New(std::move(results)),
                                                                 reports::ReportKind::All, "Targets"));
    };
    Run({[&](MainWindow& window) {
             EXPECT_EQ(window.ActiveReport(), nullptr);
             open(window, "one");
             open(window, "two");
             const auto* bar = window.findChild<QMdiArea*>()->findChild<QTabBar*>();
             ASSERT_NE(bar, nullptr);
             EXPECT_TRUE(bar->tabText(1).startsWith(QLatin1String("All Search Terms. Site: a && b. // ")));
         },
         [](MainWindow& window) {
             ASSERT_NE(window.ActiveReport(), nullptr);
             EXPECT_EQ(window.ActiveReport()->Report().Grid().Cell(0, 0), "two");
             EXPECT_TRUE(window.ActiveWindowId().ends_with("|STLst"));
             window.menuBar()->setFocus();
             EXPECT_NE(window.ActiveReport(), nullptr);
             window.CloseReports();
         },
         [](MainWindow& window) { EXPECT_EQ(window.ActiveReport(), nullptr); }});
}

// A command runs until its dialog is closed; meanwhile no other starts and the window stays.
TEST_F(MainWindowTest, WhileADialogIsUpNothingElseStartsAndNothingCloses) {
    Run({[](MainWindow& window) { QTimer::singleShot(0, &window, [&window] { Trigger(window, "fMnu_FS"); }); },
         [](MainWindow& window) {
             const QString title = Dialog().windowTitle();
             EXPECT_TRUE(title.contains(QLatin1String("Select site database")));
             Trigger(window, "fMnu_EO");
             EXPECT_EQ(Dialog().windowTitle(), title);
             window.close();
             EXPECT_TRUE(window.isVisible());
             PressKey(Dialog(), Qt::Key_Escape);
         },
         [](MainWindow& window) {
             EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
             EXPECT_TRUE(window.isVisible());
         }});
}

TEST_F(MainWindowTest, AnEndFromOutsideClosesADialogAsEscapeWould) {
    Run({[](MainWindow& window) { QTimer::singleShot(0, &window, [&window] { Trigger(window, "fMnu_FD"); }); },
         [](MainWindow& window) {
             EXPECT_NE(QApplication::activeModalWidget(), nullptr);
             window.EndSoon();
         }});
    EXPECT_EQ(std::filesystem::exists(home_.File("sites/a_")), false);
}

TEST_F(MainWindowTest, DroppedFilesAreOfferedForAdding) {
    const std::string log =
        home_.Write("dropped &amp; %1.log",
                    "192.0.2.1 - - [10/Oct/2025:13:55:36 +0000] \"GET / HTTP/1.1\" 200 2326 \"-\" \"Mozilla/5.0\"\n");
    Run({[&](MainWindow& window) {
             QMimeData data;
             data.setUrls({QUrl::fromLocalFile(ToQt(log)), QUrl(QStringLiteral("https://example.test/x.log"))});
             QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
             QApplication::sendEvent(&window, &enter);
             EXPECT_TRUE(enter.isAccepted());
             QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
             QApplication::sendEvent(&window, &drop);
         },
         [&](MainWindow&) {
             EXPECT_EQ(The<QPlainTextEdit>(Dialog(), "Log files").toPlainText(), ToQt(log));
             PressKey(Dialog(), Qt::Key_Escape);
         }});
}

// Help asked for in a dialog can be read while the dialog is up, and stays when it goes.
TEST_F(MainWindowTest, HelpOfADialogOutlivesIt) {
    const auto help = [](MainWindow& window) { return window.findChild<HelpWindow*>(); };
    Run({[](MainWindow& window) { QTimer::singleShot(0, &window, [&window] { Trigger(window, "fMnu_FD"); }); },
         [&](MainWindow& window) {
             QWidget& dialog = Dialog();
             QTest::keyClick(&dialog, Qt::Key_F1);
             ASSERT_NE(help(window), nullptr);
             EXPECT_EQ(help(window)->parentWidget(), &dialog);
             EXPECT_FALSE(help(window)->findChild<QTextBrowser*>()->toPlainText().isEmpty());
             PressKey(dialog, Qt::Key_Escape);
         },
         [&](MainWindow& window) {
             ASSERT_NE(help(window), nullptr);
             EXPECT_EQ(help(window)->parentWidget(), &window);
             EXPECT_TRUE(help(window)->isVisible());
         }});
}

TEST(HelpWindow, ShowsItsOwnPagesAlone) {
    const testsupport::TempFolder outside;
    outside.Write("secret.htm", "secret");
    HelpWindow help(std::string(PARAMS_DIR) + "/help");
    EXPECT_TRUE(help.ShowPage("helpcont.htm", "start"));
    EXPECT_FALSE(help.ShowPage("nothing.htm", ""));
    auto* browser = help.findChild<QTextBrowser*>();
    const QString before = browser->toPlainText();
    browser->setSource(QUrl::fromLocalFile(ToQt(outside.File("secret.htm"))));
    EXPECT_FALSE(browser->toPlainText().contains(QLatin1String("secret")));
    browser->setSource(QUrl(QStringLiteral("https://example.test/")));
    EXPECT_FALSE(before.isEmpty());
}

TEST(Arrange, StripsFillTheAreaAndFillTakesAllOfIt) {
    QMdiArea area;
    area.resize(600, 400);
    for (int i = 0; i < 3; ++i) area.addSubWindow(new QWidget)->show();
    area.show();
    ArrangeIn(area, shell::Arrange::TileHorizontal);
    const auto windows = area.subWindowList();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(windows[i]->width(), area.viewport()->width());
        EXPECT_EQ(windows[i]->y(), area.viewport()->height() * i / 3);
    }
    ArrangeIn(area, shell::Arrange::TileVertical);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(windows[i]->x(), area.viewport()->width() * i / 3);
    area.setActiveSubWindow(windows[1]);
    ArrangeIn(area, shell::Arrange::Fill);
    EXPECT_TRUE(windows[1]->isMaximized());
    ArrangeIn(area, shell::Arrange::Cascade);
    EXPECT_FALSE(windows[1]->isMaximized());
    QMdiArea none;
    for (const auto how : {shell::Arrange::Cascade, shell::Arrange::TileHorizontal, shell::Arrange::Fill})
        ArrangeIn(none, how);
}

}  // namespace
}  // namespace desktop
