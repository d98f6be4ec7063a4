#pragma once

#include <vector>

#include "adddata/addtexts.h"

// What was added, as it is shown: after an add, and from its records.
namespace adddata {

// The add log of the site.
void AddLogShowList(const AddDesk& at);

// What search engines sent in one add: by engine, and of one engine by date (SEsummaryDetail).
void SEsummaryShow(const dialogs::Desk& desk, const EngineCounts& counts);

// What was wrong with the files of one read.
void ProblemFilesShow(const dialogs::Desk& desk, const std::vector<logread::ProblemList::File>& problems);

}  // namespace adddata
