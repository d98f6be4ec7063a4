#pragma once

#include <string>

class QWidget;

// What is longer than its cell.
namespace desktop {

// A box with the whole text, to read and to copy.
void ShowWholeText(QWidget& over, const std::string& text);
// A cell as it is copied: what would part cells or lines becomes a blank.
std::string OneCell(std::string cell);

}  // namespace desktop
