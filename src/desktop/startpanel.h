#pragma once

#include <QWidget>
#include <vector>

class QAction;
class QLabel;
class QVBoxLayout;

namespace desktop {

// What the main window shows while no window is open in it: which site is current, what it holds, what to do next.
class StartPanel final : public QWidget {
    Q_OBJECT
public:
    // The first action is the one that a newcomer needs.
    explicit StartPanel(const std::vector<QAction*>& actions, QWidget* parent = nullptr);

    // `site`: the heading; `facts`: one line on its data, or what to do when there are none yet.
    void Show(const QString& site, const QString& facts);

private:
    void AddButton(QVBoxLayout& column, QAction& action, bool first);

    QLabel* site_;
    QLabel* facts_;
};

}  // namespace desktop
