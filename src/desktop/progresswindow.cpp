#include "desktop/progresswindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QResizeEvent>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "core/utf8.h"
#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

constexpr std::size_t kCaptionBytes = 4000;
constexpr int kLetters = 96;         // width of the window
constexpr double kTimesEvery = 0.5;  // seconds

// A text on one line, shortened in its middle where it is wider than the window; whole in its tool tip.
class OneLine final : public QLabel {
public:
    explicit OneLine(QWidget* parent) : QLabel(parent) {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }
    void Put(std::string_view text) {
        const QString now = ToQtLine(core::CutUtf8(text, kCaptionBytes));
        if (now == whole_) return;
        whole_ = now;
        setAccessibleName(whole_);
        Fit();
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        Fit();
    }

private:
    void Fit() {
        const QString fitting = fontMetrics().elidedText(whole_, Qt::ElideMiddle, std::max(width(), 50));
        setText(fitting);
        setToolTip(fitting == whole_ ? QString() : Tip(whole_));
    }
    QString whole_{};
};

std::string Counted(long count, const char* word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

}  // namespace

std::string TimeWords(double seconds) {
    constexpr long kMinute = 60, kHour = 3600;
    if (!(seconds >= 1)) return "less than a second";
    const long whole = std::lround(std::min(seconds, 1e9));
    if (whole < kMinute) return Counted(whole, "second");
    const long first = whole < kHour ? whole / kMinute : whole / kHour;
    const long rest = whole < kHour ? whole % kMinute : whole % kHour / kMinute;
    const std::string head = Counted(first, whole < kHour ? "minute" : "hour");
    return rest == 0 ? head : head + " " + Counted(rest, whole < kHour ? "second" : "minute");
}

// Caption, bar with percent, counts, step and times of one report.
class ProgressWindow::Part {
public:
    Part(QWidget* parent, const ShowTiming& timing)
        : frame_(new QWidget(parent)),
          caption_(new OneLine(frame_)),
          bar_(new QProgressBar(frame_)),
          percent_(new QLabel(frame_)),
          counts_(new QToolButton(frame_)),
          step_(new OneLine(frame_)),
          times_(new OneLine(frame_)) {
        QFont bold = caption_->font();
        bold.setBold(true);
        caption_->setFont(bold);
        bar_->setTextVisible(false);
        percent_->setTextFormat(Qt::PlainText);
        percent_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        percent_->setMinimumWidth(frame_->fontMetrics().horizontalAdvance(QStringLiteral("100 %")) + 4);
        counts_->setAutoRaise(true);
        // A line of text like the others, which shows that it can be pressed when it has the pointer or the focus.
        counts_->setStyleSheet(
            QStringLiteral("QToolButton { border: none; padding: 0px; margin: 0px; }"
                           "QToolButton:hover, QToolButton:focus { text-decoration: underline; }"));
        counts_->setToolButtonStyle(Qt::ToolButtonTextOnly);
        counts_->setFocusPolicy(Qt::TabFocus);
        counts_->setToolTip(Tip(QStringLiteral("Show the timing of this report")));
        QObject::connect(counts_, &QToolButton::clicked, frame_, [this, &timing] {
            if (timing) timing(number_);
        });
        LayOut();
    }
    ~Part() { delete frame_; }
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    QWidget* Frame() const { return frame_; }
    void Put(const dialogs::OpenReport& report, int position) {
        number_ = report.number;
        caption_->Put(report.caption);
        bar_->setRange(0, report.total > 0 ? 100 : 0);
        bar_->setValue(report.Percent());
        bar_->setAccessibleName(ToQtLine(core::CutUtf8(report.caption, kCaptionBytes)));
        percent_->setText(ToQt(dialogs::PercentText(report.Percent())));
        percent_->setAccessibleName(QStringLiteral("Percent"));
        const QString line = ToQtLine(dialogs::ReportLine(report, position));
        counts_->setText(WithoutMarks(line));
        counts_->setAccessibleName(line);
        step_->Put(report.stepText);
    }
    void PutTimes(const dialogs::OpenReport& report, double now) {
        std::string text = "Time so far: " + TimeWords(now - report.startSeconds);
        const double left = dialogs::SecondsLeft(report, now);
        if (left >= 0 && report.Percent() < 100) text += ". Time remaining: about " + TimeWords(left);
        times_->Put(text + ".");
    }

private:
    void LayOut() const {
        auto* lines = new QVBoxLayout(frame_);
        lines->setContentsMargins({});
        lines->setSpacing(4);
        auto* bar = new QHBoxLayout;
        bar->addWidget(bar_, 1);
        bar->addWidget(percent_);
        lines->addWidget(caption_);
        lines->addLayout(bar);
        lines->addWidget(counts_, 0, Qt::AlignLeft);
        lines->addWidget(step_);
        lines->addWidget(times_);
    }

    int number_ = 0;
    QWidget* frame_;
    OneLine* caption_;
    QProgressBar* bar_;
    QLabel* percent_;
    QToolButton* counts_;
    OneLine* step_;
    OneLine* times_;
};

ProgressWindow::ProgressWindow(std::string product, Parent parent, ShowTiming timing)
    : QDialog(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                           Qt::WindowCloseButtonHint),
      product_(std::move(product)),
      parent_(std::move(parent)),
      timing_(std::move(timing)) {
    auto* layout = new QVBoxLayout(this);
    const int gap = std::max(12, fontMetrics().height());
    layout->setContentsMargins(gap, gap, gap, gap);
    layout->setSpacing(gap);
    lines_ = new QVBoxLayout;
    lines_->setSpacing(gap);
    layout->addLayout(lines_);
    layout->addStretch(1);
    cancel_ = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel_->setIcon(style()->standardIcon(QStyle::SP_DialogCancelButton, nullptr, cancel_));
    cancel_->setIconSize(QSize(fontMetrics().height(), fontMetrics().height()));
    cancel_->setAccessibleName(QStringLiteral("Cancel"));
    cancel_->setAutoDefault(false);
    layout->addWidget(cancel_, 0, Qt::AlignRight);
    connect(cancel_, &QPushButton::clicked, this, [this] { Cancel(); });
    const int width = std::min(fontMetrics().averageCharWidth() * kLetters, ScreenRoom(*this).width());
    setMinimumWidth(width);
}

ProgressWindow::~ProgressWindow() = default;

void ProgressWindow::Show(const dialogs::ProgressReports& reports) {
    if (reports.Open().empty()) return Hide();
    PutParts(reports);
    nextTimes_ = 0;
    PutTimes();
    setWindowTitle(TitleText(reports.Open().front().caption + " - " + product_));
    cancel_->setEnabled(!reports.Stopping());
    cancel_->setText(reports.Stopping() ? QStringLiteral("Stopping...") : QStringLiteral("&Cancel"));
    if (!isVisible()) Appear();
}

void ProgressWindow::PutParts(const dialogs::ProgressReports& reports) {
    const std::size_t count = reports.Open().size();
    const std::size_t before = parts_.size();
    while (parts_.size() > count) parts_.pop_back();
    while (parts_.size() < count) {
        parts_.push_back(std::make_unique<Part>(this, timing_));
        lines_->addWidget(parts_.back()->Frame());
    }
    for (std::size_t i = 0; i < count; ++i) parts_[i]->Put(reports.Open()[i], static_cast<int>(i) + 1);
    if (parts_.size() > before) resize(size().expandedTo(sizeHint()));
}

void ProgressWindow::PutTimes() {
    if (reports_ == nullptr || reports_->Now() < nextTimes_) return;
    nextTimes_ = reports_->Now() + kTimesEvery;
    const std::size_t count = std::min(parts_.size(), reports_->Open().size());
    for (std::size_t i = 0; i < count; ++i) parts_[i]->PutTimes(reports_->Open()[i], reports_->Now());
}

// Over a dialog that stays up the window must be modal too, else its Cancel would be out of reach.
void ProgressWindow::Appear() {
    const bool overDialog = QApplication::activeModalWidget() != nullptr;
    setWindowModality(overDialog ? Qt::ApplicationModal : Qt::NonModal);
    QWidget* parent = parent_ ? parent_() : nullptr;
    if (parent != nullptr && parentWidget() != parent) setParent(parent, windowFlags());
    const QWidget* over = overDialog ? QApplication::activeModalWidget() : parent;
    adjustSize();
    if (over != nullptr && over->isVisible()) move(over->frameGeometry().center() - rect().center());
    cancel_->setFocus();
    show();
    raise();
}

void ProgressWindow::Hide() {
    parts_.clear();
    hide();
}

void ProgressWindow::Pump() {
    if (pumping_) return;
    struct Guard {
        bool& flag;
        ~Guard() { flag = false; }
    };
    pumping_ = true;
    const Guard guard{pumping_};
    PutTimes();
    QCoreApplication::processEvents();
}

void ProgressWindow::Cancel() {
    if (reports_ == nullptr || !cancel_->isEnabled()) return;
    reports_->Cancel();
    if (!reports_->Open().empty()) Show(*reports_);
}

void ProgressWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    Cancel();
}

}  // namespace desktop
