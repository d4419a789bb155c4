#include "accounts/TextConversion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"

using ::testing::ElementsAre;

TEST(TextConversion, NarrowToWideReturnsTheCountWithTheTerminator) {
    std::wstring wide = L"stale";
    EXPECT_EQ(string2wstring("Sales", wide), 6);
    EXPECT_EQ(wide, L"Sales");
}

TEST(TextConversion, WideToNarrowReturnsTheByteCountWithTheTerminator) {
    std::string narrow = "stale";
    EXPECT_EQ(wstring2string(L"CN=Ann", narrow), 7);
    EXPECT_EQ(narrow, "CN=Ann");
}

TEST(TextConversion, EmptyTextConvertsToEmptyWithCountOne) {
    std::wstring wide = L"x";
    EXPECT_EQ(string2wstring("", wide), 1);
    EXPECT_EQ(wide, L"");
}

TEST(TextConversion, NarrowAllocationFailureLogsTheCharacterCountAndKeepsTheOutput) {
    vagent::test::LogCapture capture;
    std::wstring wide = L"kept";
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(string2wstring("abc", wide), 0);
    }
    EXPECT_EQ(wide, L"kept");
    EXPECT_THAT(capture.Texts(), ElementsAre("string2wstring : new [4] bytes failed!"));
}

TEST(TextConversion, WideAllocationFailureLogsTheByteCountAndKeepsTheOutput) {
    vagent::test::LogCapture capture;
    std::string narrow = "kept";
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(wstring2string(L"abcd", narrow), 0);
    }
    EXPECT_EQ(narrow, "kept");
    EXPECT_THAT(capture.Texts(), ElementsAre("wstring2string : new [5] bytes failed!"));
}

TEST(TextConversion, TextIsTakenUpToItsFirstZero) {
    std::wstring wide;
    EXPECT_EQ(string2wstring(std::string("ab\0cd", 5), wide), 3);
    EXPECT_EQ(wide, L"ab");
}
