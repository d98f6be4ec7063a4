#pragma once

#include <QWidget>
#include <functional>

#include "shell/failures.h"

namespace desktop {

// The toolkit's own message box for failures that nobody expected: the dialogs may be what failed.
class QtPlainBox final : public shell::PlainBox {
public:
    explicit QtPlainBox(std::function<QWidget*()> parent) : parent_(std::move(parent)) {}

    int Ask(const shell::PlainMessage& message) override;
    core::EventPlace ActivePlace() override;

private:
    std::function<QWidget*()> parent_;
};

}  // namespace desktop
