#include "desktop/menus.h"

#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <array>

#include "desktop/text.h"
#include "shell/menu.h"

namespace desktop {
namespace {

// Icons where they help to find an entry; a name of the icon theme and what stands in for it.
struct IconRow {
    std::string_view control;
    const char* theme;
    QStyle::StandardPixmap otherwise;
};
constexpr std::array kIcons{
    IconRow{"fMnu_FW", "document-import", QStyle::SP_FileDialogNewFolder},
    IconRow{"fMnu_FS", "folder-open", QStyle::SP_DirOpenIcon},
    IconRow{"fMnu_FD", "folder-new", QStyle::SP_FileIcon},
    IconRow{"fMnu_FX", "application-exit", QStyle::SP_DialogCloseButton},
    IconRow{"fMnu_EO", "configure", QStyle::SP_FileDialogDetailedView},
    IconRow{"fMnu_HC", "help-contents", QStyle::SP_DialogHelpButton},
    IconRow{"fMnu_HA", "help-about", QStyle::SP_MessageBoxInformation},
};

QIcon IconFor(std::string_view control, const QStyle& style) {
    const auto* row = std::ranges::find(kIcons, control, &IconRow::control);
    if (row == kIcons.end()) return {};
    return QIcon::fromTheme(QString::fromLatin1(row->theme), style.standardIcon(row->otherwise));
}

QAction* MakeEntry(const shell::MenuRow& row, QMainWindow& window, const Menus::Chosen& chosen) {
    auto* entry = new QAction(IconFor(row.control, *window.style()), ToQt(row.caption).trimmed(), &window);
    entry->setObjectName(ToQt(row.control));
    entry->setShortcut(QKeySequence::fromString(ToQt(row.shortcut), QKeySequence::PortableText));
    entry->setMenuRole(QAction::NoRole);
    entry->setToolTip(Tip(PlainMarks(entry->text())));
    QObject::connect(entry, &QAction::triggered, &window, [chosen, control = row.control] { chosen(control); });
    return entry;
}

}  // namespace

Menus::Menus(QMainWindow& window, Chosen chosen, Chosen opened) {
    window.menuBar()->setAccessibleName(QStringLiteral("Main menu"));
    for (const shell::MenuHead& head : shell::kMenus) {
        QMenu* menu = window.menuBar()->addMenu(ToQt(head.caption));
        menu->setToolTipsVisible(true);
        menu->setObjectName(ToQt(head.control));
        QObject::connect(menu, &QMenu::aboutToShow, &window, [opened, control = head.control] { opened(control); });
        for (const shell::MenuRow& row : shell::kMenuRows) {
            if (row.Menu() != head.control.back()) continue;
            if (row.lineAbove) menu->addSeparator();
            QAction* entry = MakeEntry(row, window, chosen);
            menu->addAction(entry);
            entries_.emplace(row.control, entry);
        }
    }
}

QAction* Menus::Entry(std::string_view control) const {
    const auto at = entries_.find(control);
    return at == entries_.end() ? nullptr : at->second;
}

}  // namespace desktop
