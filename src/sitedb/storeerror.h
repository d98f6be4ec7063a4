#pragma once

#include <string>

#include "core/errnums.h"
#include "core/error.h"

namespace sitedb {

// A call of the store that failed. The text is for people: what happened and, for full disks and read-only
// folders, what to do.
class StoreError : public core::ErrorNumber {
public:
    StoreError(int number, int code, const std::string& text) : core::ErrorNumber(number, text), code_(code) {}
    int code() const noexcept { return code_; }

    bool Busy() const noexcept;

private:
    int code_;  // extended result code
};

}  // namespace sitedb
