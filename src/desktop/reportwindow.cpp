#include "desktop/reportwindow.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

#include "core/numbers.h"
#include "desktop/chartview.h"
#include "desktop/listview.h"
#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

constexpr int kSmallScreen = 9000;  // twips: no room for a legend
constexpr int kSideLetters = 44;

QLabel* TextPart(const QString& text, const QString& name) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAccessibleName(name);
    label->setMargin(6);
    return label;
}

QScrollArea* Scrolled(QWidget* part, const QString& name) {
    auto* area = new QScrollArea;
    area->setWidget(part);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFrameShape(QFrame::NoFrame);
    area->setAccessibleName(name);
    return area;
}

}  // namespace

ReportWindow::ReportWindow(std::unique_ptr<reports::ReportModel> report, Links links, QWidget* parent)
    : QWidget(parent), report_(std::move(report)), links_(std::move(links)) {
    setWindowTitle(TitleText(report_->Grid().caption));
    grid_ = new ReportGridView(*report_, this);
    chart_ = new ChartView(this);
    auto* main = new QSplitter(Qt::Vertical);
    main->addWidget(grid_);
    main->addWidget(chart_);
    main->setSizes({600, 400});  // shares
    main->setChildrenCollapsible(false);
    auto* across = new QSplitter(Qt::Horizontal, this);
    across->addWidget(main);
    across->addWidget(BuildSide());
    across->setStretchFactor(0, 1);
    across->setSizes({1000, fontMetrics().averageCharWidth() * kSideLetters});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(across);
    setFocusProxy(grid_);
    grid_->onLine = [this](std::size_t line) { LineSelected(line); };
    grid_->onMenu = [this](const QPoint& place) { ShowPopup(shell::Popup::Line, place); };
    chart_->onMenu = [this](const QPoint& place) { ShowPopup(shell::Popup::Chart, place); };
    ChartChanged();
}

// The views go before the report that they show.
ReportWindow::~ReportWindow() { qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)); }

QWidget* ReportWindow::BuildSide() {
    const QString extract = ToQt(report_->Extract());
    auto* about = TextPart(extract, QStringLiteral("What was analysed"));
    plotted_ = TextPart(QString(), QStringLiteral("What is plotted"));
    auto* side = new QSplitter(Qt::Vertical);
    side->addWidget(Scrolled(about, about->accessibleName()));
    if (QWidget* words = BuildWords()) side->addWidget(words);
    side->addWidget(Scrolled(plotted_, plotted_->accessibleName()));
    side->setSizes(side->count() == 3 ? QList<int>{250, 450, 300} : QList<int>{500, 500});  // shares
    return side;
}

// The words of the terms that were analysed; nothing when they were not collected.
QWidget* ReportWindow::BuildWords() {
    if (!report_->Results().WordListsOn) return nullptr;
    words_.push_back({reports::kWordHeaders.begin(), reports::kWordHeaders.end()});
    for (const reports::WordCount& word : report_->Words()) words_.push_back({word.text, core::NumText(word.count)});
    const int letter = fontMetrics().averageCharWidth();
    ListView::Look look{.grid = true, .fixedRows = 1, .widths = {24 * letter, 10 * letter}, .alignments = {1, 7}};
    auto* list = new ListView(
        std::move(look), [this]() -> const dialogs::Rows& { return words_; }, this);
    list->SetEmptyText("The visits that were analysed have no search term.");
    list->SetName(QStringLiteral("Words in search terms"));
    list->Reload({});
    return list;
}

void ReportWindow::ChartChanged() {
    const bool room = Twips(*this, ScreenRoom(*this).height()) >= kSmallScreen;
    chart_->Show(report_->Chart(), room && report_->ShowLegend());
    plotted_->setText(ToQt(report_->Chart().desc));
}

void ReportWindow::LineSelected(std::size_t line) {
    links_.trap("fSearchTerms_RowChange", [this, line] {
        if (report_->pPlotRow(line)) ChartChanged();
    });
}

core::Result ReportWindow::SavePicture(const std::string& path) { return chart_->SavePicture(path); }

void ReportWindow::ShowPopup(shell::Popup popup, const QPoint& global) {
    QMenu menu(this);
    for (const shell::PopupRow& row : shell::kPopupRows) {
        if (row.menu != popup || !shell::IsOffered(row, *report_)) continue;
        if (row.entry.lineAbove) menu.addSeparator();
        QAction* action = menu.addAction(ToQt(row.entry.caption));
        action->setObjectName(ToQt(row.entry.control));
        const std::optional<bool> marked = shell::IsMarked(row, *report_);
        action->setCheckable(marked.has_value());
        action->setChecked(marked.value_or(false));
    }
    const QAction* chosen = menu.exec(global);
    if (chosen != nullptr) links_.run(FromQt(chosen->objectName()));
}

}  // namespace desktop
