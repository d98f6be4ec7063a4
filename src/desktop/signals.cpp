#include "desktop/signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace desktop {
namespace {

constexpr std::array kSignals{SIGINT, SIGTERM};

// A signal handler reaches nothing but this: the write end of a pipe that the event loop listens to.
int wakePipe[2] = {-1, -1};  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void Wake(int) {
    const char byte = 1;
    if (::write(wakePipe[1], &byte, 1) != 1) {}  // a full pipe has woken the loop already
}

}  // namespace

EndSignals::EndSignals(std::function<void()> end) {
    if (::pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0) return;  // then the signals end the program at once
    notifier_ = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [end = std::move(end)] {
        char byte = 0;
        if (::read(wakePipe[0], &byte, 1) == 1) end();
    });
    struct sigaction action = {};
    action.sa_handler = Wake;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    for (const int number : kSignals) ::sigaction(number, &action, nullptr);
}

EndSignals::~EndSignals() {
    for (const int number : kSignals) ::signal(number, SIG_DFL);
    notifier_.reset();
    for (int& end : wakePipe)
        if (end >= 0) ::close(std::exchange(end, -1));
}

}  // namespace desktop
