#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "dialogs/host.h"

namespace core {
class IniStore;
}

// The core call of every screen: a message, buttons, options, controls.
namespace dialogs {

// What the screens need from around them. References only.
struct Desk {
    core::IniStore& ini;
    DialogHost& host;
    std::string product = "Corvane";
    std::string screens{};  // native path of screens.ini: named dialogs, places, fonts
};

// Where the answer to a suppressed message is kept.
struct SuppressPlace {
    std::string section{};
    std::string file{};
};

// One call of ShowMB.
struct Box {
    std::string message{};
    std::string buttons = "0";  // a number of a standard set or a "|" list
    std::string options{};
    std::string title{};           // begins with "-": the product's title and a blank go before it
    int defaultNo = 0, escNo = 0;  // 0: as the options say
    SuppressPlace suppress{};
    std::string name{};  // "" unless place and size are to be kept
    std::string helpId{};
    std::string details{};
    Followers followers{};
    Live live{};
};

struct Pressed {
    int button = 1;
    int MBCancelNo = kNoCancel;
    bool Cancelled() const { return button == MBCancelNo; }
    bool Suppressed() const { return MBCancelNo == kSuppressed; }
};

// Builds the model without showing it: list screens keep the window open and show it themselves.
DialogModel BuildModel(const Desk& desk, const Box& box, Controls controls);
// MBCancelNo of a built model.
int CancelNumber(const Box& box, const Controls& controls);
// Keeps place, size and font of a dialog that was shown; nobody is told when they could not be kept.
void KeepLook(const Desk& desk, const DialogModel& model);

// Values are read back even when the button was Cancel; test the result first. A suppressed message gives -1. The
// dialog goes with any button: behind one that stays (NoHide) the caller shows the values again, or uses ShowMBStay.
Pressed ShowMB(const Desk& desk, const Box& box, Controls& controls);
Pressed ShowMB(const Desk& desk, const Box& box);

// What is wrong with the entries, "" when nothing is. Called with the pressed button's number.
using EntryCheck = std::function<std::string(Controls& controls, int button)>;
// Shows the dialog again, with what is wrong under "Problem with data entered: ", until the check is content. On
// Cancel no check runs and the values are those of the entry.
Pressed ShowMBRepeat(const Desk& desk, const Box& box, Controls& controls, const EntryCheck& check);

// For buttons that stay: `act` is called with 0 before the dialog is shown, and with the number of a button that stays
// before it goes on. Cancel and every other button end it.
using StayAct = std::function<void(DialogModel& model, int button)>;
Pressed ShowMBStay(const Desk& desk, const Box& box, Controls& controls, const StayAct& act);

// A message with OK. Ctrl+C copies it.
Pressed ShowMsg(const Desk& desk, std::string_view message, std::string_view title = {}, std::string_view options = {});
// With the box "Do &not Show this Message again"; the answer is kept under `key` at `place`.
Pressed ShowMsgSuppressible(const Desk& desk, std::string_view message, std::string_view key,
                            const SuppressPlace& place, std::string_view title = {});
// Any box with one check box more, under its message. `ticked` in and out.
Pressed ShowMBTick(const Desk& desk, const Box& box, std::string_view caption, bool& ticked);

struct Asked {
    std::string text{};  // "" when cancelled
    Pressed pressed{};
};
Asked AskText(const Desk& desk, std::string_view message, std::string_view otherwise, std::string_view title = {});
Asked AskTextBig(const Desk& desk, std::string_view message, std::string_view otherwise, std::string_view title = {});

// The title of a dialog by its own, its message and the product's.
std::string TitleOf(const Desk& desk, std::string_view title, std::string_view message);

}  // namespace dialogs
