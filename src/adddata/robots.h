#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adddata/adddata.h"
#include "logread/readctx.h"

// New robots: whoever asks for robots.txt and is taken by no robot filter yet.
namespace adddata {

struct RobotFiles {
    std::string robots{};  // fltrbots.ini
    std::string finder{};  // ppfindbots.ini: the filter that finds robots
    std::string skip{};    // ppfindbotsskipuas.ini: what is not offered again
};
RobotFiles RobotFilesOf(const ProgramFiles& program);

// A text of the log and the number of its lines.
struct CountedText {
    std::string text{};
    std::int64_t lines = 0;
};
std::vector<CountedText> CountedTexts(const logread::CountedList& list);

// Rules that look at another field than `field` are never satisfied from here on. True when there was one.
bool KeepRulesOn(logdefs::Field field, logdefs::FltrRuleSet& set);

inline constexpr std::string_view kOtherRobotRules =
    "You have added exclude robot filter(s) which test something other than User Agent (browser).\rThis function will "
    "not apply those filters (it may list user agents for robots.txt records that would be rejected). The filter(s) "
    "WILL be applied when you add records to the site database.";
inline constexpr std::string_view kNoNewFilters = "No new filters created.";
inline constexpr std::string_view kReadFailed = "Read raw log data cancelled or failed.";

struct NewRobots {
    std::vector<CountedText> agents{};  // sorted; no robot filter takes them
    bool otherRules = false;            // there are filters that a user agent alone cannot be tested with
};
NewRobots BotsFindNew(core::IniStore& ini, const RobotFiles& files, const std::vector<CountedText>& agents);

// Less those that satisfy a skip filter, and less blank ones.
std::vector<CountedText> BotsNotFiltered(core::IniStore& ini, const RobotFiles& files, std::vector<CountedText> agents);

// Less those of the skip list, too: what is offered.
std::vector<CountedText> BotsOffered(core::IniStore& ini, const RobotFiles& files, std::vector<CountedText> agents);

struct Preprocessed {
    logread::ReadOutcome read{};
    NewRobots found{};
    std::vector<CountedText> offered{};
};
// Reads the files once with check mode on; nothing is stored. Without a filter that finds robots it is the requests
// for robots.txt that count. `request` gives files, format and NoPromptInvalid.
Preprocessed PreprocessBots(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request);

// One rule "Starts with" for each user agent that is not blank, all of them in one write. Two that differ in case
// alone are one rule.
struct RulesAdded {
    bool ok = true;
    std::vector<std::string> names{};
    std::vector<std::string> agents{};  // of the same number
};
RulesAdded BotsAddRules(core::Env& env, const RobotFiles& files, const std::vector<std::string>& agents);

std::vector<std::string> BotsSkipList(core::IniStore& ini, const RobotFiles& files);
// False: it could not be written.
bool BotsSkipListWrite(core::IniStore& ini, const RobotFiles& files, const std::vector<std::string>& agents);

}  // namespace adddata
