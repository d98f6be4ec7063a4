#pragma once

#include <string_view>

#include "core/numbers.h"

namespace core {

// fNum for the numbers of a log line: nearly all are short runs of digits; everything else takes the long way.
inline double QuickNum(std::string_view text) {
    if (text.empty()) return 0;
    if (text.size() > 9) return fNum(text);
    int value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return fNum(text);
        value = value * 10 + (c - '0');
    }
    return value;
}

}  // namespace core
