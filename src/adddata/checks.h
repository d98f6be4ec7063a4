#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adddata/robots.h"

namespace core {
class IniStore;
}

// Definitions held against a log file: what they find in it and what they miss. Nothing is stored.
namespace adddata {

// Texts under one heading, in the order of the log.
struct CheckGroup {
    std::string name{};
    std::string description{};
    std::vector<CountedText> texts{};
    std::int64_t lines = 0;
};

struct ReferrerCheck {
    logread::ReadOutcome read{};
    std::string definitions{};  // by which the groups were made
    std::vector<CountedText> all{};
    std::vector<CheckGroup> noTerm{};   // by the URL of the engine's definition, in the order of the definitions
    std::vector<CheckGroup> unknown{};  // of no engine, by site ("": no address of the web), sorted
};
// The filters are those of an add.
ReferrerCheck CheckReferrers(core::Env& env, sitedb::Site& site, const ProgramFiles& program,
                             const AddRequest& request);
// Makes the groups by the definitions as they are now; nothing when they are those of the groups.
void JudgeReferrers(core::IniStore& ini, const ProgramFiles& program, ReferrerCheck& check);
// The site of a referrer in lower case, without "www.".
std::string ReferrerSite(std::string_view referrer);

struct PageRow {
    std::string page{};  // as reports show it
    std::string file{};  // as the log has it, the first of those that are this page
    std::string type{};  // "html", or "" without one
    std::int64_t lines = 0;
    bool skipped = false;  // by the page component filter
    bool isNew = false;    // accepted, and the site does not hold it yet
};
struct PageCheck {
    logread::ReadOutcome read{};
    std::vector<PageRow> rows{};
    std::string filter{};     // the selected one in words, "" none: every page is skipped
    bool otherRules = false;  // it tests more than the file name
    bool queryRemoved = false, fragmentRemoved = false, errorsSkipped = false;
};
// The page component filter alone, whether an add uses it or not.
PageCheck CheckPages(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request);
// Makes the rows by the filter, the options and the pages of the site as they are now.
void JudgePages(core::Env& env, sitedb::Site& site, const ProgramFiles& program, PageCheck& check);

inline constexpr std::string_view kOtherPageRules =
    "NB You have defined criteria using data other than Filename.\r This function will only apply filename "
    "filters.\r When you add data to the database, all filters will be used.";

struct RobotCheck {
    logread::ReadOutcome read{};
    std::vector<CountedText> agents{};   // all, rejected or not
    std::vector<CheckGroup> rejected{};  // one for each robot filter, in their order
};
// The filters are those of an add, robots being excluded in any case.
RobotCheck CheckRobots(core::Env& env, sitedb::Site& site, const ProgramFiles& program, const AddRequest& request);

}  // namespace adddata
