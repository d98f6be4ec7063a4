#pragma once

#include <string>

#include "adddata/adddesk.h"

// What an add will do and what it did, in words.
namespace adddata {

// What an add takes and leaves out, for the confirmation.
struct AddOptions {
    std::vector<logdefs::LogFileSpec> files{};
    logdefs::FilterSwitches switches{};
    std::string mainFilter{};  // its statement, see FltrDescribe
};
std::string AddOptionsText(const AddOptions& options);

struct AddTotals {
    const AddOutcome& outcome;
    std::string took{};        // "3 minutes"
    std::string mainFilter{};  // its statement
};
std::string AddTotalsText(const AddTotals& totals);

}  // namespace adddata
