#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "dialogs/host.h"

namespace desktop {

inline constexpr int kNarrowTwips = 5000;  // an entry below this width does not grow with the window

// One control of a dialog on the screen. Texts and values go in by Put and come back by Take; a text that was not
// touched comes back byte for byte, whatever the screen could show of it.
class ControlView {
public:
    virtual ~ControlView() = default;
    virtual void Put(const dialogs::Control& control) = 0;
    virtual void Take(dialogs::Control& control) const = 0;

    QWidget* Outer() const { return outer_; }    // goes into the layout
    QWidget* Target() const { return target_; }  // has the focus and the accessible name; null: cannot have it
    bool Stretches() const { return stretches_; }
    bool GrowsDown() const { return growsDown_; }
    virtual void SetName(const QString& name);
    virtual void LeadsTo(QWidget*) {}  // a label whose hot key goes to that field

protected:
    QWidget* outer_ = nullptr;
    QWidget* target_ = nullptr;
    bool stretches_ = false, growsDown_ = false;
};

// What a control may set going.
struct ControlActions {
    std::function<void()> toggled{};    // a check box or option button changed
    std::function<void()> activated{};  // a row was double-clicked
    std::function<void()> pressed{};    // the control is a button
};
// `number` is the control's in the model, which must outlive the view.
std::unique_ptr<ControlView> MakeControlView(dialogs::DialogModel& model, int number, QWidget* parent,
                                             ControlActions actions);

}  // namespace desktop
