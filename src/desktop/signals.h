#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace desktop {

// SIGINT and SIGTERM end the program like a close of its window; a second one ends it at once.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace desktop
