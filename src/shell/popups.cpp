#include "shell/popups.h"

#include "reports/groups.h"
#include "reports/reportmodel.h"

namespace shell {

bool IsOffered(const PopupRow& row, const reports::ReportModel& report) {
    const int field = report.Results().Analyzed_Field;
    switch (row.offered) {
        case Offered::Terms:
            return field == analysis::kTerm;
        case Offered::OtherGroups:
            return field != analysis::kTerm && reports::GroupsOfField(field) != nullptr;
        case Offered::Grouped:
            return report.Grid().grouped;
        case Offered::Always:
            break;
    }
    return true;
}

std::optional<bool> IsMarked(const PopupRow& row, const reports::ReportModel& report) {
    const bool thick = report.Grid().lineHeight == reports::kThickLine;
    if (row.entry.command == Command::ThickLines) return thick;
    if (row.entry.command == Command::ThinLines) return !thick;
    return std::nullopt;
}

}  // namespace shell
