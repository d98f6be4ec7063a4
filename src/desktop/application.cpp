#include "desktop/application.h"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "desktop/signals.h"

namespace desktop {
namespace {

constexpr std::string_view kTimingSpec = "3900|9000||||||||1|1|{450|540|450|450|450|540|540}||||||||{720|0|0}";

// The files among the arguments, with their full paths.
std::vector<std::string> FilesOf(const std::vector<std::string>& arguments) {
    std::vector<std::string> files;
    for (const std::string& argument : arguments) {
        std::error_code failed;
        const std::filesystem::path full = std::filesystem::absolute(argument, failed);
        files.push_back(failed ? argument : full.string());
    }
    return files;
}

}  // namespace

Application::Application(const shell::Places& places, const std::string& version)
    : window_(places.shared),
      progress_(
          "Corvane", [this] { return &window_; }, [this](int report) { ShowTiming(report); }),
      dialogs_([this] { return window_.isVisible() ? &window_ : nullptr; },
               [this](const std::string& id) { shell_.ShowHelpOn(id); }),
      box_([this] { return window_.isVisible() ? &window_ : nullptr; }),
      shell_(places, {.front = window_, .dialogs = dialogs_, .progress = progress_, .box = box_}, version) {
    window_.Attach(shell_);
    progress_.Attach(shell_.Progress());
}

Application::~Application() = default;

int Application::Run(const std::vector<std::string>& arguments) {
    const EndSignals onSignal([this] { window_.EndSoon(); });
    if (!shell_.MDIForm_Load(arguments)) return 0;
    window_.OptionsChanged();
    if (window_.Ending()) return 0;
    QTimer::singleShot(0, &window_, [this, files = FilesOf(arguments)] { window_.LookForWork(files); });
    const int status = QCoreApplication::exec();
    if (window_.isVisible()) window_.close();
    return status;
}

// The report's timing so far; the work waits meanwhile.
void Application::ShowTiming(int report) {
    const auto& open = shell_.Progress().Open();
    const auto at = std::ranges::find(open, report, &dialogs::OpenReport::number);
    if (at == open.end()) return;
    dialogs::Controls controls;
    dialogs::MBAddCtl("Grid", "-1", dialogs::MBSpec(kTimingSpec), controls, dialogs::TimingTable(*at));
    controls[1].caption = "Timing of this report";
    controls[1].emptyText = "The first percent is not reached yet.";
    dialogs::Box box;
    box.message = at->caption + "\r\rPress continue button to resume processing.";
    box.buttons = "&Continue";
    box.title = "- Timing";
    dialogs::ShowMB(shell_.Desk(), box, controls);
}

}  // namespace desktop
