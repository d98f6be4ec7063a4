#pragma once

#include <string>

#include "adddata/adddesk.h"

// What the next read takes: the site's list of log files, the choice among them, the boxes of the read.
namespace adddata {

// The list of log files with their formats, and the choice. False: cancelled, nothing is stored.
bool EnterLogFiles(const AddDesk& at);

// The boxes of a read. They hold until the program ends. False: cancelled.
bool EnterReadOptions(const AddDesk& at);

// The chosen files as native paths, the site's default format and the boxes; no files when none is chosen.
AddRequest ChosenRead(const AddDesk& at);

// The chosen files for a person, one in each line.
std::string ChosenText(const AddDesk& at);

}  // namespace adddata
