#pragma once

#include <string>

#include "adddata/adddesk.h"

namespace adddata {

struct AddSteps {
    bool preprocess = false;  // look for new robots first
    bool add = false;
};
// The steps of one add, with all that is asked and shown on its way. Gives in a few words what came of it. Afterwards
// memory.lastAdd holds its problems and engines.
std::string RunAdd(const AddDesk& at, AddRequest request, AddSteps steps);

}  // namespace adddata
