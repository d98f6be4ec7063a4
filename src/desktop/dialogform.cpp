#include "desktop/dialogform.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "core/cds.h"
#include "core/numbers.h"
#include "core/text.h"
#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

using dialogs::ControlType;

constexpr int kMessageLetters = 84;  // a line that reads well
constexpr int kLiveDelay = 120;      // ms without another key, before what is typed shows its effect
constexpr double kLeastPoints = 6, kMostPoints = 40;

QFont FontOf(const std::string& text, const QFont& otherwise) {
    if (text.empty()) return otherwise;
    QFont font = otherwise;
    const QString family = ToQtLine(core::CDSItem(1, text));
    const double size = core::CDSItemNum(2, text);
    if (!family.isEmpty()) font.setFamily(family);
    if (size >= kLeastPoints && size <= kMostPoints) font.setPointSizeF(size);
    font.setBold(core::CDSItem(3, text) == "True");
    font.setItalic(core::CDSItem(4, text) == "True");
    return font;
}

}  // namespace

DialogForm::DialogForm(dialogs::DialogModel& model, QWidget* parent, ShowHelp help)
    : QDialog(parent), model_(model), help_(std::move(help)), desktopFont_(QGuiApplication::font()) {
    setWindowModality(Qt::ApplicationModal);
    setSizeGripEnabled(true);
    noticeTimer_.setSingleShot(true);
    connect(&noticeTimer_, &QTimer::timeout, this, [this] { notice_->clear(); });
    liveTimer_.setSingleShot(true);
    liveTimer_.setInterval(kLiveDelay);
    connect(&liveTimer_, &QTimer::timeout, this, [this] { ShowLive(); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    Rebuild();
}

DialogForm::~DialogForm() = default;

// Widgets are made in the order in which the eye goes: it is the order of the Tab key too.
void DialogForm::Rebuild() {
    views_.clear();
    buttons_.assign(static_cast<std::size_t>(model_.ButtonCount()), nullptr);
    scroll_ = nullptr;
    delete root_;
    setFont(FontOf(model_.font, desktopFont_));
    root_ = new QWidget(this);
    root_->setFont(font());
    layout()->addWidget(root_);
    auto* layout = new QVBoxLayout(root_);
    const int gap = std::max(10, fontMetrics().height() * 2 / 3);
    layout->setContentsMargins(gap + 4, gap + 4, gap + 4, gap + 2);
    layout->setSpacing(gap);
    BuildMessage(*layout);
    BuildControls(*layout);
    BuildBottom(*layout);
    BuildOwnLook();
    Refresh();
    WatchKeys();
    WatchChanges();
}

void DialogForm::BuildMessage(QBoxLayout& layout) {
    banner_ = new ProblemBanner(root_, MessageWidth());
    auto* line = new QHBoxLayout;
    line->setSpacing(layout.spacing());
    if (model_.options.icon != dialogs::Icon::None) {
        auto* icon = new QLabel(root_);
        icon->setTextFormat(Qt::PlainText);
        const int size = IconPixels(*this);
        icon->setPixmap(IconOf(model_.options.icon, *this).pixmap(size, size));
        line->addWidget(icon, 0, Qt::AlignTop);
    }
    const int part = model_.controls.Count() > 0 ? 4 : 2;  // of the screen's height, before it scrolls
    message_ = new ReadingText(root_, MessageWidth(), ScreenRoom(*this).height() / part);
    line->addWidget(message_, 1, Qt::AlignVCenter);
    layout.addLayout(line);
    layout.addWidget(banner_);
}

void DialogForm::BuildControls(QBoxLayout& layout) {
    if (model_.controls.Count() == 0) {
        layout.addStretch();
        return;
    }
    scroll_ = new FitScroll(root_);
    auto* area = new QWidget(scroll_);
    int ownButtons = 0;
    for (int number = 1; number <= model_.controls.Count(); ++number) {
        const bool isButton = model_.controls[number].Is(ControlType::CommandButton);
        const int button = isButton ? ++ownButtons : 0;
        ControlActions actions{.toggled = [this] { Follow(); },
                               .activated = [this] { PressDefault(); },
                               .pressed = [this, button] { Press(button); }};
        views_.push_back(MakeControlView(model_, number, area, std::move(actions)));
        views_.back()->SetName(ToQtLine(NameOf(model_.controls, number)));
        if (isButton)
            buttons_[static_cast<std::size_t>(button - 1)] = qobject_cast<QPushButton*>(views_.back()->Target());
    }
    GroupOptions(model_.controls, views_, *area);
    LayOutControls(model_.controls, views_, *area);
    putting_ = true;
    for (int number = 1; number <= model_.controls.Count(); ++number)
        views_[static_cast<std::size_t>(number - 1)]->Put(model_.controls[number]);
    scroll_->setWidget(area);
    layout.addWidget(scroll_, 1);
}

QWidget* DialogForm::MakeExtras() {
    auto* extras = new QWidget(root_);
    auto* line = new QHBoxLayout(extras);
    line->setContentsMargins({});
    details_ = new DetailsPanel(root_);
    line->addWidget(details_->MakeButton(extras));
    if (!model_.helpId.empty() && help_) {
        auto* help = new QPushButton(style()->standardIcon(QStyle::SP_DialogHelpButton, nullptr, this),
                                     QStringLiteral("Help"), extras);
        help->setAutoDefault(false);
        help->setAccessibleName(QStringLiteral("Help (F1)"));
        connect(help, &QPushButton::clicked, this, [this] { help_(model_.helpId); });
        line->addWidget(help);
    }
    notice_ = new QLabel(extras);
    notice_->setTextFormat(Qt::PlainText);
    line->addWidget(notice_);
    return extras;
}

void DialogForm::BuildBottom(QBoxLayout& layout) {
    suppress_ = nullptr;
    if (!model_.suppressCaption.empty()) {
        suppress_ = new QCheckBox(ToQtLine(model_.suppressCaption), root_);
        suppress_->setAccessibleName(PlainMarks(suppress_->text()));
        layout.addWidget(suppress_);
    }
    QWidget* extras = MakeExtras();
    std::vector<QPushButton*> shown;
    const int own = model_.OwnButtons();
    for (std::size_t i = static_cast<std::size_t>(own); i < buttons_.size(); ++i) {
        buttons_[i] = new QPushButton(root_);
        PutButton(*buttons_[i], model_.buttons[i - static_cast<std::size_t>(own)]);
        const int number = static_cast<int>(i) + 1;
        connect(buttons_[i], &QPushButton::clicked, this, [this, number] { Press(number); });
        shown.push_back(buttons_[i]);
    }
    const int room = ScreenRoom(*this).width() * 8 / 10;
    const int content = scroll_ != nullptr ? scroll_->sizeHint().width() : 0;
    const int perLine = model_.options.maxButtonsPerLine;
    const int width = perLine > 0 ? room : std::min(std::max(content, MessageWidth()), room);
    auto* line = new QHBoxLayout;
    line->addWidget(extras, 0, Qt::AlignBottom);
    line->addStretch(1);
    line->addLayout(LayOutButtons(shown, perLine, width));
    layout.addLayout(line);
    layout.addWidget(details_, 1);
}

void DialogForm::BuildOwnLook() {
    SetColors(*root_, model_.options.backColor, model_.options.foreColor);
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        if (buttons_[i] == nullptr) continue;
        buttons_[i]->setAutoDefault(model_.defaultButton > 0);
        buttons_[i]->setDefault(static_cast<int>(i) + 1 == model_.defaultButton);
    }
}

void DialogForm::WatchKeys() {
    for (QWidget* child : findChildren<QWidget*>()) child->installEventFilter(this);
}

int DialogForm::MessageWidth() const {
    const int wanted = std::max(model_.options.fixedWidth, model_.options.minWidth);
    const int letters = fontMetrics().averageCharWidth() * kMessageLetters;
    return std::min(std::max(letters, Pixels(*this, wanted) * 9 / 10), ScreenRoom(*this).width() * 8 / 10);
}

void DialogForm::PutMessage() {
    QFont font = this->font();
    const dialogs::DialogOptions& options = model_.options;
    font.setBold(font.bold() || options.textBold);
    if (options.textSize > 0 || !options.textFont.empty()) {
        dialogs::ControlSpec spec;
        if (options.textSize > 0) spec.Set(5, std::to_string(options.textSize));
        spec.Set(6, options.textFont);
        font = SpecFont(font, spec);
    }
    int width = MessageWidth();
    if (scroll_ != nullptr) width = std::clamp(scroll_->sizeHint().width(), width, ScreenRoom(*this).width() * 8 / 10);
    message_->SetWidth(width);
    message_->SetText(ToQt(model_.message), font);
    message_->setVisible(!model_.message.empty());
    banner_->Put(model_.problem);
}

void DialogForm::Refresh() {
    putting_ = true;
    setWindowTitle(TitleText(model_.title));
    setAccessibleDescription(ToQt(core::fLeft(model_.message, 2000).text));
    PutMessage();
    for (int number = 1; number <= model_.controls.Count(); ++number)
        views_[static_cast<std::size_t>(number - 1)]->Put(model_.controls[number]);
    const std::size_t own = static_cast<std::size_t>(model_.OwnButtons());
    for (std::size_t i = own; i < buttons_.size() && i - own < model_.buttons.size(); ++i)
        PutButton(*buttons_[i], model_.buttons[i - own]);
    if (suppress_ != nullptr) suppress_->setChecked(model_.suppressTicked);
    details_->Put(model_.details);
    PutEnabled();
    putting_ = false;
}

void DialogForm::PutEnabled() {
    for (int number = 1; number <= model_.controls.Count(); ++number) {
        QWidget* outer = views_[static_cast<std::size_t>(number - 1)]->Outer();
        if (outer != nullptr) outer->setEnabled(model_.controls[number].enabled);
    }
}

void DialogForm::TakeAll() {
    for (int number = 1; number <= model_.controls.Count(); ++number)
        views_[static_cast<std::size_t>(number - 1)]->Take(model_.controls[number]);
    if (suppress_ != nullptr) model_.suppressTicked = suppress_->isChecked();
}

void DialogForm::Follow() {
    if (putting_) return;
    if (model_.live) liveTimer_.start();
    for (int number = 1; number <= model_.controls.Count(); ++number) {
        dialogs::Control& control = model_.controls[number];
        if (control.Is(ControlType::CheckBox) || control.Is(ControlType::OptionButton))
            views_[static_cast<std::size_t>(number - 1)]->Take(control);
    }
    dialogs::ApplyFollowers(model_.followers, model_.controls);
    PutEnabled();
}

void DialogForm::WatchChanges() {
    if (!model_.live || scroll_ == nullptr) return;
    const auto changed = [this] {
        if (!putting_) liveTimer_.start();
    };
    for (auto* edit : scroll_->findChildren<QLineEdit*>()) connect(edit, &QLineEdit::textChanged, this, changed);
    for (auto* edit : scroll_->findChildren<QPlainTextEdit*>())
        if (!edit->isReadOnly()) connect(edit, &QPlainTextEdit::textChanged, this, changed);
    for (auto* box : scroll_->findChildren<QComboBox*>()) connect(box, &QComboBox::currentIndexChanged, this, changed);
    for (auto* list : scroll_->findChildren<QAbstractItemView*>())
        if (list->selectionModel() != nullptr)
            connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, changed);
}

// Only what changed is put: a list that stays keeps its place.
void DialogForm::ShowLive() {
    if (!model_.live || loop_ == nullptr) return;
    TakeAll();
    const dialogs::Controls before = model_.controls;
    model_.live(model_.controls);
    putting_ = true;
    for (int number = 1; number <= model_.controls.Count(); ++number) {
        const dialogs::Control &now = model_.controls[number], &then = before[number];
        if (now.value != then.value || now.rows != then.rows)
            views_[static_cast<std::size_t>(number - 1)]->Put(model_.controls[number]);
    }
    PutEnabled();
    putting_ = false;
}

int DialogForm::RunLoop() {
    QEventLoop loop;
    loop_ = &loop;
    pressed_ = 0;
    ShowLive();
    if (!isVisible()) ShowPlaced();
    loop.exec();
    loop_ = nullptr;
    liveTimer_.stop();
    TakeAll();
    KeepPlace();
    // Ended from outside: the program leaves. What a person did not press must not count as a yes.
    if (pressed_ == 0) pressed_ = model_.escButton > 0 ? model_.escButton : model_.ButtonCount();
    if (!model_.options.Stays(pressed_)) hide();
    return pressed_;
}

void DialogForm::Press(int number) {
    if (loop_ == nullptr || number < 0 || number > static_cast<int>(buttons_.size())) return;
    if (number > 0 && !buttons_[static_cast<std::size_t>(number - 1)]->isEnabled()) return;
    pressed_ = number;
    loop_->quit();
}

bool DialogForm::PressEscape() {
    if (model_.escButton <= 0 && model_.ButtonCount() > 0) return false;
    Press(model_.escButton);
    return true;
}

void DialogForm::PressDefault() {
    if (model_.defaultButton > 0) Press(model_.defaultButton);
}

}  // namespace desktop
