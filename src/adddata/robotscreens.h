#pragma once

#include <cstddef>

#include "adddata/adddesk.h"

// The search for new robots before an add, on screen.
namespace adddata {

struct PreprocessShown {
    bool ok = false;  // a file was read and the person did not stop it: the main processing may go on
    double seconds = 0;
    std::size_t rulesMade = 0;
};
// Reads the files once, offers the user agents that asked for robots.txt and are taken by no robot filter, makes rules
// of those that are chosen, and opens the editor of the robot filters.
PreprocessShown PreprocessBotsOnScreen(const AddDesk& at, const AddRequest& request);

// The filter that finds robots, for all sites. False: cancelled.
bool BotsFinderEdit(const AddDesk& at);

}  // namespace adddata
