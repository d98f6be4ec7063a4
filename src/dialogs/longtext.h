#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dialogs/showmb.h"

namespace dialogs {

// "none" or "1,234".
std::string ShownCount(double count);

// Whole lines, at most so many a page and about so many bytes; a line that is longer alone is parted between letters.
std::vector<std::string> PagesOf(std::string_view text);

// A text over as many pages as it needs.
void ShowLong(const Desk& desk, std::string_view text, std::string_view title = {});

struct LongCheck {
    std::string caption{};
    bool checked = false;
};
// Check boxes over as many pages as they need; each page tells how many are checked in all. False when cancelled: they
// are then as they came.
bool ShowLongChecks(const Desk& desk, std::string_view message, std::vector<LongCheck>& checks,
                    std::string_view title = {});

}  // namespace dialogs
