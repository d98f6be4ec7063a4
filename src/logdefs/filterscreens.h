#pragma once

#include <optional>
#include <string>
#include <vector>

#include "logdefs/editing.h"

// Rule files on screen. Nothing is stored before a list is left with OK.
namespace logdefs {

enum class FilterFamily { Main, Components, Robots };

// One list of conditions of a rule file.
struct FilterList {
    std::string file{};
    std::string key = "SelLst";        // its entry of section Filters
    std::string selectedKey{};         // the entry that keeps the selection; "": none is kept
    bool choose = false;               // OK wants a selection
    bool multiple = true;              // conditions of several rules are allowed
    std::optional<int> onlyColType{};  // all rules test this field
    std::string onlyLabel{};           // what that field is called
    bool robots = false;               // rules that take browsers are warned of
    std::string title{};
    std::string message{};
    std::string item = "filter";  // what the buttons call an entry
    std::string checkCaption = "Chec&k vs. log file";
    std::string name{};  // "" unless place and size are to be kept
    std::string helpId{};
    std::vector<std::string> isProtected{};  // names that cannot be removed
    std::string endText{};                   // over a list to look at that ends the dialog; without it there is none
    dialogs::Rows endRows{};                 // its first row holds the headers
};

// The list editor. False: cancelled, nothing is changed. `check` is what its further button does.
bool FltrListEdit(const Editing& editing, const FilterList& list, const LeadOut& check = {});

// The editor of a family's list with its selection. False: cancelled, nothing is changed.
bool FltrSelectMain(const Editing& editing, FilterFamily family, const LeadOut& check = {});

}  // namespace logdefs
