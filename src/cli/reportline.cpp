#include "cli/reportline.h"

#include <vector>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/suggest.h"
#include "core/text.h"
#include "reports/lines.h"

namespace cli {

std::string LineOf(const reports::ReportGrid& grid, const std::string& line, bool total) {
    if (total) return std::string(reports::kTotal);
    std::vector<std::string> lines;
    for (const reports::GridRow& row : grid.rows) {
        if (row.kind == reports::LineKind::Gap) continue;
        lines.push_back(row.cells.front());
        if (row.cells.front() == line) return line;
    }
    for (const std::string& known : lines)
        if (core::fEquals(known, line, core::Case::Ignore)) return known;
    throw UsageError("The report has no line \"" + line + "\". " + ValidAre(line, lines, 6));
}

}  // namespace cli
