#pragma once

#include <array>
#include <string>

#include "adddata/adddesk.h"
#include "logdefs/filterscreens.h"

namespace adddata {

// The choice of the filters of an add as controls of a dialog, with a way to their editors.
class FilterForm {
public:
    explicit FilterForm(const AddDesk& at);

    void Add(dialogs::Controls& controls);
    void Live(dialogs::Controls& controls) const;  // what the chosen filters say
    logdefs::FilterSwitches Switches(const dialogs::Controls& controls) const;

    // Opens the editor behind one of the form's buttons; false for another button.
    bool Edit(int button) const;

private:
    struct Family {
        logdefs::FilterFamily family;
        int button = 0, text = 0;
    };
    int AddButton(std::string_view caption, dialogs::Controls& controls);
    int AddText(std::string_view type, std::string_view caption, dialogs::Controls& controls);
    std::string MainText(logdefs::MainFilter main) const;
    std::string ComponentText() const;
    std::string RobotText() const;

    const AddDesk& at_;
    logdefs::FilterFiles files_;
    int all_ = 0, robots_ = 0, components_ = 0;  // `all_`: the first of three options
    std::array<Family, 3> families_{
        {{logdefs::FilterFamily::Main}, {logdefs::FilterFamily::Robots}, {logdefs::FilterFamily::Components}}};
};

// Stores the choice for this add and the next; a failure was told.
void StoreSwitches(const AddDesk& at, const logdefs::FilterSwitches& switches);

}  // namespace adddata
