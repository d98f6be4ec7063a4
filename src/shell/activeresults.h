#pragma once

#include <string>
#include <string_view>

#include "dialogs/showmb.h"
#include "shell/front.h"

namespace shell {

// The kind of a report window; one item of its window id.
inline constexpr std::string_view kReportWindow = "STLst";

// The active child window. `ok` is false when a report was wanted and none is displayed; the person was told.
struct ActiveWindow {
    std::string id{};  // "" without a child window
    bool ok = true;
};
ActiveWindow pActiveResults(const dialogs::Desk& desk, const Front& front, bool mustBeResults);

}  // namespace shell
