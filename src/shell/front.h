#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files.h"

namespace reports {
class ReportModel;
}

namespace shell {

enum class Arrange { Cascade, TileHorizontal, TileVertical, Fill };

// A report on the screen: its model, what is selected in it, and what is to be drawn anew.
class ReportWindow {
public:
    virtual ~ReportWindow() = default;
    virtual reports::ReportModel& Report() = 0;
    virtual std::optional<std::size_t> SelectedLine() const = 0;  // of the grid's lines; nothing selected
    virtual int SelectedColumn() const = 0;                       // 0 without one
    virtual void GridChanged() = 0;   // lines moved, or have another height; the selection stays with its line
    virtual void ChartChanged() = 0;  // another line, series or range of the plot
    // The chart as it stands, by the type of the name: png, svg or pdf. `path` is native.
    virtual core::Result SavePicture(const std::string& path) = 0;
};

// Whoever shows the program: the desktop's main window, a test.
class Front {
public:
    virtual ~Front() = default;
    virtual void ShowMain() = 0;
    virtual void SetCaption(std::string_view caption) = 0;
    virtual void OpenReport(std::unique_ptr<reports::ReportModel> report) = 0;
    virtual void CloseReports() = 0;
    // Window id of the active child, a "|" list ("STLst" stands in that of a report); "" without one.
    virtual std::string ActiveWindowId() const = 0;
    virtual ReportWindow* ActiveReport() = 0;  // null when the active child is none
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
