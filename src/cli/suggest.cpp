#include "cli/suggest.h"

#include <algorithm>
#include <utility>

#include "cli/output.h"
#include "core/utf8.h"

namespace cli {
namespace {

constexpr std::size_t kLongestWord = 60;  // bytes that are compared

// Bytes to add, drop or change to make one word of the other.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t corner = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = corner + (a[i - 1] == b[j - 1] ? 0 : 1);
            corner = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row[b.size()];
}

std::size_t Rank(const std::string& word, std::string_view candidate) {
    const std::string other = core::LowerUtf8(candidate.substr(0, kLongestWord));
    const bool part =
        word.size() > 2 && (other.find(word) != std::string::npos || word.find(other) != std::string::npos);
    return part ? 0 : Distance(word, other);
}

}  // namespace

std::vector<std::string> NearestFirst(std::string_view text, std::vector<std::string> candidates) {
    const std::string word = core::LowerUtf8(text.substr(0, kLongestWord));
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (std::string& candidate : candidates) {
        const std::size_t rank = Rank(word, candidate);
        ranked.emplace_back(rank, std::move(candidate));
    }
    std::ranges::stable_sort(ranked, {}, &std::pair<std::size_t, std::string>::first);
    std::vector<std::string> sorted;
    for (auto& [rank, name] : ranked) sorted.push_back(std::move(name));
    return sorted;
}

std::string ValidAre(std::string_view text, std::vector<std::string> candidates, std::size_t limit) {
    const std::vector<std::string> sorted = NearestFirst(text, std::move(candidates));
    std::string list;
    for (std::size_t i = 0; i < std::min(limit, sorted.size()); ++i) list += (i > 0 ? ", " : "") + Safe(sorted[i]);
    if (list.empty()) return {};
    return "Valid are: " + list + (sorted.size() > limit ? ", ..." : "");
}

}  // namespace cli
