#pragma once

#include <QBoxLayout>
#include <QDialog>
#include <QEventLoop>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "desktop/controllayout.h"
#include "desktop/dialogparts.h"
#include "dialogs/host.h"

namespace desktop {

using ShowHelp = std::function<void(const std::string& helpId)>;

// One dialog, built from its model: message beside an icon, what was wrong, controls in lines, buttons, details.
class DialogForm final : public QDialog {
public:
    DialogForm(dialogs::DialogModel& model, QWidget* parent, ShowHelp help);
    ~DialogForm() override;

    int RunLoop();
    void Refresh();  // shows the model as it stands now

    void Press(int number);
    void reject() override { PressEscape(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Rebuild();
    void BuildMessage(QBoxLayout& layout);
    void BuildControls(QBoxLayout& layout);
    void BuildBottom(QBoxLayout& layout);
    void BuildOwnLook();
    QWidget* MakeExtras();
    void WatchKeys();
    void PutMessage();

    int MessageWidth() const;
    void TakeAll();
    void Follow();
    void WatchChanges();
    void ShowLive();
    void PutEnabled();
    bool PressEscape();
    void PressDefault();
    bool HandlesKey(QWidget* on, const QKeyEvent& key);
    bool ClosesByKey(const QWidget* on, int key);
    void CopyMessage();
    void Zoom(int points);

    void ShowPlaced();
    void PlaceOnScreen();
    void KeepPlace();
    void FocusFirst();

    dialogs::DialogModel& model_;
    ShowHelp help_;
    QWidget* root_ = nullptr;
    ReadingText* message_ = nullptr;
    ProblemBanner* banner_ = nullptr;
    FitScroll* scroll_ = nullptr;
    ControlViews views_{};
    std::vector<QPushButton*> buttons_{};  // by number, from 0
    QCheckBox* suppress_ = nullptr;
    DetailsPanel* details_ = nullptr;
    QLabel* notice_ = nullptr;
    QTimer noticeTimer_{};
    QTimer liveTimer_{};
    QEventLoop* loop_ = nullptr;
    QFont desktopFont_{};
    int pressed_ = 0;
    bool placed_ = false, putting_ = false;
};

}  // namespace desktop
