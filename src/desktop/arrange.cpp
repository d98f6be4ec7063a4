#include "desktop/arrange.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace desktop {
namespace {

// Equal strips, the first window first.
void Tile(QMdiArea& area, bool rows) {
    QList<QMdiSubWindow*> windows;
    for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder))
        if (window->isVisible() && !window->isMinimized()) windows.push_back(window);
    const QSize room = area.viewport()->size();
    const int count = static_cast<int>(windows.size());
    for (int i = 0; i < count; ++i) {
        QMdiSubWindow* window = windows[i];
        window->showNormal();
        if (rows)
            window->setGeometry(0, room.height() * i / count, room.width(), room.height() / count);
        else
            window->setGeometry(room.width() * i / count, 0, room.width() / count, room.height());
    }
}

}  // namespace

void ArrangeIn(QMdiArea& area, shell::Arrange how) {
    switch (how) {
        case shell::Arrange::Cascade:
            area.cascadeSubWindows();
            break;
        case shell::Arrange::TileHorizontal:
            Tile(area, true);
            break;
        case shell::Arrange::TileVertical:
            Tile(area, false);
            break;
        case shell::Arrange::Fill:
            if (QMdiSubWindow* active = area.activeSubWindow()) active->showMaximized();
            break;
    }
}

}  // namespace desktop
