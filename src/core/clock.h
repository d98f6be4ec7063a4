#pragma once

#include "core/ports.h"

namespace core {

// The system's clocks: local wall time and the monotonic one.
class SystemClock final : public Clock {
public:
    double Now() const override;
    double Seconds() const override;
};

}  // namespace core
