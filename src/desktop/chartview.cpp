#include "desktop/chartview.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QContextMenuEvent>
#include <QLabel>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "core/dates.h"
#include "core/numbers.h"
#include "desktop/text.h"
#include "reports/palette.h"

namespace desktop {
namespace {

constexpr double kLineWidth = 2;
constexpr double kMarkSize = 6;
constexpr std::size_t kMostMarked = 60;  // periods
constexpr int kMostTicks = 12;
constexpr double kHeadroom = 1.05;
constexpr int kFrame = 2;           // shows the focus
constexpr int kLeastSide = 40;      // pixels, as the others
constexpr int kLegendFrom = 120;    // height
constexpr int kLegendLetters = 40;  // of a header before the legend takes another row
constexpr int kLegendIcon = 28;     // width
constexpr int kNoLimit = QWIDGETSIZE_MAX - 1;
constexpr int kGap = 6;
constexpr int kTipTime = 60000;  // milliseconds
constexpr QSize kLeastPicture(640, 360);
constexpr double kPictureScale = 2;
constexpr int kTipLetters = 120;  // of a header beside the pointer
constexpr std::string_view kNothing = "Select a line above to see its trend.";
constexpr std::string_view kAllRemoved =
    "All columns are removed from this plot. Restore All plotted columns brings them back.";

// Told apart without colours too: how a series is dashed, in widths of its line, and what marks its points.
struct SeriesLook {
    QCPScatterStyle::ScatterShape mark;
    std::array<int, 6> dashes;  // ends at the first 0
};
constexpr std::array<SeriesLook, reports::kScaleHelper> kLooks{{
    {QCPScatterStyle::ssCircle, {}},
    {QCPScatterStyle::ssSquare, {6, 2}},
    {QCPScatterStyle::ssTriangle, {2, 2}},
    {QCPScatterStyle::ssDiamond, {6, 2, 2, 2}},
    {QCPScatterStyle::ssTriangleInverted, {3, 2}},
    {QCPScatterStyle::ssCross, {6, 2, 2, 2, 2, 2}},
}};

QPen PenOf(std::size_t series) {
    const std::string_view name = reports::kSeriesColours[series];
    QPen pen(QColor(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))), kLineWidth);
    QList<qreal> dashes;
    for (const int length : kLooks[series].dashes)
        if (length > 0) dashes.append(length);
    if (!dashes.isEmpty()) pen.setDashPattern(dashes);
    return pen;
}

// Counts are whole, so the marks of their axis are.
class WholeTicker final : public QCPAxisTickerFixed {
public:
    explicit WholeTicker(QString unit) : unit_(std::move(unit)) {
        setTickStep(1);
        setScaleStrategy(ssMultiples);
    }

protected:
    QString getTickLabel(double tick, const QLocale&, QChar, int) override {
        return ToQtLine(core::CountText(tick)) + unit_;
    }

private:
    QString unit_;
};

// A period without a value has no mark either. The library would put one into the corner of pictures that do not clip.
class Line final : public QCPGraph {
public:
    using QCPGraph::QCPGraph;

protected:
    void drawScatterPlot(QCPPainter* painter, const QVector<QPointF>& marks,
                         const QCPScatterStyle& style) const override {
        const QRect field = clipRect();
        QVector<QPointF> inside;
        for (const QPointF& mark : marks)
            if (field.contains(mark.toPoint())) inside.append(mark);
        QCPGraph::drawScatterPlot(painter, inside, style);
    }
};

QString ValueText(std::optional<double> value, bool percent) {
    if (!value) return QStringLiteral("-");
    return ToQtLine(percent ? core::fFormat(*value, "0.0") + " %" : core::CountText(*value));
}

QPalette OnWhite() {
    QPalette colors;
    colors.setColor(QPalette::Base, Qt::white);
    colors.setColor(QPalette::Text, QColor(0x20, 0x20, 0x20));
    return colors;
}

bool Paint(QCustomPlot& plot, const QSize& size, QCPPainter::PainterMode mode, QPaintDevice& device) {
    QCPPainter painter;
    if (!painter.begin(&device)) return false;
    painter.setMode(QCPPainter::pmNoCaching);
    painter.setMode(QCPPainter::pmNonCosmetic);
    painter.setMode(mode);
    plot.toPainter(&painter, size.width(), size.height());
    return painter.end();
}

bool WritePng(QCustomPlot& plot, const QSize& size, QIODevice& into) {
    QImage image(size * kPictureScale, QImage::Format_RGB32);
    if (image.isNull()) return false;
    image.setDevicePixelRatio(kPictureScale);
    image.fill(Qt::white);
    return Paint(plot, size, QCPPainter::pmNonCosmetic, image) && image.save(&into, "PNG");
}

bool WriteSvg(QCustomPlot& plot, const QSize& size, QIODevice& into) {
    QSvgGenerator svg;
    svg.setOutputDevice(&into);
    svg.setResolution(plot.logicalDpiX());
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(), size));
    return Paint(plot, size, QCPPainter::pmVectorized, svg);
}

bool WritePdf(QCustomPlot& plot, const QSize& size, QIODevice& into) {
    constexpr double kPointsPerInch = 72;
    QPdfWriter pdf(&into);
    const int dots = plot.logicalDpiX();
    pdf.setResolution(dots);
    pdf.setPageMargins(QMarginsF());
    const QPageSize page(QSizeF(size) * kPointsPerInch / dots, QPageSize::Point, QString(), QPageSize::ExactMatch);
    return pdf.setPageSize(page) && Paint(plot, size, QCPPainter::pmVectorized, pdf);
}

struct PictureType {
    std::string_view type;
    bool (*write)(QCustomPlot& plot, const QSize& size, QIODevice& into);
};
constexpr std::array kPictureTypes{PictureType{"png", WritePng}, PictureType{"svg", WriteSvg},
                                   PictureType{"pdf", WritePdf}};

}  // namespace

ChartView::ChartView(QWidget* parent)
    : QWidget(parent), plot_(new QCustomPlot(this)), cursor_(new QCPItemLine(plot_)), hint_(new QLabel(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Trend of the selected line"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kFrame, kFrame, kFrame, kFrame);
    layout->addWidget(plot_);
    layout->addWidget(hint_);
    hint_->setTextFormat(Qt::PlainText);
    hint_->setWordWrap(true);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setForegroundRole(QPalette::Text);
    plot_->setFocusPolicy(Qt::NoFocus);
    plot_->setContextMenuPolicy(Qt::NoContextMenu);
    plot_->setAttribute(Qt::WA_NoMousePropagation, false);  // the menu is ours
    plot_->setMinimumSize(kLeastSide, kLeastSide);
    plot_->setAutoAddPlottableToLegend(false);
    plot_->setAntialiasedElements(QCP::aePlottables | QCP::aeScatters | QCP::aeLegendItems);
    plot_->axisRect()->setMinimumSize(kLeastSide, kLeastSide / 2);
    plot_->axisRect()->setMinimumMargins(QMargins(0, kGap, 2 * kGap, 0));
    plot_->xAxis->grid()->setVisible(false);
    plot_->plotLayout()->addElement(1, 0, plot_->legend);  // below the chart, as wide as it
    plot_->plotLayout()->setRowStretchFactor(1, 0.001);
    plot_->plotLayout()->setRowSpacing(0);
    plot_->legend->setFillOrder(QCPLegend::foColumnsFirst);
    plot_->legend->setMaximumSize(kNoLimit, kNoLimit);  // else an empty one makes the chart as narrow
    cursor_->setLayer(QStringLiteral("overlay"));       // drawn alone when it moves
    cursor_->setVisible(false);
    plot_->installEventFilter(this);
    Show({}, false);
}

void ChartView::Show(const reports::ChartData& chart, bool legend) {
    const bool samePeriods = chart.firstDays == chart_.firstDays;
    chart_ = chart;
    legend_ = legend;
    plot_->legend->clearItems();
    plot_->clearGraphs();
    series_.clear();
    for (std::size_t series = 0; series < reports::kScaleHelper; ++series)
        if (IsDrawn(series)) AddSeries(series);
    hint_->setText(ToQtLine(chart_.rows.empty() ? kNothing : kAllRemoved));
    hint_->setVisible(series_.empty());
    plot_->setVisible(!series_.empty());
    PutScale();
    Redraw();
    PutCursor(samePeriods && !series_.empty() ? period_ : -1);
}

bool ChartView::IsDrawn(std::size_t series) const {
    const std::string& header = chart_.headers[series];
    const bool named = header.find_first_not_of(' ') != std::string::npos;
    const auto has = [series](const reports::ChartRow& row) { return row.values[series].has_value(); };
    return named && !chart_.Removed(series) && std::ranges::any_of(chart_.rows, has);
}

void ChartView::AddSeries(std::size_t series) {
    const std::string& header = chart_.headers[series];
    auto* graph = new Line(plot_->xAxis, plot_->yAxis);  // the plot's own
    QVector<double> x, y;
    for (const reports::ChartRow& row : chart_.rows) {
        x.append(static_cast<double>(x.size()));
        y.append(row.values[series].value_or(std::numeric_limits<double>::quiet_NaN()));  // a gap
    }
    graph->setData(x, y, true);
    graph->setPen(PenOf(series));
    const QColor color = graph->pen().color();
    if (chart_.rows.size() <= kMostMarked)
        graph->setScatterStyle(QCPScatterStyle(kLooks[series].mark, QPen(color), QBrush(color), kMarkSize));
    series_.push_back({series, graph, ToQtLine(header).trimmed(), header.starts_with("Pct.")});
}

void ChartView::PutScale() {
    double top = 1;
    const auto raise = [&](std::size_t series) {
        for (const reports::ChartRow& row : chart_.rows) top = std::max(top, row.values[series].value_or(0));
    };
    for (const Series& series : series_) raise(series.number);
    raise(reports::kScaleHelper);
    const bool percent = std::ranges::any_of(series_, &Series::percent);
    plot_->yAxis->setTicker(QSharedPointer<QCPAxisTicker>(new WholeTicker(percent ? QStringLiteral(" %") : QString())));
    plot_->yAxis->setRange(0, top * kHeadroom);
    plot_->xAxis->setRange(-0.5, std::max(0.5, static_cast<double>(chart_.rows.size()) - 0.5));
}

void ChartView::PutColors(const QPalette& colors) {
    const QColor text = colors.color(QPalette::Text);
    QColor faint = text;
    faint.setAlphaF(0.15F);
    plot_->setBackground(colors.color(QPalette::Base));
    for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) {
        axis->setBasePen(text);
        axis->setTickPen(text);
        axis->setSubTicks(false);
        axis->setTickLabelColor(text);
        axis->setTickLabelFont(font());
        axis->grid()->setPen(faint);
        axis->grid()->setZeroLinePen(Qt::NoPen);
    }
    plot_->legend->setBrush(Qt::NoBrush);
    plot_->legend->setBorderPen(Qt::NoPen);
    plot_->legend->setTextColor(text);
    plot_->legend->setFont(font());
    cursor_->setPen(QPen(text, 1, Qt::DotLine));
}

// Texts and ticks for a drawing of that size; the colours are those that were put last.
void ChartView::FitTo(const QSize& size) {
    const int line = QFontMetrics(font()).height();
    plot_->yAxis->ticker()->setTickCount(std::clamp(size.height() / (4 * line), 2, 8));
    FitDates(size.width());
    FitLegend(size);
}

void ChartView::FitDates(int width) {
    const QSharedPointer<QCPAxisTickerText> ticker(new QCPAxisTickerText);
    const int label = QFontMetrics(font()).horizontalAdvance(QStringLiteral("88 Mmm 8"));
    const auto most = static_cast<std::size_t>(std::clamp(width / std::max(1, label), 1, kMostTicks));
    const std::size_t step = std::max<std::size_t>(1, (chart_.firstDays.size() + most - 1) / most);
    int year = 0;
    for (std::size_t i = 0; i < chart_.firstDays.size(); i += step) {
        const std::int32_t day = chart_.firstDays[i];
        const bool another = core::YmdOf(day).year != std::exchange(year, core::YmdOf(day).year);
        ticker->addTick(static_cast<double>(i), ToQt(core::fDateText(day, another ? "dd mmm\nyyyy" : "dd mmm")));
    }
    plot_->xAxis->setTicker(ticker);
}

void ChartView::FitLegend(const QSize& size) {
    QCPLegend& legend = *plot_->legend;
    legend.clearItems();
    legend.simplify();
    const bool shown = legend_ && !series_.empty() && size.height() >= kLegendFrom;
    legend.setVisible(shown);
    legend.setMargins(shown ? QMargins(kGap, kGap, kGap, kGap / 2) : QMargins());
    if (!shown) return;
    const QFontMetrics metrics(font());
    legend.setIconSize(kLegendIcon, metrics.height() + 2);
    const int line = legend.iconSize().height() + legend.rowSpacing();
    const int count = static_cast<int>(series_.size());
    const int fitting = std::clamp(size.width() / (kLegendLetters * metrics.averageCharWidth()), 1, count);
    const int rows = std::clamp((count + fitting - 1) / fitting, 1, std::max(1, size.height() / 3 / line));
    const int columns = (count + rows - 1) / rows;
    const int room = size.width() / columns - kLegendIcon - legend.iconTextPadding() - 2 * kGap;
    legend.setWrap(columns);
    for (const Series& series : series_) {
        series.graph->setName(metrics.elidedText(series.name, Qt::ElideRight, std::max(1, room)));
        legend.addItem(new QCPPlottableLegendItem(&legend, series.graph));
    }
}

void ChartView::Redraw() {
    PutColors(palette());
    FitTo(plot_->size());
    plot_->replot(QCustomPlot::rpQueuedRefresh);
}

int ChartView::PeriodAt(const QPoint& onPlot) const {
    if (series_.empty() || !plot_->axisRect()->rect().contains(onPlot)) return -1;
    const double period = std::round(plot_->xAxis->pixelToCoord(onPlot.x()));
    return period >= 0 && period < static_cast<double>(chart_.rows.size()) ? static_cast<int>(period) : -1;
}

QPoint ChartView::PlaceOf(int period) const {
    const QRect field = plot_->axisRect()->rect();
    const int x = period < 0 ? field.center().x() : static_cast<int>(plot_->xAxis->coordToPixel(period));
    return plot_->mapTo(this, QPoint(x, field.center().y()));
}

QString ChartView::TextOf(int period) const {
    if (period < 0) return {};
    const auto at = static_cast<std::size_t>(period);
    const bool exact = at < chart_.dPlotColLabelsCDS.size();
    QString text = ToQtLine(exact ? chart_.dPlotColLabelsCDS[at] : chart_.rows[at].label).trimmed();
    for (const Series& series : series_) {
        text += QLatin1Char('\n') + ValueText(chart_.rows[at].values[series.number], series.percent);
        text += QStringLiteral("  ") + series.name.left(kTipLetters);
        if (series.name.size() > kTipLetters) text += QChar(0x2026);
    }
    return text;
}

std::string ChartView::TextAt(const QPoint& place) const {
    return FromQt(TextOf(PeriodAt(plot_->mapFrom(this, place))));
}

void ChartView::PutCursor(int period) {
    period_ = period < static_cast<int>(chart_.rows.size()) ? period : -1;
    cursor_->setVisible(period_ >= 0);
    cursor_->start->setCoords(period_, 0);
    cursor_->end->setCoords(period_, plot_->yAxis->range().upper);
    cursor_->layer()->replot();
    setAccessibleDescription(series_.empty() ? hint_->text() : TextOf(period_));
}

void ChartView::Follow(const QPoint& onPlot) {
    const int period = PeriodAt(onPlot);
    if (period != period_ && (period >= 0 || !hasFocus())) PutCursor(period);
    QString text = TextOf(period);
    for (const Series& series : series_) {
        const auto* item = plot_->legend->itemWithPlottable(series.graph);
        if (item != nullptr && item->outerRect().contains(onPlot)) text = series.name;
    }
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(plot_->mapToGlobal(onPlot), Tip(text), plot_, {}, kTipTime);
}

bool ChartView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != plot_) return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::Resize) FitTo(static_cast<QResizeEvent*>(event)->size());
    if (event->type() == QEvent::MouseMove) Follow(static_cast<QMouseEvent*>(event)->position().toPoint());
    if (event->type() == QEvent::Leave) Follow(QPoint(-1, -1));
    return QWidget::eventFilter(watched, event);
}

void ChartView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (period_ < 0 && !series_.empty()) PutCursor(static_cast<int>(chart_.rows.size()) - 1);
    update();
}

void ChartView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    if (!plot_->underMouse() && event->reason() != Qt::PopupFocusReason) PutCursor(-1);
    update();
}

void ChartView::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(chart_.rows.size()) - 1;
    int period = period_;
    switch (event->key()) {
        case Qt::Key_Left:
            period = period < 0 ? last : period - 1;
            break;
        case Qt::Key_Right:
            period = period < 0 ? last : period + 1;
            break;
        case Qt::Key_Home:
            period = 0;
            break;
        case Qt::Key_End:
            period = last;
            break;
        default:
            return QWidget::keyPressEvent(event);
    }
    if (series_.empty()) return;
    PutCursor(std::clamp(period, 0, last));
    QToolTip::showText(mapToGlobal(PlaceOf(period_)), Tip(TextOf(period_)), this, {}, kTipTime);
}

void ChartView::contextMenuEvent(QContextMenuEvent* event) {
    if (!onMenu) return QWidget::contextMenuEvent(event);
    QToolTip::hideText();
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    onMenu(byKey ? mapToGlobal(PlaceOf(period_)) : event->globalPos());
}

void ChartView::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kFrame));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void ChartView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Redraw();
}

bool ChartView::RenderTo(const std::string& type, QByteArray& bytes) {
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly)) return false;
    const QSize size = plot_->size().expandedTo(kLeastPicture);
    PutColors(OnWhite());
    FitTo(size);
    cursor_->setVisible(false);
    const bool done = std::ranges::find(kPictureTypes, type, &PictureType::type)->write(*plot_, size, buffer);
    Redraw();
    PutCursor(period_);
    return done;
}

core::Result ChartView::SavePicture(const std::string& path) {
    const std::string type = FromQt(ToQt(core::fTypeOf(path)).toLower());
    if (std::ranges::find(kPictureTypes, type, &PictureType::type) == kPictureTypes.end())
        return {false,
                "The picture was not saved. It can be a png, svg or pdf file.\r"
                "Choose a name that ends with .png, .svg or .pdf."};
    if (series_.empty()) return {false, "The picture was not saved, there is none.\r" + FromQt(hint_->text())};
    QByteArray bytes;
    if (!RenderTo(type, bytes)) return {false, "The picture was not saved. There is not enough memory to draw it."};
    return core::WriteWhole(path, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace desktop
