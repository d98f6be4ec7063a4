#include "desktop/reportwindow.h"

#include <QLabel>
#include <QMenu>
#include <QTableView>

#include "desktop/chartview.h"
#include "tests/desktop/modal.h"
#include "tests/reports/handmade.h"

namespace desktop {
namespace {

// A report of three terms over 40 days in a window of its own.
class ReportWindows : public testsupport::Handmade {
protected:
    ReportWindows() {
        results.WordListsOn = true;
        Word("shoes");
        Add("one", 3, 1, 2);
        Add("two <b>shoes</b>", 8, 0, 0, {}, 4);
        Finish();
        ini.SetSectionFile("Main", folder.File("LastVals.ini"));
        auto model = std::make_unique<reports::ReportModel>(
            env, analyses.Analysis_New(std::make_unique<analysis::SrchTrmData>(std::move(results))),
            reports::ReportKind::All, "Targets");
        window = std::make_unique<ReportWindow>(
            std::move(model),
            ReportWindow::Links{.run = [this](std::string_view control) { run.emplace_back(control); },
                                .trap =
                                    [this](std::string_view, const std::function<void()>& body) {
                                        if (!busy) body();
                                    }});
        window->resize(1000, 700);
        window->show();
        QCoreApplication::processEvents();
    }
    std::string Plotted() const {
        for (const QLabel* label : window->findChildren<QLabel*>())
            if (label->accessibleName() == QLatin1String("What is plotted")) return FromQt(label->text());
        return {};
    }
    // The focus gives the table a current line, from which the keys go on.
    void Down() {
        auto& table = The<QTableView>(*window, "Lines of the report");
        if (!table.currentIndex().isValid())
            table.selectionModel()->setCurrentIndex(table.model()->index(0, 0), QItemSelectionModel::NoUpdate);
        QTest::keyClick(&table, Qt::Key_Down);
    }
    // Opens a menu and chooses an entry of it by its control, "" for none; gives the entries.
    std::string Menu(const std::function<void(const QPoint&)>& open, const char* control) {
        std::string entries;
        QTimer::singleShot(0, window.get(), [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (QAction* action : menu->actions()) {
                if (action->isSeparator()) continue;
                entries += FromQt(action->objectName()) + (action->isChecked() ? "* " : " ");
                if (action->objectName() == QLatin1String(control)) menu->setActiveAction(action);
            }
            QTest::keyClick(menu, *control == '\0' ? Qt::Key_Escape : Qt::Key_Return);
        });
        open({10, 10});
        return entries;
    }

    testsupport::TempFolder folder{};
    reports::OpenAnalyses analyses{};
    std::unique_ptr<ReportWindow> window{};
    std::vector<std::string> run{};
    bool busy = false;
};

TEST_F(ReportWindows, OpensWithTheTrendOfTheTotalAndFollowsTheSelectedLine) {
    EXPECT_FALSE(window->SelectedLine());
    EXPECT_NE(Plotted().find(".. Total .."), std::string::npos);
    Down();
    ASSERT_EQ(window->SelectedLine(), 1U);
    EXPECT_EQ(Plotted(), "Search Term: \none\n\nPlotted: 1 day periods.");
    EXPECT_NE(window->Chart().TextAt(window->Chart().rect().center()).find("1 d. from"), std::string::npos);
    busy = true;  // a job runs: the chart stays as it is
    Down();
    EXPECT_NE(Plotted().find("\none"), std::string::npos);
}

TEST_F(ReportWindows, MenusNameTheirCommands) {
    EXPECT_EQ(Menu(window->Grid().onMenu, "fMnu_BM"),
              "fMnu_BV fMnu_W fMnu_S fMnu_BM fMnu_BK fMnu_BN* fMnu_BC fMnu_BP ");
    EXPECT_EQ(Menu(window->Chart().onMenu, ""), "fMnu_CE fMnu_CS fMnu_CX fMnu_CP fMnu_CD ");
    EXPECT_EQ(run, std::vector<std::string>{"fMnu_BM"});
}

TEST_F(ReportWindows, DrawsWhatACommandChanged) {
    window->Report().RemoveFirstSeries();
    window->ChartChanged();
    EXPECT_EQ(window->Chart().TextAt(window->Chart().rect().center()).find("Total Users"), std::string::npos);
    Down();
    window->Report().SortBy(reports::ReportModel::ViewSort::Value);
    window->GridChanged();
    ASSERT_TRUE(window->SelectedLine());
    EXPECT_EQ(window->Report().Grid().Cell(*window->SelectedLine(), 0), "one");
    const std::string picture = folder.File("chart.png");
    EXPECT_TRUE(window->SavePicture(picture));
    EXPECT_TRUE(core::ReadFile(picture).text.starts_with("\x89PNG"));
}

}  // namespace
}  // namespace desktop
