#include "cli/newrobots.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/output.h"
#include "core/env.h"
#include "core/ports.h"
#include "logdefs/rulebrowsers.h"

namespace cli {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t kListed = 20;

void PrintList(const std::string& heading, const std::vector<std::string>& texts) {
    if (texts.empty()) return;
    PrintError(heading + std::to_string(texts.size()));
    for (std::size_t i = 0; i < texts.size() && i < kListed; ++i) PrintError("  " + Safe(texts[i]));
    if (texts.size() > kListed) PrintError("  ... and " + std::to_string(texts.size() - kListed) + " more");
}

}  // namespace

NewRobotsMade MakeNewRobots(Program& program, sitedb::Site& site, const adddata::AddRequest& request) {
    NewRobotsMade made;
    const adddata::ProgramFiles files = program.Session().ProgramFiles();
    const double start = program.Env().clock.Seconds();
    const adddata::Preprocessed found = adddata::PreprocessBots(program.Env(), site, files, request);
    made.seconds = program.Env().clock.Seconds() - start;
    made.errors = found.read.errors;
    made.stopped = program.User().Cancelled() || SignalSeen() != 0;
    made.goOn = found.read.anyRead && !made.stopped;
    if (!found.read.ok || !found.read.anyRead) made.errors.emplace_back(adddata::kReadFailed);
    if (!found.read.ok || !made.goOn) return made;
    std::vector<std::string> robots;
    for (const adddata::CountedText& agent : found.offered)
        (logdefs::LooksLikeBrowser(agent.text) ? made.browsers : robots).push_back(agent.text);
    const adddata::RobotFiles robotFiles = adddata::RobotFilesOf(files);
    made.added = adddata::BotsAddRules(program.Env(), robotFiles, robots);
    if (!made.added.ok) throw Failure("The filters could not be written to " + robotFiles.robots);
    return made;
}

void PrintNewRobots(const NewRobotsMade& made) {
    for (const std::string& error : made.errors) PrintError(error);
    if (!made.goOn) return;
    PrintList("New robot filters: ", made.added.agents);
    if (made.added.agents.empty()) PrintError(std::string(adddata::kNoNewFilters));
    PrintList("Asked for robots.txt and left out, since they look like browsers: ", made.browsers);
}

ordered_json NewRobotsJson(const NewRobotsMade& made) {
    constexpr double kThousand = 1000;
    ordered_json added = ordered_json::array();
    for (std::size_t i = 0; i < made.added.names.size(); ++i)
        added.push_back({{"name", made.added.names[i]}, {"agent", made.added.agents[i]}});
    return {{"seconds", std::round(made.seconds * kThousand) / kThousand},
            {"added", std::move(added)},
            {"browsers", made.browsers}};
}

}  // namespace cli
