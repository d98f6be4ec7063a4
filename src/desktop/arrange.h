#pragma once

#include "shell/front.h"

class QMdiArea;

namespace desktop {

// Puts the windows of the area one behind another, above or beside each other, or the active one over all of it.
void ArrangeIn(QMdiArea& area, shell::Arrange how);

}  // namespace desktop
