#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace core {

// The value of the longest numeric prefix: sign, digits, point, exponent (e or d),
// blanks anywhere ignored. Never raises; an exponent overflow and "" give 0.
double fNum(std::string_view text);

// To the nearest whole number, halves to even, clamped to +-2147483647; NaN is 0.
std::int32_t ToLong(double value);

// A number as the program writes it into texts and parameter files: up to 15
// significant digits, no trailing zeros, ".5" as "0.5".
std::string NumText(double value);

// Number formats: "0" and "#" are places, "," between places groups by thousands, the first
// "." is the point, text in quotes or behind "\" and every other character stand for themselves.
// A "%" outside quotes multiplies by 100: for values that are percentages already, format the
// number and append " %". Halves away from zero on 15 significant digits. "" as a format gives
// NumText; a value that is no finite number gives "".
std::string fFormat(double value, std::string_view format);

// Text formats: "@" a letter or a blank, "&" a letter or nothing, filled from the right ("!": from
// the left), "<" and ">" lower and upper case: "20080912" by "@@@@-@@-@@" is "2008-09-12".
std::string fFormatText(std::string_view text, std::string_view format);

// "1,234,567": the format "#,###,##0".
std::string CountText(double value);

std::int32_t fMaxL(std::int32_t a, std::int32_t b);
std::int32_t fMinL(std::int32_t a, std::int32_t b);
double fMaxD(double a, double b);
double fMinD(double a, double b);

// Optional sign, optional "$", digits with commas, point, exponent, blanks around.
bool IsNumeric(std::string_view text);

}  // namespace core
