#include "reports/words.h"

#include <gtest/gtest.h>

#include "tests/reports/handmade.h"

namespace reports {
namespace {

class Words : public testsupport::Handmade {
protected:
    static testsupport::Texts Shown(const std::vector<WordCount>& words) {
        testsupport::Texts texts;
        for (const WordCount& word : words)
            texts.push_back(word.text + " " + std::to_string(static_cast<int>(word.count)));
        return texts;
    }
};

TEST_F(Words, FrequenciesOfTheLinesOfAReport) {
    Add("Cheap hotel", 3, 0, 0);
    Add("cheap Hotel cheap", 2, 0, 0);
    Add("paris  x", 4, 0, 0);
    Add(" .. NOT SEARCH ENGINE .. ", 9, 0, 0);
    const ReportGrid grid = Show(ReportKind::All);
    EXPECT_EQ(Shown(WordFrequencies(grid, 1)), (testsupport::Texts{"Cheap 7", "hotel 5", "x 4", " 4", "paris 4"}));
    EXPECT_EQ(Shown(WordFrequencies(grid, 2)),
              (testsupport::Texts{"Cheap hotel 5", " x 4", "paris  4", "Hotel cheap 2"}));
    EXPECT_EQ(Shown(WordFrequencies(grid, 3)), (testsupport::Texts{"paris  x 4", "cheap Hotel cheap 2"}));
    EXPECT_TRUE(WordFrequencies(grid, 4).empty());
}

TEST_F(Words, TheWordGridIsSortedByUsers) {
    for (const char* word : {"a", "b", "b", "c"}) Word(word);
    EXPECT_EQ(Shown(pFillWordGrid(results)), (testsupport::Texts{"b 2", "a 1", "c 1"}));
}

}  // namespace
}  // namespace reports
