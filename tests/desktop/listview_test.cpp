#include "desktop/listview.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <algorithm>

#include "tests/desktop/modal.h"

namespace desktop {
namespace {

using dialogs::Rows;

Rows Numbered(int rows) {
    Rows all{{"Term", "Count", "Key"}};
    for (int row = 0; row < rows; ++row)
        all.push_back({"term " + std::to_string(row), std::to_string(rows - row), "k" + std::to_string(row)});
    return all;
}

ListView::Look GridLook(bool multi = false) {
    ListView::Look look{.grid = true, .multi = multi, .fixedRows = 1};
    look.widths = {120, 60, 0};
    return look;
}

void Choose(ListView& list, const std::vector<int>& rows) {
    list.Reload(rows);
    ASSERT_EQ(list.Selected(), rows);
}

TEST(RowsModel, KeepsTheRulesOfModels) {
    Rows rows = Numbered(50);
    RowsModel model([&]() -> const Rows& { return rows; }, 1, nullptr);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.SetFilter("term 4");
    EXPECT_EQ(model.rowCount(), 11);
    model.Sort(1, Qt::AscendingOrder);
    EXPECT_EQ(model.SourceRow(0), 49);
    rows = Numbered(3);
    model.Reload();
    EXPECT_EQ(model.rowCount(), 0);
    model.SetFilter("");
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Count"));
}

TEST(RowsModel, RowsThatWentWithoutAWordDoNoHarm) {
    Rows rows = Numbered(50);
    RowsModel model([&]() -> const Rows& { return rows; }, 1, nullptr);
    rows = {{"Term"}, {"one"}};
    EXPECT_EQ(model.data(model.index(40, 2)).toString(), QString());
    model.SetFilter("one");
    EXPECT_EQ(model.rowCount(), 1);
}

TEST(RowsModel, FilterIgnoresCaseInAnyScript) {
    const Rows rows{{"\xc3\x84pfel"}, {"\xd0\xa1\xd0\xb0\xd0\xbf\xd0\xbe\xd0\xb3\xd0\xb8"}, {"boots"}};
    RowsModel model([&]() -> const Rows& { return rows; }, 0, nullptr);
    for (const char* word : {"\xc3\xa4PF", "\xd1\x81\xd0\xb0\xd0\x9f", "OOT"}) {
        model.SetFilter(word);
        EXPECT_EQ(model.rowCount(), 1) << word;
    }
}

TEST(RowsModel, NumbersAreSortedAsNumbersAndTextsAsTexts) {
    const struct {
        Rows rows;
        std::vector<int> order;
    } cases[] = {
        {{{"10"}, {"9"}, {"1,000"}, {""}}, {3, 1, 0, 2}},
        {{{"b"}, {"10"}, {"B"}, {"9"}}, {1, 3, 0, 2}},
    };
    for (const auto& c : cases) {
        RowsModel model([&]() -> const Rows& { return c.rows; }, 0, nullptr);
        model.Sort(0, Qt::AscendingOrder);
        std::vector<int> order;
        for (int row = 0; row < model.rowCount(); ++row) order.push_back(model.SourceRow(row));
        EXPECT_EQ(order, c.order);
    }
}

TEST(ListView, SelectionSurvivesFilterAndSort) {
    const Rows rows = Numbered(200);
    ListView list(
        GridLook(true), [&]() -> const Rows& { return rows; }, nullptr);
    Choose(list, {3, 12, 150});
    list.FilterBox().setText(QStringLiteral("term 1"));
    EXPECT_EQ(list.Selected(), (std::vector{3, 12, 150}));
    EXPECT_EQ(list.View().selectionModel()->selectedRows().size(), 2);
    emit static_cast<QTableView&>(list.View()).horizontalHeader()->sectionClicked(1);
    EXPECT_EQ(list.View().selectionModel()->selectedRows().size(), 2);
    list.FilterBox().clear();
    EXPECT_EQ(list.View().selectionModel()->selectedRows().size(), 3);
    EXPECT_EQ(list.Selected(), (std::vector{3, 12, 150}));
}

TEST(ListView, AnotherRowTakesTheHiddenOnesAway) {
    const Rows rows = Numbered(200);
    ListView list(
        GridLook(true), [&]() -> const Rows& { return rows; }, nullptr);
    Choose(list, {3});
    list.FilterBox().setText(QStringLiteral("term 19"));
    list.View().setCurrentIndex(list.View().model()->index(1, 0));
    EXPECT_EQ(list.Selected(), std::vector{190});
}

TEST(ListView, ReloadShowsWhatIsSelected) {
    Rows rows = Numbered(40);
    ListView list(
        GridLook(), [&]() -> const Rows& { return rows; }, nullptr);
    list.Reload({});
    list.FilterBox().setText(QStringLiteral("term 3"));
    rows.push_back({"new one", "1", "k"});
    list.Reload({40});
    EXPECT_EQ(list.Selected(), std::vector{40});
    EXPECT_TRUE(list.FilterBox().text().isEmpty());
}

TEST(ListView, CopyTakesHeadersAndLeavesHiddenColumns) {
    const Rows rows{{"Term", "Count", "Key"}, {"a\tb", "1", "secret"}, {"c\rd", "2", "secret"}};
    ListView list(
        GridLook(true), [&]() -> const Rows& { return rows; }, nullptr);
    list.show();
    Choose(list, {0, 1});
    QTest::keyClick(&list.View(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Term\tCount\na b\t1\nc d\t2\n"));
}

TEST(ListView, KeysOfLists) {
    const Rows rows = Numbered(100);
    ListView list(
        GridLook(), [&]() -> const Rows& { return rows; }, nullptr);
    list.show();
    Choose(list, {5});
    QTest::keyClick(&list.View(), Qt::Key_End);
    EXPECT_EQ(list.Selected(), std::vector{99});
    QTest::keyClick(&list.View(), Qt::Key_Home);
    EXPECT_EQ(list.Selected(), std::vector{0});
    QTest::keyClick(&list.View(), Qt::Key_Down);
    EXPECT_EQ(list.Selected(), std::vector{1});
    bool activated = false;
    list.onActivated = [&] { activated = true; };
    QTest::keyClicks(&list.FilterBox(), QStringLiteral("term 77"));
    QTest::keyClick(&list.FilterBox(), Qt::Key_Return);
    EXPECT_EQ(list.Selected(), std::vector{77});
    EXPECT_TRUE(activated);
    QTest::keyClick(&list.FilterBox(), Qt::Key_Escape);
    EXPECT_TRUE(list.FilterBox().text().isEmpty());
}

TEST(ListView, TheFilterShowsWhereItIsOfUse) {
    Rows rows = Numbered(10);
    ListView list(
        GridLook(), [&]() -> const Rows& { return rows; }, nullptr);
    list.Reload({});
    EXPECT_TRUE(list.FilterBox().parentWidget()->isHidden());
    QTest::keyClick(&list.View(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(list.FilterBox().parentWidget()->isHidden());
    rows = Numbered(11);
    list.Reload({});
    EXPECT_FALSE(list.FilterBox().parentWidget()->isHidden());
}

TEST(ListView, EmptyOnesTellWhatToDo) {
    Rows rows{{"Term"}};
    ListView list(
        GridLook(), [&]() -> const Rows& { return rows; }, nullptr);
    list.SetEmptyText("Press New.");
    list.Reload({});
    EXPECT_EQ(list.View().accessibleDescription(), QStringLiteral("Press New."));
    rows = Numbered(20);
    list.Reload({});
    list.FilterBox().setText(QStringLiteral("<b>"));
    EXPECT_EQ(list.View().accessibleDescription(), QStringLiteral("No line contains \"<b>\"."));
}

TEST(ListView, AHundredThousandRows) {
    dialogs::DialogModel model = ModelWith({"&OK"}, "Many");
    Add(model, "ListBox", "", "6000|4000|||||||||||||True").caption = "Terms";
    dialogs::Rows& rows = model.controls[1].rows;
    for (int row = 0; row < 100000; ++row) rows.push_back({"term " + std::to_string(row)});
    RunWith(model, [](QWidget& dialog) {
        auto& view = The<QAbstractItemView>(dialog, "Terms");
        EXPECT_EQ(view.model()->rowCount(), 100000);
        The<QLineEdit>(dialog, "Filter of Terms").setText(QStringLiteral("99"));
        view.selectAll();
        The<QPushButton>(dialog, "OK").click();
    });
    const auto has99 = [](const std::vector<std::string>& row) { return row[0].find("99") != std::string::npos; };
    EXPECT_EQ(model.controls[1].Selected().size(), static_cast<std::size_t>(std::ranges::count_if(rows, has99)));
}

}  // namespace
}  // namespace desktop
