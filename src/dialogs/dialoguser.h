#pragma once

#include "core/ports.h"
#include "dialogs/showmb.h"

namespace dialogs {

// Puts the questions of the toolkit-free code to whoever sits in front of a dialog host.
class DialogUser final : public core::User {
public:
    explicit DialogUser(const Desk& desk) : desk_(desk) {}
    core::Answer Ask(const core::Question& question) override;

private:
    const Desk& desk_;
};

}  // namespace dialogs
