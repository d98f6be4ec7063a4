#include "desktop/reportgrid.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>
#include <cmath>

#include "desktop/look.h"
#include "desktop/reportrows.h"
#include "tests/desktop/modal.h"
#include "tests/reports/handmade.h"

namespace desktop {
namespace {

class ReportGrids : public testsupport::Handmade {
protected:
    ReportGrids() {
        ini.SetSectionFile("Main", folder.File("LastVals.ini"));
        ini.SetSectionFile("Groups", folder.File("STgroups.ini"));
    }
    // One line more: every analysis has the empty value, here without visitors.
    void AddMany(int values) {
        for (int i = 0; i < values; ++i) Add("term " + std::to_string(i), values - i, 1, i % 7);
    }
    reports::ReportModel& Open() {
        Finish();
        const auto analysis = analyses.Analysis_New(std::make_unique<analysis::SrchTrmData>(std::move(results)));
        report.emplace(env, analysis, reports::ReportKind::All, "Targets");
        return *report;
    }
    // Shown, with what tests look at.
    ReportGridView& Show(QSize size = {500, 300}) {
        view.emplace(Open(), nullptr);
        view->resize(size);
        view->show();
        QCoreApplication::processEvents();
        table = &The<QTableView>(*view, "Lines of the report");
        left = &The<QTableView>(*view, "First column of the report");
        find = &The<QLineEdit>(*view, "Find in the first column");
        filter = &The<QLineEdit>(*view, "Filter by the first column");
        return *view;
    }
    bool Says(const QString& text) const {
        for (const QLabel* label : view->findChildren<QLabel*>())
            if (label->text() == text) return true;
        return false;
    }
    QString Cell(int row, int column) const { return table->model()->index(row, column).data().toString(); }
    QString LastCell(int column) const { return Cell(table->model()->rowCount() - 1, column); }
    void ClickHeader(int column) const {
        const QTableView& on = column == 0 ? *left : *table;
        emit on.horizontalHeader()->sectionClicked(column);
    }
    QAction& ColumnAction(const QString& text) const {
        for (QAction* action : view->findChild<QToolButton*>()->menu()->actions())
            if (action->text() == text) return *action;
        throw std::runtime_error("no such column " + text.toStdString());
    }

    testsupport::TempFolder folder{};
    reports::OpenAnalyses analyses{};
    std::optional<reports::ReportModel> report{};
    std::optional<ReportGridView> view{};
    QTableView *table = nullptr, *left = nullptr;
    QLineEdit *find = nullptr, *filter = nullptr;
};

TEST_F(ReportGrids, TheModelKeepsTheRulesOfModels) {
    AddMany(30);
    reports::ReportModel& model = Open();
    ReportRows rows(model.Grid(), nullptr);
    const QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    rows.SetLook(QGuiApplication::palette(), QFont());
    rows.SetFilter("term 2");
    EXPECT_EQ(rows.rowCount(), 12 + 2);  // "term 12" has both words
    model.SortByHeader(reports::kColVisitors, false);
    rows.Reload();
    EXPECT_EQ(rows.Cell(0, 0), "term 29");
    EXPECT_EQ(rows.Cell(13, 0), ".. Total .. of 12 filtered lines");
    rows.SetFilter("  ");
    EXPECT_EQ(rows.rowCount(), 33);
    EXPECT_EQ(rows.Cell(32, 0), reports::kTotal);
}

TEST_F(ReportGrids, TheFirstColumnStaysAndFollows) {
    results.Targets.resize(4);
    AddMany(100);
    Show();
    table->horizontalScrollBar()->setValue(table->horizontalScrollBar()->maximum());
    ASSERT_GT(table->horizontalScrollBar()->value(), 100);
    EXPECT_EQ(left->indexAt({2, 2}).column(), 0);
    EXPECT_EQ(left->geometry().left(), table->frameWidth());
    EXPECT_EQ(left->horizontalHeader()->height(), table->horizontalHeader()->height());
    const auto sameRows = [this] { return left->indexAt({2, 40}).row() == table->indexAt({450, 40}).row(); };
    table->verticalScrollBar()->setValue(700);
    EXPECT_EQ(left->verticalScrollBar()->value(), 700);
    EXPECT_TRUE(sameRows());
    left->verticalScrollBar()->setValue(left->verticalScrollBar()->maximum());
    EXPECT_TRUE(sameRows());
    left->horizontalHeader()->resizeSection(0, 150);
    EXPECT_EQ(table->columnWidth(0), 150);
    EXPECT_EQ(left->width(), 150);
    // Keys go on below the first column and bring what it hides into view.
    view->SelectLine(50);
    EXPECT_TRUE(sameRows());
    for (int i = 0; i < 6; ++i) QTest::keyClick(table, Qt::Key_Right);
    table->horizontalScrollBar()->setValue(table->horizontalScrollBar()->maximum());
    QTest::keyClick(table, Qt::Key_Left);
    EXPECT_EQ(view->SelectedColumn(), 5);
    EXPECT_GE(table->visualRect(table->currentIndex()).left(), left->width());
    QTest::keyClick(table, Qt::Key_Home);
    EXPECT_EQ(table->horizontalScrollBar()->value(), 0);
    EXPECT_EQ(view->SelectedLine(), 50u);
}

TEST_F(ReportGrids, FilterMakesATotalOfItsLinesAndKeepsTheSelection) {
    AddMany(30);
    Show().SelectLine(4);
    EXPECT_TRUE(Says(QStringLiteral("31 lines")));
    QTest::keyClicks(filter, QStringLiteral("TERM 2"));
    EXPECT_TRUE(Says(QStringLiteral("12 of 31 lines")));
    EXPECT_EQ(LastCell(0), QStringLiteral(".. Total .. of 12 filtered lines"));
    EXPECT_EQ(LastCell(1), QString::number(28 + 18 + 10 + 9 + 8 + 7 + 6 + 5 + 4 + 3 + 2 + 1));
    EXPECT_EQ(view->SelectedLine(), 4u);
    EXPECT_FALSE(table->selectionModel()->hasSelection());
    EXPECT_EQ(table->model()->rowCount(), 12 + 2);
    QTest::keyClick(filter, Qt::Key_Escape);
    EXPECT_EQ(table->currentIndex().row(), 4);
    EXPECT_EQ(LastCell(0), QStringLiteral(".. Total .."));
    filter->setText(QStringLiteral("term 2"));
    view->SelectLine(15);
    EXPECT_TRUE(filter->text().isEmpty());
    EXPECT_EQ(table->currentIndex().row(), 15);
}

TEST_F(ReportGrids, FindGoesRoundAndTellsTheLine) {
    AddMany(30);
    std::vector<std::size_t> told;
    Show().onLine = [&](std::size_t line) { told.push_back(line); };
    QTest::keyClick(table, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(find, QStringLiteral("m 15"));
    EXPECT_EQ(view->SelectedLine(), 15u);
    find->setText(QStringLiteral("ERM 2"));
    QTest::keyClick(find, Qt::Key_Return);
    QTest::keyClick(find, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClick(find, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(view->SelectedLine() == 2u);
    QTest::keyClick(find, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(Says(QStringLiteral("From the end")));
    EXPECT_EQ(told, (std::vector<std::size_t>{0, 1, 15, 20, 21, 20, 2, 29}));
    find->setText(QStringLiteral("<b>"));
    EXPECT_TRUE(Says(QStringLiteral("Not found")));
    EXPECT_EQ(view->SelectedLine(), 29u);
}

TEST_F(ReportGrids, HeadersSortAndTheTotalStaysBelow) {
    AddMany(30);
    bool told = false;
    Show().SelectLine(3);
    view->onLine = [&](std::size_t) { told = true; };
    ClickHeader(1);
    EXPECT_EQ(Cell(0, 0), QStringLiteral("term 0"));
    EXPECT_TRUE(table->horizontalHeader()->isSortIndicatorShown());
    ClickHeader(1);
    EXPECT_EQ(Cell(1, 0), QStringLiteral("term 29"));
    EXPECT_EQ(LastCell(0), QStringLiteral(".. Total .."));
    EXPECT_EQ(view->SelectedLine(), 27u);
    EXPECT_EQ(table->currentIndex().row(), 27);
    ClickHeader(0);
    EXPECT_EQ(Cell(2, 0), QStringLiteral("term 10"));
    report->SetLineHeight(true);
    view->Reload();
    EXPECT_TRUE(left->horizontalHeader()->isSortIndicatorShown());
    EXPECT_GT(left->rowHeight(0), 2 * left->fontMetrics().height());
    report->SortBy(reports::ReportModel::ViewSort::Visitors);
    view->Reload();
    EXPECT_FALSE(left->horizontalHeader()->isSortIndicatorShown());
    EXPECT_EQ(Cell(0, 0), QStringLiteral(".. Total .."));
    EXPECT_EQ(view->SelectedLine(), 4u);
    EXPECT_FALSE(told);
}

TEST_F(ReportGrids, CopyTakesHeadersAndLeavesHiddenColumns) {
    results.Targets.resize(2);
    Add("a\tb", 3, 1, 2, {1, 2});
    Add("plain", 2, 1, 2);
    Show();
    const int separator = reports::kFirstTargetColumn + 3;
    for (QAction* action : view->findChild<QToolButton*>()->menu()->actions())
        if (action->isCheckable()) action->setChecked(false);
    EXPECT_TRUE(table->isColumnHidden(separator));
    ColumnAction(QStringLiteral("Stayed")).setChecked(true);
    view->SelectLine(0);
    QTest::keyClick(table, Qt::Key_End, Qt::ShiftModifier | Qt::ControlModifier);  // over the gap to the total
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              QStringLiteral("Search Term\tStayed\na b\t1\nplain\t1\n\t0\n.. Total ..\t2\n"));
    ColumnAction(QStringLiteral("Show all")).trigger();
    EXPECT_FALSE(table->isColumnHidden(separator));
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    const QString headers = QGuiApplication::clipboard()->text().section(QLatin1Char('\n'), 0, 0);
    EXPECT_EQ(headers.count(QLatin1Char('\t')) + 1, table->model()->columnCount() - 2);
}

TEST_F(ReportGrids, HostileCellsAreShownPlain) {
    Add(std::string("<b>x</b>\0\xe2\x80\xae\r\ny", 15), 3, 1, 2);
    Show();
    EXPECT_EQ(Cell(0, 0), QStringLiteral("<b>x</b>\u2400\ufffd\u21b5y"));
    EXPECT_EQ(table->model()->index(0, 0).data(Qt::ToolTipRole).toString().count(QStringLiteral("<b>")), 0);
    view->SelectLine(0);
    QTimer::singleShot(0, qApp, [] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(The<QPlainTextEdit>(*dialog, "Whole text").toPlainText().startsWith(QStringLiteral("<b>x</b>")));
        static_cast<QDialog*>(dialog)->reject();
    });
    QTest::keyClick(table, Qt::Key_Space, Qt::ControlModifier);
}

TEST_F(ReportGrids, TheRightButtonSelectsFirstAndTheGapIsPassedOver) {
    AddMany(5);
    std::vector<std::size_t> told;
    int menus = 0;
    Show().onLine = [&](std::size_t line) { told.push_back(line); };
    view->onMenu = [&](const QPoint&) { ++menus; };
    table->setFocus();
    EXPECT_TRUE(told.empty());
    const auto rightClick = [&](int row) {
        const QPoint at = left->visualRect(left->model()->index(row, 0)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, left->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(left->viewport(), &event);
    };
    rightClick(2);
    rightClick(6);  // the gap
    EXPECT_EQ(menus, 1);
    for (int i = 0; i < 4; ++i) QTest::keyClick(table, Qt::Key_Down);
    QTest::keyClick(table, Qt::Key_Up);
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(table, &key);
    EXPECT_EQ(menus, 2);
    EXPECT_EQ(told, (std::vector<std::size_t>{2, 3, 4, 5, 7, 5}));
}

TEST_F(ReportGrids, ColoursCanBeReadOnDarkPalettes) {
    results.Targets.resize(4);
    AddMany(3);
    Show();
    const auto colour = [this](int column, int role) {
        return table->model()->index(0, column).data(role).value<QBrush>().color();
    };
    EXPECT_EQ(colour(reports::kFirstTargetColumn, Qt::BackgroundRole), QColor(0xC0, 0xC0, 0xFF));
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(0x5a, 0x5a, 0x5a));  // not so dark that any tint would do
    dark.setColor(QPalette::Text, QColor(0xf0, 0xf0, 0xf0));
    view->setPalette(dark);
    for (std::size_t t = 0; t < 4; ++t) {
        const int column = reports::kFirstTargetColumn + reports::kTargetColumns * static_cast<int>(t);
        const double ground = Luminance(colour(column, Qt::BackgroundRole)) + 0.05;
        EXPECT_GE((Luminance(colour(column, Qt::ForegroundRole)) + 0.05) / ground, 4.5) << t;
    }
}

TEST_F(ReportGrids, AHundredThousandLines) {
    AddMany(100000);
    user.WillPressOk();  // the total is not of all
    Show();
    EXPECT_EQ(table->model()->rowCount(), 100003);
    view->SelectLine(0);
    QTest::keyClick(table, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(LastCell(0), QStringLiteral(".. Total .."));
    EXPECT_EQ(left->indexAt({2, left->viewport()->height() - 4}).row(), 100002);
    filter->setText(QStringLiteral("term 9999"));
    QTest::qWait(200);
    EXPECT_TRUE(Says(QStringLiteral("19 of 100,001 lines")));
}

}  // namespace
}  // namespace desktop
