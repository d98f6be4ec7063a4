#include "analysis/cutterm.h"

#include <algorithm>
#include <array>

#include "analysis/fields.h"
#include "core/text.h"
#include "core/utf8.h"

namespace analysis {
namespace {

struct Lengths {
    std::size_t shortest;
    std::size_t longest;
};
// By field, from kWordsAndPhrases on.
constexpr std::array kLengths{
    Lengths{1, 7}, Lengths{2, 7}, Lengths{3, 7}, Lengths{1, 1}, Lengths{2, 2},
    Lengths{3, 3}, Lengths{4, 4}, Lengths{5, 5}, Lengths{6, 6}, Lengths{7, 7},
};
static_assert(kLengths.size() == kWords7 - kWordsAndPhrases + 1);

constexpr std::size_t kFew = 32;  // so many texts are looked through faster than a table of them is built

std::string_view CleanWord(std::string_view word) {
    while (!word.empty()) {
        const core::Letter letter = core::LetterAt(word, 0);
        if (core::IsLetterOrDigit(letter.code)) break;
        word.remove_prefix(letter.length);
    }
    while (!word.empty()) {
        const core::Letter letter = core::LetterBefore(word, word.size());
        if (core::IsLetterOrDigit(letter.code)) break;
        word.remove_suffix(letter.length);
    }
    return core::fTrim(word);
}

}  // namespace

void UniqueTexts::Add(std::string text) {
    if (items.size() == kFew) seen.insert(items.begin(), items.end());
    const bool known = items.size() < kFew ? std::ranges::find(items, text) != items.end() : seen.contains(text);
    if (known) return;
    if (items.size() >= kFew) seen.insert(text);
    items.push_back(std::move(text));
}

std::vector<std::string> TermWords(std::string_view term) {
    const std::string lower = core::LowerUtf8(term);
    std::vector<std::string> words;
    std::string_view rest = lower;
    while (!rest.empty()) {
        const std::size_t end = rest.find(' ');
        const std::string_view word = CleanWord(rest.substr(0, end));
        if (!word.empty()) words.emplace_back(word);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return words;
}

void pAddCombos(const std::vector<std::string>& words, std::size_t length, UniqueTexts& values) {
    for (std::size_t first = 0; first + length <= words.size(); ++first) {
        std::string combination = words[first];
        for (std::size_t i = first + 1; i < first + length; ++i) combination.append(" ").append(words[i]);
        values.Add(std::move(combination));
    }
}

std::vector<std::string> pCutTerm(std::string_view term, int field) {
    if (!IsWordField(field)) return {};
    const std::vector<std::string> words = TermWords(term);
    const Lengths lengths = kLengths[static_cast<std::size_t>(field - kWordsAndPhrases)];
    UniqueTexts values;
    for (std::size_t length = lengths.shortest; length <= lengths.longest; ++length) pAddCombos(words, length, values);
    return std::move(values.items);
}

}  // namespace analysis
