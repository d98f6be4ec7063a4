#pragma once

#include <QDialog>
#include <QPushButton>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/progress.h"

class QVBoxLayout;

namespace desktop {

// "less than a second", "42 seconds", "3 minutes 20 seconds", "1 hour 5 minutes"
std::string TimeWords(double seconds);

// A part of the progress window for each open report, and one Cancel. Lives as long as the program; the window goes
// with its last report.
class ProgressWindow final : public QDialog, public dialogs::ProgressView {
public:
    using ShowTiming = std::function<void(int reportNumber)>;
    using Parent = std::function<QWidget*()>;
    // `parent`: the window that this one stays in front of; asked at each opening.
    explicit ProgressWindow(std::string product, Parent parent = {}, ShowTiming timing = {});
    ~ProgressWindow() override;

    // Whom Cancel is told; must outlive the window.
    void Attach(dialogs::ProgressReports& reports) { reports_ = &reports; }

    void Show(const dialogs::ProgressReports& reports) override;
    void Hide() override;
    void Pump() override;

    void reject() override { Cancel(); }  // Escape

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    class Part;
    void Cancel();
    void PutParts(const dialogs::ProgressReports& reports);
    void PutTimes();
    void Appear();

    std::string product_;
    Parent parent_;
    ShowTiming timing_;
    dialogs::ProgressReports* reports_ = nullptr;
    std::vector<std::unique_ptr<Part>> parts_{};
    QVBoxLayout* lines_ = nullptr;
    QPushButton* cancel_ = nullptr;
    double nextTimes_ = 0;
    bool pumping_ = false;
};

}  // namespace desktop
