#include "logdefs/patternfilter.h"

#include <algorithm>
#include <iterator>

namespace logdefs {
namespace {

constexpr std::string_view kEverywhere = "http://";  // its parts tell nothing of an address

// "" when there is none, or the pattern has a class without its end.
std::string_view LongestPiece(std::string_view pattern) {
    std::string_view longest;
    for (std::size_t from = 0; from < pattern.size();) {
        const std::size_t end = std::min(pattern.find_first_of("*?#[", from), pattern.size());
        const std::string_view piece = pattern.substr(from, end - from);
        if (piece.size() > longest.size() && kEverywhere.find(piece) == std::string_view::npos) longest = piece;
        from = end + 1;
        if (end == pattern.size() || pattern[end] != '[') continue;
        const std::size_t close = pattern.find(']', end);
        if (close == std::string_view::npos) return {};
        from = close + 1;
    }
    return longest;
}

}  // namespace

PatternFilter::PatternFilter(const std::vector<std::string_view>& patterns) {
    std::vector<std::string_view> pieces;
    for (std::size_t i = 0; i < patterns.size(); ++i) {
        const std::string_view piece = LongestPiece(patterns[i]);
        if (piece.empty()) {
            always_.push_back(i);
        } else {
            pieces.push_back(piece);
            pieceOf_.push_back(i);
        }
    }
    pieces_ = Literals(pieces);
}

std::vector<std::size_t> PatternFilter::Candidates(std::string_view value) const {
    std::vector<std::size_t> found = pieces_.All(value);
    for (std::size_t& number : found) number = pieceOf_[number];
    if (always_.empty()) return found;
    std::vector<std::size_t> all;
    std::ranges::merge(found, always_, std::back_inserter(all));
    return all;
}

}  // namespace logdefs
