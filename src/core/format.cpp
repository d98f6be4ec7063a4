#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "core/numbers.h"
#include "core/utf8.h"

namespace core {
namespace {

constexpr int kSignificant = 15;
constexpr char kLiteral = 'x';

// A placeholder ('0' or '#'; '@' or '&' for texts) or a literal.
struct Piece {
    char kind = kLiteral;
    std::string text{};
};

struct NumberFormat {
    std::vector<Piece> whole{};
    std::vector<Piece> fraction{};
    bool point = false;
    bool grouped = false;
    int shift = 0;  // powers of ten: 2 for each percent sign
};

bool IsPlace(const Piece& piece) { return piece.kind != kLiteral; }
bool IsDigitPlace(char c) { return c == '0' || c == '#'; }

// Text in quotes, a character behind a backslash, or one character; `at` moves behind it.
std::string TakeLiteral(std::string_view format, std::size_t& at) {
    if (format[at] == '"') {
        const std::size_t end = std::min(format.find('"', at + 1), format.size());
        std::string text(format.substr(at + 1, end - at - 1));
        at = std::min(end + 1, format.size());
        return text;
    }
    if (format[at] == '\\' && at + 1 < format.size()) ++at;
    return std::string(1, format[at++]);
}

NumberFormat ParseNumberFormat(std::string_view format) {
    NumberFormat parsed;
    for (std::size_t at = 0; at < format.size();) {
        std::vector<Piece>& pieces = parsed.point ? parsed.fraction : parsed.whole;
        const char c = format[at];
        const bool betweenPlaces =
            at > 0 && at + 1 < format.size() && IsDigitPlace(format[at - 1]) && IsDigitPlace(format[at + 1]);
        if (IsDigitPlace(c)) {
            pieces.push_back({c, {}});
            ++at;
        } else if (c == '.' && !parsed.point) {
            parsed.point = true;
            ++at;
        } else if (c == ',' && betweenPlaces && !parsed.point) {
            parsed.grouped = true;
            ++at;
        } else {
            if (c == '%') parsed.shift += 2;
            pieces.push_back({kLiteral, TakeLiteral(format, at)});
        }
    }
    return parsed;
}

// A value as its decimal digits, rounded: the whole part without leading zeros.
struct Decimal {
    std::string whole{};
    std::string fraction{};
    bool IsZero() const { return whole.empty() && fraction.find_first_not_of('0') == std::string::npos; }
};

// Adds one to the last digit. The digits grow by one when all are nines.
void Increment(std::string& digits, int& point) {
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
    ++point;
}

// Half away from zero, judged by 15 significant digits: 0.15 is no less than 0.15, whatever its bits say.
Decimal Rounded(double value, int shift, int places) {
    std::array<char, 40> room{};
    const auto end = std::to_chars(room.data(), room.data() + room.size(), std::abs(value),
                                   std::chars_format::scientific, kSignificant - 1)
                         .ptr;
    const std::string_view text(room.data(), static_cast<std::size_t>(end - room.data()));
    std::string digits = std::string(text.substr(0, 1)).append(text.substr(2, kSignificant - 1));
    int point = 1 + shift + static_cast<int>(fNum(text.substr(text.find('e') + 1)));
    const int kept = point + places;
    if (kept < 0) return {"", std::string(static_cast<std::size_t>(places), '0')};
    if (kept < kSignificant) {
        const bool up = digits[static_cast<std::size_t>(kept)] >= '5';
        digits.resize(static_cast<std::size_t>(kept));
        if (up) Increment(digits, point);
    }
    if (point < 0) digits.insert(0, static_cast<std::size_t>(-point), '0');
    const auto wholeSize = static_cast<std::size_t>(std::max(point, 0));
    digits.resize(wholeSize + static_cast<std::size_t>(places), '0');
    Decimal result{digits.substr(0, wholeSize), digits.substr(wholeSize)};
    result.whole.erase(0, std::min(result.whole.find_first_not_of('0'), result.whole.size()));
    return result;
}

// Writes the whole part from its last place to its first, which takes all digits that are left.
class WholeWriter {
public:
    WholeWriter(std::string_view digits, bool grouped) : left_(digits), grouped_(grouped) {}

    void Literal(std::string_view text) { out_.append(text.rbegin(), text.rend()); }
    void Place(char kind) {
        if (!left_.empty())
            TakeDigit();
        else if (kind == '0')
            Digit('0');
    }
    void Rest() {
        while (!left_.empty()) TakeDigit();
    }
    std::string Text() const { return {out_.rbegin(), out_.rend()}; }

private:
    void TakeDigit() {
        Digit(left_.back());
        left_.remove_suffix(1);
    }
    void Digit(char digit) {
        if (grouped_ && count_ > 0 && count_ % 3 == 0) out_ += ',';
        out_ += digit;
        ++count_;
    }

    std::string_view left_;
    bool grouped_;
    int count_ = 0;
    std::string out_{};
};

std::string WholeText(const NumberFormat& format, std::string_view digits) {
    WholeWriter writer(digits, format.grouped);
    auto places = std::ranges::count_if(format.whole, IsPlace);
    if (places == 0 && format.point) writer.Rest();
    for (std::size_t i = format.whole.size(); i-- > 0;) {
        const Piece& piece = format.whole[i];
        if (!IsPlace(piece)) {
            writer.Literal(piece.text);
            continue;
        }
        writer.Place(piece.kind);
        if (--places == 0) writer.Rest();
    }
    return writer.Text();
}

std::string FractionText(const NumberFormat& format, std::string_view digits) {
    const std::size_t used = digits.find_last_not_of('0') + 1;
    std::string out;
    std::size_t at = 0;
    for (const Piece& piece : format.fraction) {
        if (!IsPlace(piece)) {
            out += piece.text;
            continue;
        }
        if (piece.kind == '0' || at < used) out += digits[at];
        ++at;
    }
    return out;
}

struct TextFormat {
    std::vector<Piece> pieces{};
    bool lower = false, upper = false, fromLeft = false;
};

TextFormat ParseTextFormat(std::string_view format) {
    TextFormat parsed;
    for (std::size_t at = 0; at < format.size();) {
        const char c = format[at];
        bool* flag = c == '<' ? &parsed.lower : c == '>' ? &parsed.upper : c == '!' ? &parsed.fromLeft : nullptr;
        if (flag != nullptr) {
            *flag = true;
            ++at;
        } else if (c == '@' || c == '&') {
            parsed.pieces.push_back({c, {}});
            ++at;
        } else {
            parsed.pieces.push_back({kLiteral, TakeLiteral(format, at)});
        }
    }
    return parsed;
}

std::string TakeLetter(std::string_view& text) {
    const std::size_t length = LetterAt(text, 0).length;
    std::string letter(text.substr(0, length));
    text.remove_prefix(length);
    return letter;
}

std::size_t LetterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += LetterAt(text, at).length) ++count;
    return count;
}

std::string FillPlaces(const std::vector<Piece>& pieces, std::string_view text, std::size_t places, bool fromLeft) {
    const std::size_t letters = LetterCount(text);
    // Filled from the right: the first places stay empty, or the first one takes all that is too much.
    std::size_t unfilled = fromLeft || letters >= places ? 0 : places - letters;
    std::size_t extra = !fromLeft && letters > places ? letters - places : 0;
    std::string out;
    for (const Piece& piece : pieces) {
        if (!IsPlace(piece)) {
            out += piece.text;
        } else if (unfilled > 0 || text.empty()) {
            if (piece.kind == '@') out += ' ';
            unfilled -= std::min<std::size_t>(unfilled, 1);
        } else {
            for (; extra > 0; --extra) out += TakeLetter(text);
            out += TakeLetter(text);
        }
    }
    return out.append(text);
}

}  // namespace

std::string fFormat(double value, std::string_view format) {
    if (!std::isfinite(value)) return {};
    if (format.empty()) return NumText(value);
    const NumberFormat parsed = ParseNumberFormat(format);
    const auto places = static_cast<int>(std::ranges::count_if(parsed.fraction, IsPlace));
    const Decimal decimal = Rounded(value, parsed.shift, places);
    std::string out = value < 0 && !decimal.IsZero() ? "-" : "";
    out += WholeText(parsed, decimal.whole);
    if (parsed.point) out += '.';
    return out += FractionText(parsed, decimal.fraction);
}

std::string fFormatText(std::string_view text, std::string_view format) {
    const TextFormat parsed = ParseTextFormat(format);
    const std::string shown = parsed.lower ? LowerUtf8(text) : parsed.upper ? UpperUtf8(text) : std::string(text);
    const auto places = static_cast<std::size_t>(std::ranges::count_if(parsed.pieces, IsPlace));
    return places == 0 ? shown : FillPlaces(parsed.pieces, shown, places, parsed.fromLeft);
}

std::string CountText(double value) { return fFormat(value, "#,###,##0"); }

}  // namespace core
