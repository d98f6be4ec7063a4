#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/controls.h"
#include "dialogs/enabling.h"
#include "dialogs/options.h"

// A screen as data, and who shows it: a window, a terminal, a test's script.
namespace dialogs {

struct DialogButton {
    std::string caption{};
    bool bold = false, italic = false, underlined = false;
    bool enabled = true;
    std::string hint{};
};

// What a dialog shows while a person edits: called when the dialog comes up and after each change of an entry or a
// selection (a moment later, so that typing stays smooth). It may set the values of labels, the rows of lists and
// grids, and what is enabled; never what a person edits.
using Live = std::function<void(Controls& controls)>;

// Numbers of buttons are 1-based over the controls' own CommandButtons, in their order, then `buttons`.
struct DialogModel {
    std::string name{};  // of a named dialog or list screen: its place and size are kept under it
    std::string title{};
    std::string message{};  // lines parted by a lone carriage return; plain text, never markup
    std::string problem{};  // what was wrong with the last entries; set apart from the message
    std::string details{};  // for the curious: behind a button, can be copied
    DialogOptions options{};
    std::vector<DialogButton> buttons{};
    Controls controls{};
    Followers followers{};
    Live live{};
    int defaultButton = 1, escButton = 0, focusButton = 0;  // 0: none
    std::string suppressCaption{};                          // of a box under the message, "" without one
    bool suppressTicked = false;
    std::string helpId{};  // what F1 shows, "" without help
    std::string place{};   // "left|top|width|height" in pixels, in and out; "" lets the host choose
    std::string font{};    // "name|size|bold|italic" in and out, "" the desktop's own

    int OwnButtons() const;  // CommandButtons among the controls
    int ButtonCount() const { return OwnButtons() + static_cast<int>(buttons.size()); }
    std::string ButtonCaption(int number) const;
    int ButtonCaptioned(std::string_view plainCaption) const;  // its number, 0: none
};

// One dialog on the screen; it goes when this goes.
class DialogWindow {
public:
    virtual ~DialogWindow() = default;
    // Shows the dialog and runs until a button is pressed; gives its number. The model then holds the values as they
    // stand, whatever the button. A button that stays leaves the dialog up for the next Run.
    virtual int Run() = 0;
    // The caller changed the model (texts, values, rows, what is enabled; never the number of controls).
    virtual void Update() = 0;
};

class DialogHost {
public:
    virtual ~DialogHost() = default;
    // The model must outlive the window.
    virtual std::unique_ptr<DialogWindow> Open(DialogModel& model) = 0;
    virtual bool CopyText(std::string_view text) = 0;  // to the clipboard
    virtual int ScreenWidth() const = 0;               // twips
};

}  // namespace dialogs
