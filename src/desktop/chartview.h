#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "core/files.h"
#include "reports/plot.h"

class QCPGraph;
class QCPItemLine;
class QCustomPlot;
class QLabel;

namespace desktop {

// The trend of one line of a report: a line for each series, a legend, the values under the pointer. Colours follow the
// palette of the desktop; what a log sent stands in it as plain text.
class ChartView final : public QWidget {
public:
    explicit ChartView(QWidget* parent);

    void Show(const reports::ChartData& chart, bool legend);
    // By the type of the name: png, svg or pdf, the picture as it stands, dark on white and never smaller than can be
    // read. `path` is native.
    core::Result SavePicture(const std::string& path);
    // What stands under a place of this widget: the period with its exact count and each series' value, "" for nothing.
    std::string TextAt(const QPoint& place) const;

    std::function<void(const QPoint& global)> onMenu{};  // the right button, or the menu key

protected:
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Series {
        std::size_t number = 0;
        QCPGraph* graph = nullptr;
        QString name{};  // whole, as the legend may cut it
        bool percent = false;
    };

    bool IsDrawn(std::size_t series) const;
    void AddSeries(std::size_t series);
    void PutScale();
    void PutColors(const QPalette& colors);
    void FitTo(const QSize& size);
    void FitDates(int width);
    void FitLegend(const QSize& size);
    void Redraw();
    int PeriodAt(const QPoint& onPlot) const;  // -1 outside
    QPoint PlaceOf(int period) const;
    QString TextOf(int period) const;
    void PutCursor(int period);
    void Follow(const QPoint& onPlot);
    bool RenderTo(const std::string& type, QByteArray& bytes);

    reports::ChartData chart_{};
    bool legend_ = false;
    int period_ = -1;  // of the cursor
    QCustomPlot* plot_;
    QCPItemLine* cursor_;
    QLabel* hint_;
    std::vector<Series> series_{};  // those that are drawn
};

}  // namespace desktop
