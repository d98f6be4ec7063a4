#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/showmb.h"

namespace dialogs {

// "none" or "1,234".
std::string ShownCount(double count);

// Whole lines, at most so many a page and about so many bytes; a line that is longer alone is parted between letters.
std::vector<std::string> PagesOf(std::string_view text);

// A text over as many pages as it needs. With `checked` the page tells how many of a list's boxes are ticked.
void ShowLong(const Desk& desk, std::string_view text, std::string_view title = {}, std::optional<int> checked = {});

}  // namespace dialogs
