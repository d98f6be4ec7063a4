#include "desktop/chartview.h"

#include <gtest/gtest.h>
#include <qcustomplot.h>

#include <QTest>
#include <QToolTip>
#include <cmath>

#include "tests/support/tempfolder.h"

namespace desktop {
namespace {

constexpr std::int32_t kFirstDay = 46021;  // 30 December 2025
const char* const kDates[] = {"30 Dec", "31 Dec", "01 Jan", "02 Jan"};

// Visitors and those who stayed in four days, and nothing more.
reports::ChartData FourDays() {
    reports::ChartData chart;
    chart.headers = {"Total Users", "Users who Stayed", " ", " ", " ", "  [Use menu item Targets]", " "};
    for (std::int32_t day = 0; day < 4; ++day) {
        reports::ChartRow& row = chart.rows.emplace_back();
        row.label = std::string(kDates[day]) + " [" + std::to_string(1200 + day) + "]";
        row.values[0] = 1200 + day;
        row.values[1] = day;
        chart.dPlotColLabelsCDS.push_back(" 1 d. from " + row.label + (day < 2 ? " 2025" : " 2026"));
        chart.firstDays.push_back(kFirstDay + day);
    }
    return chart;
}

class Chart : public ::testing::Test {
protected:
    void Put(const reports::ChartData& chart, QSize size = {600, 300}) {
        view.resize(size);
        view.show();
        view.Show(chart, true);
        QCoreApplication::processEvents();
    }
    QCustomPlot& Plot() { return *view.findChild<QCustomPlot*>(); }
    QPoint Over(int period) {
        const QRect field = Plot().axisRect()->rect();
        return Plot().mapTo(&view, QPoint(static_cast<int>(Plot().xAxis->coordToPixel(period)), field.center().y()));
    }

    ChartView view{nullptr};
};

TEST_F(Chart, TextsStandOverTheirPeriods) {
    Put(FourDays());
    EXPECT_EQ(view.TextAt(Over(2)), "1 d. from 01 Jan [1202] 2026\n1,202  Total Users\n2  Users who Stayed");
    EXPECT_EQ(view.TextAt(QPoint(1, 1)), "");
    QTest::mouseMove(&Plot(), Over(0));
    EXPECT_TRUE(view.accessibleDescription().startsWith(QStringLiteral("1 d. from 30 Dec")));
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("30 Dec")));
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.accessibleDescription().toStdString(), view.TextAt(Over(1)));
    QTest::keyClick(&view, Qt::Key_End);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.accessibleDescription().toStdString(), view.TextAt(Over(3)));
}

TEST_F(Chart, TheMenuComesByMouseAndKey) {
    Put(FourDays());
    int asked = 0;
    view.onMenu = [&asked](const QPoint&) { ++asked; };
    QContextMenuEvent byMouse(QContextMenuEvent::Mouse, Over(1), QPoint(7, 7));
    QCoreApplication::sendEvent(&Plot(), &byMouse);
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&view, &byKey);
    EXPECT_EQ(asked, 2);
}

TEST_F(Chart, DatesTellTheYearWhereItChanges) {
    Put(FourDays());
    const auto labels = Plot().xAxis->tickVectorLabels();
    EXPECT_EQ(labels, (QVector<QString>{QStringLiteral("30 Dec\n2025"), QStringLiteral("31 Dec"),
                                        QStringLiteral("01 Jan\n2026"), QStringLiteral("02 Jan")}));
}

TEST_F(Chart, OnlySeriesWithAMeaningAreDrawn) {
    reports::ChartData chart = FourDays();
    chart.headers[0] = " .. removed ..";
    chart.headers[1] = "Pct. of total who Stayed";
    chart.rows.back().values[reports::kScaleHelper] = 20;
    Put(chart);
    ASSERT_EQ(Plot().graphCount(), 1);
    EXPECT_EQ(Plot().legend->itemCount(), 1);
    EXPECT_GE(Plot().yAxis->range().upper, 20);
    EXPECT_EQ(view.TextAt(Over(3)), "1 d. from 02 Jan [1203] 2026\n3.0 %  Pct. of total who Stayed");
    for (const QString& label : Plot().yAxis->tickVectorLabels()) EXPECT_TRUE(label.endsWith(QStringLiteral(" %")));
}

TEST_F(Chart, AMissingCellIsAGapAndOnePeriodAPoint) {
    reports::ChartData chart = FourDays();
    chart.rows[1].values[1].reset();
    Put(chart);
    EXPECT_TRUE(std::isnan(Plot().graph(1)->dataMainValue(1)));
    EXPECT_NE(view.TextAt(Over(1)).find("\n-  Users"), std::string::npos);
    chart.rows.resize(1);
    chart.firstDays.resize(1);
    Put(chart);
    EXPECT_FALSE(Plot().graph(0)->scatterStyle().isNone());
    EXPECT_NE(view.TextAt(Over(0)), "");
}

TEST_F(Chart, HeadersAreShownAsTheyStand) {
    reports::ChartData chart = FourDays();
    chart.headers[1] = "Users at <b onload=\"x\">\x1b]0;\r\n" + std::string(400, 'w');
    Put(chart);
    const std::string text = view.TextAt(Over(0));
    EXPECT_NE(text.find("<b onload=\"x\">\xe2\x90\x9b]0;"), std::string::npos);
    EXPECT_EQ(std::ranges::count(text, '\n'), 2);
    QTest::mouseMove(&Plot(), Over(1));
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("&lt;b onload")));
    QTest::mouseMove(&Plot(), Plot().legend->itemWithPlottable(Plot().graph(1))->outerRect().center());
    EXPECT_TRUE(QToolTip::text().contains(QString(400, QLatin1Char('w'))));  // whole, though the legend cuts it
    const testsupport::TempFolder folder;
    ASSERT_TRUE(view.SavePicture(folder.File("a.svg")));
    EXPECT_EQ(folder.Read("a.svg").find("<b"), std::string::npos);
}

TEST_F(Chart, PicturesAreWholeFilesOnWhite) {
    const testsupport::TempFolder folder;
    EXPECT_FALSE(view.SavePicture(folder.File("empty.png")));  // nothing to draw yet
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    view.setPalette(dark);
    Put(FourDays());
    const struct {
        const char* name;
        const char* begin;
    } cases[] = {{"a.PNG", "\x89PNG\r\n"}, {"b.svg", "<?xml"}, {"c.Pdf", "%PDF-"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const core::Result saved = view.SavePicture(folder.File(c.name));
        EXPECT_TRUE(saved) << saved.error;
        EXPECT_TRUE(folder.Read(c.name).starts_with(c.begin));
    }
    const QImage image(QString::fromStdString(folder.File("a.PNG")));
    EXPECT_EQ(image.pixelColor(1, 1), QColor(Qt::white));
    EXPECT_GE(image.width(), 2 * 590);
    EXPECT_FALSE(view.SavePicture(folder.File("none/a.png")));
    const core::Result other = view.SavePicture(folder.File("a.gif"));
    for (const char* type : {"png", "svg", "pdf"}) EXPECT_NE(other.error.find(type), std::string::npos);
    EXPECT_EQ(folder.Count(), 3U);
    EXPECT_EQ(view.grab().toImage().pixelColor(5, 5), QColor(Qt::black));  // back to the desktop's colours
}

TEST_F(Chart, AxesCanBeReadOnADarkDesktop) {
    Put(FourDays());
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    dark.setColor(QPalette::Text, QColor(0xee, 0xee, 0xee));
    view.setPalette(dark);
    EXPECT_EQ(view.grab().toImage().pixelColor(5, 5), QColor(0x1e, 0x1e, 0x1e));
    for (const QCPAxis* axis : {Plot().xAxis, Plot().yAxis}) EXPECT_GT(axis->tickLabelColor().lightness(), 0x1e + 128);
    EXPECT_GT(Plot().legend->textColor().lightness(), 0x1e + 128);
}

TEST_F(Chart, FlatOnesHaveNoLegendAndEmptyOnesAWord) {
    Put(FourDays(), {600, 100});
    EXPECT_EQ(Plot().legend->itemCount(), 0);
    EXPECT_NE(view.TextAt(Over(0)), "");
    EXPECT_GT(Plot().axisRect()->height(), 30);
    EXPECT_GT(Plot().axisRect()->width(), 500);
    Put({}, {600, 300});
    EXPECT_TRUE(Plot().isHidden());
    EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Select a line above to see its trend."));
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(view.TextAt(QPoint(300, 150)), "");
}

}  // namespace
}  // namespace desktop
