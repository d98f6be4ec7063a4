#pragma once

#include <string_view>

#include "logdefs/fields.h"

namespace logdefs {

// The word of the first field that cannot be what it is called ("date", else a word of kFieldNames), "" when all make
// sense. `fields` are views into `line`; one that no placeholder names is not looked at. A date makes sense from 1990
// up to the day `lastDay` (core/dates.h).
std::string_view DoubtfulField(const LogLnFields& fields, std::string_view line, double lastDay);

bool IsIpAddress(std::string_view text);  // IPv4 or IPv6

}  // namespace logdefs
