#include "desktop/textviews.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "core/cds.h"
#include "core/text.h"
#include "core/utf8.h"
#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

using dialogs::Control;
using dialogs::Pick;

constexpr int kOneLineTwips = 400;  // a box up to this height is one line
constexpr int kLeastTwips = 1500;   // of a label; what is narrower could hold no word
constexpr qsizetype kReadingLetters = 200000;

QStringList PickedPaths(Pick pick, QWidget* parent, const QString& from) {
    const QString title = QStringLiteral("Browse");
    if (pick == Pick::OpenFiles) return QFileDialog::getOpenFileNames(parent, title, from);
    const QString path = pick == Pick::Folder     ? QFileDialog::getExistingDirectory(parent, title, from)
                         : pick == Pick::SaveFile ? QFileDialog::getSaveFileName(parent, title, from)
                                                  : QFileDialog::getOpenFileName(parent, title, from);
    return path.isEmpty() ? QStringList() : QStringList(path);
}

// Several paths in a box of one line are a "|" list.
QString OneLineOf(const QStringList& picked) {
    if (picked.size() == 1) return picked.front();
    std::vector<std::string> paths;
    for (const QString& path : picked) paths.push_back(FromQt(path));
    return QString::fromStdString(core::CDSOf(paths));
}

// The text as it came in belongs to the text as it is shown until somebody changes that.
struct Untouched {
    QString shown{};
    std::string source{};
    std::string Read(const QString& now, std::string_view lineEnd) const {
        if (now == shown) return source;
        return core::fReplace(FromQt(now), "\n", lineEnd);
    }
};

class LineView final : public ControlView {
public:
    LineView(const Control& control, QWidget* parent) {
        const bool narrow = control.spec.Width() > 0 && control.spec.Width() < kNarrowTwips;
        stretches_ = !narrow || control.pick != Pick::None;
        edit_ = new QLineEdit(parent);
        target_ = outer_ = edit_;
        edit_->setFont(SpecFont(parent->font(), control.spec));
        SetColors(*edit_, ColorOf(control.spec.At(9)), std::nullopt);
        const int room = ScreenRoom(*parent).width() * 7 / 10;
        if (control.spec.Width() > 0) edit_->setMinimumWidth(std::min(Pixels(*parent, control.spec.Width()), room));
        if (!stretches_) edit_->setMaximumWidth(edit_->minimumWidth());
        if (control.pick != Pick::None) AddPicker(control.pick, parent);
    }
    void Put(const Control& control) override {
        edit_->setReadOnly(control.readOnly);
        edit_->setPlaceholderText(ToQtLine(control.hint));
        edit_->setToolTip(Tip(ToQt(control.hint)));
        Show(control.value);
    }
    void Take(Control& control) const override { control.value = kept_.Read(edit_->text(), "\r"); }
    void SetName(const QString& name) override {
        edit_->setAccessibleName(name);
        if (browse_ != nullptr) browse_->setAccessibleName(QStringLiteral("Browse for ") + name);
    }

private:
    void AddPicker(Pick pick, QWidget* parent) {
        outer_ = new QWidget(parent);
        auto* line = new QHBoxLayout(outer_);
        line->setContentsMargins({});
        browse_ = new QPushButton(QStringLiteral("Browse..."), outer_);
        line->addWidget(edit_, 1);
        line->addWidget(browse_);
        QObject::connect(browse_, &QPushButton::clicked, edit_, [this, pick] {
            const QStringList paths = PickedPaths(pick, edit_->window(), edit_->text());
            if (!paths.isEmpty()) Show(FromQt(OneLineOf(paths)));
        });
    }
    void Show(const std::string& text) {
        kept_ = {ToQtLine(text), text};
        if (edit_->text() != kept_.shown) edit_->setText(kept_.shown);
        kept_.shown = edit_->text();
    }
    QLineEdit* edit_;
    QPushButton* browse_ = nullptr;
    Untouched kept_{};
};

// Asks for the room that its spec names, and takes more.
class SizedText final : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;
    QSize sizeHint() const override { return minimumSize(); }
};

class BoxView final : public ControlView {
public:
    BoxView(const Control& control, QWidget* parent) {
        stretches_ = growsDown_ = true;
        edit_ = new SizedText(parent);
        target_ = outer_ = edit_;
        edit_->setTabChangesFocus(true);
        edit_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        edit_->setFont(SpecFont(parent->font(), control.spec));
        SetColors(*edit_, ColorOf(control.spec.At(9)), std::nullopt);
        const QSize room = ScreenRoom(*parent);
        edit_->setMinimumSize(std::min(Pixels(*parent, control.spec.Width()), room.width() * 7 / 10),
                              std::min(Pixels(*parent, control.spec.Height()), room.height() * 4 / 10));
        if (control.pick != Pick::None) AddPicker(control.pick, parent);
    }
    void Put(const Control& control) override {
        edit_->setReadOnly(control.readOnly);
        edit_->setPlaceholderText(ToQt(control.hint));
        kept_ = {ToQt(control.value), control.value};
        lineEnd_ = control.value.find("\r\n") != std::string::npos ? "\r\n"
                   : control.value.find('\n') != std::string::npos ? "\n"
                                                                   : "\r";
        if (edit_->toPlainText() != kept_.shown) edit_->setPlainText(kept_.shown);
        kept_.shown = edit_->toPlainText();
    }
    void Take(Control& control) const override { control.value = kept_.Read(edit_->toPlainText(), lineEnd_); }
    void SetName(const QString& name) override {
        edit_->setAccessibleName(name);
        if (browse_ != nullptr) browse_->setAccessibleName(QStringLiteral("Browse for ") + name);
    }

private:
    // What is picked comes behind what stands there, one path in each line.
    void AddPicker(Pick pick, QWidget* parent) {
        outer_ = new QWidget(parent);
        auto* lines = new QVBoxLayout(outer_);
        lines->setContentsMargins({});
        browse_ = new QPushButton(QStringLiteral("&Browse..."), outer_);
        browse_->setAutoDefault(false);
        lines->addWidget(edit_, 1);
        lines->addWidget(browse_, 0, Qt::AlignRight);
        QObject::connect(browse_, &QPushButton::clicked, edit_, [this, pick] {
            QStringList paths = PickedPaths(pick, edit_->window(), edit_->toPlainText().section(QLatin1Char('\n'), -1));
            if (paths.isEmpty()) return;
            const QString before = edit_->toPlainText().trimmed();
            if (!before.isEmpty()) paths.prepend(before);
            edit_->setPlainText(paths.join(QLatin1Char('\n')));
        });
    }
    QPlainTextEdit* edit_;
    QPushButton* browse_ = nullptr;
    Untouched kept_{};
    std::string lineEnd_ = "\r";
};

class LabelView final : public ControlView {
public:
    LabelView(const Control& control, QWidget* parent) {
        const int room = ScreenRoom(*parent).width() * 7 / 10;
        const int most = parent->fontMetrics().averageCharWidth() * 100;
        const int width = control.spec.Width() >= kLeastTwips ? Pixels(*parent, control.spec.Width()) : most;
        text_ = new ReadingText(parent, std::clamp(width, 60, std::max(60, room)), ScreenRoom(*parent).height() / 3);
        outer_ = text_;
        font_ = SpecFont(parent->font(), control.spec);
        font_.setUnderline(control.spec.True(16));
        if (!control.spec.At(9).empty()) text_->Label().setFrameShape(QFrame::StyledPanel);
        const std::optional<int> back = ColorOf(control.spec.At(17));
        SetColors(text_->Label(), back ? back : ColorOf(control.spec.At(9)), ColorOf(control.spec.At(15)));
    }
    // "&" is shown as it is. The mark of a hot key counts where a field follows that can take it.
    void Put(const Control& control) override {
        const QString caption = ToQt(dialogs::LabelCaption(control.value));
        text_->SetText(text_->Label().buddy() != nullptr ? caption : PlainMarks(caption), font_);
        text_->setToolTip(Tip(ToQt(control.hint)));
    }
    void Take(Control&) const override {}
    void SetName(const QString&) override {}
    void LeadsTo(QWidget* field) override { text_->Label().setBuddy(field); }

private:
    ReadingText* text_;
    QFont font_;
};

}  // namespace

ReadingText::ReadingText(QWidget* parent, int width, int maxHeight)
    : QWidget(parent), width_(width), maxHeight_(maxHeight), label_(new QLabel(this)), box_(new QPlainTextEdit(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(label_);
    layout->addWidget(box_);
    label_->setTextFormat(Qt::PlainText);
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    box_->setReadOnly(true);
    box_->setAccessibleName(QStringLiteral("Message"));
    box_->setTabChangesFocus(true);
    box_->setFrameShape(QFrame::NoFrame);
    box_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QPalette ground = box_->palette();
    ground.setColor(QPalette::Base, palette().color(QPalette::Window));
    ground.setColor(QPalette::Text, palette().color(QPalette::WindowText));
    box_->setPalette(ground);
}

bool ReadingText::FitsLabel(const QString& text, const QFont& font) const {
    const QFontMetrics metrics(font);
    if (text.size() > kReadingLetters / 10) return false;
    static const QRegularExpression kBlank(QStringLiteral("\\s"));
    for (const QString& word : text.split(kBlank))
        if (metrics.horizontalAdvance(word) > width_) return false;
    return metrics.boundingRect(QRect(0, 0, width_, 1 << 24), Qt::TextWordWrap, text).height() <= maxHeight_;
}

void ReadingText::SetText(const QString& text, const QFont& font) {
    const bool asLabel = FitsLabel(text, font);
    label_->setVisible(asLabel);
    box_->setVisible(!asLabel);
    label_->setFont(font);
    box_->setFont(font);
    label_->setText(asLabel ? text : QString());
    const QString whole = label_->buddy() != nullptr ? PlainMarks(text) : text;
    box_->setPlainText(asLabel ? QString() : whole.left(kReadingLetters));
    const QFontMetrics metrics(font);
    if (asLabel) {
        label_->setWordWrap(false);
        const bool wraps = label_->sizeHint().width() > width_;
        label_->setWordWrap(wraps);
        label_->setMinimumWidth(wraps ? width_ : label_->sizeHint().width());
        label_->setMinimumHeight(wraps ? label_->heightForWidth(width_) : label_->sizeHint().height());
    } else {
        const auto lines = static_cast<int>(
            std::min<qsizetype>(text.size() * metrics.averageCharWidth() / width_ + text.count(u'\n') + 2, 10000));
        box_->setMinimumWidth(width_);
        box_->setMinimumHeight(std::min(lines * metrics.lineSpacing(), maxHeight_));
    }
}

std::unique_ptr<ControlView> MakeTextBoxView(const Control& control, QWidget* parent) {
    if (control.spec.Height() <= kOneLineTwips) return std::make_unique<LineView>(control, parent);
    return std::make_unique<BoxView>(control, parent);
}

std::unique_ptr<ControlView> MakeLabelView(const Control& control, QWidget* parent) {
    return std::make_unique<LabelView>(control, parent);
}

}  // namespace desktop
