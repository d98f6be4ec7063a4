#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/visitsbehind.h"
#include "dialogs/showmb.h"

namespace core {
struct Env;
class Paths;
}  // namespace core
namespace sitedb {
class Site;
}

// A number explains itself: the visits behind a line of a report, and the log lines of a visit.
namespace reports {

struct LineBehind {
    const analysis::SrchTrmData& results;
    std::span<const std::int32_t> indexes{};  // values behind the line
    std::string leftCell{};
    const core::Paths* paths = nullptr;  // of the program, for names of files that are typed; none: native ones alone
};
// The list of visits with a button for the log lines of the selected one. Tells when there are none to show.
void ShowVisitsBehind(core::Env& env, const dialogs::Desk& desk, sitedb::Site& site, const LineBehind& line);

// What has to be said of a list: how many visits, and why the number can differ from that of the report.
std::string BehindMessage(const LineBehind& line, const analysis::VisitsBehind& found);
// The same where the report shows one number and the list has another; "" where they agree.
std::string BehindDifference(const LineBehind& line, const analysis::VisitsBehind& found);

// Cells of both lists, the first row holds headers.
dialogs::Rows VisitRows(const std::vector<analysis::VisitFacts>& visits);
dialogs::Rows LogLineRows(const std::vector<analysis::LineFacts>& lines);

}  // namespace reports
