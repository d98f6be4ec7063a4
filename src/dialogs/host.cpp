#include "dialogs/host.h"

#include <algorithm>

namespace dialogs {

int DialogModel::OwnButtons() const {
    const auto isButton = [](const Control& control) { return control.Is(ControlType::CommandButton); };
    return static_cast<int>(std::ranges::count_if(controls.All(), isButton));
}

std::string DialogModel::ButtonCaption(int number) const {
    for (const Control& control : controls.All())
        if (control.Is(ControlType::CommandButton) && --number == 0) return control.value;
    if (number < 1 || number > static_cast<int>(buttons.size())) return {};
    return buttons[static_cast<std::size_t>(number - 1)].caption;
}

int DialogModel::ButtonCaptioned(std::string_view plainCaption) const {
    for (int number = 1; number <= ButtonCount(); ++number)
        if (PlainCaption(ButtonCaption(number)) == plainCaption) return number;
    return 0;
}

}  // namespace dialogs
