#include "desktop/startpanel.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/text.h"

namespace desktop {
namespace {

constexpr int kColumnLetters = 56;

QLabel* PlainLabel(int pointsMore, bool bold) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() + pointsMore);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

// The caption of a menu entry without its mark: the marks belong to the menu bar here.
QString ButtonText(const QAction& action) { return WithoutMarks(PlainMarks(action.text())); }

}  // namespace

StartPanel::StartPanel(const std::vector<QAction*>& actions, QWidget* parent)
    : QWidget(parent), site_(PlainLabel(10, true)), facts_(PlainLabel(1, false)) {
    setAccessibleName(tr("Start"));
    site_->setAccessibleName(tr("Current site"));
    facts_->setAccessibleName(tr("Data of the site"));
    auto* inner = new QWidget;
    inner->setFixedWidth(fontMetrics().averageCharWidth() * kColumnLetters);
    auto* column = new QVBoxLayout(inner);
    column->setSpacing(fontMetrics().height() / 2);
    column->addWidget(site_);
    column->addWidget(facts_);
    column->addSpacing(fontMetrics().height());
    for (QAction* action : actions) AddButton(*column, *action, action == actions.front());
    column->addSpacing(fontMetrics().height());
    auto* drop = PlainLabel(0, false);
    drop->setText(tr("Log files can also be dropped on this window."));
    drop->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(drop);

    auto* rows = new QVBoxLayout(this);
    rows->addStretch(2);
    auto* middle = new QHBoxLayout;  // no alignment: that would keep wrapped labels from getting their height
    middle->addStretch(1);
    middle->addWidget(inner);
    middle->addStretch(1);
    rows->addLayout(middle);
    rows->addStretch(3);
}

void StartPanel::AddButton(QVBoxLayout& column, QAction& action, bool first) {
    auto* button = new QPushButton(action.icon(), ButtonText(action));
    button->setMinimumHeight(fontMetrics().height() * 9 / 4);
    button->setAutoDefault(true);
    button->setDefault(first);
    button->setEnabled(action.isEnabled());
    button->setToolTip(action.toolTip());
    connect(button, &QPushButton::clicked, &action, &QAction::trigger);
    connect(&action, &QAction::changed, button, [button, &action] { button->setEnabled(action.isEnabled()); });
    column.addWidget(button);
    if (first) setFocusProxy(button);
}

void StartPanel::Show(const QString& site, const QString& facts) {
    site_->setText(site);
    facts_->setText(facts);
}

}  // namespace desktop
