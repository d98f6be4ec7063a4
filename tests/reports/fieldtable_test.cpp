#include "reports/fieldtable.h"

#include <gtest/gtest.h>

namespace reports {
namespace {

TEST(FieldOfWord, KnowsWordsAndCodes) {
    const struct {
        const char* text;
        int code;
    } cases[] = {
        {"terms", 1}, {"TERMS", 1}, {"1", 1}, {"7-word", 21}, {"21", 21}, {"", 0}, {"9", 0}, {"10", 0}, {"termz", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const FieldRow* row = FieldOfWord(c.text);
        EXPECT_EQ(row == nullptr ? 0 : row->code, c.code);
    }
}

TEST(SuggestFields, NamesWhatLooksAlikeOrElseAll) {
    EXPECT_EQ(SuggestFields("termz"), (std::vector<std::string>{"terms"}));
    EXPECT_EQ(SuggestFields("start"), (std::vector<std::string>{"start-pages", "terms-start-pages"}));
    EXPECT_EQ(SuggestFields("xyzzy").size(), 19U);
    EXPECT_EQ(SuggestFields(std::string(1000000, 'a')).size(), 19U);
}

TEST(Fields_List, HoldsTheCodesOfItsKind) {
    EXPECT_EQ(Fields_List(FieldList::Full), "1|2|3|4|5|6|7|8|9|11|12|13|14|15|16|17|18|19|20|21");
    EXPECT_EQ(Fields_List(FieldList::Words), "12|13|14|15|16|17|18|19|20|21");
}

}  // namespace
}  // namespace reports
