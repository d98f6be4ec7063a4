#include "analysis/cutterm.h"

#include <gtest/gtest.h>

#include "analysis/fields.h"

namespace analysis {
namespace {

using Texts = std::vector<std::string>;

TEST(pCutTerm, ListsEachCombinationOfEachLengthOnce) {
    const struct {
        const char* term;
        int field;
        Texts values;
    } cases[] = {
        {"a b c", kWordsAndPhrases, {"a", "b", "c", "a b", "b c", "a b c"}},
        {"a b c", kPhrases2, {"a b", "b c", "a b c"}},
        {"a b c", kPhrases3, {"a b c"}},
        {"Paris paris", kWords, {"paris"}},
        {"Paris paris", kWords2, {"paris paris"}},
        {"a b a b", kWords2, {"a b", "b a"}},
        {"shoes", kWords2, {}},
        {"1 2 3 4 5 6 7 8", kWords7, {"1 2 3 4 5 6 7", "2 3 4 5 6 7 8"}},
        {"a b", kTerm, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.term + std::string(" ") + std::to_string(c.field));
        EXPECT_EQ(pCutTerm(c.term, c.field), c.values);
    }
}

TEST(TermWords, LoseWhatIsNoLetterOrDigitAtTheirEdges) {
    const struct {
        const char* term;
        Texts words;
    } cases[] = {
        {"(cheap, hotels!)", {"cheap", "hotels"}},
        {"t-shirt - o'brien", {"t-shirt", "o'brien"}},
        {"a  b", {"a", "b"}},
        {"--- ?!", {}},
        {"   ", {}},
        {"«КУПИТЬ» ½Ω", {"купить", "½ω"}},  // a fraction is a number, so it stays
        {"\xE2\x82\xAC"
         "5",
         {"5"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.term);
        EXPECT_EQ(TermWords(c.term), c.words);
    }
}

}  // namespace
}  // namespace analysis
