#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/fields.h"
#include "dialogs/grouplists.h"
#include "reports/lines.h"

// Reports by group: one line for each named list of values.
namespace reports {

struct GroupRow {
    int field;
    std::string_view section;  // also the name of the group list
    std::string_view listKey;
};
inline constexpr std::array kGroupTable{
    GroupRow{analysis::kTerm, "Groups", "STgrps"},
    GroupRow{analysis::kPage, "VisitedPages", "VisitedPages"},
    GroupRow{analysis::kDir, "VisitedDirs", "VisitedDirs"},
    GroupRow{analysis::kReferrer, "NonSERefrgrps", "nonSERefrgrps"},
};
// nullptr: a field without groups.
const GroupRow* GroupsOfField(int field);
// "" for such a field.
std::string_view pGroupListName(int field);
// Where the groups of a field stand; nothing Given for a field without groups.
dialogs::GroupPlace GroupPlaceOf(int field);

// The group lines, sorted, below them what is in no group, and the total. A value in two groups counts in both.
void pAddGroupRows(const ReportSource& source, ReportGrid& grid, const std::vector<dialogs::Group>& groups);
// A finished report by group; it has no deviation columns.
ReportGrid pShowGroupReport(const ReportSource& source, const std::vector<dialogs::Group>& groups);

// The values behind a line, each on its own line; with deviation columns where the source has them. Nothing for a line
// that has no values behind it.
struct MembersReport {
    bool found = false;
    ReportGrid grid{};
};
MembersReport pShowGroupMembers(const ReportSource& source, const ReportGrid& from, std::string_view leftCell);

}  // namespace reports
