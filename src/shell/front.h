#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shell {

enum class Arrange { Cascade, TileHorizontal, TileVertical, Fill };

// Whoever shows the program: the desktop's main window, a test.
class Front {
public:
    virtual ~Front() = default;
    virtual void ShowMain() = 0;
    virtual void SetCaption(std::string_view caption) = 0;
    virtual void CloseReports() = 0;
    // Window id of the active child, a "|" list ("STLst" stands in that of a report); "" without one.
    virtual std::string ActiveWindowId() const = 0;
    virtual void ArrangeWindows(Arrange how) = 0;
    // A page of the help folder; "" for the anchor is its top. False: it cannot be shown.
    virtual bool ShowHelp(const std::string& page, const std::string& anchor) = 0;
    // A native path or an address, with the desktop's own means.
    virtual bool OpenDocument(const std::string& pathOrAddress) = 0;
    // Settings of the program (section Parm of screens.ini) were entered anew.
    virtual void OptionsChanged() = 0;
    virtual void Quit() = 0;
};

}  // namespace shell
