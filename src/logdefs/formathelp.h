#pragma once

#include <string>

namespace logdefs {

// The placeholders of specifications and what they are, for a person.
std::string PlaceholderText();

}  // namespace logdefs
