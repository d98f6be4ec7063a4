#pragma once

#include <QWidget>
#include <functional>

#include "desktop/dialogform.h"

namespace desktop {

// Shows dialog models as windows.
class QtDialogHost final : public dialogs::DialogHost {
public:
    using Parent = std::function<QWidget*()>;  // what a dialog opens over; may give none
    explicit QtDialogHost(Parent parent = {}, ShowHelp help = {})
        : parent_(std::move(parent)), help_(std::move(help)) {}

    std::unique_ptr<dialogs::DialogWindow> Open(dialogs::DialogModel& model) override;
    bool CopyText(std::string_view text) override;
    int ScreenWidth() const override;

private:
    Parent parent_;
    ShowHelp help_;
};

}  // namespace desktop
