#include "core/cds.h"

#include <gtest/gtest.h>

#include <random>

#include "core/errnums.h"
#include "core/error.h"

namespace core {
namespace {

using Items = std::vector<std::string>;
constexpr CDSForm kPlain{};

Items Split(std::string_view list, const CDSForm& form) {
    const StrArray items = CDSSplit(list, form);
    return {items.Items().begin(), items.Items().end()};
}

TEST(CDSSplit, EmptyTextIsOneEmptyItemAtZeroWhateverBoundIsAsked) {
    for (const CDSForm& form : {kPlain, kBraceForm}) {
        EXPECT_EQ(CDSSplit("", form, 1), StrArray(0, {""}));
        EXPECT_EQ(CDSSplit("", form, 7), StrArray(0, {""}));
    }
    EXPECT_EQ(CDSSplitLong(""), std::vector<long>{0});
    EXPECT_EQ(CDSSplitPlain("a|", 7), StrArray(7, {"a", ""}));
}

// Written lists are files of users: both directions are pinned to the byte.
TEST(CDSJoin, WritesWhatSplitReads) {
    const struct {
        const char* name;
        CDSForm form;
        Items items;
        const char* text;
    } cases[] = {
        {"plain", kPlain, {"a", "b"}, "a|b"},
        {"empty item in the middle", kPlain, {"a", "", "c"}, "a||c"},
        {"delimiter inside an item", kPlain, {"a|b"}, "a!!b{{||{{!!"},
        {"first substitute already in the text", kPlain, {"x!!y", "a|b"}, "x!!y|a!\"b{{||{{!\""},
        {"a ! before the delimiter would read back behind it", kPlain, {"a!|b"}, "a!!\"b{{||{{!\""},
        {"a ! at an item's end does no harm", kPlain, {"a!", "b|c"}, "a!|b!!c{{||{{!!"},
        {"items that look like a tail", kPlain, {"a{{", "", "{{xy"}, "a{{||{{xy{{||{{!!"},
        {"another delimiter", {":::"}, {"a|b", "c:::d"}, "a|b:::c!!d{{||{{!!"},
        {"a tail inside an item, another delimiter", {":::"}, {"a{{||{{xy"}, "a{{||{{xy{{||{{!!"},
        {"braces", kBraceForm, {"a|b", "c"}, "{a|b}|{c}"},
        {"one empty item", kBraceForm, {""}, "{}"},
        {"a brace inside", kBraceForm, {"a}b", "{"}, "{a!\"b}|{!!}{{!!!\""},
        {"a ! before a brace", kBraceForm, {"!{"}, "{!!\"}{{!\"!!"},
        {"another pair", {"|", "<>"}, {"a>", "{"}, "<a!\">|<{><<!!!\""},
        {"what is no pair of two", {"|", "aa"}, {"x"}, "{x}"},
        {"letters of other scripts", kPlain, {"é|я", "中"}, "é!!я|中{{||{{!!"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(CDSJoin({1, c.items}, c.form, 1), c.text);
        EXPECT_EQ(Split(c.text, c.form), c.items);
    }
}

TEST(CDSJoin, AnyItemsComeBack) {
    std::mt19937 random(20080912);
    const std::string letters = "|{}!\"#a :";
    for (const CDSForm& form : {kPlain, kBraceForm, CDSForm{"|", "{}"}, CDSForm{"|", "!\""}}) {
        for (int round = 0; round < 3000; ++round) {
            Items items(1 + random() % 4);
            for (std::string& item : items)
                for (std::size_t n = random() % 7; n > 0; --n) item += letters[random() % letters.size()];
            const std::string text = CDSJoin({1, items}, form, 1);
            if (text.empty()) continue;
            ASSERT_EQ(Split(text, form), items) << text;
            ASSERT_EQ(CDSItemX(1, text, form, ""), items.size() > 1 ? items[1] : "") << text;
            std::string grown;
            for (const std::string& item : items) grown = CDSAdd(grown, item, form).list;
            const Items expected = grown.empty() ? Items{""} : Split(grown, form);
            if (items[0].empty() && form.exclusion == kNoExclusion) continue;  // nothing added to nothing
            ASSERT_EQ(expected, items) << grown;
        }
    }
}

TEST(CDSJoin, DropsBlankItemsAndStopsAtALimit) {
    const StrArray items(0, {"skipped", " ", "b", "", "c"});
    EXPECT_EQ(CDSJoin(items, kPlain, 1, DropEmpty::Yes), "b|c");
    EXPECT_EQ(CDSJoin(items, kPlain, 1, DropEmpty::No, 3), " |b|");
    EXPECT_EQ(CDSJoin(items, kPlain, 1, DropEmpty::No, 99), " |b||c");
    EXPECT_EQ(CDSJoin(items, kBraceForm, 1, DropEmpty::Yes), "{b}|{c}");
    EXPECT_EQ(CDSJoin(StrArray(), kPlain, 0), "");
    EXPECT_EQ(CDSJoin({0, {"a", "b"}}, {""}, 0), "ab");
    // A dropped first item leaves its delimiter where substitutes are needed, and there alone.
    EXPECT_EQ(CDSJoin({1, {"", "b", "", "{"}}, kBraceForm, 1, DropEmpty::Yes), "|{b}|{!!}{{!!!\"");
    EXPECT_EQ(CDSJoin({1, {"", "b|c"}}, kPlain, 1, DropEmpty::Yes), "b!!c{{||{{!!");
}

TEST(CDSSplit, ReadsBracesAsPeopleWriteThem) {
    const struct {
        const char* text;
        Items items;
    } cases[] = {
        {"{a|b}|{c}", {"a|b", "c"}}, {"{abc", {"abc"}},         {"{a} x|{b}", {"a"}},  // the rest is dropped
        {" {a} | {b}", {"a", "b"}},  {" a |{b}", {" a ", "b"}}, {"a|{b", {"a", "b"}},
        {"{a}|", {"a", ""}},         {"{{ab!!", {"{ab!!"}},  // too short for a tail
        {"x{{1234", {"x"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Split(c.text, kBraceForm), c.items);
    }
}

TEST(CDSSplit, AnEmptyDelimiterIsTheBarOrError7510) {
    EXPECT_EQ(Split("a|b", {""}), (Items{"a", "b"}));
    try {
        CDSSplit("{a}", {"", "{}"});
        FAIL() << "no error";
    } catch (const ErrorNumber& e) {
        EXPECT_EQ(e.number(), errnum::kEmptyBraceDelim);
    }
}

TEST(CDSSplitLong, CapsItsNumbers) {
    EXPECT_EQ(CDSSplitLong("1|x|9e9|-9e9|2.5"), (std::vector<long>{1, 0, 2147483647, -2147483647, 2}));
    EXPECT_EQ(CDSSplitInt("40000|-40000"), (std::vector<short>{32767, -32768}));
    EXPECT_EQ(CDSSplitLong("1{{||{{22", false), std::vector<long>{1});
    EXPECT_EQ(CDSSplitLong("1{{||{{22", true), (std::vector<long>{1, 0, 0}));
    EXPECT_EQ(CDSSplitSingle("1e300|0.5")[1], 0.5F);
}

TEST(CDSItem, IsEmptyOutsideTheList) {
    EXPECT_EQ(CDSItem(2, "a!!b|c{{||{{!!"), "c");
    EXPECT_EQ(CDSItem(1, "a!!b|c{{||{{!!"), "a|b");
    for (const long n : {-1L, 0L, 3L, 2147483647L}) EXPECT_EQ(CDSItem(n, "a|b"), "") << n;
    EXPECT_EQ(CDSItem(1, ""), "");
    EXPECT_EQ(CDSItemNum(2, "1|2x"), 2);
    EXPECT_EQ(CDSBraceItem(2, "{a|b}|{c}"), "c");
    EXPECT_EQ(CDSItemX(0, "a|b", kPlain, "none"), "a");
    EXPECT_EQ(CDSItemX(2, "a|b", kPlain, "none"), "none");
    EXPECT_EQ(CDSItemX(0, "", kPlain, "none"), "");
}

TEST(CDSFind, GivesPositionsFromOne) {
    EXPECT_EQ(CDSCount(""), 0);
    EXPECT_EQ(CDSCount("a!!b{{||{{!!"), 3);  // the bars of the tail count
    EXPECT_EQ(CDSFind("a|B|b", "b"), 3);
    EXPECT_EQ(CDSFind("a|B|b", "b", kPlain, Case::Ignore), 2);
    EXPECT_EQ(CDSFind("a!!b|c{{||{{!!", "a|b"), 1);
    EXPECT_EQ(CDSFind("", ""), -1);
    EXPECT_EQ(CDSFindQuick("a|b|c", "a"), 1);
    EXPECT_EQ(CDSFindQuick("a|b|c", "c"), 3);
    EXPECT_EQ(CDSFindQuick("a||c", ""), 2);
    EXPECT_EQ(CDSFindQuick("a|b", "x", Case::Exact, 7), 7);
    EXPECT_EQ(CDSFindQuick("Ä|b", "ä", Case::Ignore), 1);
    EXPECT_EQ(CDSFindDflt("a|b", "B", true, Case::Exact, 9), 9);
}

TEST(CDSHas, FindsProtectedItemsAndTheLastBeforeATail) {
    EXPECT_EQ(CDSHas("b", "a|b").position, 1);
    EXPECT_EQ(CDSHas("b", "{a}|{b}", kBraceForm).position, 4);
    EXPECT_TRUE(CDSHas("c", "a!!b|c{{||{{!!").found);
    EXPECT_TRUE(CDSHas("a|b", "a!!b|c{{||{{!!").found);
    EXPECT_FALSE(CDSHas("a|b", "a|b").found);
    EXPECT_TRUE(CDSHas("B", "a|b", kPlain, Case::Ignore).found);
}

TEST(CDSSetItem, GrowsTheList) {
    EXPECT_EQ(CDSSetItem(3, "c", ""), "||c");
    EXPECT_EQ(CDSSetItem(1, "x", "a|b"), "x|b");
    EXPECT_EQ(CDSSetItem(0, "x", "a|b"), "a|b");
    EXPECT_EQ(CDSSetItem(2, "b", "a!!b|c{{||{{!!"), "a!!b|b{{||{{!!");
    EXPECT_EQ(CDSSetItem(1, "a", "a!!b|c{{||{{!!"), "a|c");
    EXPECT_EQ(CDSSetItemX(2, "{a}", kBraceForm, "b|"), "{a}|{b|}");
}

TEST(CDSAppend, KeepsTheTail) {
    EXPECT_EQ(CDSAppend("", "a"), "a");
    EXPECT_EQ(CDSAppend("a", ""), "a|");
    EXPECT_EQ(CDSAppend("", "a|b"), "a!!b{{||{{!!");
    EXPECT_EQ(CDSAppend("a!!b{{||{{!!", "c"), "a!!b|c{{||{{!!");
    EXPECT_EQ(CDSSplitPlain(CDSAppend("a{{|", "{{xy")), StrArray(1, {"a{{", "", "{{xy"}));
}

TEST(CDSAdd, KeepsSubstitutesUnlessTheItemHoldsThem) {
    const struct {
        const char* name;
        CDSForm form;
        const char* list;
        const char* item;
        bool atHead;
        const char* text;
    } cases[] = {
        {"to nothing", kPlain, "", "a", false, "a"},
        {"at the end", kPlain, "a", "b", false, "a|b"},
        {"at the head", kPlain, "a", "b", true, "b|a"},
        {"a delimiter makes a tail", kPlain, "a", "b|c", false, "a|b!!c{{||{{!!"},
        {"the tail stays", kPlain, "b#$c{{||{{#$", "d|e", true, "d#$e|b#$c{{||{{#$"},
        {"the item holds the substitute", kPlain, "b!!c{{||{{!!", "x!!", false, "b!\"c|x!!{{||{{!\""},
        {"braces", kBraceForm, "{a}", "b|c", false, "{a}|{b|c}"},
        {"to nothing in braces", kBraceForm, "", "a", false, "{a}"},
        {"a brace makes a tail", kBraceForm, "{a}", "{", true, "{!!}|{a}{{!!!\""},
        {"both substitutes anew", kBraceForm, "{#$}{{#$#%", "#%}", false, "{!!}|{#%!\"}{{!!!\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(CDSAdd(c.list, c.item, c.form, 0, c.atHead).list, c.text);
    }
}

TEST(CDSAdd, KeepsListsUnique) {
    const CDSAdded again = CDSAdd("a!!b|c{{||{{!!", "A|B", kPlain, 2);
    EXPECT_FALSE(again.added);
    EXPECT_EQ(again.list, "a!!b|c{{||{{!!");
    EXPECT_EQ(again.message, "Item already exists. List can contain unique items only.");
    EXPECT_TRUE(CDSAdd("a|b", "A", kPlain, 1).added);
    EXPECT_TRUE(CDSAdd("a|b", "a|b", kPlain, 1).added);
    EXPECT_FALSE(CDSAdd("{a}|b", "b", kBraceForm, 1).added);

    const CDSAdded odd = CDSAdd("a", "a", kPlain, 5);
    EXPECT_EQ(odd.message, "Internal parameter err Chunks/0088");
    EXPECT_EQ(odd.list, "a|a");
}

TEST(CDSFindOrAdd, TellsWhetherItAdded) {
    const CDSFoundOrAdded found = CDSFindOrAdd("a|b", "b");
    EXPECT_EQ(found.position, 2);
    EXPECT_FALSE(found.added);
    const CDSFoundOrAdded added = CDSFindOrAdd("a|b", "c", kPlain, 0, true);
    EXPECT_EQ(added.list, "c|a|b");
    EXPECT_EQ(added.position, 1);
    EXPECT_TRUE(added.added);
}

TEST(CDSRemove, GivesPositionsAndKeepsAnUntouchedListByteForByte) {
    const CDSRemoved hit = CDSRemove("a|b|A|c", "a", kPlain, Case::Ignore);
    EXPECT_EQ(hit.list, "b|c");
    EXPECT_EQ(hit.positions, "1|3");
    const std::string kept = "a#$b|c{{||{{#$";
    EXPECT_EQ(CDSRemove(kept, "a").list, kept);
    EXPECT_FALSE(CDSRemove(kept, "a").removed);
    EXPECT_EQ(CDSRemove(kept, "c").list, "a!!b{{||{{!!");
    EXPECT_EQ(CDSRemove("a|a", "a").list, "");
    EXPECT_FALSE(CDSRemove("", "").removed);
    EXPECT_EQ(CDSRemoveAt("a|b|c", "3|1|9|0").list, "b");
    EXPECT_EQ(CDSRemoveAt("a|b|c", "3|1|9|0").positions, "1|3");
    EXPECT_FALSE(CDSRemoveAt("a|b", "").removed);
}

TEST(CDSReorder, FormatsNumbersAndTexts) {
    EXPECT_EQ(CDSReorder("3|1|2|9", "20080912|x|1234", kPlain, "#,##0|@@@@-@@-@@", " / "), "1,234 / 2008-09-12 / x / ");
    EXPECT_EQ(CDSReorder("", "a|b", kPlain, "", ","), "");
    EXPECT_EQ(CDSOf({"a", "|", "", "b|c"}), "a||b!!c{{||{{!!");
}

TEST(ChooseSubstitute, GoesUpByItsOuterCode) {
    EXPECT_EQ(ChooseSubstitute("", 2, "|"), "!!");
    EXPECT_EQ(ChooseSubstitute("!!!\"", 2, ""), "!#");
    EXPECT_EQ(ChooseSubstitute("", 2, "!"), "\"\"");
    EXPECT_EQ(ChooseSubstitute("!!!", 3, ""), "!!\"");
    std::string outer;  // every pair that begins with "!"
    for (int code = 33; code < 127; ++code) outer.append("!").append(1, static_cast<char>(code)).append(" ");
    EXPECT_EQ(ChooseSubstitute(outer, 2, ""), "!\u007F");
    for (int code = 127; code < 255; ++code)
        outer.append("!")
            .append(code < 128   ? "\x7F"
                    : code < 192 ? "\xC2"
                                 : "\xC3")
            .append(code < 128 ? "" : std::string(1, static_cast<char>(0x80 | (code & 0x3F))))
            .append(" ");
    EXPECT_EQ(ChooseSubstitute(outer, 2, ""), "\"!");
}

TEST(ChooseSubstitute, HasNoneLeftInAFullText) {
    std::string full;
    for (const char outer : {'a', 'b'})
        for (int inner = 33; inner < 127; ++inner)
            full.append(1, outer).append(1, static_cast<char>(inner)).append(" ");
    std::string excluded;
    for (int code = 33; code < 127; ++code)
        if (code != 'a' && code != 'b') excluded += static_cast<char>(code);
    for (int code = 127; code < 255; ++code) {
        if (code < 128) {
            excluded += '\x7F';
            continue;
        }
        excluded.append(code < 192 ? "\xC2" : "\xC3").append(1, static_cast<char>(0x80 | (code & 0x3F)));
    }
    try {
        ChooseSubstitute(full, 2, excluded);
        FAIL() << "no error";
    } catch (const ErrorNumber& e) {
        EXPECT_EQ(e.number(), errnum::kNoFreeSubstitute);
    }
}

TEST(CDSRemove, LongListsTakeOnePass) {
    std::string list;
    for (int i = 0; i < 200000; ++i) list.append(i == 0 ? "" : "|").append(std::to_string(i)).append(i % 2 ? "" : "!!");
    const std::string odd = CDSRemove(CDSAppend(list, "x|y"), "0!!").list;
    EXPECT_EQ(CDSItem(200000, odd), "x|y");
    EXPECT_EQ(CDSItem(1, odd), "1");
}

}  // namespace
}  // namespace core
