#include "dialogs/dialoguser.h"

namespace dialogs {

core::Answer DialogUser::Ask(const core::Question& question) {
    Box box;
    box.message = question.message;
    box.buttons = question.buttons;
    box.title = question.title;
    const bool asks = ButtonsOf(question.buttons).captions.size() > 1;
    box.options = std::to_string(static_cast<int>(asks ? Icon::Question : Icon::Information));
    if (question.cancelButton > 0) box.escNo = question.cancelButton;
    bool ticked = false;
    const Pressed pressed =
        question.checkBox.empty() ? ShowMB(desk_, box) : ShowMBTick(desk_, box, question.checkBox, ticked);
    return {pressed.button, pressed.MBCancelNo, ticked};
}

}  // namespace dialogs
