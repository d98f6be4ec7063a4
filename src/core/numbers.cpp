#include "core/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "core/text.h"

namespace core {
namespace {

constexpr std::int32_t kLongMax = std::numeric_limits<std::int32_t>::max();

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsExponent(char c) { return c == 'e' || c == 'E' || c == 'd' || c == 'D'; }

// Walks over a text as if it had no blanks.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) { Skip(); }

    bool AtEnd() const { return at_ == text_.size(); }
    char Now() const { return AtEnd() ? '\0' : text_[at_]; }
    void Step() {
        ++at_;
        Skip();
    }
    // The digits from here on, appended to `out`.
    bool TakeDigits(std::string& out) {
        const std::size_t before = out.size();
        for (; IsDigit(Now()); Step()) out += Now();
        return out.size() > before;
    }

private:
    void Skip() {
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

bool TakeSign(Scanner& scan) {
    const bool negative = scan.Now() == '-';
    if (negative || scan.Now() == '+') scan.Step();
    return negative;
}

// An exponent without digits is none, and the number ends before it.
void TakeExponent(Scanner& scan, std::string& number) {
    if (!IsExponent(scan.Now())) return;
    scan.Step();
    std::string exponent = TakeSign(scan) ? "e-" : "e";
    if (scan.TakeDigits(exponent)) number += exponent;
}

// The view without `count` or more characters that `fits` at its front.
template <typename Fits>
std::size_t Drop(std::string_view& text, Fits fits) {
    const auto end = std::ranges::find_if_not(text, fits);
    const auto count = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(count);
    return count;
}

bool DropOne(std::string_view& text, std::string_view anyOf) {
    if (text.empty() || anyOf.find(text.front()) == std::string_view::npos) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

double fNum(std::string_view text) {
    Scanner scan(text);
    const bool negative = TakeSign(scan);
    std::string number;
    bool any = scan.TakeDigits(number);
    if (scan.Now() == '.') {
        scan.Step();
        if (number.empty()) number += '0';
        number += '.';
        const bool fraction = scan.TakeDigits(number);
        if (!fraction) number.pop_back();
        any = any || fraction;
    }
    if (!any) return 0;
    TakeExponent(scan, number);
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc() || value == 0) return 0;
    return negative ? -value : value;
}

std::int32_t ToLong(double value) {
    if (std::isnan(value)) return 0;
    return static_cast<std::int32_t>(std::nearbyint(std::clamp<double>(value, -kLongMax, kLongMax)));
}

std::string NumText(double value) {
    if (!std::isfinite(value) || value == 0) return "0";
    std::array<char, 40> room{};
    const auto end = std::to_chars(room.data(), room.data() + room.size(), value, std::chars_format::general, 15).ptr;
    std::string text(room.data(), end);
    std::ranges::replace(text, 'e', 'E');
    return text;
}

std::int32_t fMaxL(std::int32_t a, std::int32_t b) { return std::max(a, b); }
std::int32_t fMinL(std::int32_t a, std::int32_t b) { return std::min(a, b); }
double fMaxD(double a, double b) { return std::max(a, b); }
double fMinD(double a, double b) { return std::min(a, b); }

bool IsNumeric(std::string_view text) {
    text = fTrim(text);
    DropOne(text, "+-");
    DropOne(text, "$");
    std::size_t digits = 0;
    if (!text.empty() && IsDigit(text.front())) digits = Drop(text, [](char c) { return IsDigit(c) || c == ','; });
    if (DropOne(text, ".")) digits += Drop(text, IsDigit);
    if (digits == 0) return false;
    if (DropOne(text, "eEdD")) {
        DropOne(text, "+-");
        if (Drop(text, IsDigit) == 0) return false;
    }
    return text.empty();
}

}  // namespace core
