#include "desktop/controllayout.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "core/text.h"
#include "desktop/text.h"

namespace desktop {
namespace {

using dialogs::Control;
using dialogs::ControlType;
using LineOf = std::vector<int>;  // numbers of the controls

bool IsField(const Control& control) {
    return !control.Is(ControlType::Label) && !control.Is(ControlType::Line) && !control.Is(ControlType::Shape);
}

std::vector<LineOf> LinesOf(const dialogs::Controls& controls) {
    std::vector<LineOf> lines;
    for (int number = 1; number <= controls.Count(); ++number) {
        if (lines.empty() || !controls[number].sameLine) lines.emplace_back();
        lines.back().push_back(number);
    }
    return lines;
}

class Builder {
public:
    Builder(const dialogs::Controls& controls, const ControlViews& views, QWidget& area)
        : controls_(controls), views_(views), lines_(LinesOf(controls)), grid_(new QGridLayout(&area)) {
        grid_->setContentsMargins({});
        grid_->setVerticalSpacing(std::max(8, area.fontMetrics().height() / 2));
        grid_->setHorizontalSpacing(12);
        grid_->setColumnStretch(1, 1);
    }

    void Build() {
        const bool form = IsForm();
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            const bool headed =
                i + 1 < lines_.size() && IsHeading(lines_[i]) && lines_[i + 1].size() == lines_[i].size();
            if (headed)
                AddHeaded(lines_[i], lines_[i + 1]);
            else if (form && IsLabelled(lines_[i]))
                AddLabelled(lines_[i]);
            else
                grid_->addLayout(Across(lines_[i], 0), row_, 0, 1, 2);
            const LineOf& last = headed ? lines_[++i] : lines_[i];
            const bool grows = std::ranges::any_of(last, [this](int n) { return View(n).GrowsDown(); });
            grid_->setRowStretch(row_++, grows ? 1 : 0);
            anyGrows_ = anyGrows_ || grows;
            for (const int number : last) LinkLabel(number);
        }
        if (!anyGrows_) grid_->setRowStretch(row_, 1);
    }

private:
    const Control& At(int number) const { return controls_[number]; }
    ControlView& View(int number) const { return *views_[static_cast<std::size_t>(number - 1)]; }

    bool IsLabelled(const LineOf& line) const {
        return line.size() >= 2 && At(line[0]).Is(ControlType::Label) && IsField(At(line[1]));
    }
    bool IsHeading(const LineOf& line) const {
        return line.size() >= 2 && std::ranges::all_of(line, [this](int n) { return At(n).Is(ControlType::Label); });
    }
    bool IsForm() const {
        const auto hasField = [this](const LineOf& line) {
            return std::ranges::any_of(line, [this](int n) { return IsField(At(n)); });
        };
        const auto labelled = std::ranges::count_if(lines_, [this](const LineOf& line) { return IsLabelled(line); });
        return labelled >= 2 && 2 * labelled >= std::ranges::count_if(lines_, hasField);
    }

    QHBoxLayout* Across(const LineOf& line, std::size_t from) const {
        auto* across = new QHBoxLayout;
        across->setSpacing(10);
        bool stretched = false;
        for (std::size_t i = from; i < line.size(); ++i) {
            const ControlView& view = View(line[i]);
            const Qt::Alignment top = view.GrowsDown() || line.size() - from == 1 ? Qt::Alignment() : Qt::AlignVCenter;
            across->addWidget(view.Outer(), view.Stretches() ? 1 : 0, top);
            stretched = stretched || view.Stretches();
        }
        if (!stretched) across->addStretch(1);
        return across;
    }
    void AddLabelled(const LineOf& line) const {
        const bool tall = View(line[1]).GrowsDown();
        grid_->addWidget(View(line[0]).Outer(), row_, 0, tall ? Qt::AlignTop : Qt::AlignVCenter);
        grid_->addLayout(Across(line, 1), row_, 1);
    }
    void AddHeaded(const LineOf& headings, const LineOf& line) const {
        auto* columns = new QGridLayout;
        columns->setHorizontalSpacing(12);
        for (std::size_t i = 0; i < line.size(); ++i) {
            const int column = static_cast<int>(i);
            columns->addWidget(View(headings[i]).Outer(), 0, column, Qt::AlignBottom);
            columns->addWidget(View(line[i]).Outer(), 1, column);
            columns->setColumnStretch(column, View(line[i]).Stretches() ? 1 : 0);
        }
        columns->setRowStretch(1, 1);
        grid_->addLayout(columns, row_, 0, 1, 2);
    }
    void LinkLabel(int number) const {
        if (number < 2 || View(number).Target() == nullptr || !At(number - 1).Is(ControlType::Label)) return;
        if (At(number - 1).value.find("#H160#") != std::string::npos) View(number - 1).LeadsTo(View(number).Target());
    }

    const dialogs::Controls& controls_;
    const ControlViews& views_;
    std::vector<LineOf> lines_;
    QGridLayout* grid_;
    int row_ = 0;
    bool anyGrows_ = false;
};

}  // namespace

void LayOutControls(const dialogs::Controls& controls, const ControlViews& views, QWidget& area) {
    Builder(controls, views, area).Build();
}

void GroupOptions(const dialogs::Controls& controls, const ControlViews& views, QWidget& area) {
    QButtonGroup* group = nullptr;
    for (int number = 1; number <= controls.Count(); ++number) {
        if (!controls[number].Is(ControlType::OptionButton)) {
            group = nullptr;
            continue;
        }
        if (group == nullptr) group = new QButtonGroup(&area);
        group->addButton(qobject_cast<QAbstractButton*>(views[static_cast<std::size_t>(number - 1)]->Target()));
    }
}

std::string NameOf(const dialogs::Controls& controls, int number) {
    const Control& control = controls[number];
    if (!control.caption.empty()) return dialogs::PlainCaption(control.caption);
    if (control.Is(ControlType::CommandButton)) return dialogs::PlainCaption(control.value);
    for (int before = number - 1; before >= 1; --before) {
        if (!controls[before].Is(ControlType::Label)) break;
        std::string name = core::fReplace(controls[before].value, "#H160#", "");
        name = core::fTrim(name);
        if (name.ends_with(':')) name.pop_back();
        if (!name.empty()) return name;
    }
    return std::string(dialogs::TypeName(control.type));
}

}  // namespace desktop
