#pragma once

#include <functional>
#include <string>
#include <vector>

#include "desktop/dialoghost.h"
#include "desktop/mainwindow.h"
#include "desktop/plainbox.h"
#include "desktop/progresswindow.h"
#include "shell/shell.h"

namespace desktop {

// The desktop program: its windows, and the shell that works behind them.
class Application {
public:
    Application(const shell::Places& places, const std::string& version);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    // Starts, runs until the window is closed; gives the exit status.
    int Run(const std::vector<std::string>& arguments);

private:
    void ShowTiming(int report);

    MainWindow window_;
    ProgressWindow progress_;
    QtDialogHost dialogs_;
    QtPlainBox box_;
    shell::Shell shell_;
};

}  // namespace desktop
