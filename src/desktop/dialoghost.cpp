#include "desktop/dialoghost.h"

#include <QApplication>
#include <QClipboard>
#include <QPointer>

#include "desktop/look.h"
#include "desktop/text.h"

namespace desktop {
namespace {

// The form also belongs to its parent window, which may go first.
class Window final : public dialogs::DialogWindow {
public:
    Window(dialogs::DialogModel& model, QWidget* parent, ShowHelp help)
        : model_(model), form_(new DialogForm(model, parent, std::move(help))) {}
    ~Window() override { delete form_; }
    int Run() override { return form_.isNull() ? model_.escButton : form_->RunLoop(); }
    void Update() override {
        if (!form_.isNull()) form_->Refresh();
    }

private:
    dialogs::DialogModel& model_;
    QPointer<DialogForm> form_;
};

}  // namespace

std::unique_ptr<dialogs::DialogWindow> QtDialogHost::Open(dialogs::DialogModel& model) {
    QWidget* over = QApplication::activeModalWidget();
    if (over == nullptr && parent_) over = parent_();
    return std::make_unique<Window>(model, over, help_);
}

bool QtDialogHost::CopyText(std::string_view text) {
    QGuiApplication::clipboard()->setText(ToQt(text));
    return true;
}

int QtDialogHost::ScreenWidth() const {
    const QWidget probe;
    return Twips(probe, ScreenRoom(probe).width());
}

}  // namespace desktop
