#include "desktop/controlviews.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/listview.h"
#include "desktop/look.h"
#include "desktop/text.h"
#include "desktop/textviews.h"

namespace desktop {

using dialogs::Control;
using dialogs::ControlType;

void ControlView::SetName(const QString& name) {
    if (target_ != nullptr) target_->setAccessibleName(name);
}

namespace {

constexpr int kGridLinesPosition = 15;

class ToggleView final : public ControlView {
public:
    ToggleView(const Control& control, QWidget* parent, std::function<void()> toggled) {
        if (control.Is(ControlType::CheckBox))
            button_ = new QCheckBox(parent);
        else
            button_ = new QRadioButton(parent);
        outer_ = target_ = button_;
        button_->setFont(SpecFont(parent->font(), control.spec));
        QObject::connect(button_, &QAbstractButton::toggled, button_, [done = std::move(toggled)] { done(); });
    }
    void Put(const Control& control) override {
        button_->setText(ToQtLine(control.caption));
        button_->setToolTip(Tip(ToQt(control.hint)));
        QButtonGroup* group = button_->group();  // which does not let go of its last button by itself
        if (group != nullptr) group->setExclusive(false);
        button_->setChecked(control.Ticked());
        if (group != nullptr) group->setExclusive(true);
    }
    void Take(Control& control) const override { control.value = button_->isChecked() ? "True" : "False"; }

private:
    QAbstractButton* button_;
};

class ButtonView final : public ControlView {
public:
    ButtonView(const Control& control, QWidget* parent, std::function<void()> pressed) {
        button_ = new QPushButton(parent);
        outer_ = target_ = button_;
        button_->setFont(SpecFont(parent->font(), control.spec));
        QObject::connect(button_, &QAbstractButton::clicked, button_, [press = std::move(pressed)] { press(); });
    }
    void Put(const Control& control) override {
        button_->setText(ToQtLine(control.value));
        button_->setToolTip(Tip(ToQt(control.hint)));
    }
    void Take(Control&) const override {}

private:
    QPushButton* button_;
};

class ComboView final : public ControlView {
public:
    ComboView(const Control& control, RowsModel::Source source, QWidget* parent) {
        combo_ = new QComboBox(parent);
        outer_ = target_ = combo_;
        combo_->setFont(SpecFont(parent->font(), control.spec));
        combo_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo_->setMinimumContentsLength(10);
        combo_->setInsertPolicy(QComboBox::NoInsert);
        rows_ = new RowsModel(std::move(source), 0, combo_);
        combo_->setModel(rows_);
        combo_->setEditable(!control.readOnly);
        stretches_ = control.spec.Width() == 0 || control.spec.Width() >= kNarrowTwips;
        if (control.spec.Width() > 0)
            combo_->setMinimumWidth(std::min(Pixels(*parent, control.spec.Width()), ScreenRoom(*parent).width() / 2));
        if (!stretches_) combo_->setMaximumWidth(std::max(combo_->minimumWidth(), combo_->minimumSizeHint().width()));
    }
    void Put(const Control& control) override {
        rows_->Reload();
        const std::string text = control.ComboText();
        int index = -1;
        for (int row = 0; row < rows_->SourceRows() && index < 0; ++row)
            if (rows_->Cell(row, 0) == text) index = row;
        combo_->setCurrentIndex(index);
        if (combo_->isEditable() && index < 0) combo_->setEditText(ToQtLine(text));
        combo_->setToolTip(Tip(ToQt(control.hint)));
        shown_ = combo_->currentText();
        source_ = text;
    }
    void Take(Control& control) const override {
        const int index = Index();
        std::string text = shown_ == combo_->currentText() ? source_ : FromQt(combo_->currentText());
        if (index >= 0) text = rows_->Cell(index, 0);
        control.value = std::to_string(index) + "|" + text;
    }

private:
    // Typing leaves the old index where it was.
    int Index() const {
        const int index = combo_->currentIndex();
        if (!combo_->isEditable() || index < 0 || combo_->itemText(index) == combo_->currentText()) return index;
        return combo_->findText(combo_->currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
    }
    QComboBox* combo_;
    RowsModel* rows_;
    QString shown_{};
    std::string source_{};
};

ListView::Look LookOf(const Control& control, const QWidget& parent) {
    ListView::Look look;
    look.grid = control.Is(ControlType::Grid);
    look.multi = control.MultiSelect();
    look.fixedRows = control.FixedRows();
    if (!look.grid) return look;
    for (const int width : control.spec.Numbers(12)) look.widths.push_back(width > 0 ? Pixels(parent, width) : width);
    if (control.spec.Number(21) > 0 && !look.widths.empty())
        look.widths.front() = Pixels(parent, control.spec.Number(21));
    look.alignments = control.spec.Numbers(13);
    look.gridLines = control.spec.At(kGridLinesPosition) != "False";
    const std::vector<int> heights = control.spec.Numbers(20);
    if (heights.empty()) return look;
    const int last = heights.size() > 2 ? heights[2] : heights[0];
    const int first = heights.size() > 1 ? heights[1] : 0;
    if (first < look.fixedRows) look.headerHeight = Pixels(parent, heights[0]);
    if (last >= look.fixedRows && heights.size() > 2) look.rowHeight = Pixels(parent, heights[0]);
    return look;
}

class RowsView final : public ControlView {
public:
    RowsView(const Control& control, RowsModel::Source source, QWidget* parent, std::function<void()> activated) {
        list_ = new ListView(LookOf(control, *parent), std::move(source), parent);
        outer_ = list_;
        target_ = &list_->View();
        stretches_ = growsDown_ = true;
        list_->onActivated = std::move(activated);
        list_->View().setFont(SpecFont(parent->font(), control.spec));
        const QSize room = ScreenRoom(*parent);
        const int line = parent->fontMetrics().height() + 6;
        const int rows = std::clamp(static_cast<int>(control.rows.size()), 4, 12) + 1;
        const int width = control.spec.Width() > 0 ? Pixels(*parent, control.spec.Width()) : line * 14;
        const int height = control.spec.Height() > 0 ? Pixels(*parent, control.spec.Height()) : rows * line;
        list_->View().setMinimumSize(std::min(width, room.width() * 8 / 10) / 2, std::min(height, room.height() / 4));
        list_->SetWish({std::min(width, room.width() * 8 / 10), std::min(height, room.height() / 2)});
    }
    void Put(const Control& control) override {
        list_->SetEmptyText(control.emptyText);
        list_->Reload(control.Selected());
        list_->View().setToolTip(Tip(ToQt(control.hint)));
    }
    void Take(Control& control) const override { control.Select(list_->Selected()); }
    void SetName(const QString& name) override { list_->SetName(name); }

private:
    ListView* list_;
};

class ShapeView final : public ControlView {
public:
    ShapeView(const Control& control, QWidget* parent) {
        auto* frame = new QFrame(parent);
        outer_ = frame;
        const bool line = control.Is(ControlType::Line);
        frame->setFrameShape(line ? QFrame::HLine : QFrame::StyledPanel);
        frame->setFrameShadow(QFrame::Plain);
        frame->setForegroundRole(QPalette::Mid);
        stretches_ = line;
        if (!line) frame->setMinimumSize(Pixels(*parent, control.spec.Width()), Pixels(*parent, control.spec.Height()));
    }
    void Put(const Control&) override {}
    void Take(Control&) const override {}
};

}  // namespace

std::unique_ptr<ControlView> MakeControlView(dialogs::DialogModel& model, int number, QWidget* parent,
                                             ControlActions actions) {
    const Control& control = model.controls[number];
    const RowsModel::Source rows = [&model, number]() -> const dialogs::Rows& { return model.controls[number].rows; };
    switch (control.type) {
        case ControlType::CheckBox:
        case ControlType::OptionButton:
            return std::make_unique<ToggleView>(control, parent, actions.toggled);
        case ControlType::ComboBox:
            return std::make_unique<ComboView>(control, rows, parent);
        case ControlType::ListBox:
        case ControlType::Grid:
            return std::make_unique<RowsView>(control, rows, parent, actions.activated);
        case ControlType::CommandButton:
            return std::make_unique<ButtonView>(control, parent, actions.pressed);
        case ControlType::Line:
        case ControlType::Shape:
            return std::make_unique<ShapeView>(control, parent);
        case ControlType::TextBox:
            return MakeTextBoxView(control, parent);
        case ControlType::Label:
            return MakeLabelView(control, parent);
    }
    return nullptr;
}

}  // namespace desktop
