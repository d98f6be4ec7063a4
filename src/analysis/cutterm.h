#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

// The words of a search term and their combinations.
namespace analysis {

// Texts without duplicates, in the order of their first addition.
struct UniqueTexts {
    std::vector<std::string> items{};
    std::unordered_set<std::string> seen{};  // the same, once they are many
    void Add(std::string text);
};

// Lower-cased words, without what is no letter or digit at their edges. Inner punctuation stays.
std::vector<std::string> TermWords(std::string_view term);

// All runs of `length` words, each joined by one blank, that are not among the values yet.
void pAddCombos(const std::vector<std::string>& words, std::size_t length, UniqueTexts& values);

// The combinations of the lengths that a word field (12 to 21) lists.
std::vector<std::string> pCutTerm(std::string_view term, int field);

}  // namespace analysis
