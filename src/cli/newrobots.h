#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "adddata/robots.h"
#include "cli/program.h"

// The search for new robots before an add (add --new-robots).
namespace cli {

struct NewRobotsMade {
    bool goOn = false;     // a file was read and nobody stopped it: the add may run
    bool stopped = false;  // by the user
    double seconds = 0;    // of the read
    adddata::RulesAdded added{};
    std::vector<std::string> browsers{};  // that were left out
    std::vector<std::string> errors{};
};
// Makes robot filters of all that would be offered but what looks like a browser. What cannot be written throws
// Failure.
NewRobotsMade MakeNewRobots(Program& program, sitedb::Site& site, const adddata::AddRequest& request);

// To standard error.
void PrintNewRobots(const NewRobotsMade& made);
nlohmann::ordered_json NewRobotsJson(const NewRobotsMade& made);

}  // namespace cli
