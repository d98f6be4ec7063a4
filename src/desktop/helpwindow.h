#pragma once

#include <QMainWindow>
#include <string>
#include <string_view>

class QAction;
class QLineEdit;
class QTextBrowser;

namespace desktop {

// Shows the delivered help pages: local files of one folder, nothing from elsewhere.
class HelpWindow final : public QMainWindow {
    Q_OBJECT
public:
    // `folder`: native path of the help pages.
    explicit HelpWindow(const std::string& folder, QWidget* parent = nullptr);

    // A page's file name and an anchor in it, "" for its top. False when there is no such page.
    bool ShowPage(std::string_view page, std::string_view anchor);

private:
    void BuildToolBar();
    void Find(bool backward);

    QString folder_;
    QTextBrowser* browser_;
    QLineEdit* find_;
};

}  // namespace desktop
