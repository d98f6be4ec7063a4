#pragma once

#include <string_view>

namespace core {

// The Like operator, binary: * any text, ? one letter (UTF-8), # one digit,
// [a-z] and [!a-z] a class. Time is linear in the text for each star, no recursion.
// A class without its closing bracket never matches.
bool Like(std::string_view text, std::string_view pattern);

}  // namespace core
