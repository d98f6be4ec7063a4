#include "logdefs/rulematcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>
#include <string>

#include "core/like.h"
#include "core/utf8.h"
#include "logdefs/filter.h"
#include "logdefs/patternfilter.h"

namespace logdefs {
namespace {

std::string Word(std::mt19937& dice, const std::string& letters, std::size_t most) {
    std::string word(dice() % (most + 1), ' ');
    for (char& c : word) c = letters[dice() % letters.size()];
    return word;
}

// Few letters, so that texts lie within each other and begin where others end.
TEST(RuleMatcher, FindsTheFirstSatisfiedRuleOfAll) {
    std::mt19937 dice(7);
    for (int round = 0; round < 300; ++round) {
        const std::string letters = round % 3 == 0   ? "ab"
                                    : round % 3 == 1 ? "abcAB"
                                                     : std::string("a\0\xC3\xA4\xFF", 5);
        std::vector<FltrRule> rules(dice() % 40);
        for (FltrRule& rule : rules) {
            rule.MC = dice() % 8 == 0;
            rule.Typ = dice() % 4 == 0 ? static_cast<int>(dice() % 8) : kContains;
            rule.Val = Word(dice, letters, 6) + (round % 5 == 0 ? "" : "b");
            if (!rule.MC) rule.Val = core::LowerUtf8(rule.Val);
        }
        const RuleMatcher matcher(rules);
        for (int i = 0; i < 30; ++i) {
            const std::string value = Word(dice, letters, 20), lowered = core::LowerUtf8(value);
            std::size_t first = 0;
            while (first < rules.size() && !FltrTestPrepared(rules[first].MC ? value : lowered, rules[first])) ++first;
            ASSERT_EQ(matcher.FirstSatisfied(value, lowered), first) << testing::PrintToString(value);
        }
    }
}

TEST(RuleMatcher, TakesEveryByte) {
    std::vector<FltrRule> rules;
    for (int byte = 0; byte < 256; ++byte) rules.push_back({kContains, std::string(2, static_cast<char>(byte))});
    const RuleMatcher matcher(rules);
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const std::string once(1, static_cast<char>(byte));
        EXPECT_EQ(matcher.FirstSatisfied(once, once), rules.size());
        EXPECT_EQ(matcher.FirstSatisfied(once + once, once + once), byte);
    }
}

TEST(PatternFilter, LeavesOutOnlyWhatCannotMatch) {
    std::mt19937 dice(11);
    const std::string pieces[] = {"http://", "*", "a", "b",   ".",  "[ab]", "[!a]",
                                  "[]",      "?", "#", "ab.", "[a", "]",    "ba"};
    std::size_t left = 0, all = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> patterns(dice() % 30);
        for (std::string& pattern : patterns)
            for (std::size_t i = dice() % 6; i > 0; --i) pattern += pieces[dice() % std::size(pieces)];
        const PatternFilter filter({patterns.begin(), patterns.end()});
        for (int i = 0; i < 20; ++i) {
            const std::string value = (i % 2 == 0 ? "http://" : "") + Word(dice, "ab.1]", 9);
            const std::vector<std::size_t> candidates = filter.Candidates(value);
            EXPECT_TRUE(std::ranges::is_sorted(candidates, std::less_equal<>()) || candidates.size() < 2);
            for (std::size_t p = 0; p < patterns.size(); ++p) {
                if (!core::Like(value, patterns[p])) continue;
                ASSERT_TRUE(std::ranges::binary_search(candidates, p)) << value << " " << patterns[p];
            }
            left += candidates.size();
            all += patterns.size();
        }
    }
    EXPECT_LT(left * 10, all * 9);
}

TEST(FltrTestLine, SettlesManyRulesAsItSettlesFew) {
    FltrRuleSet many;
    many.Active = many.AnyRule = many.oneField = true;
    for (int i = 0; i < 40; ++i) {
        many.Rules.push_back({kContains, "bot" + std::to_string(39 - i)});
        many.FieldIdx.push_back(kAgent);
    }
    for (const bool invert : {false, true}) {
        many.Invert = invert;
        many.seen.Clear();
        LogLnFields fields;
        fields.Set(kAgent, "some BOT12");
        const LineVerdict verdict = FltrTestLine(fields, many);
        EXPECT_EQ(verdict.index, 27U);  // "bot12" stands before "bot1"
        EXPECT_EQ(verdict.skip, !invert);
        EXPECT_EQ(verdict.text, "some BOT12");
        fields.Set(kAgent, "browser");
        EXPECT_EQ(FltrTestLine(fields, many).skip, invert);
    }
}

}  // namespace
}  // namespace logdefs
