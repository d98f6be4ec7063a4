#pragma once

#include <QAction>
#include <QMainWindow>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace desktop {

// The menu bar made from the program's menu table.
class Menus {
public:
    using Chosen = std::function<void(std::string_view control)>;
    // `chosen`: an entry; `opened`: a menu of the bar.
    Menus(QMainWindow& window, Chosen chosen, Chosen opened);

    QAction* Entry(std::string_view control) const;  // null for a control that is none

private:
    std::map<std::string, QAction*, std::less<>> entries_{};
};

}  // namespace desktop
