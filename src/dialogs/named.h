#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/showmb.h"

// Dialogs that stand in a parameter file instead of in code. Section of the dialog in screens.ini:
//   Text, Buttons, Options, Help       the message and what else ShowMB takes
//   n = Type|spec                      control n, from 1 without a gap; the spec parted by "|"
//   nT = text                          of a Label; caption of a CheckBox or OptionButton; spoken name of others
//   nK = entry                         where the value is kept: an entry of the value section, or
//        section|entry|file|item       file "" is screens.ini, "::*" is found from the section; item n of a "|" list
//   nD = value                         when none is kept
//   nL = a|b|c                         items of a ListBox or ComboBox
//   nV = index                         a ComboBox or ListBox keeps its 0-based index instead of its text
//   nC = N|+|<100|{S|;,}|P             checks of the entry (checks.h)
//   nE = 2|-3                          controls that follow a CheckBox or OptionButton (enabling.h)
//   nP = open|openmany|save|folder     a file picker
//   nH = text                          hint
namespace dialogs {

struct NamedBox {
    std::string dialog{};        // section that holds the controls
    std::string valueSection{};  // "" is the dialog's own
    std::string title{};
    int width = 0;          // twips, 0: the dialog's own
    std::string message{};  // put above the dialog's own text
    std::string buttons = "1";
};

class NamedDialog {
public:
    // Reads controls and values. Controls() is empty when the section is missing or damaged; Problem() tells it.
    NamedDialog(const Desk& desk, NamedBox box);

    Controls& Ctls() { return controls_; }
    const Controls& Ctls() const { return controls_; }
    const std::string& Problem() const { return problem_; }
    // Controls of a caller that stand before the dialog's own, in a dialog in which nothing follows a box. Nothing
    // keeps their values.
    void PutInFront(Controls controls);
    // The same behind control `number`.
    void PutBehind(int number, Controls controls);
    // The control whose value is kept under this entry, 0: none.
    int NumberOf(std::string_view entry) const;

    // Shows, checks entries and shows again, stores the values unless Cancel was pressed. `more` is asked after the
    // dialog's own checks. A problem of the dialog itself is told instead, and counts as Cancel.
    Pressed Show(const EntryCheck& more = {}) { return Show(more, {}); }
    // True: the button only changed entries, and the dialog goes on. Asked before the checks.
    using Change = std::function<bool(Controls& controls, int button)>;
    Pressed Show(const EntryCheck& more, const Change& change);
    // False when a value could not be written; the user was told.
    bool Store();

private:
    struct Place {
        std::string section{}, entry{}, file{};
        int item = 0;
        bool index = false;
    };
    std::string Entry(int number, std::string_view what) const;  // of control n: "1", "1T" ...
    void Damaged(const std::string& why);
    void ReadControl(int number, std::string_view spec);
    Place ReadPlace(int number) const;
    const Place& PlaceOf(int number) const { return places_[static_cast<std::size_t>(number - 1)]; }
    std::string StoredText(int number, const Place& place) const;
    std::string CheckEntries(Controls& controls) const;
    Pressed ShowChanging(const EntryCheck& check, const Change& change);
    Box BoxOf() const;

    const Desk& desk_;
    NamedBox box_;
    Controls controls_{};
    std::vector<Place> places_{};       // of each control: the file may be gone when they are needed
    std::vector<std::string> rules_{};  // of each control
    Followers followers_{};
    std::string problem_{};
};

}  // namespace dialogs
