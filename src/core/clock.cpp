#include "core/clock.h"

#include <ctime>

#include "core/dates.h"

namespace core {

double SystemClock::Now() const {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (!::localtime_r(&now, &local)) return 0;
    const auto day = DateSerial(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    const auto time = TimeSerial(local.tm_hour, local.tm_min, local.tm_sec);
    return day.value_or(0) + time.value_or(0);
}

double SystemClock::Seconds() const {
    std::timespec now{};
    if (::clock_gettime(CLOCK_MONOTONIC, &now) != 0) return 0;
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

}  // namespace core
