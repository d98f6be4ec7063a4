#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/fieldtable.h"
#include "reports/lines.h"

// Which reports there are.
namespace reports {

struct ReportChoice {
    int field = 0;
    ReportKind kind = ReportKind::Top;
};

// Entries of the menu that open one report.
struct CatalogueRow {
    std::string_view control;
    ReportChoice report;
};
inline constexpr std::array kCatalogue{
    CatalogueRow{"fMnu_RN", {11, ReportKind::Top}}, CatalogueRow{"fMnu_RC", {11, ReportKind::All}},
    CatalogueRow{"fMnu_RT", {1, ReportKind::Top}},  CatalogueRow{"fMnu_RG", {1, ReportKind::Grouped}},
    CatalogueRow{"fMnu_RA", {1, ReportKind::All}},  CatalogueRow{"fMnu_RH", {13, ReportKind::Top}},
    CatalogueRow{"fMnU_RW", {12, ReportKind::Top}}, CatalogueRow{"fMnu_RD", {15, ReportKind::Top}},
    CatalogueRow{"fMnu_R2", {16, ReportKind::Top}}, CatalogueRow{"fMnu_R3", {17, ReportKind::Top}},
    CatalogueRow{"fMnu_RS", {2, ReportKind::Top}},  CatalogueRow{"fMnu_RP", {2, ReportKind::All}},
    CatalogueRow{"fMnu_RE", {4, ReportKind::Top}},  CatalogueRow{"fMnu_RX", {4, ReportKind::All}},
    CatalogueRow{"fMnu_RV", {6, ReportKind::Top}},  CatalogueRow{"fMnu_RI", {6, ReportKind::All}},
    CatalogueRow{"fMnu_RQ", {5, ReportKind::Top}},  CatalogueRow{"fMnu_RU", {5, ReportKind::All}},
    CatalogueRow{"fMnu_RO", {3, ReportKind::Top}},  CatalogueRow{"fMnu_RL", {3, ReportKind::All}},
};
static_assert(std::ranges::all_of(kCatalogue,
                                  [](const CatalogueRow& row) { return analysis::HasField(row.report.field); }),
              "an entry has no field");

constexpr std::optional<ReportChoice> ReportOfMenu(std::string_view control) {
    const auto* row = std::ranges::find(kCatalogue, control, &CatalogueRow::control);
    return row == kCatalogue.end() ? std::nullopt : std::optional(row->report);
}

// Lists of reports to choose from, by fields.
enum class ReportList : int { All = 1, Words = 2 };
inline constexpr std::array kAllFields{11, 1, 2, 3, 5, 4, 6, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21};
inline constexpr std::array kWordFields{12, 13, 14, 15, 16, 17, 18, 19, 20, 21};
std::vector<int> FieldsOf(ReportList list);

// The lines of such a list: for each field Top, All and, where it has groups, Grouped. A line is the code, a tab and
// a text.
std::vector<std::string> ReportLines(const std::vector<int>& fields);
std::optional<ReportChoice> ReportOfLine(std::string_view line);

// "[When selected, 1st Distrib col: ..., 2nd Distrib col: ...]"
std::string DistributionNote(int field);

}  // namespace reports
