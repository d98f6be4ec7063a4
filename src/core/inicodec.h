#pragma once

#include <string>
#include <string_view>

// How names and values stand in a parameter file: escape words begin with two
// no-break spaces, control characters and bytes that are no UTF-8 become a token
// and three digits. Files hold these texts, so they may be added to, not changed.
namespace core {

inline constexpr std::string_view kIniPair = "\xC2\xA0\xC2\xA0";
inline constexpr std::string_view kControlMarker = "!~!@#!";

std::string IniEncodeSection(std::string_view name);
std::string IniEncodeEntry(std::string_view name);
std::string IniDecodeName(std::string_view text);

// One line, whatever the bytes; IniDecodeValue gives exactly `value` back.
std::string IniEncodeValue(std::string_view value);
std::string IniDecodeValue(std::string_view text);

}  // namespace core
