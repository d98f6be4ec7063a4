#pragma once

#include <optional>
#include <string>
#include <vector>

#include "adddata/adddata.h"
#include "cli/newrobots.h"
#include "cli/program.h"

// What an add and a resume print.
namespace cli {

// A file of which no line fits its format, and what would.
struct Misfit {
    std::string file{};
    std::string format{};
    std::int64_t lines = 0, fit = 0;
    std::int64_t firstMisfitNumber = 0;
    std::string firstMisfit{};
    std::vector<std::string> wouldFit{};
};

struct AddResult {
    std::string site{};
    int status = 0;
    adddata::AddOutcome outcome{};
    std::vector<std::string> errors{};  // of the command itself
    std::vector<Misfit> misfits{};
    std::optional<NewRobotsMade> newRobots{};  // when they were looked for
};

void PrintAddJson(const AddResult& result);
void PrintAddText(const AddResult& result);
void PrintVisitsJson(const std::string& site, int status, const visits::VisitsOutcome& visits);
void PrintVisitsText(const visits::VisitsOutcome& visits);
// To standard error.
void PrintMisfit(const Misfit& misfit);

}  // namespace cli
