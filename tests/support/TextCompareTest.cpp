#include "support/TextCompare.h"

#include <gtest/gtest.h>

using vagent::CompareIgnoringCase;
using vagent::EqualsIgnoringCase;
using vagent::StartsWithIgnoringCase;

TEST(TextCompare, CompareFoldsCapitalsAndOrdersLikeStricmp) {
    EXPECT_EQ(CompareIgnoringCase("Builtin", "bUILTIN"), 0);
    EXPECT_LT(CompareIgnoringCase("a.txt", "B.txt"), 0);
    EXPECT_GT(CompareIgnoringCase("c", "B"), 0);
    EXPECT_LT(CompareIgnoringCase("ab", "abc"), 0);
    EXPECT_GT(CompareIgnoringCase("abc", "AB"), 0);
}

TEST(TextCompare, OnlyAsciiCapitalsAreFolded) {
    EXPECT_FALSE(EqualsIgnoringCase("\xC4", "\xE4"));
    EXPECT_TRUE(EqualsIgnoringCase("TS01", "ts01"));
    EXPECT_FALSE(EqualsIgnoringCase("TS01", "ts011"));
}

TEST(TextCompare, StartsWithComparesOverThePrefixOnly) {
    EXPECT_TRUE(StartsWithIgnoringCase("00-1A-2B", "00-1a"));
    EXPECT_TRUE(StartsWithIgnoringCase("anything", ""));
    EXPECT_FALSE(StartsWithIgnoringCase("00", "00-1a"));
    EXPECT_FALSE(StartsWithIgnoringCase("01-1a", "00-1a"));
}
