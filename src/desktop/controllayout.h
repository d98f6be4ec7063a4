#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "desktop/controlviews.h"

namespace desktop {

using ControlViews = std::vector<std::unique_ptr<ControlView>>;  // as the model's controls, from 0

// Puts the views into lines from left to right; lines of a label and its field share an aligned column of labels, and
// a line of headings shares the columns of the line below it.
void LayOutControls(const dialogs::Controls& controls, const ControlViews& views, QWidget& area);
// Option buttons that follow one another are one group.
void GroupOptions(const dialogs::Controls& controls, const ControlViews& views, QWidget& area);
// What a screen reader says: the caption, else the label before it, else the type.
std::string NameOf(const dialogs::Controls& controls, int number);

}  // namespace desktop
