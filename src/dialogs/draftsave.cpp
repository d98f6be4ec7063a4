#include "dialogs/draftsave.h"

#include <string>

namespace dialogs {
namespace {

constexpr int kFirst = 1, kSecond = 2;

int ButtonFor(const Desk& desk, const std::string& message, const std::string& buttons, int esc) {
    Box box;
    box.message = message;
    box.buttons = buttons;
    box.options = std::to_string(static_cast<int>(Icon::Exclamation));
    box.escNo = esc;
    return ShowMB(desk, box).button;
}

// False: back to the editor.
bool TellFailed(const Desk& desk, const std::string& file) {
    return ButtonFor(desk,
                     "Your changes could not be stored in this file:\r" + file +
                         "\r\rMake room on the disk, or give yourself the right to write the file, and try again.",
                     "&Try again|&Back to editing", kSecond) == kFirst;
}

}  // namespace

bool SaveDraft(const Desk& desk, core::IniDraft& draft) {
    bool overOthers = false;
    for (;;) {
        const core::IniDraft::Outcome outcome = draft.Save(overOthers);
        if (outcome.saved == core::IniDraft::Saved::Done) return true;
        if (outcome.saved == core::IniDraft::Saved::Failed) {
            if (!TellFailed(desk, outcome.file)) return false;
            continue;
        }
        const int button =
            ButtonFor(desk,
                      "Another program has changed this file while you edited it:\r" + outcome.file +
                          "\r\rStore your changes over those of the other program, or keep the file as it "
                          "is now and give up yours?",
                      "&Store mine|&Keep the file as it is|&Back to editing", kSecond + 1);
        if (button == kSecond) return true;
        if (button != kFirst) return false;
        overOthers = true;
    }
}

bool LeaveDraft(const Desk& desk, const core::IniDraft& draft) {
    if (!draft.Changed()) return true;
    Box box;
    box.message = "Give up your changes? Nothing of what you changed here will be stored.";
    box.buttons = "&Give up|&Back to editing";
    box.options = std::to_string(static_cast<int>(Icon::Question));
    box.escNo = kSecond;
    return ShowMB(desk, box).button == kFirst;
}

}  // namespace dialogs
