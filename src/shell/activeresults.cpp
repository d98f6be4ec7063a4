#include "shell/activeresults.h"

#include <algorithm>

#include "core/cds.h"

namespace shell {
namespace {

// Kinds are written by the program: their case counts.
bool IsReport(const std::string& windowId) {
    return !windowId.empty() && std::ranges::count(core::CDSSplitPlain(windowId).Items(), kReportWindow) > 0;
}

}  // namespace

ActiveWindow pActiveResults(const dialogs::Desk& desk, const Front& front, bool mustBeResults) {
    ActiveWindow active{front.ActiveWindowId(), true};
    if (!mustBeResults || IsReport(active.id)) return active;
    dialogs::ShowMsg(desk, "Only available when Results are displayed");
    active.ok = false;
    return active;
}

}  // namespace shell
