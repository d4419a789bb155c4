#include "os/TextCodec.h"

#include <gtest/gtest.h>

#include "os/Facilities.h"

using vagent::os::Text;

TEST(TextCodec, AsciiRoundTrips) {
    std::wstring wide;
    ASSERT_EQ(Text().NarrowToWide("Administrator", wide), 0u);
    EXPECT_EQ(wide, L"Administrator");
    std::string narrow;
    ASSERT_EQ(Text().WideToNarrow(wide, narrow), 0u);
    EXPECT_EQ(narrow, "Administrator");
}

TEST(TextCodec, EmptyTextConvertsToEmptyText) {
    std::wstring wide = L"stale";
    std::string narrow = "stale";
    EXPECT_EQ(Text().NarrowToWide("", wide), 0u);
    EXPECT_EQ(Text().WideToNarrow(L"", narrow), 0u);
    EXPECT_TRUE(wide.empty());
    EXPECT_TRUE(narrow.empty());
}

TEST(TextCodec, EmbeddedZeroIsConverted) {
    std::wstring wide;
    ASSERT_EQ(Text().NarrowToWide(std::string("a\0b", 3), wide), 0u);
    EXPECT_EQ(wide, std::wstring(L"a\0b", 3));
}
