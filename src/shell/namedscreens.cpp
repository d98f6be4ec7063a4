#include "shell/namedscreens.h"

#include <string>

#include "dialogs/showmb.h"

namespace shell {

bool TellDamaged(const dialogs::Desk& desk, dialogs::NamedDialog& dialog, std::string_view name, bool complete) {
    if (complete && dialog.Ctls().Count() > 0) return false;
    dialogs::ShowMsg(
        desk, (dialog.Problem().empty() ? "The dialog \"" + std::string(name) +
                                              "\" cannot be shown: a control of it is missing.\rFile: " + desk.screens
                                        : dialog.Problem()) +
                  "\r\rTo restore it, rename that file and start Corvane again: the delivered file then takes "
                  "its place. Nothing else was changed.");
    return true;
}

bool ShowOptionDialog(const dialogs::Desk& desk, const dialogs::NamedBox& box) {
    constexpr int kOk = 1;
    for (;;) {
        dialogs::NamedDialog dialog(desk, box);
        if (TellDamaged(desk, dialog, box.dialog)) return false;
        const dialogs::Pressed pressed = dialog.Show();
        if (pressed.Cancelled()) return false;
        if (pressed.button == kOk) return true;
    }
}

}  // namespace shell
