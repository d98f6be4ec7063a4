#include "core/strarray.h"

#include <gtest/gtest.h>

#include "core/errnums.h"
#include "core/error.h"

namespace core {
namespace {

TEST(StrArray, OutsideItsBoundsIsRunTimeErrorNine) {
    StrArray fields(1, {"x"});
    for (const long index : {0L, 2L}) {
        try {
            fields[index] = "y";
            FAIL() << "no error";
        } catch (const ErrorNumber& e) {
            EXPECT_EQ(e.number(), errnum::kSubscript);
        }
        EXPECT_EQ(fields.Item(index, "none"), "none");
    }
    EXPECT_EQ(ArrUBound(StrArray(), -5), -5);
}

TEST(ArrFind, StartsWhereItIsTold) {
    const StrArray array(1, {"a", "B", "a"});
    EXPECT_EQ(ArrFind(array, "a"), 1);
    EXPECT_EQ(ArrFind(array, "a", 2), 3);
    EXPECT_EQ(ArrFind(array, "a", 0), 1);
    EXPECT_EQ(ArrFind(array, "b"), -1);
    EXPECT_EQ(ArrFind(array, "b", -1, Case::Ignore), 2);
    EXPECT_EQ(ArrFind(StrArray(), "a"), -1);
}

TEST(ArrAdd, FillsALoneBlankSlotOnlyWhenAsked) {
    StrArray fresh;
    EXPECT_EQ(ArrAdd(fresh, -1, "a", 0).index, 1);  // slot 0 comes into being empty
    StrArray reused;
    EXPECT_EQ(ArrAdd(reused, -1, "a", 0, true).index, 0);
    EXPECT_EQ(ArrAdd(reused, -1, "b", 0, true).index, 1);
    EXPECT_EQ(reused, StrArray(0, {"a", "b"}));
}

TEST(ArrAdd, KeepsUniqueValuesAndGrowsToAnIndex) {
    StrArray array(0, {"a"});
    const ArrAdded again = ArrAdd(array, -1, "A", 2);
    EXPECT_EQ(again.index, 0);
    EXPECT_FALSE(again.added);
    EXPECT_TRUE(ArrAdd(array, -1, "A", 1).added);
    EXPECT_EQ(ArrAdd(array, 3, "d", 0).index, 3);
    EXPECT_EQ(array, StrArray(0, {"a", "A", "", "d"}));
}

TEST(ArrCopyRange, StaysInsideTheSource) {
    const StrArray array(1, {"a", "b", "c"});
    EXPECT_EQ(ArrCopyRange(array, 2, 2), StrArray(1, {"b", "c"}));
    EXPECT_EQ(ArrCopyRange(array, 0, 2), StrArray(1, {"a"}));
    EXPECT_EQ(ArrCopyRange(array, 3, 2147483647), StrArray(1, {"c"}));
    EXPECT_FALSE(ArrCopyRange(array, 4, 1).IsDim());
    EXPECT_FALSE(ArrCopyRange(array, 1, 0).IsDim());
}

}  // namespace
}  // namespace core
