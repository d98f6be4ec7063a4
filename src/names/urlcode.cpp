#include "names/urlcode.h"

#include "core/text.h"

namespace names {
namespace {

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

char ByteOf(std::string_view pair) {
    const int high = HexValue(pair[0]);
    const int low = HexValue(pair[1]);
    return high < 0 || low < 0 ? ' ' : static_cast<char>(high * 16 + low);
}

}  // namespace

std::string fPercentDecode(std::string_view text, std::string_view keep) {
    std::string out;
    out.reserve(text.size());
    std::size_t from = 0;
    for (std::size_t at; (at = text.find('%', from)) != std::string_view::npos && at + 2 < text.size(); from = at + 3) {
        out.append(text.substr(from, at - from));
        const std::string_view pair = text.substr(at + 1, 2);
        if (!keep.empty() && core::fFind(keep, pair, core::Case::Ignore) != std::string_view::npos) {
            out.append(text.substr(at, 3));
        } else {
            out.push_back(ByteOf(pair));
        }
    }
    return out.append(text.substr(from));
}

}  // namespace names
